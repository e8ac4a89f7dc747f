#include "X11Keys.h"

#include <X11/keysym.h>

#include <array>
#include <utility>

namespace qv {

namespace {

// Classic codes of keys that Messages.h does not name.
constexpr unsigned vkNumpad0 = 0x60;
constexpr unsigned vkMultiply = 0x6A;
constexpr unsigned vkAdd = 0x6B;
constexpr unsigned vkSubtract = 0x6D;
constexpr unsigned vkDecimal = 0x6E;
constexpr unsigned vkDivide = 0x6F;
constexpr unsigned vkF1 = 0x70;
constexpr unsigned vkLWin = 0x5B;
constexpr unsigned vkApps = 0x5D;
constexpr unsigned vkSnapshot = 0x2C;

// Keys whose code does not follow from a range.
constexpr std::array<std::pair<unsigned long, unsigned>, 60> fixedKeys{{
    {XK_BackSpace, 0x08},
    {XK_Tab, 0x09},
    {XK_ISO_Left_Tab, 0x09},
    {XK_Clear, 0x0C},
    {XK_Return, 0x0D},
    {XK_KP_Enter, 0x0D},
    {XK_Shift_L, 0x10},
    {XK_Shift_R, 0x10},
    {XK_Control_L, 0x11},
    {XK_Control_R, 0x11},
    {XK_Alt_L, 0x12},
    {XK_Alt_R, 0x12},
    {XK_Meta_L, 0x12},
    {XK_Meta_R, 0x12},
    {XK_Pause, 0x13},
    {XK_Caps_Lock, 0x14},
    {XK_Escape, 0x1B},
    {XK_space, 0x20},
    {XK_Prior, 0x21},
    {XK_Next, 0x22},
    {XK_End, 0x23},
    {XK_Home, 0x24},
    {XK_Left, 0x25},
    {XK_Up, 0x26},
    {XK_Right, 0x27},
    {XK_Down, 0x28},
    {XK_Insert, 0x2D},
    {XK_Delete, 0x2E},
    {XK_Print, vkSnapshot},
    {XK_Super_L, vkLWin},
    {XK_Super_R, vkLWin + 1},
    {XK_Menu, vkApps},
    {XK_KP_Multiply, vkMultiply},
    {XK_KP_Add, vkAdd},
    {XK_KP_Subtract, vkSubtract},
    {XK_KP_Decimal, vkDecimal},
    {XK_KP_Divide, vkDivide},
    {XK_KP_Home, 0x24},
    {XK_KP_End, 0x23},
    {XK_KP_Prior, 0x21},
    {XK_KP_Next, 0x22},
    {XK_KP_Left, 0x25},
    {XK_KP_Up, 0x26},
    {XK_KP_Right, 0x27},
    {XK_KP_Down, 0x28},
    {XK_KP_Insert, 0x2D},
    {XK_KP_Delete, 0x2E},
    {XK_KP_Begin, 0x0C},
    {XK_Num_Lock, 0x90},
    {XK_Scroll_Lock, 0x91},
    {XK_semicolon, 0xBA},
    {XK_equal, 0xBB},
    {XK_comma, 0xBC},
    {XK_minus, 0xBD},
    {XK_period, 0xBE},
    {XK_slash, 0xBF},
    {XK_grave, 0xC0},
    {XK_bracketleft, 0xDB},
    {XK_backslash, 0xDC},
    {XK_bracketright, 0xDD},
}};

// Shifted punctuation reports the keysym of the shifted character; the key is the same.
constexpr std::array<std::pair<unsigned long, unsigned>, 11> shiftedPunctuation{{
    {XK_colon, 0xBA},
    {XK_plus, 0xBB},
    {XK_less, 0xBC},
    {XK_underscore, 0xBD},
    {XK_greater, 0xBE},
    {XK_question, 0xBF},
    {XK_asciitilde, 0xC0},
    {XK_braceleft, 0xDB},
    {XK_bar, 0xDC},
    {XK_braceright, 0xDD},
    {XK_quotedbl, 0xDE},
}};

unsigned RangeKey(unsigned long keysym) {
    if (keysym >= XK_a && keysym <= XK_z) return static_cast<unsigned>(keysym - XK_a) + 'A';
    if (keysym >= XK_A && keysym <= XK_Z) return static_cast<unsigned>(keysym - XK_A) + 'A';
    if (keysym >= XK_0 && keysym <= XK_9) return static_cast<unsigned>(keysym - XK_0) + '0';
    if (keysym >= XK_KP_0 && keysym <= XK_KP_9)
        return static_cast<unsigned>(keysym - XK_KP_0) + vkNumpad0;
    if (keysym >= XK_F1 && keysym <= XK_F24) return static_cast<unsigned>(keysym - XK_F1) + vkF1;
    return 0;
}

} // namespace

unsigned VirtualKeyFromKeysym(unsigned long keysym) {
    if (const unsigned key = RangeKey(keysym)) return key;
    if (keysym == XK_apostrophe) return 0xDE;
    for (const auto& [sym, key] : fixedKeys)
        if (sym == keysym) return key;
    for (const auto& [sym, key] : shiftedPunctuation)
        if (sym == keysym) return key;
    return 0;
}

std::string CharsFromLookup(const std::string& looked) {
    std::string chars;
    for (const char c : looked)
        if (static_cast<unsigned char>(c) != 0x7F) chars += c;
    return chars;
}

} // namespace qv
