// Text: measuring agrees with drawing, crisp rendering, DrawText layout and prefixes.

#include "platform/graphics/Canvas.h"

#include <gtest/gtest.h>
#include <set>

using namespace qv;

namespace {

// The box of the pixels that differ from white.
TRect InkBox(const TBitmap& b) {
    TRect r{b.Width(), b.Height(), -1, -1};
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            if ((b.Pixels().At(x, y) & 0xFFFFFF) != 0xFFFFFF)
                r = {std::min(r.left, x), std::min(r.top, y), std::max(r.right, x + 1),
                     std::max(r.bottom, y + 1)};
    return r;
}

} // namespace

TEST(Text, MeasuringAgreesWithDrawing) {
    TBitmap b(200, 40);
    TCanvas& c = b.Canvas();
    c.Brush().SetStyle(bsClear);
    c.Font().SetName("Arial");
    c.Font().SetHeight(-16);
    const std::string text = "Hello, World";
    const TSize extent = c.TextExtent(text);
    EXPECT_GT(extent.cx, 40);
    EXPECT_GE(extent.cy, 16);
    EXPECT_EQ(c.TextWidth(text + text), 2 * extent.cx);
    c.TextOut(10, 5, text);
    const TRect ink = InkBox(b);
    EXPECT_GE(ink.left, 10);
    EXPECT_LE(ink.right, 10 + extent.cx + 1);
    EXPECT_GE(ink.top, 5);
    EXPECT_LE(ink.bottom, 5 + extent.cy);
    EXPECT_EQ(c.PenPos(), Point(10 + extent.cx, 5));
}

TEST(Text, NonAntialiasedQualityDrawsOnlyTheTextColour) {
    TBitmap b(120, 30);
    TCanvas& c = b.Canvas();
    c.Brush().SetStyle(bsClear);
    c.Font().SetColor(clRed);
    c.Font().SetHeight(-14);
    c.Font().SetQuality(fqNonAntialiased);
    c.TextOut(2, 2, "Crisp text");
    std::set<std::uint32_t> colours(b.Pixels().Pixels().begin(), b.Pixels().Pixels().end());
    EXPECT_EQ(colours, (std::set<std::uint32_t>{0xFF0000, 0xFFFFFF}));
    c.Font().SetQuality(fqDefault);
    c.TextOut(2, 2, "Smooth text");
    colours = {b.Pixels().Pixels().begin(), b.Pixels().Pixels().end()};
    EXPECT_GT(colours.size(), 2u);
}

TEST(Text, OpaqueBrushFillsTheTextCell) {
    TBitmap b(100, 30);
    TCanvas& c = b.Canvas();
    c.Brush().SetColor(clYellow);
    c.TextOut(5, 5, "ab");
    const TSize e = c.TextExtent("ab");
    EXPECT_EQ(c.Pixel(5, 5 + e.cy - 1), clYellow);
    EXPECT_EQ(c.Pixel(5 + e.cx, 5), clWhite);
}

TEST(Text, DrawTextLayout) {
    TBitmap b(200, 100);
    TCanvas& c = b.Canvas();
    const int line = c.TextHeight("X");
    TRect r{0, 0, 60, 0};
    const int height = c.DrawText("one two three four five", r, DT_WORDBREAK | DT_CALCRECT);
    EXPECT_EQ(height, r.Height());
    EXPECT_GT(r.Height(), line);
    EXPECT_LE(r.Width(), 60 + c.TextWidth("three"));
    TRect single{0, 0, 200, 0};
    c.DrawText("a\nb", single, DT_CALCRECT);
    EXPECT_EQ(single.Height(), 2 * line);
    TRect prefixed{0, 0, 200, 0};
    c.DrawText("&File", prefixed, DT_CALCRECT);
    EXPECT_EQ(prefixed.Width(), c.TextWidth("File"));
    c.DrawText("&File", prefixed = Rect(0, 0, 200, 0), DT_CALCRECT | DT_NOPREFIX);
    EXPECT_EQ(prefixed.Width(), c.TextWidth("&File"));
    // Centred in both directions, clipped to the rectangle.
    c.Brush().SetStyle(bsClear);
    TRect box{50, 40, 150, 80};
    c.DrawText("Mid", box, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    const TRect ink = InkBox(b);
    EXPECT_NEAR((ink.left + ink.right) / 2, 100, 3);
    EXPECT_NEAR((ink.top + ink.bottom) / 2, 60, 4);
}

TEST(Text, ClassicFamiliesMapToSystemFonts) {
    const std::string sans = FontFileFor("MS Sans Serif", false, false);
    const std::string mono = FontFileFor("Courier New", false, false);
    EXPECT_NE(sans, mono);
    EXPECT_NE(FontFileFor("Arial", true, false), sans);
    EXPECT_EQ(DecodeUtf8("a\xC3\xA9"), std::u32string(U"a\u00E9"));
}
