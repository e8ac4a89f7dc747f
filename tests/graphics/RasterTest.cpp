// Rasterizer rules the reference corpus does not pin down on its own: the ROP2 table, dash
// gaps, stretching, transparent copies and the published properties of the drawing tools.

#include "platform/graphics/Canvas.h"

#include "platform/core/Filer.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <functional>
#include <random>

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

TEST(Raster, EveryRop3WorksOnWholeWordsThroughBitBltPatBltAndCopyMode) {
    // Random 24-bit destination and source, rows long enough for the widest vectors and a
    // tail, under pattern brushes of 8 x 8 (which fold into the operation), 12 x 10 and 4 x 16
    // (which do not) and under solid brushes of black, white and another colour; bit
    // (4P + 2S + D) of the index is the result of each of the 24 colour bits.
    constexpr int width = 37, height = 3;
    std::mt19937 random(7);
    auto randomPicture = [&](TBitmap& b) {
        for (int y = 0; y < b.Height(); ++y)
            for (int x = 0; x < b.Width(); ++x)
                b.ScanLine(y)[x] = random() & 0xFFFFFF;
    };
    TBitmap destination(width, height), source(width, height), pattern(8, 8), wide(12, 10),
        tall(4, 16);
    for (TBitmap* b : {&destination, &source, &pattern, &wide, &tall})
        randomPicture(*b);
    struct TPatternCase {
        const char* name;
        std::function<void(TBrush&)> select;
        std::function<std::uint32_t(int, int)> at;
    };
    const auto solid = [](const char* name, std::uint32_t pixel) {
        return TPatternCase{name, [pixel](TBrush& b) { b.SetColor(PixelToColor(pixel)); },
                            [pixel](int, int) { return pixel; }};
    };
    const auto tiled = [](const char* name, TBitmap& tile) {
        return TPatternCase{name, [&tile](TBrush& b) { b.SetBitmap(&tile); },
                            [&tile](int x, int y) {
                                return tile.Pixels().At(x % tile.Width(), y % tile.Height());
                            }};
    };
    const TPatternCase patterns[] = {tiled("bitmap 8x8", pattern), tiled("bitmap 12x10", wide),
                                     tiled("bitmap 4x16", tall),   solid("black", 0),
                                     solid("white", 0xFFFFFF),     solid("colour", 0x3366CC)};
    for (const TPatternCase& under : patterns)
        for (unsigned code = 0; code < 256; ++code) {
            const auto expected = [&](int x, int y) {
                const std::uint32_t p = under.at(x, y), s = source.Pixels().At(x, y),
                                    d = destination.Pixels().At(x, y);
                std::uint32_t out = 0;
                for (int bit = 0; bit < 24; ++bit) {
                    const unsigned index =
                        ((p >> bit) & 1) * 4 + ((s >> bit) & 1) * 2 + ((d >> bit) & 1);
                    out |= ((code >> index) & 1u) << bit;
                }
                return out;
            };
            const std::uint32_t rop = code << 16;
            const TRect all{0, 0, width, height};
            TBitmap viaBitBlt, viaCopyMode;
            viaBitBlt.Assign(destination);
            viaCopyMode.Assign(destination);
            under.select(viaBitBlt.Canvas().Brush());
            BitBlt(viaBitBlt.Canvas().Handle(), 0, 0, width, height, source.Canvas().Handle(), 0, 0,
                   rop);
            under.select(viaCopyMode.Canvas().Brush());
            viaCopyMode.Canvas().SetCopyMode(rop);
            viaCopyMode.Canvas().CopyRect(all, source.Canvas(), all);
            EXPECT_EQ(viaCopyMode.Pixels(), viaBitBlt.Pixels()) << "rop3 " << code;
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    ASSERT_EQ(viaBitBlt.Pixels().At(x, y), expected(x, y))
                        << "rop3 " << code << " under " << under.name << " at " << x << "," << y;
            TBitmap viaPatBlt;
            viaPatBlt.Assign(destination);
            under.select(viaPatBlt.Canvas().Brush());
            PatBlt(viaPatBlt.Canvas().Handle(), 0, 0, width, height, rop);
            // PatBlt draws the operations that ignore the source and refuses the others.
            EXPECT_EQ(viaPatBlt.Pixels(),
                      RopUsesSource(rop) ? destination.Pixels() : viaBitBlt.Pixels())
                << "rop3 " << code << " under " << under.name;
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

// A copy moves whole pixels, top byte included, as a copy between two 32-bit bitmaps does;
// every other operation writes pixels without it.
TEST(Raster, BlockCopyKeepsTheDestinationOutsideTheSourceAndMovesWholePixels) {
    TPixelBuffer src(5, 4, 0);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x)
            src.At(x, y) = 0xAB000000u | static_cast<std::uint32_t>(0x010203 * (1 + x + 5 * y));
    // The copy hangs over every side of the source and is clipped to an L shape.
    auto copy = [&](bool rowCopy, std::uint32_t rop) {
        TPixelBuffer dst(9, 8, 0x777777);
        TDeviceContext dc(&dst);
        TRegion clip =
            TRegion::FromRect({1, 1, 8, 4}).Combine(TRegion::FromRect({1, 4, 4, 7}), RGN_OR);
        dc.SelectClipRgn(&clip);
        if (rowCopy)
            dc.BitBlt(0, 0, 9, 8, &src, -2, -1, rop);
        else // both extents negative: the same copy through the general path
            dc.StretchBlt(8, 7, -9, -8, &src, 6, 6, -9, -8, rop);
        return dst;
    };
    const TPixelBuffer fast = copy(true, SRCCOPY);
    EXPECT_EQ(fast, copy(false, SRCCOPY));
    for (const bool rowCopy : {true, false}) {
        const TPixelBuffer inverted = copy(rowCopy, NOTSRCCOPY);
        EXPECT_EQ(inverted.At(2, 1), ~src.At(0, 0) & 0xFFFFFFu) << rowCopy;
    }
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 9; ++x) {
            const bool visible =
                (y >= 1 && y < 4 && x >= 1 && x < 8) || (y >= 4 && y < 7 && x >= 1 && x < 4);
            const int sx = x - 2, sy = y - 1;
            const bool inSource = sx >= 0 && sx < 5 && sy >= 0 && sy < 4;
            const std::uint32_t expected = visible && inSource ? src.At(sx, sy) : 0x777777u;
            EXPECT_EQ(fast.At(x, y), expected) << x << "," << y;
        }
}

// Unstretched blits run each operation along whole rows in vectors (rows of 16 pixels and more
// in the widest the processor has); the general path (both extents negative) walks pixel by
// pixel. The rows leave tails after the vectors, the copy hangs over the source and is
// clipped to an L shape with a foot too narrow for the wide vectors, the pixels carry top
// bytes, and the brush is solid, hatched from an odd origin, or none.
TEST(Raster, UnstretchedBlitsOfEveryOperationMatchTheGeneralPath) {
    std::mt19937 random(11);
    TPixelBuffer src(37, 9), start(39, 9);
    for (TPixelBuffer* b : {&src, &start})
        for (int y = 0; y < b->Height(); ++y)
            for (int x = 0; x < b->Width(); ++x)
                b->At(x, y) = static_cast<std::uint32_t>(random());
    TLogBrush hatched;
    hatched.style = BS_HATCHED;
    hatched.hatch = HS_DIAGCROSS;
    hatched.color = TColor(0x3366CC);
    TLogBrush none;
    none.style = BS_NULL;
    const TRegion clip = TRegion::FromRect({1, 1, 38, 5})
                             .Combine(TRegion::FromRect({1, 5, 30, 8}), RGN_OR)
                             .Combine(TRegion::FromRect({24, 8, 38, 9}), RGN_OR);
    for (const TLogBrush& brush : {TLogBrush{}, hatched, none})
        for (unsigned code = 0; code < 256; ++code) {
            const std::uint32_t rop = code << 16;
            if (!RopUsesSource(rop)) continue;
            auto blit = [&](bool rows) {
                TPixelBuffer dst = start;
                TDeviceContext dc(&dst);
                dc.SelectBrush(brush);
                dc.SetBrushOrg({3, 5});
                dc.SetBkColor(TColor(0x10E0A0));
                dc.SelectClipRgn(&clip);
                if (rows)
                    dc.BitBlt(0, 0, 39, 9, &src, -2, -1, rop);
                else
                    dc.StretchBlt(38, 8, -39, -9, &src, 36, 7, -39, -9, rop);
                return dst;
            };
            ASSERT_EQ(blit(true), blit(false)) << "rop3 " << code << " brush " << brush.style;
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
    // part lies outside the target (painted through regions), with a thin and a wide pen
    // (whose outline and the interior beside it are painted from sorted rows).
    auto draw = [](bool simple, int penWidth) {
        TPixelBuffer pixels(24, 20, 0xFFFFFF);
        TDeviceContext dc(&pixels);
        const TRegion rect = TRegion::FromRect({3, 2, 19, 15});
        const TRegion clip =
            simple ? rect : rect.Combine(TRegion::FromRect({40, 30, 41, 31}), RGN_OR);
        EXPECT_EQ(dc.SelectClipRgn(&clip), simple ? SIMPLEREGION : COMPLEXREGION);
        TLogPen pen;
        pen.width = penWidth;
        pen.color = TColor(0x00A050);
        dc.SelectPen(pen);
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
        dc.Rectangle(5, 3, 17, 13);
        dc.Arc(2, 2, 20, 16, 20, 2, 2, 16);
        dc.Polyline(star);
        return pixels;
    };
    for (const int penWidth : {1, 2, 3, 6}) {
        SCOPED_TRACE(penWidth);
        EXPECT_EQ(draw(true, penWidth), draw(false, penWidth));
    }
}

TEST(Raster, CurvesReachingPastTheTargetMatchTheSameCurvesDrawnWhole) {
    // Curves that reach past the target are drawn from an outline thinned to what can show;
    // the same curve moved into a target that holds it whole is drawn point by point. The
    // small target must match the big one's matching window for every pen, fill and clip.
    constexpr int kWidth = 48, kHeight = 40, kShift = 400;
    std::mt19937 random(7);
    const auto coordinate = [&] { return std::uniform_int_distribution<int>(-350, 400)(random); };
    const auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    for (int round = 0; round < 240; ++round) {
        const int figure = pick(5);
        const int box[4] = {coordinate(), coordinate(), coordinate(), coordinate()};
        const int ends[4] = {coordinate(), coordinate(), coordinate(), coordinate()};
        const int corner[2] = {pick(300), pick(300)};
        TLogPen pen;
        pen.style = std::array{PS_SOLID, PS_DASH, PS_DOT, PS_INSIDEFRAME}[pick(4)];
        pen.width =
            pen.style == PS_DASH || pen.style == PS_DOT ? 1 : std::array{0, 1, 3, 8}[pick(4)];
        pen.color = TColor(0x2080F0);
        TLogBrush brush;
        brush.style = pick(3) == 0 ? BS_NULL : BS_SOLID;
        brush.color = TColor(0xC03010);
        const bool clipped = pick(3) == 0;
        const int direction = pick(2) ? AD_CLOCKWISE : AD_COUNTERCLOCKWISE;
        const auto draw = [&](int width, int height, int shift) {
            TPixelBuffer pixels(width, height, 0xFFFFFF);
            TDeviceContext dc(&pixels);
            dc.SelectPen(pen);
            dc.SelectBrush(brush);
            dc.SetROP2(R2_XORPEN);
            dc.SetBkMode(TRANSPARENT);
            dc.SetArcDirection(direction);
            if (clipped) {
                TRegion clip = TRegion::FromRect({5, 5, 40, 30})
                                   .Combine(TRegion::FromRect({43, 2, 46, 38}), RGN_OR);
                clip.Offset(shift, shift);
                dc.SelectClipRgn(&clip);
            }
            const auto at = [&](int i) { return box[i] + shift; };
            const auto end = [&](int i) { return ends[i] + shift; };
            switch (figure) {
            case 0:
                dc.Ellipse(at(0), at(1), at(2), at(3));
                break;
            case 1:
                dc.RoundRect(at(0), at(1), at(2), at(3), corner[0], corner[1]);
                break;
            case 2:
                dc.Arc(at(0), at(1), at(2), at(3), end(0), end(1), end(2), end(3));
                break;
            case 3:
                dc.Pie(at(0), at(1), at(2), at(3), end(0), end(1), end(2), end(3));
                break;
            default:
                dc.Chord(at(0), at(1), at(2), at(3), end(0), end(1), end(2), end(3));
                break;
            }
            return pixels;
        };
        const TPixelBuffer small = draw(kWidth, kHeight, 0);
        const TPixelBuffer whole = draw(kWidth + 2 * kShift, kHeight + 2 * kShift, kShift);
        int differing = 0;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                differing += small.At(x, y) != whole.At(x + kShift, y + kShift);
        ASSERT_EQ(differing, 0) << "round " << round << ", figure " << figure << ", pen style "
                                << pen.style << " width " << pen.width;
    }
}

TEST(Raster, HugeCurvesShowTheirVisiblePartAndOutOfRangeOnesAreLeftOut) {
    TPixelBuffer pixels(64, 64, 0xFFFFFF);
    TDeviceContext dc(&pixels);
    TLogBrush brush;
    brush.color = TColor(0x00FF00);
    dc.SelectBrush(brush);
    // The top of a circle 2^25 pixels across runs flat along row 10 across the whole target.
    const int radius = 1 << 24;
    dc.Ellipse(32 - radius, 10, 32 + radius, 10 + 2 * radius);
    for (int x : {0, 32, 63}) {
        EXPECT_EQ(pixels.At(x, 9), 0xFFFFFFu) << x;
        EXPECT_EQ(pixels.At(x, 10), 0x000000u) << x;
        EXPECT_EQ(pixels.At(x, 11), 0x00FF00u) << x;
    }
    // Its dashed quarter from 3 o'clock up to 12 o'clock crosses the right half of row 20, the
    // dash pattern stepped on along the hidden part.
    const TPixelBuffer before = pixels;
    dc.SelectPen({PS_DASH, 1, clRed});
    dc.Arc(32 - radius, 20, 32 + radius, 20 + 2 * radius, 32 + radius, 20 + radius, 32, 20);
    const std::uint32_t red = ColorToPixel(clRed);
    int dashes = 0;
    for (int x = 0; x < 64; ++x) {
        if (x < 31) {
            EXPECT_NE(pixels.At(x, 20), red) << x;
        }
        dashes += x > 32 && pixels.At(x, 20) == red;
    }
    EXPECT_GT(dashes, 0);
    EXPECT_LT(dashes, 31);
    // Beyond 2^27 pixels from the origin a curve is not drawn at all.
    pixels = before;
    dc.Ellipse(INT_MIN, INT_MIN, INT_MAX, INT_MAX);
    dc.Pie(-(1 << 28), 0, 1 << 28, 64, 0, 0, 64, 64);
    EXPECT_EQ(pixels, before);
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

// A replacing fill under a clip region of many bands, wide and one-pixel pieces side by side,
// writes exactly the pixels inside both the rectangle and the region, whatever the order.
TEST(Raster, ASolidFillUnderAClipRegionWritesExactlyTheClippedPixels) {
    std::mt19937 random(17);
    TRegion clip;
    for (int i = 0; i < 40; ++i) {
        const int x = static_cast<int>(random() % 60) - 5, y = static_cast<int>(random() % 40) - 5;
        const int w = 1 + static_cast<int>(random() % 12), h = 1 + static_cast<int>(random() % 9);
        clip = clip.Combine(TRegion::FromRect({x, y, x + w, y + h}), RGN_OR);
    }
    TPixelBuffer target(50, 30, 0x111111);
    TDeviceContext dc(&target);
    dc.SelectClipRgn(&clip);
    TLogBrush brush;
    brush.color = TColor(0x3366CC);
    const TRect area{3, 2, 47, 27};
    dc.FillRect(area, brush);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 50; ++x) {
            const bool inside = clip.Contains(x, y) && x >= area.left && x < area.right &&
                                y >= area.top && y < area.bottom;
            EXPECT_EQ(target.At(x, y), inside ? ColorToPixel(0x3366CC) : 0x111111u)
                << x << "," << y;
        }
}
