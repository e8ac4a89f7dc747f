#include "ControlsFixture.h"

#include "platform/controls/Edit.h"
#include "platform/controls/ListBox.h"

#include <vector>

using namespace qv;
using namespace qvtest;

namespace {

class ListBoxTest : public ControlsFixture {
protected:
    void SetUp() override {
        ControlsFixture::SetUp();
        list = Add<TListBox>({10, 10, 130, 10 + 4 + 5 * Row()}); // five whole rows
        for (int i = 0; i < 20; ++i)
            list->Items()->Add("item " + std::to_string(i));
        list->OnClick = [this](TObject*) { clicks.push_back(list->ItemIndex()); };
        Show();
    }
    int Row() const { return TextLineHeight(*form->Font()); }
    // A client point of the form on visible row `row`.
    TPoint OnRow(int row) const { return {40, 10 + 2 + row * Row() + Row() / 2}; }
    TListBox* list{nullptr};
    std::vector<int> clicks;
};

} // namespace

TEST_F(ListBoxTest, ClickSelectsTheItemUnderThePointerAndRaisesOnClick) {
    EXPECT_EQ(list->ItemIndex(), -1);
    Click(OnRow(2));
    EXPECT_EQ(list->ItemIndex(), 2);
    EXPECT_TRUE(list->Focused());
    Click(OnRow(2)); // the same item clicks again
    EXPECT_EQ(clicks, (std::vector<int>{2, 2}));
    list->SetItemIndex(4); // by the program: no click
    EXPECT_EQ(clicks.size(), 2u);
}

TEST_F(ListBoxTest, DraggingFollowsThePointerAndScrollsAtTheBottom) {
    Headless().MouseDown(Window(), OnRow(1));
    Headless().MouseMove(Window(), OnRow(3), isLeft);
    Pump();
    EXPECT_EQ(list->ItemIndex(), 3);
    Headless().MouseMove(Window(), {40, 150}, isLeft); // below the list
    Pump();
    EXPECT_EQ(list->ItemIndex(), 5);
    EXPECT_EQ(list->TopIndex(), 1);
    Headless().MouseUp(Window(), {40, 150});
    Pump();
    EXPECT_EQ(clicks, (std::vector<int>{5}));
}

TEST_F(ListBoxTest, KeysMoveTheSelectionAndKeepItVisible) {
    list->SetFocus();
    Key(VK_DOWN);
    EXPECT_EQ(list->ItemIndex(), 0); // from no selection to the first
    Key(VK_DOWN);
    Key(VK_DOWN);
    EXPECT_EQ(list->ItemIndex(), 2);
    Key(VK_NEXT);
    EXPECT_EQ(list->ItemIndex(), 6); // a page is one row less than the view
    EXPECT_EQ(list->TopIndex(), 2);
    Key(VK_END);
    EXPECT_EQ(list->ItemIndex(), 19);
    EXPECT_EQ(list->TopIndex(), 15);
    Key(VK_DOWN);
    EXPECT_EQ(list->ItemIndex(), 19);
    Key(VK_PRIOR);
    EXPECT_EQ(list->ItemIndex(), 15);
    Key(VK_HOME);
    EXPECT_EQ(list->ItemIndex(), 0);
    EXPECT_EQ(list->TopIndex(), 0);
    Key(VK_UP);
    EXPECT_EQ(clicks, (std::vector<int>{0, 1, 2, 6, 19, 15, 0}));
}

TEST_F(ListBoxTest, TypingACharacterSelectsTheNextItemStartingWithIt) {
    list->Items()->Clear();
    list->Items()->SetText("apple\nbanana\navocado\ncherry\n");
    list->SetFocus();
    Type("a");
    EXPECT_EQ(list->ItemIndex(), 0);
    Type("a");
    EXPECT_EQ(list->ItemIndex(), 2);
    Type("A");
    EXPECT_EQ(list->ItemIndex(), 0);
    Type("z");
    EXPECT_EQ(list->ItemIndex(), 0);
}

TEST_F(ListBoxTest, WheelScrollsThreeRowsANotchWithinTheItems) {
    list->SetFocus();
    TBackendEvent wheel;
    wheel.kind = TBackendEvent::Kind::MouseWheel;
    wheel.window = Window();
    wheel.pos = OnRow(0);
    wheel.wheelDelta = -120;
    Headless().Inject(wheel);
    Pump();
    EXPECT_EQ(list->TopIndex(), 3);
    wheel.wheelDelta = -5 * 120;
    Headless().Inject(wheel);
    Pump();
    EXPECT_EQ(list->TopIndex(), 15); // no further than the last page
    wheel.wheelDelta = 2 * 120;
    Headless().Inject(wheel);
    Pump();
    EXPECT_EQ(list->TopIndex(), 9);
    EXPECT_TRUE(clicks.empty());
}

TEST_F(ListBoxTest, ItemsChangesKeepIndexAndTopInRange) {
    list->SetItemIndex(18);
    EXPECT_EQ(list->TopIndex(), 14);
    list->Items()->Delete(19);
    list->Items()->Delete(18);
    EXPECT_EQ(list->ItemIndex(), -1);
    EXPECT_EQ(list->TopIndex(), 13);
    list->SetItemIndex(40);
    EXPECT_EQ(list->ItemIndex(), -1);
    list->Clear();
    EXPECT_EQ(list->TopIndex(), 0);
    EXPECT_EQ(list->ItemAtPos(OnRow(0), true), -1);
    EXPECT_EQ(list->ItemAtPos({40 - 10, 12}, false), 0);
}

TEST_F(ListBoxTest, SelectedRowIsHighlightedAndFocusedOneFramed) {
    list->SetItemIndex(1);
    form->Screenshot(shot);
    EXPECT_EQ(shot.Canvas().Pixel(80, OnRow(1).y), ColorToRGB(clHighlight));
    EXPECT_EQ(shot.Canvas().Pixel(80, OnRow(0).y), ColorToRGB(clWindow));
    EXPECT_EQ(shot.Canvas().Pixel(10, 10), ColorToRGB(clBtnShadow)); // the sunken edge
    list->SetFocus();
    form->Screenshot(shot);
    const int top = 12 + Row(); // the focus rectangle's dotted top line on row 1
    int inverted = 0;
    for (int x = 12; x < 112; ++x)
        inverted += shot.Canvas().Pixel(x, top) != ColorToRGB(clHighlight);
    EXPECT_GT(inverted, 40);
}

TEST_F(ListBoxTest, OwnerDrawFixedPaintsEachVisibleRowThroughOnDrawItem) {
    struct TCall {
        int index;
        TRect rect;
        TOwnerDrawState state;
    };
    std::vector<TCall> calls;
    list->SetStyle(lbOwnerDrawFixed);
    list->SetItemHeight(20);
    list->SetTopIndex(3);
    list->SetItemIndex(4);
    list->OnDrawItem = [&](TWinControl* control, int index, TRect rect, TOwnerDrawState state) {
        EXPECT_EQ(control, list);
        calls.push_back({index, rect, state});
        TCanvas& c = list->Canvas();
        c.Brush().SetColor(index % 2 ? clRed : clLime);
        c.FillRect(rect);
    };
    form->Screenshot(shot);
    ASSERT_EQ(calls.size(), 4u); // rows of 20 in 73 pixels: three whole and one partly
    EXPECT_EQ(calls[0].index, 3);
    EXPECT_EQ(calls[0].rect, (TRect{2, 2, 102, 22})); // left of the scroll bar
    EXPECT_TRUE(calls[1].state.Contains(odSelected));
    EXPECT_FALSE(calls[0].state.Contains(odSelected));
    EXPECT_EQ(shot.Canvas().Pixel(60, 12 + 5), clRed);   // item 3
    EXPECT_EQ(shot.Canvas().Pixel(60, 12 + 25), clLime); // item 4
    EXPECT_EQ(list->ItemAtPos({60, 2 + 45}, true), 5);
}

TEST_F(ListBoxTest, ScrollBarArrowsTrackAndThumbScrollWithoutSelecting) {
    const int barX = 10 + 120 - 2 - 8;
    const int bottom = 10 + 4 + 5 * Row();
    Click({barX, 14}); // the up arrow at the top: nothing above
    EXPECT_EQ(list->TopIndex(), 0);
    Click({barX, bottom - 4}); // the down arrow
    Click({barX, bottom - 4});
    EXPECT_EQ(list->TopIndex(), 2);
    Click({barX, bottom - 20}); // the track below the thumb: a page
    EXPECT_EQ(list->TopIndex(), 7);
    Click({barX, 10 + 2 + 18}); // above it
    EXPECT_EQ(list->TopIndex(), 2);

    TVScrollBar bar({112, 12, 128, bottom - 2}, 20, 5, 2);
    const TRect thumb = bar.Thumb();
    Headless().MouseDown(Window(), {barX, thumb.top + 1});
    Headless().MouseMove(Window(), {barX, 300}, isLeft); // dragged past the end
    Pump();
    EXPECT_EQ(list->TopIndex(), 15);
    Headless().MouseMove(Window(), {barX, 0}, isLeft);
    Headless().MouseUp(Window(), {barX, 0});
    Pump();
    EXPECT_EQ(list->TopIndex(), 0);
    EXPECT_EQ(list->ItemIndex(), -1);
    EXPECT_TRUE(clicks.empty());

    const int belowFirstRow = 10 + 2 + Row() + 2;
    EXPECT_EQ(ShotPixel(barX, 10 + 2), ColorToRGB(cl3DLight)); // the raised up button
    EXPECT_EQ(ShotPixel(barX, belowFirstRow), ColorToRGB(clBtnFace));
    list->Items()->Clear(); // no bar without more items than rows
    EXPECT_EQ(ShotPixel(barX, belowFirstRow), ColorToRGB(clWindow));
}

TEST(ScrollBarGeometry, ThumbShowsTheVisibleShareAndPosition) {
    const TVScrollBar top({0, 0, 16, 132}, 50, 10, 0);
    EXPECT_EQ(top.UpButton(), (TRect{0, 0, 16, 16}));
    EXPECT_EQ(top.DownButton(), (TRect{0, 116, 16, 132}));
    EXPECT_EQ(top.Thumb(), (TRect{0, 16, 16, 36})); // a fifth of the track
    const TVScrollBar end({0, 0, 16, 132}, 50, 10, 40);
    EXPECT_EQ(end.Thumb().bottom, 116);
    EXPECT_EQ(end.PositionForThumbTop(16 + 40), 20);
    EXPECT_EQ(end.PartAt({8, 50}), TVScrollBar::TPart::PageUp);
    const TVScrollBar many({0, 0, 16, 132}, 100000, 10, 0);
    EXPECT_EQ(many.Thumb().Height(), 8); // never shorter than eight pixels
    const TVScrollBar squat({0, 0, 16, 20}, 50, 10, 0);
    EXPECT_EQ(squat.UpButton().Height(), 10);
    EXPECT_TRUE(squat.Thumb().IsEmpty());
}
