// The colour buttons: bevel and caption pixels in each state, the glass, and the events of
// the mouse and the keys.

#include "ButtonFixture.h"

#include "buttons/Qanimate.h"
#include "platform/controls/Edit.h"

using namespace qv;

namespace {

constexpr TColor kFace = 0x00C8C8, kHighlight = 0xFF0000, kShadow = 0x0000FF;

// The bevel as the four polylines define it, pixel by pixel, on a face of kFace.
TPixelBuffer ExpectedBevel(int W, int H, bool down) {
    const int R = W - 1, B = H - 1;
    TPixelBuffer p(W, H, ColorToPixel(kFace));
    auto put = [&](int x, int y, TColor c) {
        if (p.Contains(x, y)) p.At(x, y) = ColorToPixel(c);
    };
    for (int y = B; y >= 1; --y)
        put(0, y, kShadow);
    for (int x = 0; x <= R - 1; ++x)
        put(x, 0, kShadow);
    for (int y = 1; y <= B - 2; ++y)
        put(R - 1, y, kShadow);
    for (int x = R - 1; x >= 1; --x)
        put(x, B - 1, kShadow);
    const TColor inner = down ? 0 : kHighlight, outer = down ? kHighlight : 0;
    for (int y = B; y >= 2; --y)
        put(1, y, inner);
    for (int x = 1; x <= R - 1; ++x)
        put(x, 1, inner);
    for (int y = 0; y <= B - 1; ++y)
        put(R, y, outer);
    for (int x = R; x >= 1; --x)
        put(x, B, outer);
    return p;
}

// The two outer rings only: the inside holds the caption and the focus rectangle.
TPixelBuffer Rings(TPixelBuffer p) {
    for (int y = 2; y < p.Height() - 2; ++y)
        for (int x = 2; x < p.Width() - 2; ++x)
            p.At(x, y) = 0;
    return p;
}

TPixelBuffer Plain(int W, int H, TColor color) {
    return TPixelBuffer(W, H, ColorToPixel(color));
}

template <class Button> Button* NewButton(TForm* form, int left = 10, int top = 10) {
    auto* b = new Button(form);
    b->SetParent(form);
    b->SetBounds(left, top, 20, 12);
    b->SetColor(kFace);
    b->SetHighLightColor(kHighlight);
    b->SetShadowColor(kShadow);
    return b;
}

bool Has(const TPixelBuffer& p, TColor c) {
    for (int y = 0; y < p.Height(); ++y)
        for (int x = 0; x < p.Width(); ++x)
            if (p.At(x, y) == ColorToPixel(c)) return true;
    return false;
}

} // namespace

TEST_F(ButtonTest, BevelUpAndPressedFollowsTheFourPolylines) {
    auto* b = NewButton<TqColorBtn>(form);
    EXPECT_TRUE(SamePixels(Picture(*b), ExpectedBevel(20, 12, false), "bevel-up"));
    MouseDown({15, 15});
    EXPECT_TRUE(b->Down());
    EXPECT_TRUE(SamePixels(Rings(Picture(*b)), Rings(ExpectedBevel(20, 12, true)), "bevel-down"));
    auto* nw = NewButton<TqNWColorBtn>(form, 100);
    EXPECT_TRUE(SamePixels(Picture(*nw), ExpectedBevel(20, 12, false), "nw-bevel-up"));
}

TEST_F(ButtonTest, FlatShowsTheBevelOnlyHoveredEnabledOrDesigning) {
    auto* b = NewButton<TqColorBtn>(form);
    b->SetFlat(true);
    EXPECT_TRUE(SamePixels(Picture(*b), Plain(20, 12, kFace), "flat"));
    MouseMove({15, 15});
    EXPECT_TRUE(b->Hovered());
    EXPECT_TRUE(SamePixels(Picture(*b), ExpectedBevel(20, 12, false), "flat-hovered"));
    b->SetEnabled(false);
    EXPECT_TRUE(SamePixels(Picture(*b), Plain(20, 12, kFace), "flat-disabled"));
    MouseMove({200, 150});
    b->SetEnabled(true);
    b->SetDesigning(true);
    b->Invalidate();
    EXPECT_TRUE(SamePixels(Picture(*b), ExpectedBevel(20, 12, false), "flat-designing"));
}

TEST_F(ButtonTest, NonWindowedFrameAndMovementSwitches) {
    auto* nw = NewButton<TqNWColorBtn>(form);
    nw->SetBounds(10, 10, 40, 30);
    nw->SetFrame(false);
    MouseDown({30, 25});
    EXPECT_TRUE(nw->Down());
    EXPECT_TRUE(SamePixels(Picture(*nw), Plain(40, 30, kFace), "nw-no-frame"));
    MouseUp({30, 25});

    nw->SetCaption("M");
    nw->Font()->SetColor(0);
    const TPixelBuffer up = Picture(*nw);
    MouseDown({30, 25});
    const TPixelBuffer moved = Picture(*nw);
    MouseUp({30, 25});
    nw->SetMovement(false);
    MouseDown({30, 25});
    const TPixelBuffer still = Picture(*nw);
    EXPECT_GT(test::CountDifferentPixels(moved, up), 0);
    EXPECT_TRUE(SamePixels(still, up, "nw-no-movement"));
}

TEST_F(ButtonTest, GlassOrsEveryChannelOfWhatLiesBeneath) {
    form->SetColor(RGB(10, 200, 0));
    auto* nw = NewButton<TqNWColorBtn>(form);
    nw->SetFrame(false);
    nw->SetTransparent(true);
    EXPECT_FALSE(nw->ControlStyle().Contains(csOpaque));
    EXPECT_TRUE(SamePixels(Picture(*nw), Plain(20, 12, RGB(10, 200, 0)), "transparent"));
    nw->SetGlassValue(64);
    EXPECT_TRUE(SamePixels(Picture(*nw), Plain(20, 12, RGB(74, 200, 64)), "glass"));
}

TEST_F(ButtonTest, DisabledCaptionIsEmbossedWhiteUnderGrey) {
    auto* b = NewButton<TqColorBtn>(form);
    b->SetBounds(10, 10, 60, 30);
    b->SetColor(RGB(0, 0, 128));
    b->Font()->SetColor(RGB(255, 255, 0));
    b->SetCaption("HH");
    EXPECT_TRUE(Has(Picture(*b), RGB(255, 255, 0)));
    b->SetEnabled(false);
    const TPixelBuffer disabled = Picture(*b);
    EXPECT_TRUE(Has(disabled, RGB(255, 255, 255)));
    EXPECT_TRUE(Has(disabled, RGB(128, 128, 128)));
    EXPECT_FALSE(Has(disabled, RGB(255, 255, 0)));
}

TEST_F(ButtonTest, DefaultMakesTheCaptionBoldWhateverTheFontSays) {
    auto* plain = NewButton<TqColorBtn>(form);
    auto* styled = NewButton<TqColorBtn>(form, 100);
    auto* edit = new TEdit(form);
    edit->SetParent(form);
    edit->SetBounds(10, 150, 50, 20);
    edit->SetFocus();
    for (auto* b : {plain, styled}) {
        b->SetBounds(b->Left(), 10, 60, 30);
        b->SetCaption("Bold");
    }
    TFont bold;
    bold.Assign(*styled->Font());
    bold.SetStyle({fsBold});
    styled->SetFont(bold);
    EXPECT_TRUE(SamePixels(Picture(*styled), Picture(*plain), "style-overridden"));
    styled->SetDefault(true);
    EXPECT_GT(test::CountDifferentPixels(Picture(*styled), Picture(*plain)), 0);
}

TEST_F(ButtonTest, ClickRaisesItsEventsInOrderAndHandsModalResultZero) {
    auto* b = NewButton<TqColorBtn>(form);
    std::vector<std::string> events;
    b->OnMouseDown = [&](TObject*, TMouseButtonKind, TShiftState, int, int) {
        events.push_back("down");
    };
    b->OnMouseUp = [&](TObject*, TMouseButtonKind, TShiftState, int, int) {
        events.push_back("up");
    };
    b->OnClick = [&](TObject*) {
        events.push_back("click");
        EXPECT_FALSE(b->Down()); // the face is lifted before OnClick
    };
    form->SetModalResult(mrOk);
    MouseMove({15, 15});
    Click({15, 15});
    EXPECT_EQ(events, (std::vector<std::string>{"down", "click", "up"}));
    EXPECT_EQ(form->ModalResult(), mrNone);
    EXPECT_TRUE(b->Focused());
}

TEST_F(ButtonTest, FlatResyncFiresEnterAgainAfterEveryClick) {
    auto* b = NewButton<TqColorBtn>(form);
    b->SetFlat(true);
    int enters = 0, leaves = 0;
    b->OnMouseEnter = [&](TObject*) { ++enters; };
    b->OnMouseLeave = [&](TObject*) { ++leaves; };
    MouseMove({15, 15});
    const int afterEntering = enters;
    Click({15, 15});
    EXPECT_GT(enters, afterEntering); // the cursor never moved
    EXPECT_EQ(leaves, 0);
    EXPECT_TRUE(b->Hovered());
}

TEST_F(ButtonTest, LeavingAndReenteringWhileHeldTogglesTheFaceAndReleasingOutsideDoesNotClick) {
    auto* b = NewButton<TqColorBtn>(form);
    int clicks = 0;
    b->OnClick = [&](TObject*) { ++clicks; };
    MouseDown({15, 15});
    MouseMove({100, 100});
    EXPECT_FALSE(b->Down());
    EXPECT_TRUE(b->Held());
    EXPECT_TRUE(
        SamePixels(Rings(Picture(*b)), Rings(ExpectedBevel(20, 12, false)), "held-outside"));
    MouseMove({12, 12});
    EXPECT_TRUE(b->Down());
    MouseMove({100, 100});
    MouseUp({100, 100});
    EXPECT_EQ(clicks, 0);
    EXPECT_FALSE(b->Held());
}

TEST_F(ButtonTest, TheBottomEdgeRowIsInsideAndTheRightEdgeColumnIsNot) {
    auto* b = NewButton<TqColorBtn>(form);
    b->Perform(WM_LBUTTONDOWN, 0, MAKELPARAM(b->ClientWidth(), 3));
    EXPECT_FALSE(b->Down());
    b->Perform(WM_LBUTTONDOWN, 0, MAKELPARAM(3, b->ClientHeight()));
    EXPECT_TRUE(b->Down());
    EXPECT_TRUE(b->Held());
    b->Perform(WM_MOUSEMOVE, 0, MAKELPARAM(b->ClientWidth(), 3));
    EXPECT_FALSE(b->Down());
    b->Perform(WM_MOUSEMOVE, 0, MAKELPARAM(b->ClientWidth() - 1, b->ClientHeight()));
    EXPECT_TRUE(b->Down());
}

TEST_F(ButtonTest, SpacePressesAndReleasingItClicksUnlessTheMouseHoldsTheButton) {
    auto* b = NewButton<TqColorBtn>(form);
    b->SetFocus();
    int clicks = 0;
    b->OnClick = [&](TObject*) { ++clicks; };
    Key(VK_SPACE, true);
    EXPECT_TRUE(b->Down());
    Key(VK_SPACE, true); // a repeat
    Key(VK_SPACE, false);
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(b->Down());

    Key(VK_SPACE, true);
    MouseDown({15, 15});
    Key(VK_SPACE, false);
    EXPECT_EQ(clicks, 1); // held by the mouse: no click from the key
    MouseUp({15, 15});
    EXPECT_EQ(clicks, 2); // the mouse's own click
}

TEST_F(ButtonTest, EnterClicksTheActiveButtonAndEscapeTheCancelOne) {
    auto* first = NewButton<TqColorBtn>(form);
    auto* def = NewButton<TqColorBtn>(form, 50);
    auto* cancel = NewButton<TqColorBtn>(form, 90);
    auto* edit = new TEdit(form);
    edit->SetParent(form);
    edit->SetBounds(10, 150, 50, 20);
    def->SetDefault(true);
    cancel->SetCancel(true);
    std::string clicked;
    for (auto* b : {first, def, cancel})
        b->OnClick = [&, b](TObject*) { clicked += b == first ? "F" : b == def ? "D" : "C"; };
    edit->SetFocus();
    Key(VK_RETURN, true);
    first->SetFocus();
    Key(VK_RETURN, true);
    Key(VK_ESCAPE, true);
    EXPECT_EQ(clicked, "DFC");
    EXPECT_TRUE(first->Active());
    EXPECT_FALSE(def->Active());
}

TEST_F(ButtonTest, AcceleratorClicksBothKinds) {
    auto* b = NewButton<TqColorBtn>(form);
    auto* nw = NewButton<TqNWColorBtn>(form, 50);
    b->SetCaption("&Go");
    nw->SetCaption("&Stop");
    std::string clicked;
    b->OnClick = [&](TObject*) { clicked += "G"; };
    nw->OnClick = [&](TObject*) { clicked += "S"; };
    Headless().Char(form->NativeWindow(), 's');
    Headless().Char(form->NativeWindow(), 'g');
    Pump();
    EXPECT_EQ(clicked, "SG");
}
