#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Panel.h"
#include "timing/Std2.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class CompCanvas : public ::testing::Test {
protected:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 200, 150);
        form->Show();
        outer = new TPanel(form);
        outer->SetParent(form);
        outer->SetBounds(10, 10, 100, 100);
        panel = new TPanel(form);
        panel->SetParent(outer);
        panel->SetBounds(20, 20, 120, 40); // reaches beyond its parent's right edge
        Application().ProcessMessages();
        canvas = std::make_unique<TqCompCanvas>(nullptr);
    }
    void TearDown() override {
        canvas.reset();
        delete form;
    }
    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    // What the "screen" shows at a point of the form.
    std::uint32_t Shown(int x, int y) {
        return Headless().Window(form->NativeWindow()).presented.At(x, y);
    }
    std::string Message(const std::function<void()>& call) {
        try {
            call();
        } catch (const EqCompCanvasException& e) {
            return e.what();
        }
        return "no exception";
    }

    TForm* form{nullptr};
    TPanel* outer{nullptr};
    TPanel* panel{nullptr};
    std::unique_ptr<TqCompCanvas> canvas;
};

} // namespace

TEST_F(CompCanvas, TheThreeMisusesRaiseTheirMessages) {
    EXPECT_EQ(Message([&] { canvas->EndPaint(); }), "We are not drawing");
    EXPECT_EQ(Message([&] { canvas->StartPaint(); }), "No component to draw on");
    canvas->SetControlComponent(panel);
    canvas->StartPaint();
    EXPECT_EQ(Message([&] { canvas->StartPaint(); }), "We are allready drawing");
    EXPECT_TRUE(canvas->Drawing()); // the first drawing goes on
    canvas->EndPaint();
    EXPECT_FALSE(canvas->Drawing());
}

TEST_F(CompCanvas, DrawingShowsAtEndPaintInsideTheVisiblePartOnly) {
    canvas->SetControlComponent(panel);
    canvas->StartPaint();
    TCanvas& c = canvas->Canvas();
    c.Brush().SetColor(TColor(0x0000FF));
    c.FillRect(Rect(-50, -50, 500, 500));
    const std::uint32_t red = ColorToPixel(0x0000FF);
    EXPECT_NE(Shown(40, 40), red); // not presented before EndPaint
    canvas->EndPaint();
    // The panel's client area starts at (30, 30) of the form; its parent ends at x = 110.
    EXPECT_EQ(Shown(30, 30), red);
    EXPECT_EQ(Shown(109, 69), red);
    EXPECT_NE(Shown(110, 40), red); // beyond the parent: clipped
    EXPECT_NE(Shown(29, 30), red);
    EXPECT_NE(Shown(30, 70), red);
    EXPECT_EQ(form->FrameBuffer().At(50, 50), red);
}

TEST_F(CompCanvas, NoToolSurvivesEndPaintAndTheCanvasObjectStays) {
    canvas->SetControlComponent(panel);
    TCanvas* lent = &canvas->Canvas();
    canvas->StartPaint();
    lent->Font().SetName("Courier New");
    lent->Font().SetSize(30);
    lent->Pen().SetWidth(7);
    lent->Brush().SetColor(clRed);
    canvas->EndPaint();
    canvas->StartPaint();
    EXPECT_EQ(&canvas->Canvas(), lent);
    EXPECT_EQ(lent->Font().Name(), TFont().Name());
    EXPECT_EQ(lent->Font().Size(), TFont().Size());
    EXPECT_EQ(lent->Pen().Width(), 1);
    EXPECT_EQ(lent->Brush().Color(), TBrush().Color());
    canvas->EndPaint();
}

TEST_F(CompCanvas, TheControlGoingAwayWhileDrawingEndsTheDrawing) {
    canvas->SetControlComponent(panel);
    canvas->StartPaint();
    canvas->Canvas().Brush().SetColor(clRed);
    delete panel;
    EXPECT_FALSE(canvas->Drawing());
    EXPECT_EQ(canvas->ControlComponent(), nullptr);
    EXPECT_EQ(Message([&] { canvas->StartPaint(); }), "No component to draw on");
    EXPECT_EQ(canvas->Canvas().Brush().Color(), TBrush().Color());
}

TEST_F(CompCanvas, ChoosingAnotherControlEndsTheDrawingOnTheFirst) {
    canvas->SetControlComponent(panel);
    canvas->StartPaint();
    canvas->Canvas().Brush().SetColor(TColor(0x00FF00));
    canvas->Canvas().FillRect(Rect(0, 0, 10, 10));
    canvas->SetControlComponent(outer);
    EXPECT_FALSE(canvas->Drawing());
    EXPECT_EQ(Shown(31, 31), ColorToPixel(0x00FF00)); // presented as at EndPaint
    canvas->StartPaint();
    canvas->EndPaint();
}

TEST_F(CompCanvas, AHiddenControlGetsACanvasThatDrawsNothing) {
    outer->SetVisible(false);
    Application().ProcessMessages();
    const std::uint32_t before = Shown(50, 50);
    canvas->SetControlComponent(panel);
    canvas->StartPaint();
    canvas->Canvas().Brush().SetColor(clRed);
    canvas->Canvas().FillRect(Rect(0, 0, 100, 100));
    canvas->EndPaint();
    EXPECT_EQ(Shown(50, 50), before);
}
