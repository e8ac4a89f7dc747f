#pragma once
// TColor: a 32-bit colour $00BBGGRR (red in the low byte). Values with the top bit set are
// system colours ($80000000 + the system colour index); values with top byte 2 are
// palette-relative RGB, drawn as their RGB. clNone and clDefault are markers, not colours.

#include <cstdint>
#include <optional>
#include <string>

namespace qv {

struct TTypeInfo;

using TColor = std::int32_t;

constexpr TColor MakeColor(std::uint32_t raw) {
    return static_cast<TColor>(raw);
}
constexpr TColor RGB(int r, int g, int b) {
    return MakeColor(static_cast<std::uint32_t>(r & 0xFF) |
                     (static_cast<std::uint32_t>(g & 0xFF) << 8) |
                     (static_cast<std::uint32_t>(b & 0xFF) << 16));
}
constexpr int GetRValue(TColor c) {
    return static_cast<int>(static_cast<std::uint32_t>(c) & 0xFF);
}
constexpr int GetGValue(TColor c) {
    return static_cast<int>((static_cast<std::uint32_t>(c) >> 8) & 0xFF);
}
constexpr int GetBValue(TColor c) {
    return static_cast<int>((static_cast<std::uint32_t>(c) >> 16) & 0xFF);
}

// System colour indices (the classic COLOR_xxx numbers).
enum TSysColorIndex : int {
    COLOR_SCROLLBAR = 0,
    COLOR_BACKGROUND = 1,
    COLOR_ACTIVECAPTION = 2,
    COLOR_INACTIVECAPTION = 3,
    COLOR_MENU = 4,
    COLOR_WINDOW = 5,
    COLOR_WINDOWFRAME = 6,
    COLOR_MENUTEXT = 7,
    COLOR_WINDOWTEXT = 8,
    COLOR_CAPTIONTEXT = 9,
    COLOR_ACTIVEBORDER = 10,
    COLOR_INACTIVEBORDER = 11,
    COLOR_APPWORKSPACE = 12,
    COLOR_HIGHLIGHT = 13,
    COLOR_HIGHLIGHTTEXT = 14,
    COLOR_BTNFACE = 15,
    COLOR_BTNSHADOW = 16,
    COLOR_GRAYTEXT = 17,
    COLOR_BTNTEXT = 18,
    COLOR_INACTIVECAPTIONTEXT = 19,
    COLOR_BTNHIGHLIGHT = 20,
    COLOR_3DDKSHADOW = 21,
    COLOR_3DLIGHT = 22,
    COLOR_INFOTEXT = 23,
    COLOR_INFOBK = 24,
    COLOR_HOTLIGHT = 26,
    COLOR_GRADIENTACTIVECAPTION = 27,
    COLOR_GRADIENTINACTIVECAPTION = 28,
    COLOR_MENUHILIGHT = 29,
    COLOR_MENUBAR = 30,
};
constexpr int SysColorCount = 31;

constexpr TColor SystemColor(int index) {
    return MakeColor(0x80000000u | static_cast<std::uint32_t>(index));
}

// Named colours.
constexpr TColor clBlack = MakeColor(0x000000);
constexpr TColor clMaroon = MakeColor(0x000080);
constexpr TColor clGreen = MakeColor(0x008000);
constexpr TColor clOlive = MakeColor(0x008080);
constexpr TColor clNavy = MakeColor(0x800000);
constexpr TColor clPurple = MakeColor(0x800080);
constexpr TColor clTeal = MakeColor(0x808000);
constexpr TColor clGray = MakeColor(0x808080);
constexpr TColor clSilver = MakeColor(0xC0C0C0);
constexpr TColor clRed = MakeColor(0x0000FF);
constexpr TColor clLime = MakeColor(0x00FF00);
constexpr TColor clYellow = MakeColor(0x00FFFF);
constexpr TColor clBlue = MakeColor(0xFF0000);
constexpr TColor clFuchsia = MakeColor(0xFF00FF);
constexpr TColor clAqua = MakeColor(0xFFFF00);
constexpr TColor clLtGray = MakeColor(0xC0C0C0);
constexpr TColor clDkGray = MakeColor(0x808080);
constexpr TColor clWhite = MakeColor(0xFFFFFF);
constexpr TColor clMoneyGreen = MakeColor(0xC0DCC0);
constexpr TColor clSkyBlue = MakeColor(0xF0CAA6);
constexpr TColor clCream = MakeColor(0xF0FBFF);
constexpr TColor clMedGray = MakeColor(0xA4A0A0);
constexpr TColor clNone = MakeColor(0x1FFFFFFF);
constexpr TColor clDefault = MakeColor(0x20000000);

// System colours.
constexpr TColor clScrollBar = SystemColor(COLOR_SCROLLBAR);
constexpr TColor clBackground = SystemColor(COLOR_BACKGROUND);
constexpr TColor clActiveCaption = SystemColor(COLOR_ACTIVECAPTION);
constexpr TColor clInactiveCaption = SystemColor(COLOR_INACTIVECAPTION);
constexpr TColor clMenu = SystemColor(COLOR_MENU);
constexpr TColor clWindow = SystemColor(COLOR_WINDOW);
constexpr TColor clWindowFrame = SystemColor(COLOR_WINDOWFRAME);
constexpr TColor clMenuText = SystemColor(COLOR_MENUTEXT);
constexpr TColor clWindowText = SystemColor(COLOR_WINDOWTEXT);
constexpr TColor clCaptionText = SystemColor(COLOR_CAPTIONTEXT);
constexpr TColor clActiveBorder = SystemColor(COLOR_ACTIVEBORDER);
constexpr TColor clInactiveBorder = SystemColor(COLOR_INACTIVEBORDER);
constexpr TColor clAppWorkSpace = SystemColor(COLOR_APPWORKSPACE);
constexpr TColor clHighlight = SystemColor(COLOR_HIGHLIGHT);
constexpr TColor clHighlightText = SystemColor(COLOR_HIGHLIGHTTEXT);
constexpr TColor clBtnFace = SystemColor(COLOR_BTNFACE);
constexpr TColor clBtnShadow = SystemColor(COLOR_BTNSHADOW);
constexpr TColor clGrayText = SystemColor(COLOR_GRAYTEXT);
constexpr TColor clBtnText = SystemColor(COLOR_BTNTEXT);
constexpr TColor clInactiveCaptionText = SystemColor(COLOR_INACTIVECAPTIONTEXT);
constexpr TColor clBtnHighlight = SystemColor(COLOR_BTNHIGHLIGHT);
constexpr TColor cl3DDkShadow = SystemColor(COLOR_3DDKSHADOW);
constexpr TColor cl3DLight = SystemColor(COLOR_3DLIGHT);
constexpr TColor clInfoText = SystemColor(COLOR_INFOTEXT);
constexpr TColor clInfoBk = SystemColor(COLOR_INFOBK);
constexpr TColor clHotLight = SystemColor(COLOR_HOTLIGHT);
constexpr TColor clGradientActiveCaption = SystemColor(COLOR_GRADIENTACTIVECAPTION);
constexpr TColor clGradientInactiveCaption = SystemColor(COLOR_GRADIENTINACTIVECAPTION);
constexpr TColor clMenuHighlight = SystemColor(COLOR_MENUHILIGHT);
constexpr TColor clMenuBar = SystemColor(COLOR_MENUBAR);

// The RGB value of a system colour index in the classic scheme; black for unknown indices.
TColor GetSysColor(int index);
// Turns a system colour into its RGB value; every other value is returned unchanged.
inline TColor ColorToRGB(TColor color) {
    return color < 0 ? GetSysColor(color & 0xFF) : color;
}
// The 24-bit RGB a colour is drawn with: system colours resolved, flag bytes dropped.
inline std::uint32_t ColorToDrawRGB(TColor color) {
    return static_cast<std::uint32_t>(ColorToRGB(color)) & 0xFFFFFF;
}

// Identifiers (clRed, clBtnFace ...) for colours that have one.
std::optional<std::string> ColorToIdent(TColor color);
std::optional<TColor> IdentToColor(const std::string& ident);
// The identifier, else $ and eight hex digits ($00C0C0C1).
std::string ColorToString(TColor color);
// Accepts identifiers, $hex and decimal numbers; EConvertError otherwise.
TColor StringToColor(const std::string& text);

// Type information for published TColor properties: written as identifiers where possible.
const TTypeInfo& ColorType();

} // namespace qv
