#include "ControlsFixture.h"

#include "platform/controls/Edit.h"
#include "platform/controls/Label.h"

using namespace qv;
using namespace qvtest;

namespace {

class LabelTest : public ControlsFixture {
protected:
    void SetUp() override {
        ControlsFixture::SetUp();
        form->SetColor(clWhite);
        form->Font()->SetColor(clBlack);
        label = Add<TLabel>({20, 20, 85, 37});
    }
    TSize Extent(const std::string& text) const { return TextExtentOf(*label->Font(), text); }
    TLabel* label{nullptr};
};

} // namespace

TEST_F(LabelTest, AutoSizeFitsTheBoundsToTheText) {
    label->SetCaption("Hello there");
    EXPECT_EQ(label->Width(), Extent("Hello there").cx);
    EXPECT_EQ(label->Height(), Extent("Hello there").cy);
    label->SetCaption("");
    EXPECT_EQ(label->Width(), Extent(" ").cx); // an empty label keeps one blank's size
    EXPECT_GT(label->Height(), 0);

    label->SetAutoSize(false);
    label->SetCaption("A much longer caption than before");
    EXPECT_EQ(label->Width(), Extent(" ").cx);
}

TEST_F(LabelTest, AutoSizeKeepsTheRightEdgeOfARightAlignedLabel) {
    label->SetCaption("abc");
    label->SetAlignment(taRightJustify);
    const int right = label->Left() + label->Width();
    label->SetCaption("abcdefghij");
    EXPECT_EQ(label->Left() + label->Width(), right);
    EXPECT_EQ(label->Width(), Extent("abcdefghij").cx);
}

TEST_F(LabelTest, AccelCharIsHiddenAndUnderlinedUnlessShowAccelCharIsOff) {
    label->SetCaption("&File");
    EXPECT_EQ(label->Width(), Extent("File").cx);
    const TRect ink = InkBounds(label->BoundsRect(), clWhite);
    EXPECT_GT(ink.bottom, label->Top() + Extent("F").cy - 4); // the underline under the F
    label->SetShowAccelChar(false);
    EXPECT_EQ(label->Width(), Extent("&File").cx);
}

TEST_F(LabelTest, WordWrapBreaksAtTheWidthAndGrowsTheHeight) {
    label->SetAutoSize(false);
    label->SetWidth(Extent("word word").cx + 2);
    label->SetWordWrap(true);
    label->SetCaption("word word word word");
    label->SetAutoSize(true);
    EXPECT_LE(label->Width(), Extent("word word").cx + 2);
    EXPECT_EQ(label->Height(), 2 * Extent("word").cy);
}

TEST_F(LabelTest, AlignmentAndLayoutPlaceTheTextInsideFixedBounds) {
    label->SetAutoSize(false);
    label->SetBounds(20, 20, 120, 60);
    label->SetCaption("Mid");
    const TRect bounds = label->BoundsRect();
    const TRect topLeft = InkBounds(bounds, clWhite);
    EXPECT_LT(topLeft.left, bounds.left + 3);
    EXPECT_LT(topLeft.top, bounds.top + 6);

    label->SetAlignment(taCenter);
    label->SetLayout(tlCenter);
    const TRect centred = InkBounds(bounds, clWhite);
    EXPECT_LE(std::abs((centred.left - bounds.left) - (bounds.right - centred.right)), 2);
    EXPECT_GT(centred.top, bounds.top + 15);
    EXPECT_LT(centred.bottom, bounds.bottom - 15);

    label->SetAlignment(taRightJustify);
    label->SetLayout(tlBottom);
    const TRect bottomRight = InkBounds(bounds, clWhite);
    EXPECT_GT(bottomRight.right, bounds.right - 3);
    EXPECT_GT(bottomRight.bottom, bounds.bottom - 6);
}

TEST_F(LabelTest, OpaqueLabelFillsWithItsColourAndTransparentShowsTheParent) {
    label->SetCaption("   ");
    label->SetColor(clYellow);
    EXPECT_EQ(ShotPixel(label->Left() + 1, label->Top() + 1), clYellow);
    label->SetTransparent(true);
    EXPECT_FALSE(label->ControlStyle().Contains(csOpaque));
    EXPECT_EQ(ShotPixel(label->Left() + 1, label->Top() + 1), clWhite);
}

TEST_F(LabelTest, ParentColorFollowsTheForm) {
    EXPECT_TRUE(label->ParentColor());
    EXPECT_EQ(label->Color(), clWhite);
    form->SetColor(clLime);
    EXPECT_EQ(label->Color(), clLime);
}

TEST_F(LabelTest, DisabledTextIsEmbossedInHighlightAndShadow) {
    label->SetCaption("Embossed");
    label->SetColor(clBlue);
    label->SetEnabled(false);
    form->Screenshot(shot);
    int highlight = 0, shadow = 0, black = 0;
    for (int y = label->Top(); y < label->Top() + label->Height(); ++y)
        for (int x = label->Left(); x < label->Left() + label->Width(); ++x) {
            const TColor c = shot.Canvas().Pixel(x, y);
            highlight += c == ColorToRGB(clBtnHighlight);
            shadow += c == ColorToRGB(clBtnShadow);
            black += c == clBlack;
        }
    EXPECT_GT(highlight, 10);
    EXPECT_GT(shadow, 10);
    EXPECT_EQ(black, 0);
}

TEST_F(LabelTest, AcceleratorFocusesTheFocusControl) {
    auto* first = Add<TEdit>({20, 100, 120, 121});
    auto* target = Add<TEdit>({20, 140, 120, 161});
    label->SetCaption("&Name");
    label->SetFocusControl(target);
    Show();
    EXPECT_TRUE(first->Focused());
    Headless().Char(Window(), 'n', isAlt);
    Pump();
    EXPECT_TRUE(target->Focused());
    delete target;
    EXPECT_EQ(label->FocusControl(), nullptr);
}
