#include "ControlsFixture.h"

#include "platform/controls/Clipboard.h"
#include "platform/controls/Edit.h"

using namespace qv;
using namespace qvtest;

namespace {

class EditTest : public ControlsFixture {
protected:
    void SetUp() override {
        ControlsFixture::SetUp();
        edit = Add<TEdit>({10, 10, 160, 31});
        other = Add<TEdit>({10, 50, 160, 71});
        edit->OnChange = [this](TObject*) { ++changes; };
        Show();
        Clipboard().Clear();
    }
    // Puts `text` in the edit, focused, with the caret at `caret`.
    void Start(const std::string& text, int caret) {
        edit->SetText(text);
        edit->SetFocus();
        edit->SetSelStart(caret);
        changes = 0;
    }
    // Pixels of `color` in a rectangle of the form, on a fresh screenshot.
    int Count(const TRect& r, TColor color) {
        form->Screenshot(shot);
        int n = 0;
        for (int y = r.top; y < r.bottom; ++y)
            for (int x = r.left; x < r.right; ++x)
                n += shot.Canvas().Pixel(x, y) == ColorToRGB(color);
        return n;
    }
    int XOf(int pos) const {
        return 10 + 3 + TextExtentOf(*edit->Font(), edit->Text().substr(0, pos)).cx;
    }
    TEdit* edit{nullptr};
    TEdit* other{nullptr};
    int changes{0};
};

} // namespace

TEST_F(EditTest, TypingInsertsAtTheCaretAndReplacesTheSelection) {
    Start("held", 2);
    Type("ab");
    EXPECT_EQ(edit->Text(), "heabld");
    EXPECT_EQ(edit->CaretPos(), 4);
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(edit->Modified());
    edit->SetSelStart(1);
    edit->SetSelLength(3);
    EXPECT_EQ(edit->SelText(), "eab");
    Type("Z");
    EXPECT_EQ(edit->Text(), "hZld");
    EXPECT_EQ(edit->SelLength(), 0);
    EXPECT_EQ(edit->SelStart(), 2);
}

TEST_F(EditTest, BackspaceAndDeleteRemoveOneCharacterOrTheSelection) {
    Start("abcdef", 3);
    Key(VK_BACK);
    Headless().Char(Window(), 8); // the character Backspace types
    Pump();
    EXPECT_EQ(edit->Text(), "abdef");
    EXPECT_EQ(edit->CaretPos(), 2);
    Key(VK_DELETE);
    EXPECT_EQ(edit->Text(), "abef");
    edit->SetSelLength(2);
    Key(VK_DELETE);
    EXPECT_EQ(edit->Text(), "ab");
    Key(VK_HOME);
    Headless().Char(Window(), 8);
    Pump();
    EXPECT_EQ(edit->Text(), "ab"); // nothing before the caret
    EXPECT_EQ(changes, 3);
}

TEST_F(EditTest, ArrowsHomeAndEndMoveTheCaretAndShiftExtendsTheSelection) {
    Start("hello world", 0);
    Key(VK_RIGHT);
    Key(VK_RIGHT);
    EXPECT_EQ(edit->CaretPos(), 2);
    Key(VK_RIGHT, isShift);
    Key(VK_RIGHT, isShift);
    EXPECT_EQ(edit->SelStart(), 2);
    EXPECT_EQ(edit->SelText(), "ll");
    Key(VK_HOME, isShift); // the anchor stays, the caret goes home
    EXPECT_EQ(edit->SelText(), "he");
    EXPECT_EQ(edit->CaretPos(), 0);
    Key(VK_END, isShift);
    EXPECT_EQ(edit->SelText(), "llo world");
    Key(VK_LEFT); // collapses to the selection's start
    EXPECT_EQ(edit->SelLength(), 0);
    EXPECT_EQ(edit->CaretPos(), 2);
    Key(VK_RIGHT, isCtrl);
    EXPECT_EQ(edit->CaretPos(), 6); // after the word and its blank
    Key(VK_LEFT, isCtrl);
    EXPECT_EQ(edit->CaretPos(), 0);
    Key(VK_END);
    Key(VK_RIGHT);
    EXPECT_EQ(edit->CaretPos(), 11);
    EXPECT_EQ(changes, 0);
}

TEST_F(EditTest, CaretNeverStopsInsideAMultiByteCharacter) {
    Start("a\xC3\xA9z", 0);
    Key(VK_RIGHT);
    Key(VK_RIGHT);
    EXPECT_EQ(edit->CaretPos(), 3);
    Headless().Char(Window(), 8);
    Pump();
    EXPECT_EQ(edit->Text(), "az");
}

TEST_F(EditTest, ClipboardKeysCopyCutAndPaste) {
    Start("copy me", 0);
    edit->SetSelLength(4);
    Key('C', isCtrl);
    EXPECT_EQ(Clipboard().AsText(), "copy");
    EXPECT_EQ(edit->Text(), "copy me");
    Key(VK_END);
    Key('V', isCtrl);
    EXPECT_EQ(edit->Text(), "copy mecopy");
    edit->SetSelStart(0);
    edit->SetSelLength(5);
    Key('X', isCtrl);
    EXPECT_EQ(edit->Text(), "mecopy");
    EXPECT_EQ(Clipboard().AsText(), "copy ");
    Key(VK_INSERT, isShift);
    EXPECT_EQ(edit->Text(), "copy mecopy");
    EXPECT_EQ(changes, 3);

    Clipboard().SetAsText("two\r\nlines");
    edit->SelectAll();
    edit->PasteFromClipboard();
    EXPECT_EQ(edit->Text(), "two"); // a single line keeps the first
}

TEST_F(EditTest, MaxLengthLimitsTypingAndPastingButNotTheText) {
    Start("", 0);
    edit->SetMaxLength(5);
    Type("abcdefg");
    EXPECT_EQ(edit->Text(), "abcde");
    Clipboard().SetAsText("XYZ");
    edit->SetSelStart(1);
    edit->SetSelLength(1);
    edit->PasteFromClipboard(); // one character freed: one pasted
    EXPECT_EQ(edit->Text(), "aXcde");
    edit->SetText("longer than five");
    EXPECT_EQ(edit->Text(), "longer than five");
}

TEST_F(EditTest, ReadOnlyRefusesEditingButCopiesAndSelText) {
    Start("fixed", 5);
    edit->SetReadOnly(true);
    Type("x");
    Key(VK_BACK);
    Headless().Char(Window(), 8);
    Key('X', isCtrl);
    Pump();
    EXPECT_EQ(edit->Text(), "fixed");
    EXPECT_EQ(changes, 0);
    edit->SelectAll();
    edit->CopyToClipboard();
    EXPECT_EQ(Clipboard().AsText(), "fixed");
    edit->SetSelText("set"); // the program may still change it
    EXPECT_EQ(edit->Text(), "set");
}

TEST_F(EditTest, SettingTheTextRaisesOnChangeAndPutsTheCaretAtTheStart) {
    Start("abc", 3);
    edit->SetText("other");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(edit->CaretPos(), 0);
    edit->SetText("other");
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(edit->Modified());
}

TEST_F(EditTest, ClickFocusesAndPlacesTheCaretDraggingSelects) {
    edit->SetText("click here");
    other->SetFocus();
    Click({XOf(5) + 1, 20});
    EXPECT_TRUE(edit->Focused());
    EXPECT_EQ(edit->CaretPos(), 5);
    EXPECT_EQ(edit->SelLength(), 0); // a click does not auto-select
    Click({155, 20});
    EXPECT_EQ(edit->CaretPos(), 10);

    Headless().MouseDown(Window(), {XOf(1), 20});
    Headless().MouseMove(Window(), {XOf(4), 20}, isLeft);
    Headless().MouseUp(Window(), {XOf(4), 20});
    Pump();
    EXPECT_EQ(edit->SelText(), "lic");
    Click({XOf(8), 20}, isShift);
    EXPECT_EQ(edit->SelText(), "lick he");
}

TEST_F(EditTest, DoubleClickSelectsAWord) {
    edit->SetText("one two three");
    Headless().MouseDown(Window(), {XOf(5), 20}, TMouseButton::Left, 0, true);
    Headless().MouseUp(Window(), {XOf(5), 20});
    Pump();
    EXPECT_EQ(edit->SelText(), "two ");
}

TEST_F(EditTest, EnteringByTabSelectsEverything) {
    edit->SetText("all of it");
    Key(VK_TAB); // to the other edit
    Key(VK_TAB, isShift);
    EXPECT_TRUE(edit->Focused());
    EXPECT_EQ(edit->SelText(), "all of it");
    edit->SetAutoSelect(false);
    Key(VK_TAB);
    edit->SetSelStart(0);
    Key(VK_TAB, isShift);
    EXPECT_EQ(edit->SelLength(), 0);
}

TEST_F(EditTest, CaretAndSelectionArePaintedOnlyWhileFocused) {
    edit->SetText("caret");
    other->SetFocus();
    const TRect caretColumn{XOf(5), 13, XOf(5) + 1, 26};
    EXPECT_EQ(Count(caretColumn, clBlack), 0);
    edit->SetFocus();
    edit->SetSelStart(5);
    EXPECT_GE(Count(caretColumn, clBlack), 10); // the inverted column
    edit->SelectAll();
    const TRect text{13, 13, XOf(5), 26};
    EXPECT_GT(Count(text, clHighlight), 20);
    other->SetFocus();
    EXPECT_EQ(Count(text, clHighlight), 0); // HideSelection
    EXPECT_EQ(Count(caretColumn, clBlack), 0);
    edit->SetHideSelection(false);
    EXPECT_GT(Count(text, clHighlight), 20);
}

TEST_F(EditTest, CaretBlinksAndShowsAgainWhenItMoves) {
    edit->SetText("blink");
    other->SetFocus();
    edit->SetFocus();
    edit->SetSelStart(5);
    const TRect caretColumn{XOf(5), 13, XOf(5) + 1, 26};
    EXPECT_GE(Count(caretColumn, clBlack), 10);
    Headless().AdvanceClock(TCustomEdit::CaretBlinkTime);
    Pump();
    EXPECT_EQ(Count(caretColumn, clBlack), 0);
    Key(VK_END); // moving (even in place) shows it again
    EXPECT_GE(Count(caretColumn, clBlack), 10);
    Headless().AdvanceClock(TCustomEdit::CaretBlinkTime - 1);
    Pump();
    EXPECT_GE(Count(caretColumn, clBlack), 10);
    other->SetFocus();
    Headless().AdvanceClock(5 * TCustomEdit::CaretBlinkTime);
    Pump();
    EXPECT_EQ(Count(caretColumn, clBlack), 0);
}

TEST_F(EditTest, SunkenEdgeAndHeightFollowingTheFont) {
    EXPECT_EQ(ShotPixel(10, 10), ColorToRGB(clBtnShadow));
    EXPECT_EQ(ShotPixel(11, 11), ColorToRGB(cl3DDkShadow));
    EXPECT_EQ(ShotPixel(159, 30), ColorToRGB(clBtnHighlight));
    EXPECT_EQ(edit->Height(), TextLineHeight(*edit->Font()) + 8);
    edit->Font()->SetHeight(-20);
    EXPECT_EQ(edit->Height(), TextLineHeight(*edit->Font()) + 8);
    edit->SetAutoSize(false);
    edit->SetHeight(40);
    EXPECT_EQ(edit->Height(), 40);
}

TEST_F(EditTest, LongTextScrollsToKeepTheCaretVisible) {
    Start(std::string(60, 'w'), 0);
    Key(VK_END);
    EXPECT_EQ(edit->CaretPos(), 60);
    Click({13, 20}); // the first visible character is far along the text
    EXPECT_GT(edit->CaretPos(), 20);
    Key(VK_HOME);
    Click({XOf(2), 20});
    EXPECT_EQ(edit->CaretPos(), 2);
}

TEST_F(EditTest, PasswordCharHidesTheTextAndRefusesCopying) {
    Start("secret", 6);
    edit->SetPasswordChar('*');
    edit->SelectAll();
    edit->CopyToClipboard();
    EXPECT_FALSE(Clipboard().HasText());
    const TRect ink = InkBounds({13, 13, 157, 28}, clWindow);
    EXPECT_NEAR(ink.Width(), TextExtentOf(*edit->Font(), "******").cx, 2);
}
