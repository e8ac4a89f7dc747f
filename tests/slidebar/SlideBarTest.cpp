// The slide bar's setter rules, geometry, keys, mouse order, pixels and form files.
#include "SlideBarFixture.h"

#include "package/Registration.h"
#include "platform/controls/Messages.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"

#include <climits>
#include <set>

using namespace qv;

namespace {

constexpr TColor kLime = 0x00FF00, kRed = 0x0000FF, kYellow = 0x00FFFF, kBlack = 0;

class SlideBar : public SlideBarTest {};

} // namespace

// A default bar is 150 x 20 with a 10 x 18 thumb: 140 pixels of travel, 14 per value.

TEST_F(SlideBar, RangeSettersAreStrictAndNeverMoveTheValue) {
    auto* bar = Place(10, 10, 150, 20);
    bar->SetMin(10); // not below Max 10
    EXPECT_EQ(bar->Min(), 0);
    bar->SetMax(0); // not above Min 0
    EXPECT_EQ(bar->Max(), 10);
    bar->SetPosition(8);
    bar->SetMax(5);
    EXPECT_EQ(bar->Max(), 5);
    EXPECT_EQ(bar->Value(), 8);
    EXPECT_EQ(bar->ThumbRect().left, 140); // limited to the travel
    bar->SetStepPerTick(-4);
    EXPECT_EQ(bar->StepPerTick(), 1);
}

TEST_F(SlideBar, AValueOutsideTheRangeIsKeptOutYetRepaintsAndRaisesOnChange) {
    auto* bar = Place(10, 10, 150, 20);
    TBarLog log;
    log.Watch(*bar);
    bar->SetPosition(10);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMaximum"}));
    bar->SetPosition(15); // the stored value is still Max
    EXPECT_EQ(bar->Value(), 10);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMaximum"}));
    bar->SetPosition(10);
    EXPECT_EQ(log.Take(), Events{});
    bar->SetPosition(0);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMinimum"}));
    bar->SetDesigning(true);
    bar->SetPosition(4);
    EXPECT_EQ(bar->Value(), 4);
    EXPECT_EQ(log.Take(), Events{});
}

TEST_F(SlideBar, KeysStepThroughTheSetterBeforeOnKeyDown) {
    auto* bar = Place(10, 10, 150, 20);
    bar->SetMax(5);
    bar->SetFocus();
    TBarLog log;
    log.Watch(*bar);
    Key(VK_PRIOR); // a tenth of 5 is 0: the page is 1
    EXPECT_EQ(bar->Value(), 1);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnKeyDown"}));
    Key(VK_END);
    Key(VK_RIGHT); // at Max: no change, yet OnKeyDown
    EXPECT_EQ(bar->Value(), 5);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMaximum", "OnKeyDown", "OnKeyDown"}));
    Key(VK_HOME);
    EXPECT_EQ(bar->Value(), 0);
}

TEST_F(SlideBar, PointsMapOverTheWholeLengthAndAVerticalBarGrowsUpwards) {
    auto* bar = Place(10, 10, 100, 20);
    EXPECT_EQ(bar->NewPosition(25, 0), 2); // 2.5 rounds to even
    EXPECT_EQ(bar->NewPosition(35, 0), 4); // 3.5 too
    EXPECT_EQ(bar->NewPosition(-40, 0), 0);
    EXPECT_EQ(bar->NewPosition(INT_MAX, 0), 10);

    auto* tall = Place(200, 10, 20, 100);
    EXPECT_TRUE(tall->IsVert());
    EXPECT_EQ(tall->NewPosition(0, 100), 0);
    EXPECT_EQ(tall->NewPosition(0, 0), 10);
    EXPECT_EQ(tall->WhereIsBar().top, 82); // Value 0 at the bottom
    tall->SetPosition(10);
    EXPECT_EQ(tall->ThumbRect().top, 0);
    EXPECT_EQ(tall->ThumbRect().left, 5);
}

TEST_F(SlideBar, TheShapeDecidesTheOrientationAndTheSetterSwapsTheShape) {
    auto* bar = Place(10, 10, 150, 20);
    bar->SetOrientation(orVertical);
    EXPECT_EQ(bar->Width(), 20);
    EXPECT_EQ(bar->Height(), 150);
    bar->SetBounds(10, 10, 150, 150); // square: horizontal
    EXPECT_EQ(bar->Orientation(), orHorizontal);
    bar->SetBounds(10, 10, 0, 0);
    EXPECT_EQ(bar->NewPosition(5, 5), 0); // no extent: Min, no division
}

TEST_F(SlideBar, APressOnTheThumbJumpsBeforeOnMouseDownAndDragsFollow) {
    auto* bar = Place(10, 10, 100, 20); // 90 pixels of travel
    TBarLog log;
    log.Watch(*bar);
    Press(*bar, 5, 10); // 0.5 rounds to 0: no change
    Move(*bar, 25, 10, isLeft);
    EXPECT_EQ(bar->Value(), 2);
    Release(*bar, 25, 10);
    EXPECT_EQ(log.Take(), (Events{"OnMouseDown", "OnChange", "OnMouseUp", "OnMouseUpTwo"}));

    Press(*bar, bar->ThumbRect().left + 9, 10); // 27 of 100: 2.7 gives 3
    EXPECT_EQ(bar->Value(), 3);
    Release(*bar, bar->ThumbRect().left + 9, 10);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMouseDown", "OnMouseUp", "OnMouseUpTwo"}));

    bar->SetJumpToMouse(false);
    Press(*bar, bar->ThumbRect().left + 1, 10);
    Release(*bar, bar->ThumbRect().left + 1, 10);
    EXPECT_EQ(bar->Value(), 3); // neither jumps nor steps
}

TEST_F(SlideBar, APressBesideTheThumbStepsOnceTowardsThePointerOnEachRelease) {
    auto* bar = Place(10, 10, 150, 20);
    TBarLog log;
    log.Watch(*bar);
    Press(*bar, 120, 10);
    Release(*bar, 120, 10);
    EXPECT_EQ(log.Take(), (Events{"OnMouseDown", "OnMouseUp", "OnChange", "OnMouseUpTwo"}));
    Press(*bar, 120, 10, true); // the second and third of fast clicks come as double clicks
    Release(*bar, 120, 10);
    Press(*bar, 120, 10, true);
    Release(*bar, 120, 10);
    EXPECT_EQ(bar->Value(), 3);
    Press(*bar, 2, 10); // left of the thumb
    Release(*bar, 2, 10);
    EXPECT_EQ(bar->Value(), 2);

    auto* tall = Place(200, 10, 20, 150);
    Press(*tall, 10, 5); // above the thumb: up
    Release(*tall, 10, 5);
    EXPECT_EQ(tall->Value(), 1);
}

TEST_F(SlideBar, TheGrooveShowsTheFocusAndTheTicksStandWhereTheThumbCentreWould) {
    auto* bar = Place(10, 10, 150, 20);
    auto* other = Place(10, 100, 150, 20);
    bar->SetFocusColor(kRed);
    bar->SetNonFocusColor(kLime);
    // The groove: edges on rows 8 and 11, fill on 9 and 10 from the thumb centre's first
    // position (5) to its last (145).
    EXPECT_EQ(PixelOf(*bar, 100, 9), kLime);
    EXPECT_EQ(PixelOf(*bar, 145, 10), kLime);
    EXPECT_EQ(PixelOf(*bar, 100, 8), ColorToRGB(clBtnShadow));
    EXPECT_EQ(PixelOf(*bar, 100, 11), ColorToRGB(clBtnHighlight));
    bar->SetFocus();
    EXPECT_EQ(PixelOf(*bar, 100, 9), kRed);
    other->SetFocus();
    EXPECT_EQ(PixelOf(*bar, 100, 9), kLime);
    bar->SetStyle(bsRaised);
    EXPECT_EQ(PixelOf(*bar, 100, 8), ColorToRGB(clBtnHighlight));
    // The tick of 10 at x 145: rows 1..4 above (3 pixels off the edge), 15..18 below.
    EXPECT_EQ(PixelOf(*bar, 145, 1), kBlack);
    EXPECT_EQ(PixelOf(*bar, 145, 4), kBlack);
    EXPECT_EQ(PixelOf(*bar, 145, 5), ColorToRGB(clBtnFace));
    EXPECT_EQ(PixelOf(*bar, 145, 0), ColorToRGB(clBtnFace));
    EXPECT_EQ(PixelOf(*bar, 145, 18), kBlack);
    EXPECT_EQ(PixelOf(*bar, 145, 14), ColorToRGB(clBtnFace));
    EXPECT_EQ(PixelOf(*bar, 138, 1), ColorToRGB(clBtnFace)); // between ticks
    bar->SetTickWhere(ttsLeft);
    EXPECT_EQ(PixelOf(*bar, 145, 18), ColorToRGB(clBtnFace));
    bar->SetTickSize(-3);
    EXPECT_EQ(PixelOf(*bar, 145, 4), ColorToRGB(clBtnFace));
}

TEST_F(SlideBar, TheMaskedThumbShowsTheBackgroundAroundItAndTheGrooveThroughItsHole) {
    auto* bar = Place(10, 10, 150, 20);
    bar->SetColor(kYellow);
    bar->SetNonFocusColor(kLime);
    bar->SetThumbStyle(tsRound); // 12 x 12 at (0, 4)
    EXPECT_EQ(bar->ThumbRect(), TRect(0, 4, 12, 16));
    EXPECT_EQ(PixelOf(*bar, 0, 4), kYellow);
    EXPECT_EQ(PixelOf(*bar, 6, 9), ColorToRGB(clBtnFace));
    bar->SetThumbStyle(tsSquarehollow);
    bar->SetPosition(5); // half of 138 pixels of travel: x = 69
    const TRect thumb = bar->ThumbRect();
    EXPECT_EQ(thumb.Width(), 12);
    EXPECT_EQ(PixelOf(*bar, thumb.left + 5, 9), kLime);
    EXPECT_EQ(PixelOf(*bar, thumb.left + 5, 6), kYellow);
    EXPECT_EQ(PixelOf(*bar, thumb.left, thumb.top), ColorToRGB(clBtnHighlight));
}

TEST_F(SlideBar, ThumbsStandUprightOrTurnedInTheirSizes) {
    auto* bar = Place(10, 10, 150, 20);
    const std::vector<std::pair<TThumbStyle, TSize>> sizes = {{tsHorzHigh, {18, 10}},
                                                              {tsVertHigh, {10, 18}},
                                                              {tsHorzLow, {12, 10}},
                                                              {tsVertLow, {10, 12}},
                                                              {tsSquare, {12, 12}},
                                                              {tsSquarehollow, {12, 12}},
                                                              {tsLeft, {16, 10}},
                                                              {tsRight, {16, 10}},
                                                              {tsBottom, {10, 16}},
                                                              {tsRound, {12, 12}},
                                                              {tsHorzRound, {18, 10}},
                                                              {tsSquarehollowHorz, {18, 10}},
                                                              {tsSquarehollowVert, {10, 18}},
                                                              {tsSquarehollowHLine, {18, 10}},
                                                              {tsSquarehollowVLine, {10, 18}},
                                                              {tsTop, {10, 16}}};
    for (const auto& [style, size] : sizes) {
        bar->SetThumbStyle(style);
        const TRect thumb = bar->WhereIsBar();
        EXPECT_EQ(thumb.Width(), size.cx) << style;
        EXPECT_EQ(thumb.Height(), size.cy) << style;
    }
    // A pointed thumb's tip shows the background beside it: tsTop's top corners, tsLeft's left.
    bar->SetColor(kYellow);
    bar->SetThumbStyle(tsTop);
    EXPECT_EQ(PixelOf(*bar, 0, bar->ThumbRect().top), kYellow);
    EXPECT_EQ(PixelOf(*bar, 4, bar->ThumbRect().top), ColorToRGB(clBtnHighlight));
    bar->SetThumbStyle(tsLeft);
    EXPECT_EQ(PixelOf(*bar, 0, bar->ThumbRect().top), kYellow);
}

TEST_F(SlideBar, OwnerDrawnTicksAreNumberedFromMinAndTheFullRangeCostsOnePerPixel) {
    auto* bar = Place(10, 10, 150, 20);
    std::vector<std::pair<int, int>> top; // x and number of the top row
    int bottom = 0;
    bar->OnOwnerDraw = [&](TObject*, TCanvas*, int X, int Y, bool Left, int TickNum) {
        if (Left) {
            top.emplace_back(X, TickNum);
            EXPECT_EQ(Y, 1);
        } else {
            ++bottom;
            EXPECT_EQ(Y, 15);
        }
    };
    bar->SetStepPerTick(3);
    bar->SetTickStyle(tsOwnerDraw);
    EXPECT_EQ(top, (std::vector<std::pair<int, int>>{{5, 0}, {47, 1}, {89, 2}, {131, 3}}));
    EXPECT_EQ(bottom, 4);

    bar->SetStepPerTick(1);
    bar->SetMin(INT_MIN);
    bar->SetMax(INT_MAX);
    top.clear();
    bottom = 0;
    bar->Repaint();
    std::set<int> positions;
    for (const auto& [x, number] : top)
        positions.insert(x);
    EXPECT_EQ(top.size(), 141u);
    EXPECT_EQ(positions.size(), 141u);
    EXPECT_EQ(bottom, 141);
    EXPECT_EQ(top.back(), (std::pair<int, int>{145, INT_MAX}));
}

TEST_F(SlideBar, CurrentLabelReadsTheLineOfTheValueWhenThereIsOne) {
    auto* bar = Place(10, 10, 150, 20);
    TStringList labels;
    labels.Add("low");
    labels.Add("one");
    bar->SetLabels(labels);
    labels.Clear();
    EXPECT_EQ(bar->CurrentLabel(), "low");
    bar->SetPosition(1);
    EXPECT_EQ(bar->CurrentLabel(), "one");
    bar->SetPosition(2); // short labels
    EXPECT_EQ(bar->CurrentLabel(), "");
    bar->SetMin(-2);
    bar->SetPosition(-1);
    EXPECT_EQ(bar->CurrentLabel(), "one");
}

namespace {
class SlideBarForm : public SlideBarTest {
protected:
    void SetUp() override {
        SlideBarTest::SetUp();
        ClearDesignerRegistry();
        RegisterPackage();
        RegisterClass(TForm::StaticClassInfo());
    }
    void TearDown() override {
        ClearDesignerRegistry();
        SlideBarTest::TearDown();
    }
};
std::string FormWith(const std::string& lines) {
    return "object F: TForm\n  object S: TqSlideBar\n" + lines + "  end\nend\n";
}
} // namespace

TEST_F(SlideBarForm, ARangeBelowZeroReadsBackAsWrittenWithoutEvents) {
    int changes = 0;
    TEventTable events;
    events.Add("Changed", std::any(TNotifyEvent([&](TObject*) { ++changes; })));
    TReadOptions options;
    options.events = &events;
    const std::string text = FormWith("    Left = 0\n    Top = 0\n    Width = 150\n"
                                      "    Max = -5\n    Min = -10\n    Value = -7\n"
                                      "    OnChange = Changed\n    TabOrder = 0\n");
    auto root = ReadComponentText(text, options);
    auto* bar = dynamic_cast<TqSlideBar*>(root->FindComponent("S"));
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->Min(), -10);
    EXPECT_EQ(bar->Max(), -5);
    EXPECT_EQ(bar->Value(), -7);
    EXPECT_EQ(changes, 0);
    EXPECT_NE(WriteComponentText(*root).find("    Max = -5\n    Min = -10\n    Value = -7\n"),
              std::string::npos);
}

TEST_F(SlideBarForm, ATallBarReadAsHorizontalIsVertical) {
    auto root = ReadComponentText(
        FormWith("    Width = 20\n    Orientation = orHorizontal\n    Height = 100\n"));
    auto* bar = dynamic_cast<TqSlideBar*>(root->FindComponent("S"));
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->Orientation(), orVertical);
    EXPECT_EQ(bar->Height(), 100);
}

TEST_F(SlideBarForm, ABadStepPerTickIsAnErrorNamingTheLine) {
    try {
        ReadComponentText(FormWith("    StepPerTick = 0\n"));
        ADD_FAILURE() << "read";
    } catch (const EReadError& e) {
        EXPECT_NE(std::string(e.what()).find("line 3"), std::string::npos) << e.what();
        EXPECT_NE(std::string(e.what()).find("StepPerTick"), std::string::npos) << e.what();
    }
}
