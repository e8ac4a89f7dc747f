#include "package/Package.h"
#include "package/Registration.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Panel.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"
#include "splitters/Qsplit.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class Splitter : public ::testing::Test {
protected:
    void SetUp() override {
        InitializePackage();
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 400, 300);
        form->Show();
        split = new TqVerSplit(form);
        split->SetParent(form);
        split->SetBounds(10, 20, 200, 200);
        split->OnSplitChange = [this](TObject*) { ++changes; };
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    TPanel* Pane(TWinControl& parent, int left, int top, int width, int height) {
        auto* pane = new TPanel(form);
        pane->SetParent(&parent);
        pane->SetBounds(left, top, width, height);
        return pane;
    }
    // A point of `control` (its client coordinates) in the form's client coordinates.
    TPoint InForm(const TControl& control, TPoint at) {
        return form->ScreenToClient(control.ClientToScreen(at));
    }
    TColor FormPixel(TPoint at) {
        Application().ProcessMessages();
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Canvas().Pixel(at.x, at.y);
    }

    TForm* form{nullptr};
    TqVerSplit* split{nullptr};
    int changes{0};
};

} // namespace

TEST_F(Splitter, TheBarIsTheContainersOwnChildAlongItsWholeLength) {
    TqSplit& bar = split->Bar();
    EXPECT_EQ(bar.Owner(), split);
    EXPECT_EQ(bar.Parent(), split);
    EXPECT_EQ(bar.BoundsRect(), Rect(0, 0, 6, 200));
    EXPECT_EQ(bar.Cursor(), crHSplit);
    EXPECT_EQ(bar.BorderStyle(), bsSingle);
    EXPECT_EQ(bar.Caption(), "");
    split->SetBounds(10, 20, 300, 150);
    EXPECT_EQ(bar.Height(), 150);

    TqHorSplit across(form);
    across.SetParent(form);
    across.SetBounds(0, 0, 120, 90);
    EXPECT_EQ(across.Bar().BoundsRect(), Rect(0, 0, 120, 6));
    EXPECT_EQ(across.Bar().Cursor(), crVSplit);
    across.SetWhere(1000);
    EXPECT_EQ(across.WhereSplit(), 84);
    EXPECT_EQ(across.Bar().Top(), 84);
    // The bar is never written to a form file.
    EXPECT_EQ(WriteComponentText(*form).find("TqSplit"), std::string::npos);
}

TEST_F(Splitter, SettingThePositionClampsMovesTheBarAndAlwaysAnnounces) {
    split->SetWhere(100000);
    EXPECT_EQ(split->WhereSplit(), 194);
    EXPECT_EQ(split->Bar().Left(), 194);
    split->SetWhere(-1);
    EXPECT_EQ(split->WhereSplit(), 0);
    split->SetWhere(0);
    EXPECT_EQ(changes, 3); // also when nothing changed
    split->GoMedium();
    EXPECT_EQ(split->WhereSplit(), 97);
    split->GoMaximum();
    EXPECT_EQ(split->WhereSplit(), 194);
    split->GoMinimum();
    EXPECT_EQ(split->WhereSplit(), 0);
}

TEST_F(Splitter, PanesShiftWithTheBarByTheSideTheyWereOn) {
    split->SetWhere(50);
    TPanel* left = Pane(*split, 0, 0, 50, 200);
    TPanel* right = Pane(*split, 56, 0, 144, 200);
    split->SetWhere(60);
    EXPECT_EQ(left->Left(), 10);
    EXPECT_EQ(right->Left(), 66);
    split->SetMoveOnChangeLeft(false);
    split->SetWhere(40);
    EXPECT_EQ(left->Left(), 10);  // left of the old position: stays
    EXPECT_EQ(right->Left(), 46); // at or beyond it: follows
    EXPECT_EQ(left->Width(), 50); // moved, never resized

    split->SetLeftTop(*left);
    split->SetRightBottom(*right);
    EXPECT_EQ(left->BoundsRect(), Rect(0, 0, 40, 200));
    EXPECT_EQ(right->BoundsRect(), Rect(46, 0, 200, 200));
}

TEST_F(Splitter, SplitterWidthKeepsItsLimitsAndPutsTheSplitAtZeroFirst) {
    split->SetWhere(80);
    changes = 0;
    split->SetSplitterWidth(6); // the thickness it has: nothing happens
    EXPECT_EQ(split->WhereSplit(), 80);
    EXPECT_EQ(changes, 0);
    split->SetSplitterWidth(3); // another value: the split goes to 0 first
    EXPECT_EQ(split->SplitterWidth(), 6);
    EXPECT_EQ(split->WhereSplit(), 0);
    EXPECT_EQ(changes, 1);
    split->SetSplitterWidth(12);
    EXPECT_EQ(split->SplitterWidth(), 12);
    EXPECT_EQ(changes, 2);
    split->SetSplitterWidth(0);
    EXPECT_EQ(split->SplitterWidth(), 6);
    split->SetNewLook(true);
    split->SetSplitterWidth(9);
    EXPECT_EQ(split->SplitterWidth(), 8);
    split->SetSplitterWidth(5);
    EXPECT_EQ(split->SplitterWidth(), 6);

    split->SetBounds(0, 0, 30, 30);
    split->SetNewLook(false);
    split->SetSplitterWidth(20);
    EXPECT_EQ(split->SplitterWidth(), 15);
    split->SetSplitterWidth(1000);
    EXPECT_EQ(split->SplitterWidth(), 15);
    split->SetSplitterWidth(std::numeric_limits<int>::max());
    EXPECT_EQ(split->SplitterWidth(), 15);
    split->SetBounds(0, 0, 3, -5);
    EXPECT_EQ(split->Width(), 10);
    EXPECT_EQ(split->Height(), 10);
}

TEST_F(Splitter, NewLookPaintsTwoRidgesAndTheBarSettersLeaveIt) {
    split->SetColor(TColor(0x00FF00)); // the ridges stand on the container's colour
    split->SetWhere(50);
    split->SetNewLook(true);
    EXPECT_EQ(split->Bar().Cursor(), crSizeWE);
    EXPECT_EQ(split->Bar().BorderStyle(), bsNone);
    EXPECT_EQ(split->Bar().BevelOuter(), bvNone);
    const auto at = [&](int x, int y) { return FormPixel(InForm(split->Bar(), {x, y})); };
    const TColor highlight = ColorToRGB(clBtnHighlight);
    const TColor shadow = ColorToRGB(clBtnShadow);
    // m = 3: ridges over columns 0..2 and 3..5.
    EXPECT_EQ(at(0, 100), highlight);
    EXPECT_EQ(at(1, 100), TColor(0x00FF00));
    EXPECT_EQ(at(2, 100), shadow);
    EXPECT_EQ(at(3, 100), highlight);
    EXPECT_EQ(at(5, 100), shadow);
    EXPECT_EQ(at(1, 0), highlight);
    EXPECT_EQ(at(1, 199), shadow);
    // Both lines that reach (0, H - 1) end there, and lines leave out their end points.
    EXPECT_EQ(at(0, 199), TColor(0x00FF00));
    EXPECT_EQ(at(0, 198), highlight);

    split->SetSplitterInner(bvLowered);
    EXPECT_FALSE(split->NewLook());
    EXPECT_EQ(split->Bar().Cursor(), crSizeWE); // the look's setter did not run
    EXPECT_EQ(split->Bar().BevelInner(), bvLowered);
}

TEST_F(Splitter, DraggingShowsAClampedIndicatorAndTheReleaseMovesTheSplit) {
    split->SetWhere(100);
    TPanel* right = Pane(*split, 106, 0, 94, 200);
    TqSplit& bar = split->Bar();
    const TPoint grab{3, 50};
    Headless().MouseDown(form->NativeWindow(), InForm(bar, grab));
    Application().ProcessMessages();
    EXPECT_TRUE(bar.Dragging());
    EXPECT_EQ(bar.DragRect(), bar.BoundsRect());
    // Far to the right and off the window: the pointer is limited to 194 - 100 = 94, the
    // indicator overshoots by the grab offset, and stays on its row.
    Headless().MouseMove(form->NativeWindow(), InForm(bar, {900, 400}));
    Application().ProcessMessages();
    EXPECT_EQ(bar.DragRect(), Rect(191, 0, 197, 200));
    EXPECT_EQ(bar.Left(), 100); // the bar waits for the release
    Headless().MouseMove(form->NativeWindow(), InForm(bar, {-900, 10}));
    Application().ProcessMessages();
    EXPECT_EQ(bar.DragRect(), Rect(-3, 0, 3, 200));
    // Released outside the window: the unclamped position, kept inside the container.
    Headless().MouseUp(form->NativeWindow(), InForm(bar, {900, 400}));
    Application().ProcessMessages();
    EXPECT_FALSE(bar.Dragging());
    EXPECT_EQ(bar.Left(), 194);
    EXPECT_EQ(split->WhereSplit(), 194);
    EXPECT_EQ(right->Left(), 200);
    EXPECT_EQ(changes, 2);

    Headless().MouseDown(form->NativeWindow(), InForm(bar, grab));
    Headless().MouseMove(form->NativeWindow(), InForm(bar, {grab.x - 30, grab.y}));
    Headless().MouseUp(form->NativeWindow(), InForm(bar, {grab.x - 30, grab.y + 70}));
    Application().ProcessMessages();
    EXPECT_EQ(split->WhereSplit(), 164);
    EXPECT_EQ(bar.Top(), 0); // across the axis nothing moves
}

TEST_F(Splitter, TheIndicatorLeavesNothingBehind) {
    split->SetColor(TColor(0x00FF00));
    split->SetWhere(100);
    const TPoint probe = InForm(*split, {150, 100});
    TqSplit& bar = split->Bar();
    Headless().MouseDown(form->NativeWindow(), InForm(bar, {3, 50}));
    Headless().MouseMove(form->NativeWindow(), InForm(bar, {53, 50}));
    EXPECT_NE(FormPixel(probe), TColor(0x00FF00)); // the indicator is over the probe
    Headless().MouseMove(form->NativeWindow(), InForm(bar, {20, 50}));
    EXPECT_EQ(FormPixel(probe), TColor(0x00FF00)); // and gone from it once it moved on
    Headless().MouseUp(form->NativeWindow(), InForm(bar, {20, 50}));
    EXPECT_EQ(FormPixel(InForm(*split, {110, 100})), TColor(0x00FF00));
}

TEST_F(Splitter, PassMouseOnHandsALeftPressToTheParentInItsCoordinates) {
    TPanel* host = Pane(*form, 0, 0, 300, 280);
    split->SetParent(host);
    split->SetBounds(30, 40, 200, 200);
    split->SetWhere(100);
    std::vector<TPoint> hostPresses, splitPresses;
    host->OnMouseDown = [&](TObject*, TMouseButtonKind, TShiftState, int x, int y) {
        hostPresses.push_back({x, y});
    };
    split->OnMouseDown = [&](TObject*, TMouseButtonKind, TShiftState, int x, int y) {
        splitPresses.push_back({x, y});
    };
    const auto press = [&](TPoint at) {
        Headless().MouseDown(form->NativeWindow(), InForm(*split, at));
        Headless().MouseUp(form->NativeWindow(), InForm(*split, at));
        Application().ProcessMessages();
    };
    press({20, 10});
    split->SetPassMouseOn(true);
    press({25, 15});
    press({102, 15}); // on the bar: the bar's own press
    EXPECT_EQ(splitPresses, (std::vector<TPoint>{{20, 10}}));
    EXPECT_EQ(hostPresses, (std::vector<TPoint>{{55, 55}}));
}

TEST_F(Splitter, AFormFileKeepsAWideBarAndThePositionReadBeforeTheSize) {
    RegisterPackage();
    RegisterClass(TForm::StaticClassInfo());
    RegisterClass(TPanel::StaticClassInfo());
    const std::string text = R"(object Host: TForm
  Left = 0
  Top = 0
  Width = 640
  Height = 480
  object Split: TqVerSplit
    Left = 0
    Top = 0
    SplitterWidth = 120
    Width = 600
    Height = 400
    WhereSplit = 450
    NewLook = True
    OnBeforeShow = SplitShown
    object Right: TPanel
      Left = 570
      Top = 0
      Width = 30
      Height = 400
    end
  end
end
)";
    int shown = 0;
    TEventTable events;
    events.Add("SplitShown", TNotifyEvent([&](TObject*) { ++shown; }));
    TReadOptions options;
    options.events = &events;
    const auto root = ReadComponentText(text, options);
    auto* read = dynamic_cast<TqVerSplit*>(root->FindComponent("Split"));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->SplitterWidth(), 120);
    EXPECT_EQ(read->WhereSplit(), 450);
    EXPECT_EQ(read->Bar().Left(), 450);
    EXPECT_EQ(shown, 1);
    // The file placed the children; reading the position does not move them again.
    EXPECT_EQ(dynamic_cast<TControl*>(root->FindComponent("Right"))->Left(), 570);
    const std::string written = WriteComponentText(*root);
    EXPECT_EQ(WriteComponentText(*ReadComponentText(written)), written);
    EXPECT_NE(written.find("SplitterWidth = 120"), std::string::npos);
    EXPECT_NE(written.find("WhereSplit = 450"), std::string::npos);
    ClearDesignerRegistry();
}
