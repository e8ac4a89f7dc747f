// Rasterizer rules the reference corpus does not pin down on its own: the ROP2 table, dash
// gaps, stretching, transparent copies and the published properties of the drawing tools.

#include "platform/graphics/Canvas.h"

#include "platform/core/Filer.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(Raster, Rop2TableMatchesItsBooleanDefinition) {
    // Each ROP2 is a function of pen bit P and destination bit D.
    const auto reference = [](int rop2, bool p, bool d) {
        switch (rop2) {
        case R2_BLACK:
            return false;
        case R2_NOTMERGEPEN:
            return !(p || d);
        case R2_MASKNOTPEN:
            return !p && d;
        case R2_NOTCOPYPEN:
            return !p;
        case R2_MASKPENNOT:
            return p && !d;
        case R2_NOT:
            return !d;
        case R2_XORPEN:
            return p != d;
        case R2_NOTMASKPEN:
            return !(p && d);
        case R2_MASKPEN:
            return p && d;
        case R2_NOTXORPEN:
            return p == d;
        case R2_NOP:
            return d;
        case R2_MERGENOTPEN:
            return !p || d;
        case R2_COPYPEN:
            return p;
        case R2_MERGEPENNOT:
            return p || !d;
        case R2_MERGEPEN:
            return p || d;
        default:
            return true;
        }
    };
    for (int rop2 = R2_BLACK; rop2 <= R2_WHITE; ++rop2)
        for (bool p : {false, true})
            for (bool d : {false, true}) {
                const TRopMask m = RopMaskFor(rop2, p ? 1u : 0u);
                const std::uint32_t out = ((d ? 1u : 0u) & m.andMask) ^ m.xorMask;
                EXPECT_EQ((out & 1) != 0, reference(rop2, p, d)) << "rop2 " << rop2;
            }
}

TEST(Raster, DashGapsTakeTheBrushColourOnlyWhenOpaque) {
    TBitmap b(40, 1);
    TCanvas& c = b.Canvas();
    c.Pen().SetStyle(psDash);
    c.Brush().SetColor(clLime);
    c.MoveTo(0, 0);
    c.LineTo(40, 0);
    // 18 pixels of dash, 6 of gap, then the next dash.
    EXPECT_EQ(c.Pixel(17, 0), clBlack);
    EXPECT_EQ(c.Pixel(18, 0), clLime);
    EXPECT_EQ(c.Pixel(23, 0), clLime);
    EXPECT_EQ(c.Pixel(24, 0), clBlack);
    c.Brush().SetStyle(bsClear);
    c.Pen().SetColor(clRed);
    c.MoveTo(0, 0);
    c.LineTo(40, 0);
    EXPECT_EQ(c.Pixel(20, 0), clLime);
    EXPECT_EQ(c.Pixel(10, 0), clRed);
    // Wide dashed pens draw solid.
    c.Pen().SetWidth(3);
    c.MoveTo(0, 0);
    c.LineTo(40, 0);
    EXPECT_EQ(c.Pixel(20, 0), clRed);
}

TEST(Raster, LinesLeaveOutTheirEndAndXorTwiceRestores) {
    TBitmap b(10, 10);
    TCanvas& c = b.Canvas();
    c.MoveTo(1, 1);
    c.LineTo(8, 5);
    EXPECT_EQ(c.Pixel(1, 1), clBlack);
    EXPECT_EQ(c.Pixel(8, 5), clWhite);
    EXPECT_EQ(c.PenPos(), Point(8, 5));
    const TPixelBuffer before = b.Pixels();
    c.Pen().SetMode(pmXor);
    c.Pen().SetColor(clAqua);
    for (int i = 0; i < 2; ++i) {
        c.Rectangle(0, 0, 9, 9);
        c.Ellipse(2, 2, 8, 7);
    }
    EXPECT_EQ(b.Pixels(), before);
}

TEST(Raster, StretchScalesByNearestPixelAndTransparentCopySkipsTheKey) {
    TPixelBuffer src(2, 2, 0);
    src.At(1, 0) = 0xFF0000;
    src.At(0, 1) = 0x00FF00;
    TPixelBuffer dst(4, 4, 0xFFFFFF);
    TDeviceContext dc(&dst);
    dc.StretchBlt(0, 0, 4, 4, &src, 0, 0, 2, 2, SRCCOPY);
    EXPECT_EQ(dst.At(3, 1), 0xFF0000u);
    EXPECT_EQ(dst.At(1, 3), 0x00FF00u);
    EXPECT_EQ(dst.At(0, 0), 0u);
    TPixelBuffer target(2, 2, 0x123456);
    TDeviceContext dc2(&target);
    dc2.TransparentBlt(0, 0, 2, 2, src, 0, 0, 2, 2, 0);
    EXPECT_EQ(target.At(0, 0), 0x123456u);
    EXPECT_EQ(target.At(1, 0), 0xFF0000u);
}

TEST(Raster, BlockCopyReadsBlackOutsideTheSourceAndDropsTheTopByte) {
    TPixelBuffer src(5, 4, 0);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x)
            src.At(x, y) = 0xAB000000u | static_cast<std::uint32_t>(0x010203 * (1 + x + 5 * y));
    // The copy hangs over every side of the source and is clipped to an L shape.
    auto copy = [&](bool rowCopy) {
        TPixelBuffer dst(9, 8, 0x777777);
        TDeviceContext dc(&dst);
        TRegion clip =
            TRegion::FromRect({1, 1, 8, 4}).Combine(TRegion::FromRect({1, 4, 4, 7}), RGN_OR);
        dc.SelectClipRgn(&clip);
        if (rowCopy)
            dc.BitBlt(0, 0, 9, 8, &src, -2, -1, SRCCOPY);
        else // both extents negative: the same copy through the general path
            dc.StretchBlt(8, 7, -9, -8, &src, 6, 6, -9, -8, SRCCOPY);
        return dst;
    };
    const TPixelBuffer fast = copy(true);
    EXPECT_EQ(fast, copy(false));
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 9; ++x) {
            const bool visible =
                (y >= 1 && y < 4 && x >= 1 && x < 8) || (y >= 4 && y < 7 && x >= 1 && x < 4);
            const int sx = x - 2, sy = y - 1;
            const bool inSource = sx >= 0 && sx < 5 && sy >= 0 && sy < 4;
            const std::uint32_t expected = !visible   ? 0x777777u
                                           : inSource ? src.At(sx, sy) & 0xFFFFFFu
                                                      : 0u;
            EXPECT_EQ(fast.At(x, y), expected) << x << "," << y;
        }
}

TEST(Raster, SolidFillRectPaintsWhatThePatternBlitPaints) {
    // A view whose rows are apart in a wider buffer: whole rows of the view are not one run.
    const TRect rects[] = {{0, 1, 6, 3}, {-3, 4, 9, 5}, {2, 2, 4, 6}, {5, 5, 1, 0}, {3, 3, 3, 6}};
    auto paint = [&](bool fill) {
        TPixelBuffer outer(9, 8, 0x111111);
        TPixelBuffer view = outer.SubView({2, 1, 8, 7});
        for (TPixelBuffer* target : {&outer, &view}) {
            TDeviceContext dc(target);
            TLogBrush brush;
            brush.color = TColor(0x123456);
            dc.SelectBrush(brush);
            for (const TRect& r : rects) {
                if (fill)
                    dc.FillRect(r, brush);
                else
                    dc.PatBlt(r.left, r.top, r.right - r.left, r.bottom - r.top, PATCOPY);
            }
        }
        return outer;
    };
    const TPixelBuffer filled = paint(true);
    EXPECT_EQ(filled, paint(false));
    EXPECT_EQ(filled.At(1, 3), 0x111111u); // left of the view, between its rows
    EXPECT_EQ(filled.At(2, 1), 0x563412u);
}

TEST(Raster, ShapesClippedToOneRectangleMatchTheRegionPath) {
    // The same visible rectangle as a simple clip region, and as a complex one whose other
    // part lies outside the target (painted through regions).
    auto draw = [](bool simple) {
        TPixelBuffer pixels(24, 20, 0xFFFFFF);
        TDeviceContext dc(&pixels);
        const TRegion rect = TRegion::FromRect({3, 2, 19, 15});
        const TRegion clip =
            simple ? rect : rect.Combine(TRegion::FromRect({40, 30, 41, 31}), RGN_OR);
        EXPECT_EQ(dc.SelectClipRgn(&clip), simple ? SIMPLEREGION : COMPLEXREGION);
        TLogBrush brush;
        brush.color = TColor(0x3060C0);
        dc.SelectBrush(brush);
        dc.SetROP2(R2_XORPEN);
        const TPoint star[] = {{12, -3}, {16, 18}, {0, 5}, {23, 6}, {5, 21}};
        dc.SetPolyFillMode(WINDING);
        dc.Polygon(star);
        dc.SetPolyFillMode(ALTERNATE);
        dc.Polygon(star);
        dc.Ellipse(-4, 1, 14, 19);
        dc.RoundRect(8, 4, 26, 17, 9, 7);
        dc.Pie(1, 0, 22, 18, 22, 0, 0, 18);
        dc.Chord(4, 6, 20, 22, 0, 12, 24, 12);
        return pixels;
    };
    EXPECT_EQ(draw(true), draw(false));
}

TEST(Raster, PublishedPropertiesInClassicOrderWithDefaults) {
    std::vector<std::string> names;
    for (const TPropInfo* p : TFont::StaticClassInfo().Properties())
        names.push_back(p->name);
    EXPECT_EQ(names, (std::vector<std::string>{"Charset", "Color", "Height", "Name", "Pitch",
                                               "Size", "Style", "Quality"}));
    TFont font;
    const TPropInfo* color = TFont::StaticClassInfo().FindProperty("Color");
    ASSERT_NE(color, nullptr);
    EXPECT_TRUE(color->IsDefault(font));
    EXPECT_EQ(color->type->intToIdent(color->getOrd(font)),
              std::optional<std::string>("clWindowText"));
    EXPECT_FALSE(TFont::StaticClassInfo().FindProperty("Size")->IsStored(font));
    TPen pen;
    pen.SetWidth(2);
    EXPECT_FALSE(TPen::StaticClassInfo().FindProperty("Width")->IsDefault(pen));
}

TEST(Raster, BitmapDataPropertyIsWrittenOnlyWhenThereArePixels) {
    TBitmap empty;
    TFiler filer;
    empty.DefineProperties(filer);
    ASSERT_NE(filer.Find("Data"), nullptr);
    EXPECT_FALSE(filer.Find("Data")->hasData);
    TBitmap b(3, 2);
    b.Canvas().SetPixel(2, 1, clMaroon);
    TFiler written;
    b.DefineProperties(written);
    const auto bytes = written.Find("Data")->write().bytes;
    TBitmap read;
    TFiler reader;
    read.DefineProperties(reader);
    reader.Find("Data")->read(TFormValue::Data(bytes));
    EXPECT_EQ(read.Pixels(), b.Pixels());
}
