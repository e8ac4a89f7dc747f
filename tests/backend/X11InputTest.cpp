// Keyboard and mouse translation of the X11 backend, without a display.

// GoogleTest comes before Xlib, whose macros (None, Bool) clash with its names.
#include <gtest/gtest.h>

#include "platform/backend/X11Input.h"
#include "platform/backend/X11Keys.h"

#include <X11/X.h>
#include <X11/keysym.h>

using namespace qv;

TEST(X11Keys, LettersDigitsAndFunctionKeysFollowTheirRanges) {
    EXPECT_EQ(VirtualKeyFromKeysym(XK_a), 'A');
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Z), 'Z');
    EXPECT_EQ(VirtualKeyFromKeysym(XK_z), 'Z');
    EXPECT_EQ(VirtualKeyFromKeysym(XK_0), '0');
    EXPECT_EQ(VirtualKeyFromKeysym(XK_9), '9');
    EXPECT_EQ(VirtualKeyFromKeysym(XK_KP_0), 0x60u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_KP_9), 0x69u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_F1), 0x70u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_F12), 0x7Bu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_F24), 0x87u);
}

TEST(X11Keys, NavigationEditingAndModifierKeys) {
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Left), 0x25u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_KP_Left), 0x25u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Down), 0x28u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Prior), 0x21u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Next), 0x22u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Home), 0x24u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_End), 0x23u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Delete), 0x2Eu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_BackSpace), 0x08u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_ISO_Left_Tab), 0x09u); // Shift+Tab is still Tab
    EXPECT_EQ(VirtualKeyFromKeysym(XK_KP_Enter), 0x0Du);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Escape), 0x1Bu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Shift_R), 0x10u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Control_L), 0x11u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_Alt_L), 0x12u);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_KP_Add), 0x6Bu);
}

TEST(X11Keys, PunctuationKeysHaveOneCodeForBothLevels) {
    EXPECT_EQ(VirtualKeyFromKeysym(XK_semicolon), 0xBAu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_colon), 0xBAu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_minus), 0xBDu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_underscore), 0xBDu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_apostrophe), 0xDEu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_quotedbl), 0xDEu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_bracketright), 0xDDu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_braceright), 0xDDu);
    EXPECT_EQ(VirtualKeyFromKeysym(XK_eacute), 0u); // no classic key of its own
    EXPECT_EQ(VirtualKeyFromKeysym(NoSymbol), 0u);
}

TEST(X11Keys, TypedTextKeepsControlCharactersButNotDelete) {
    EXPECT_EQ(CharsFromLookup("a"), "a");
    EXPECT_EQ(CharsFromLookup("\x08"), "\x08");
    EXPECT_EQ(CharsFromLookup("\r"), "\r");
    EXPECT_EQ(CharsFromLookup("\x1b"), "\x1b");
    EXPECT_EQ(CharsFromLookup("\x01"), "\x01"); // Ctrl+A
    EXPECT_EQ(CharsFromLookup("\x7f"), "");
    EXPECT_EQ(CharsFromLookup("\xe9"), "\xe9");
    EXPECT_EQ(CharsFromLookup(""), "");
}

TEST(X11Input, SecondPressOfTheSameButtonNearbyAndSoonIsADoubleClick) {
    TClickTracker clicks;
    EXPECT_FALSE(clicks.Press(1, TMouseButton::Left, {10, 10}, 1000));
    EXPECT_TRUE(clicks.Press(1, TMouseButton::Left, {14, 6}, 1500));
    // A third quick press starts a new pair.
    EXPECT_FALSE(clicks.Press(1, TMouseButton::Left, {14, 6}, 1600));
    EXPECT_TRUE(clicks.Press(1, TMouseButton::Left, {14, 6}, 1700));
}

TEST(X11Input, PressesTooLateTooFarOrDifferentAreSingleClicks) {
    TClickTracker late;
    late.Press(1, TMouseButton::Left, {0, 0}, 0);
    EXPECT_FALSE(late.Press(1, TMouseButton::Left, {0, 0}, 501));

    TClickTracker far;
    far.Press(1, TMouseButton::Left, {0, 0}, 0);
    EXPECT_FALSE(far.Press(1, TMouseButton::Left, {5, 0}, 10));
    EXPECT_TRUE(far.Press(1, TMouseButton::Left, {5, 4}, 20)); // near the previous press

    TClickTracker button;
    button.Press(1, TMouseButton::Left, {0, 0}, 0);
    EXPECT_FALSE(button.Press(1, TMouseButton::Right, {0, 0}, 10));

    TClickTracker window;
    window.Press(1, TMouseButton::Left, {0, 0}, 0);
    EXPECT_FALSE(window.Press(2, TMouseButton::Left, {0, 0}, 10));

    TClickTracker wrapped; // server time that went backwards is not a double click
    wrapped.Press(1, TMouseButton::Left, {0, 0}, 5000);
    EXPECT_FALSE(wrapped.Press(1, TMouseButton::Left, {0, 0}, 100));
}

TEST(X11Input, ModifierMasksButtonsAndWheel) {
    EXPECT_EQ(ShiftFromXState(ShiftMask | Mod1Mask), unsigned{isShift | isAlt});
    EXPECT_EQ(ShiftFromXState(ControlMask | Button1Mask | Button3Mask),
              unsigned{isCtrl | isLeft | isRight});
    EXPECT_EQ(ShiftFromXState(Button2Mask | LockMask | Mod2Mask), unsigned{isMiddle});
    TMouseButton b{};
    EXPECT_TRUE(ButtonFromX(Button2, b));
    EXPECT_EQ(b, TMouseButton::Middle);
    EXPECT_TRUE(ButtonFromX(Button3, b));
    EXPECT_EQ(b, TMouseButton::Right);
    EXPECT_FALSE(ButtonFromX(Button4, b));
    EXPECT_EQ(WheelDeltaFromX(Button4), 120);
    EXPECT_EQ(WheelDeltaFromX(Button5), -120);
    EXPECT_EQ(WheelDeltaFromX(Button1), 0);
}
