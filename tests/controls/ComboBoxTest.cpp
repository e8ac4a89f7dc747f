#include "ControlsFixture.h"

#include "platform/controls/ComboBox.h"
#include "platform/controls/ComboListWindow.h"
#include "platform/controls/Edit.h"

#include <vector>

using namespace qv;
using namespace qvtest;

namespace {

class ComboBoxTest : public ControlsFixture {
protected:
    void SetUp() override {
        ControlsFixture::SetUp();
        combo = Add<TComboBox>({10, 10, 130, 30});
        combo->SetStyle(csDropDownList);
        combo->Items()->SetText("zero\none\ntwo\nthree\n");
        combo->OnChange = [this](TObject*) { changes.push_back(combo->ItemIndex()); };
        edit = Add<TEdit>({10, 100, 130, 121});
        Show();
    }
    int Row() const { return TextLineHeight(*combo->Font()); }
    TNativeWindowId List() const { return combo->ListWindow()->NativeWindow(); }
    TPoint ListRow(int row) const { return {20, 1 + row * Row() + Row() / 2}; }
    TComboBox* combo{nullptr};
    TEdit* edit{nullptr};
    std::vector<int> changes;
};

} // namespace

TEST_F(ComboBoxTest, HeightFollowsTheFontAndTextFollowsTheSelection) {
    EXPECT_EQ(combo->Height(), Row() + 2 + 6);
    combo->SetHeight(60);
    EXPECT_EQ(combo->Height(), Row() + 2 + 6);
    combo->SetItemIndex(2);
    EXPECT_EQ(combo->Text(), "two");
    combo->SetText("three");
    EXPECT_EQ(combo->ItemIndex(), 3);
    combo->SetText("none of them");
    EXPECT_EQ(combo->ItemIndex(), -1);
    EXPECT_EQ(combo->Text(), "");
    EXPECT_TRUE(changes.empty()); // the program's changes raise no events
}

TEST_F(ComboBoxTest, ClickOpensTheListUnderTheBoxAndChoosingClosesIt) {
    int dropDowns = 0;
    combo->OnDropDown = [&](TObject*) { ++dropDowns; };
    Click({30, 20});
    ASSERT_TRUE(combo->DroppedDown());
    EXPECT_EQ(dropDowns, 1);
    EXPECT_TRUE(combo->Focused());
    TCustomForm* list = combo->ListWindow();
    EXPECT_TRUE(list->IsPopupWindow());
    EXPECT_EQ(list->BoundsRect(),
              (TRect{110, 60 + combo->Height(), 230, 60 + combo->Height() + 4 * Row() + 2}));
    EXPECT_TRUE(Headless().Window(List()).visible);

    ClickIn(List(), ListRow(2));
    EXPECT_FALSE(combo->DroppedDown());
    EXPECT_EQ(combo->ItemIndex(), 2);
    EXPECT_EQ(combo->Text(), "two");
    EXPECT_EQ(changes, (std::vector<int>{2}));
}

TEST_F(ComboBoxTest, PressElsewhereOrEscapeClosesWithoutChoosing) {
    combo->SetItemIndex(1);
    Click({30, 20});
    Headless().MouseMove(List(), ListRow(3));
    Pump();
    Click({250, 150}); // on the form, away from the box
    EXPECT_FALSE(combo->DroppedDown());
    EXPECT_EQ(combo->ItemIndex(), 1);

    Click({30, 20});
    ASSERT_TRUE(combo->DroppedDown());
    Key(VK_DOWN);
    Key(VK_ESCAPE);
    EXPECT_FALSE(combo->DroppedDown());
    EXPECT_EQ(combo->ItemIndex(), 1);
    EXPECT_TRUE(changes.empty());
}

TEST_F(ComboBoxTest, PressOnTheOpenBoxClosesItWithoutReopening) {
    Click({30, 20});
    ASSERT_TRUE(combo->DroppedDown());
    Click({30, 20});
    EXPECT_FALSE(combo->DroppedDown());
    Click({30, 20});
    EXPECT_TRUE(combo->DroppedDown());
}

TEST_F(ComboBoxTest, KeysOpenMoveAndChooseInTheList) {
    combo->SetFocus();
    Key(VK_DOWN, isAlt);
    ASSERT_TRUE(combo->DroppedDown());
    Key(VK_DOWN); // from no selection to the first
    Key(VK_DOWN);
    Key(VK_END);
    Key(VK_UP);
    Key(VK_RETURN);
    EXPECT_FALSE(combo->DroppedDown());
    EXPECT_EQ(combo->ItemIndex(), 2);

    Key(VK_F1 + 3); // F4
    ASSERT_TRUE(combo->DroppedDown());
    Type("z");
    Key(VK_F1 + 3);
    EXPECT_FALSE(combo->DroppedDown());
    EXPECT_EQ(combo->ItemIndex(), 0);
    EXPECT_EQ(changes, (std::vector<int>{2, 0}));
}

TEST_F(ComboBoxTest, ClosedBoxChangesTheSelectionWithArrowsAndCharacters) {
    combo->SetFocus();
    Key(VK_DOWN);
    Key(VK_DOWN);
    Key(VK_UP);
    Key(VK_END);
    Key(VK_END);
    Type("t");
    Type("o");
    EXPECT_EQ(changes, (std::vector<int>{0, 1, 0, 3, 2, 1}));
    EXPECT_FALSE(combo->DroppedDown());
}

TEST_F(ComboBoxTest, DraggingFromTheBoxIntoTheListChoosesOnRelease) {
    Headless().MouseDown(Window(), {30, 20});
    Pump();
    ASSERT_TRUE(combo->DroppedDown());
    const TPoint overRow1{30, 10 + combo->Height() + 1 + Row() + Row() / 2};
    Headless().MouseMove(Window(), overRow1, isLeft);
    Headless().MouseUp(Window(), overRow1);
    Pump();
    EXPECT_FALSE(combo->DroppedDown());
    EXPECT_EQ(combo->ItemIndex(), 1);
}

TEST_F(ComboBoxTest, LosingTheFocusClosesTheList) {
    Click({30, 20});
    ASSERT_TRUE(combo->DroppedDown());
    edit->SetFocus();
    EXPECT_FALSE(combo->DroppedDown());
}

TEST_F(ComboBoxTest, ListOpensAboveWhenTheWorkAreaEndsBelow) {
    Headless().SetScreen({0, 0, 1280, 1024}, {0, 0, 1280, 90});
    Click({30, 20});
    ASSERT_TRUE(combo->DroppedDown());
    EXPECT_EQ(combo->ListWindow()->BoundsRect().bottom, 60);
    Headless().SetScreen({0, 0, 1280, 1024}, {0, 0, 1280, 1000});
}

TEST_F(ComboBoxTest, ListScrollsToShowTheHighlightedRowBeyondDropDownCount) {
    combo->Items()->Clear();
    for (int i = 0; i < 30; ++i)
        combo->Items()->Add("row " + std::to_string(i));
    combo->SetDropDownCount(5);
    combo->SetItemIndex(20);
    Click({30, 20});
    ASSERT_TRUE(combo->DroppedDown());
    auto* list = dynamic_cast<TComboListWindow*>(combo->ListWindow());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->Height(), 5 * Row() + 2);
    EXPECT_EQ(list->TopIndex(), 16);
    const int barX = list->Width() - 1 - 8;
    ClickIn(List(), {barX, list->Height() - 5}); // the scroll bar's down arrow
    EXPECT_TRUE(combo->DroppedDown());
    EXPECT_EQ(list->TopIndex(), 17);
    ClickIn(List(), {barX, 4}); // the up arrow
    ClickIn(List(), {barX, 4});
    EXPECT_EQ(list->TopIndex(), 15);
    EXPECT_EQ(list->RowAt({barX, ListRow(1).y}), -1);
    ClickIn(List(), ListRow(4));
    EXPECT_FALSE(combo->DroppedDown());
    EXPECT_EQ(combo->ItemIndex(), 19);
}

TEST_F(ComboBoxTest, OwnerDrawPaintsTheFieldAndTheRowsOnTheBoxCanvas) {
    combo->SetStyle(csOwnerDrawFixed);
    combo->SetItemHeight(20);
    EXPECT_EQ(combo->Height(), 26);
    combo->SetItemIndex(1);
    std::vector<std::pair<int, TOwnerDrawState>> calls;
    combo->OnDrawItem = [&](TWinControl* control, int index, TRect rect, TOwnerDrawState state) {
        EXPECT_EQ(control, combo);
        calls.emplace_back(index, state);
        TCanvas& c = combo->Canvas();
        c.Brush().SetColor(index == 3 ? clRed : clLime);
        c.FillRect(rect);
    };
    EXPECT_EQ(ShotPixel(20, 20), clLime);
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.back().first, 1);
    EXPECT_TRUE(calls.back().second.Contains(odComboBoxEdit));

    Click({30, 20});
    ASSERT_TRUE(combo->DroppedDown());
    TBitmap listShot;
    combo->ListWindow()->Screenshot(listShot);
    EXPECT_EQ(listShot.Height(), 4 * 20 + 2);
    EXPECT_EQ(listShot.Canvas().Pixel(10, 1 + 3 * 20 + 10), clRed);
    EXPECT_EQ(listShot.Canvas().Pixel(10, 1 + 0 * 20 + 10), clLime);
    EXPECT_EQ(listShot.Canvas().Pixel(0, 0), ColorToRGB(clWindowFrame));
}

TEST_F(ComboBoxTest, FocusedFieldIsHighlightedAndTheButtonIsRaised) {
    combo->SetItemIndex(0);
    edit->SetFocus();
    const TPoint button{10 + 120 - 2 - 16, 12};
    EXPECT_EQ(ShotPixel(button.x, button.y), ColorToRGB(cl3DLight));
    EXPECT_EQ(ShotPixel(button.x + 1, button.y + 1), ColorToRGB(clBtnHighlight));
    EXPECT_EQ(ShotPixel(button.x + 8, button.y + 4), ColorToRGB(clBtnFace));
    EXPECT_EQ(ShotPixel(14, 14), ColorToRGB(clWindow));
    combo->SetFocus();
    EXPECT_EQ(ShotPixel(60, 14), ColorToRGB(clHighlight));
}

TEST_F(ComboBoxTest, DropDownStyleTypesFreeTextAndFollowsMatchingItems) {
    combo->SetStyle(csDropDown);
    TCustomEdit* field = combo->EditField();
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->Parent(), combo);
    combo->SetFocus();
    EXPECT_TRUE(field->Focused()); // the box hands the focus to its edit
    Type("tw");
    EXPECT_EQ(combo->Text(), "tw");
    EXPECT_EQ(combo->ItemIndex(), -1);
    Type("o");
    EXPECT_EQ(combo->ItemIndex(), 2); // exactly an item's text
    EXPECT_EQ(changes, (std::vector<int>{-1, -1, 2}));

    Key(VK_DOWN); // the list's keys still work from the edit
    EXPECT_EQ(combo->ItemIndex(), 3);
    EXPECT_EQ(field->Text(), "three");
    EXPECT_EQ(field->SelText(), "three");
    Key(VK_DOWN, isAlt);
    ASSERT_TRUE(combo->DroppedDown());
    Key(VK_UP);
    Key(VK_RETURN);
    EXPECT_FALSE(combo->DroppedDown());
    EXPECT_EQ(combo->Text(), "two");

    combo->SetText("free text");
    EXPECT_EQ(field->Text(), "free text");
    EXPECT_EQ(combo->ItemIndex(), -1);
    combo->SetStyle(csDropDownList);
    EXPECT_EQ(combo->EditField(), nullptr);
}

TEST_F(ComboBoxTest, TabLeavesTheEditableBoxBothWays) {
    combo->SetStyle(csDropDown);
    edit->SetFocus();
    Key(VK_TAB);
    EXPECT_TRUE(combo->EditField()->Focused());
    Key(VK_TAB, isShift);
    EXPECT_TRUE(edit->Focused());
    Key(VK_TAB);
    EXPECT_TRUE(combo->EditField()->Focused());
}
