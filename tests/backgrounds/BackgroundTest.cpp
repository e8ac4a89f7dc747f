// The form background: hooked once the form is read, its wallpaper of each kind on a shown
// form, the resize order, what it leaves to the form (minimised, empty bitmap, btNormal, no
// frame to divide by), the designer, and two backgrounds freed in either order.

#include "backgrounds/Blend.h"
#include "componentbase/Steel.h"
#include "package/PackageScope.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/core/SysUtils.h"
#include "platform/streaming/Reader.h"
#include "support/PixelEvidence.h"

#include <gtest/gtest.h>

#include <random>

using namespace qv;

namespace {

constexpr TColor kFormColor = RGB(0, 200, 0);

void Randomize(TBitmap& b, unsigned seed) {
    std::mt19937 random(seed);
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            b.Pixels().At(x, y) = random() & 0xFFFFFF;
}

class Background : public ::testing::Test {
protected:
    void SetUp() override { package = std::make_unique<TPackageScope>(); }
    void TearDown() override {
        form.reset();
        package.reset();
    }
    // A form of client size 160 x 120 read from a form file holding one TqBackground.
    TqBackground* ReadForm(const std::string& properties = "") {
        const std::string text = "object Form1: TForm\n  Width = 160\n  Height = 120\n"
                                 "  Color = 51200\n  object Back1: TqBackground\n" +
                                 properties + "  end\nend\n";
        form.reset(static_cast<TForm*>(ReadComponentText(text).release()));
        return static_cast<TqBackground*>(form->FindComponent("Back1"));
    }
    void Show() {
        form->Show();
        Application().ProcessMessages();
    }
    TPixelBuffer Shot() {
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Pixels();
    }
    void Resize(int w, int h) {
        TBackendEvent e;
        e.kind = TBackendEvent::Kind::Resized;
        e.window = form->NativeWindow();
        e.size = {w, h};
        static_cast<THeadlessBackend&>(Application().Backend()).Inject(e);
        Application().ProcessMessages();
    }
    ::testing::AssertionResult Same(const TPixelBuffer& actual, const TPixelBuffer& expected,
                                    const std::string& name) {
        const long differing = test::CountDifferentPixels(actual, expected);
        if (differing == 0) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << differing << " pixels differ; pictures written: "
               << test::WritePixelEvidence(std::string(QV_TEST_OUT) + "/backgrounds", name,
                                           actual, expected);
    }
    std::unique_ptr<TPackageScope> package;
    std::unique_ptr<TForm> form;
};

TPixelBuffer Gradient(int w, int h, gradType type, TColor from, TColor to, int bands) {
    TBitmap b(w, h);
    PaintGradient(b.Canvas(), type, GradientColors(from, to), bands,
                  TGradientLayout::Control(w, h));
    return b.Pixels();
}

TPixelBuffer Plain(int w, int h, TColor color) {
    return TPixelBuffer(w, h, ColorToPixel(color));
}

} // namespace

TEST_F(Background, HooksTheFormOnceReadAndPaintsTheGradientWithOnPaintAfterIt) {
    TqBackground* back = ReadForm("    BackType = btBlend\n    EndColor = 16711680\n");
    ASSERT_TRUE(back->Hooked());
    std::vector<std::string> events;
    back->OnPaint = [&](TCanvas* canvas, TObject* sender) {
        EXPECT_EQ(sender, back);
        // Drawn over the wallpaper, under the form's controls.
        canvas->Brush().SetColor(clYellow);
        canvas->FillRect({0, 0, 4, 4});
        events.push_back("paint");
    };
    Show();
    TPixelBuffer expected = Gradient(160, 120, gVert, 0xFF00FF, 0xFF0000, 255);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            expected.At(x, y) = ColorToPixel(clYellow);
    EXPECT_TRUE(Same(Shot(), expected, "blend"));
    EXPECT_FALSE(events.empty());

    // OnResize comes first, the form's own after it; the whole form is painted again.
    events.clear();
    back->OnResize = [&](TObject* sender) {
        EXPECT_EQ(sender, back);
        events.push_back("back-resize");
    };
    form->OnResize = [&](TObject*) { events.push_back("form-resize"); };
    back->OnPaint = nullptr;
    Resize(200, 90);
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events[0], "back-resize");
    EXPECT_EQ(events[1], "form-resize");
    EXPECT_TRUE(Same(Shot(), Gradient(200, 90, gVert, 0xFF00FF, 0xFF0000, 255), "blend-resized"));
}

TEST_F(Background, TilesItsBitmapFromTheOriginAndPaintsSteel) {
    TqBackground* back = ReadForm();
    TBitmap tile(16, 11);
    Randomize(tile, 7);
    back->SetBitMap(&tile);
    Show();
    TPixelBuffer expected(160, 120);
    for (int y = 0; y < 120; ++y)
        for (int x = 0; x < 160; ++x)
            expected.At(x, y) = tile.Pixels().At(x % 16, y % 11);
    EXPECT_TRUE(Same(Shot(), expected, "tiles"));

    back->SetBackType(btSteel);
    TBitmap steel(160, 120);
    PaintSteel(steel.Canvas(), {0, 0, 160, 120});
    EXPECT_TRUE(Same(Shot(), steel.Pixels(), "steel"));
}

TEST_F(Background, LeavesTheFormsColourWhenMinimisedEmptyNormalOrWithoutAFrame) {
    TqBackground* back = ReadForm("    BackType = btBlend\n");
    int paints = 0;
    back->OnPaint = [&](TCanvas*, TObject*) { ++paints; };
    Show();
    form->SetWindowState(wsMinimized);
    paints = 0;
    EXPECT_TRUE(Same(Shot(), Plain(160, 120, kFormColor), "minimised"));
    EXPECT_EQ(paints, 0);
    form->SetWindowState(wsNormal);

    back->SetBackType(btBitmap); // the bitmap is empty
    EXPECT_TRUE(Same(Shot(), Plain(160, 120, kFormColor), "empty-bitmap"));
    EXPECT_GT(paints, 0); // OnPaint still follows
    back->SetBackType(btNormal);
    EXPECT_TRUE(Same(Shot(), Plain(160, 120, kFormColor), "normal"));

    back->SetBackType(btBlend);
    back->SetFillType(gCenter);
    back->SetBands(0); // no frame to divide by: the form's colour, no OnPaint
    paints = 0;
    EXPECT_NO_THROW(EXPECT_TRUE(Same(Shot(), Plain(160, 120, kFormColor), "no-frame")));
    EXPECT_EQ(paints, 0);
}

TEST_F(Background, SettersRepaintTheFormOnlyOutsideTheDesigner) {
    TqBackground* back = ReadForm("    BackType = btBlend\n");
    Show();
    Application().ProcessMessages();
    ASSERT_FALSE(form->HasPendingPaint());
    back->SetColor(clRed);
    EXPECT_TRUE(form->HasPendingPaint());
    Application().ProcessMessages();
    back->SetFillType(gVert); // the same value still repaints
    EXPECT_TRUE(form->HasPendingPaint());
    Application().ProcessMessages();
    back->SetBands(255); // unchanged: nothing
    EXPECT_FALSE(form->HasPendingPaint());

    TForm designed(nullptr);
    designed.SetDesigning(true);
    auto* inert = new TqBackground(&designed);
    inert->Loaded();
    EXPECT_FALSE(inert->Hooked());
}

// Hooks chain: the newer background answers the erase; freeing either leaves the other
// painting, and freeing both leaves the form's colour.
TEST_F(Background, TwoOnOneFormFreedInEitherOrder) {
    for (bool newerFirst : {true, false}) {
        TqBackground* older = ReadForm("    BackType = btBlend\n");
        auto* newer = new TqBackground(form.get());
        newer->SetBackType(btSteel);
        newer->Loaded();
        Show();
        TBitmap steel(160, 120);
        PaintSteel(steel.Canvas(), {0, 0, 160, 120});
        const TPixelBuffer blend = Gradient(160, 120, gVert, 0xFF00FF, 0, 255);
        EXPECT_TRUE(Same(Shot(), steel.Pixels(), "two-newer"));
        if (newerFirst) {
            delete newer;
            EXPECT_TRUE(Same(Shot(), blend, "two-older-left"));
            delete older;
        } else {
            delete older;
            EXPECT_TRUE(Same(Shot(), steel.Pixels(), "two-newer-left"));
            delete newer;
        }
        EXPECT_TRUE(Same(Shot(), Plain(160, 120, kFormColor), "two-none-left"));
    }
}
