// Colours: system colours, identifiers and their text form.

#include "platform/graphics/Color.h"

#include "platform/core/Exceptions.h"
#include "platform/core/TypeInfo.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(Color, SystemColoursResolveThroughTheClassicTable) {
    EXPECT_EQ(static_cast<std::uint32_t>(clBtnFace), 0x8000000Fu);
    EXPECT_EQ(ColorToRGB(clBtnFace), clSilver);
    EXPECT_EQ(ColorToRGB(clBtnShadow), clGray);
    EXPECT_EQ(ColorToRGB(clBtnHighlight), clWhite);
    EXPECT_EQ(ColorToRGB(clWindowText), clBlack);
    EXPECT_EQ(ColorToRGB(clInfoBk), MakeColor(0xE1FFFF));
    EXPECT_EQ(ColorToRGB(clRed), clRed);
    // Palette-relative values keep their flag but draw as their RGB.
    const TColor palette = MakeColor(0x02123456);
    EXPECT_EQ(ColorToRGB(palette), palette);
    EXPECT_EQ(ColorToDrawRGB(palette), 0x123456u);
}

TEST(Color, TextFormUsesIdentifiersElseHex) {
    EXPECT_EQ(ColorToString(clRed), "clRed");
    EXPECT_EQ(ColorToString(clBtnFace), "clBtnFace");
    EXPECT_EQ(ColorToString(MakeColor(0xC0C0C1)), "$00C0C0C1");
    EXPECT_EQ(ColorToString(MakeColor(0x02123456)), "$02123456");
    EXPECT_EQ(StringToColor("clbtnface"), clBtnFace);
    EXPECT_EQ(StringToColor("$02123456"), MakeColor(0x02123456));
    EXPECT_EQ(StringToColor("255"), clRed);
    EXPECT_EQ(StringToColor("clLtGray"), clSilver);
    EXPECT_THROW(StringToColor("clNoSuchColour"), EConvertError);
    EXPECT_THROW(StringToColor("$1FFFFFFFF"), EConvertError);
    for (TColor c : {clNone, clDefault, cl3DDkShadow, clWhite, MakeColor(0x80FF00)})
        EXPECT_EQ(StringToColor(ColorToString(c)), c);
}

TEST(Color, TypeInfoMapsIdentifiers) {
    const TTypeInfo& t = ColorType();
    EXPECT_EQ(t.kind, TTypeKind::Integer);
    EXPECT_EQ(t.intToIdent(clNavy), std::optional<std::string>("clNavy"));
    EXPECT_FALSE(t.intToIdent(0x123456).has_value());
    EXPECT_EQ(t.identToInt("clHighlight"), std::optional<std::int64_t>(clHighlight));
}
