#include "Color.h"

#include "platform/core/Exceptions.h"
#include "platform/core/TypeInfo.h"

#include <array>
#include <cstdio>
#include <limits>
#include <string_view>
#include <strings.h>

namespace qv {

namespace {

// The classic "Windows Standard" scheme, indexed by system colour number.
constexpr std::array<std::uint32_t, SysColorCount> SysColorTable = {
    0xC0C0C0, // scroll bar
    0x808000, // desktop
    0x800000, // active caption
    0x808080, // inactive caption
    0xC0C0C0, // menu
    0xFFFFFF, // window
    0x000000, // window frame
    0x000000, // menu text
    0x000000, // window text
    0xFFFFFF, // caption text
    0xC0C0C0, // active border
    0xC0C0C0, // inactive border
    0x808080, // application workspace
    0x800000, // highlight
    0xFFFFFF, // highlight text
    0xC0C0C0, // button face
    0x808080, // button shadow
    0x808080, // grey text
    0x000000, // button text
    0xC0C0C0, // inactive caption text
    0xFFFFFF, // button highlight
    0x000000, // 3-D dark shadow
    0xC0C0C0, // 3-D light
    0x000000, // info text
    0xE1FFFF, // info background
    0x000000, // (unused index 25)
    0x800000, // hot-tracked item
    0xD08410, // gradient of the active caption
    0xB5B5B5, // gradient of the inactive caption
    0x800000, // highlighted menu item
    0xC0C0C0, // menu bar
};

struct TColorName {
    TColor color;
    std::string_view name;
};

constexpr std::array<TColorName, 52> ColorNames = {{
    {clBlack, "clBlack"},
    {clMaroon, "clMaroon"},
    {clGreen, "clGreen"},
    {clOlive, "clOlive"},
    {clNavy, "clNavy"},
    {clPurple, "clPurple"},
    {clTeal, "clTeal"},
    {clGray, "clGray"},
    {clSilver, "clSilver"},
    {clRed, "clRed"},
    {clLime, "clLime"},
    {clYellow, "clYellow"},
    {clBlue, "clBlue"},
    {clFuchsia, "clFuchsia"},
    {clAqua, "clAqua"},
    {clWhite, "clWhite"},
    {clMoneyGreen, "clMoneyGreen"},
    {clSkyBlue, "clSkyBlue"},
    {clCream, "clCream"},
    {clMedGray, "clMedGray"},
    {clActiveBorder, "clActiveBorder"},
    {clActiveCaption, "clActiveCaption"},
    {clAppWorkSpace, "clAppWorkSpace"},
    {clBackground, "clBackground"},
    {clBtnFace, "clBtnFace"},
    {clBtnHighlight, "clBtnHighlight"},
    {clBtnShadow, "clBtnShadow"},
    {clBtnText, "clBtnText"},
    {clCaptionText, "clCaptionText"},
    {clDefault, "clDefault"},
    {clGradientActiveCaption, "clGradientActiveCaption"},
    {clGradientInactiveCaption, "clGradientInactiveCaption"},
    {clGrayText, "clGrayText"},
    {clHighlight, "clHighlight"},
    {clHighlightText, "clHighlightText"},
    {clHotLight, "clHotLight"},
    {clInactiveBorder, "clInactiveBorder"},
    {clInactiveCaption, "clInactiveCaption"},
    {clInactiveCaptionText, "clInactiveCaptionText"},
    {clInfoBk, "clInfoBk"},
    {clInfoText, "clInfoText"},
    {clMenu, "clMenu"},
    {clMenuBar, "clMenuBar"},
    {clMenuHighlight, "clMenuHighlight"},
    {clMenuText, "clMenuText"},
    {clNone, "clNone"},
    {clScrollBar, "clScrollBar"},
    {cl3DDkShadow, "cl3DDkShadow"},
    {cl3DLight, "cl3DLight"},
    {clWindow, "clWindow"},
    {clWindowFrame, "clWindowFrame"},
    {clWindowText, "clWindowText"},
}};

// Aliases that are read but never written: grey and silver read back as clGray and clSilver.
constexpr std::array<TColorName, 2> ExtraNames = {{
    {clLtGray, "clLtGray"},
    {clDkGray, "clDkGray"},
}};

std::optional<std::int64_t> ParseInteger(const std::string& text) {
    if (text.empty()) return std::nullopt;
    std::size_t pos = 0;
    bool negative = false;
    if (text[pos] == '-' || text[pos] == '+') negative = text[pos++] == '-';
    int base = 10;
    if (pos < text.size() && text[pos] == '$') {
        base = 16;
        ++pos;
    } else if (pos + 1 < text.size() && text[pos] == '0' && (text[pos + 1] | 0x20) == 'x') {
        base = 16;
        pos += 2;
    }
    if (pos >= text.size()) return std::nullopt;
    std::uint64_t value = 0;
    for (; pos < text.size(); ++pos) {
        const char c = text[pos];
        int digit = -1;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (base == 16 && (c | 0x20) >= 'a' && (c | 0x20) <= 'f')
            digit = (c | 0x20) - 'a' + 10;
        if (digit < 0) return std::nullopt;
        value = value * base + digit;
        if (value > 0xFFFFFFFFull) return std::nullopt;
    }
    const auto signedValue = static_cast<std::int64_t>(value);
    return negative ? -signedValue : signedValue;
}

} // namespace

TColor GetSysColor(int index) {
    if (index < 0 || index >= SysColorCount) return clBlack;
    return MakeColor(SysColorTable[static_cast<std::size_t>(index)]);
}

std::optional<std::string> ColorToIdent(TColor color) {
    for (const auto& entry : ColorNames)
        if (entry.color == color) return std::string(entry.name);
    for (const auto& entry : ExtraNames)
        if (entry.color == color) return std::string(entry.name);
    return std::nullopt;
}

std::optional<TColor> IdentToColor(const std::string& ident) {
    for (const auto& entry : ColorNames)
        if (strcasecmp(std::string(entry.name).c_str(), ident.c_str()) == 0) return entry.color;
    for (const auto& entry : ExtraNames)
        if (strcasecmp(std::string(entry.name).c_str(), ident.c_str()) == 0) return entry.color;
    return std::nullopt;
}

std::string ColorToString(TColor color) {
    if (auto ident = ColorToIdent(color)) return *ident;
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "$%.8X", static_cast<std::uint32_t>(color));
    return buffer;
}

TColor StringToColor(const std::string& text) {
    if (auto color = IdentToColor(text)) return *color;
    const auto value = ParseInteger(text);
    if (!value || *value < std::numeric_limits<std::int32_t>::min() || *value > 0xFFFFFFFFll)
        throw EConvertError("'" + text + "' is not a valid colour");
    return MakeColor(static_cast<std::uint32_t>(*value));
}

const TTypeInfo& ColorType() {
    static const TTypeInfo info = [] {
        TTypeInfo t = TTypeInfo::Integer("TColor", std::numeric_limits<std::int32_t>::min(),
                                         std::numeric_limits<std::int32_t>::max());
        t.intToIdent = [](std::int64_t v) {
            return ColorToIdent(MakeColor(static_cast<std::uint32_t>(v)));
        };
        t.identToInt = [](const std::string& s) -> std::optional<std::int64_t> {
            if (auto c = IdentToColor(s)) return *c;
            return std::nullopt;
        };
        t.hexDigits = 8;
        return t;
    }();
    return info;
}

} // namespace qv
