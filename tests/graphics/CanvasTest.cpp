// Canvas behaviour beyond the reference corpus: bitmaps, blits, pixels and hostile input.

#include "platform/graphics/Canvas.h"

#include "platform/core/Exceptions.h"

#include <gtest/gtest.h>

#include <climits>

using namespace qv;

namespace {

int CountPixels(const TBitmap& b, TColor color) {
    int n = 0;
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            if (PixelToColor(b.Pixels().At(x, y)) == color) ++n;
    return n;
}

std::unique_ptr<TBitmap> Gradient(int w, int h) {
    auto b = std::make_unique<TBitmap>(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            b->Canvas().SetPixel(x, y, RGB(x * 10, y * 10, 7));
    return b;
}

} // namespace

TEST(Bitmap, NewPixelsAreWhiteAndResizeKeepsTheCorner) {
    TBitmap b(4, 3);
    EXPECT_EQ(CountPixels(b, clWhite), 12);
    b.Canvas().SetPixel(1, 1, clRed);
    b.SetSize(6, 6);
    EXPECT_EQ(b.Canvas().Pixel(1, 1), clRed);
    EXPECT_EQ(b.Canvas().Pixel(5, 5), clWhite);
    b.SetSize(-3, 7);
    EXPECT_TRUE(b.Empty());
    EXPECT_EQ(b.Height(), 7); // an empty bitmap keeps the extent it was given
    EXPECT_THROW(b.SetSize(1 << 20, 1 << 20), EOutOfResources);
    EXPECT_THROW(b.ScanLine(7), ERangeError);
}

TEST(Bitmap, PixelsOutsideReadInvalidAndWritesAreIgnored) {
    TBitmap b(2, 2);
    EXPECT_EQ(static_cast<std::uint32_t>(b.Canvas().Pixel(2, 0)), 0xFFFFFFFFu);
    EXPECT_EQ(static_cast<std::uint32_t>(b.Canvas().Pixel(-1, 0)), 0xFFFFFFFFu);
    b.Canvas().SetPixel(-1, 5, clBlack);
    b.Canvas().SetPixel(2, 2, clBlack);
    EXPECT_EQ(CountPixels(b, clWhite), 4);
    // System colours are drawn as their RGB.
    b.Canvas().SetPixel(0, 0, clBtnShadow);
    EXPECT_EQ(b.Canvas().Pixel(0, 0), clGray);
}

TEST(Bitmap, AssignCopiesAndMonochromeKeepsOnlyWhite) {
    auto gradient = Gradient(5, 5);
    TBitmap& a = *gradient;
    TBitmap b;
    b.Assign(a);
    EXPECT_EQ(b.Pixels(), a.Pixels());
    b.Canvas().SetPixel(0, 0, clWhite);
    b.SetMonochrome(true);
    EXPECT_EQ(CountPixels(b, clWhite), 1);
    EXPECT_EQ(CountPixels(b, clBlack), 24);
}

TEST(Canvas, SteelPatternTilesFromTheOrigin) {
    TBitmap steel(8, 8);
    steel.Canvas().Brush().SetColor(MakeColor(0xC0C0C0));
    steel.Canvas().FillRect({0, 0, 8, 8});
    for (int x = 1; x < 8; x += 2)
        for (int y = 1; y < 8; y += 2)
            steel.Canvas().SetPixel(x, y, clWhite);
    EXPECT_EQ(CountPixels(steel, clWhite), 16);
    TBitmap target(20, 20);
    target.Canvas().Brush().SetBitmap(&steel);
    target.Canvas().FillRect({3, 3, 20, 20});
    EXPECT_EQ(target.Canvas().Pixel(9, 9), clWhite);
    EXPECT_EQ(target.Canvas().Pixel(9, 10), clSilver);
    EXPECT_EQ(target.Canvas().Pixel(2, 2), clWhite); // outside the fill
    EXPECT_EQ(target.Canvas().Pixel(3, 3), clWhite);
    EXPECT_EQ(target.Canvas().Pixel(4, 3), clSilver);
}

TEST(Canvas, MirroredCopiesFlipAndRestore) {
    auto gradient = Gradient(7, 5);
    TBitmap& b = *gradient;
    const TPixelBuffer original = b.Pixels();
    // Source rectangles with a negative height turn the picture upside down.
    b.Canvas().CopyRect({0, 0, 7, 5}, b.Canvas(), {0, 4, 7, -1});
    EXPECT_EQ(b.Pixels().At(3, 0), original.At(3, 4));
    EXPECT_EQ(b.Pixels().At(3, 4), original.At(3, 0));
    b.Canvas().CopyRect({0, 0, 7, 5}, b.Canvas(), {0, 4, 7, -1});
    EXPECT_EQ(b.Pixels(), original);
    b.Canvas().CopyRect({0, 0, 7, 5}, b.Canvas(), {6, 0, -1, 5});
    EXPECT_EQ(b.Pixels().At(0, 2), original.At(6, 2));
}

TEST(Canvas, CopyModesCombineSourceAndDestination) {
    auto gradient = Gradient(4, 4);
    TBitmap& src = *gradient;
    TBitmap dst(4, 4);
    dst.Canvas().Brush().SetColor(MakeColor(0x0F0F0F));
    dst.Canvas().FillRect({0, 0, 4, 4});
    const TPixelBuffer before = dst.Pixels();
    dst.Canvas().SetCopyMode(cmSrcInvert);
    dst.Canvas().Draw(0, 0, src);
    EXPECT_EQ(dst.Pixels().At(2, 1), before.At(2, 1) ^ src.Pixels().At(2, 1));
    dst.Canvas().Draw(0, 0, src);
    EXPECT_EQ(dst.Pixels(), before);
    dst.Canvas().SetCopyMode(cmWhiteness);
    dst.Canvas().Draw(0, 0, src);
    EXPECT_EQ(CountPixels(dst, clWhite), 16);
    dst.Canvas().SetCopyMode(cmNotSrcCopy);
    // StretchDraw shrinks in COLORONCOLOR: the last column and the first row of each run.
    dst.Canvas().StretchDraw({0, 0, 2, 2}, src);
    EXPECT_EQ(dst.Pixels().At(1, 1), ~src.Pixels().At(3, 2) & 0xFFFFFF);
}

TEST(Canvas, BrushCopyReplacesOneColourWithTheBrush) {
    TBitmap src(3, 1);
    src.Canvas().SetPixel(1, 0, clRed);
    TBitmap dst(3, 1);
    dst.Canvas().Brush().SetColor(clBlue);
    dst.Canvas().BrushCopy({0, 0, 3, 1}, src, {0, 0, 3, 1}, clWhite);
    EXPECT_EQ(dst.Canvas().Pixel(0, 0), clBlue);
    EXPECT_EQ(dst.Canvas().Pixel(1, 0), clRed);
    EXPECT_EQ(dst.Canvas().Pixel(2, 0), clBlue);
    // With a clear brush the destination shows where the source has the colour.
    dst.Canvas().Brush().SetColor(clYellow);
    dst.Canvas().FillRect({0, 0, 3, 1});
    dst.Canvas().Brush().SetStyle(bsClear);
    dst.Canvas().BrushCopy({0, 0, 3, 1}, src, {0, 0, 3, 1}, clWhite);
    EXPECT_EQ(dst.Canvas().Pixel(0, 0), clYellow);
    EXPECT_EQ(dst.Canvas().Pixel(1, 0), clRed);
}

TEST(Canvas, MaskedDrawShowsThePictureOnlyWhereTheMaskIsBlack) {
    TBitmap picture(3, 1), mask(3, 1);
    picture.Canvas().SetPixel(0, 0, clRed);
    picture.Canvas().SetPixel(1, 0, clBlack); // black under white in the mask: a hole
    picture.Canvas().SetPixel(2, 0, clBlue);
    mask.Canvas().SetPixel(0, 0, clBlack);
    mask.Canvas().SetPixel(2, 0, clBlack);
    TBitmap dst(4, 1);
    dst.Canvas().Brush().SetColor(clYellow);
    dst.Canvas().FillRect({0, 0, 4, 1});
    dst.Canvas().Font().SetColor(clLime); // the text and background colours do not matter
    dst.Canvas().MaskedDraw(1, 0, picture, mask);
    EXPECT_EQ(dst.Canvas().Pixel(0, 0), clYellow);
    EXPECT_EQ(dst.Canvas().Pixel(1, 0), clRed);
    EXPECT_EQ(dst.Canvas().Pixel(2, 0), clYellow);
    EXPECT_EQ(dst.Canvas().Pixel(3, 0), clBlue);
    EXPECT_EQ(dst.Canvas().CopyMode(), cmSrcCopy);
    // A monochrome mask means the same.
    mask.SetMonochrome(true);
    dst.Canvas().FillRect({0, 0, 4, 1});
    dst.Canvas().MaskedDraw(0, 0, picture, mask);
    EXPECT_EQ(dst.Canvas().Pixel(1, 0), clYellow);
    EXPECT_EQ(dst.Canvas().Pixel(2, 0), clBlue);
}

TEST(Canvas, ALineFromFarOutsideReachesTheTarget) {
    TBitmap dst(3, 4);
    dst.Canvas().MoveTo(1, -(1 << 30));
    dst.Canvas().LineTo(1, 3);
    dst.Canvas().MoveTo(-(1 << 30), 3);
    dst.Canvas().LineTo(2, 2); // nearly flat: its one minor step lies half way
    EXPECT_EQ(dst.Canvas().Pixel(1, 0), clBlack);
    EXPECT_EQ(dst.Canvas().Pixel(1, 2), clBlack);
    EXPECT_EQ(dst.Canvas().Pixel(1, 3), clWhite);
    EXPECT_EQ(dst.Canvas().Pixel(0, 2), clBlack);
    EXPECT_EQ(dst.Canvas().Pixel(0, 3), clWhite);

    // Ends on opposite sides of the whole int range: the row is drawn, nothing overflows.
    TBitmap wide(3, 2);
    wide.Canvas().MoveTo(INT_MIN, 1);
    wide.Canvas().LineTo(INT_MAX, 1);
    wide.Canvas().Pen().SetStyle(psDot); // the dash phase walks the same distance
    wide.Canvas().MoveTo(INT_MAX, 0);
    wide.Canvas().LineTo(INT_MIN, 0);
    for (int x = 0; x < 3; ++x)
        EXPECT_EQ(wide.Canvas().Pixel(x, 1), clBlack) << x;
}

TEST(Canvas, CopiesShrinkInTheClassicStretchModes) {
    // Four source columns onto two: each destination pixel collects a run of two.
    TBitmap src(4, 1);
    const std::uint32_t columns[] = {0x00F0F0, 0x0FFF00, 0xF00F0F, 0xFF00F0};
    for (int x = 0; x < 4; ++x)
        src.ScanLine(0)[x] = columns[x];
    TBitmap dst(2, 1);
    // CopyRect uses the context's mode, BLACKONWHITE in a new one: the runs are ANDed.
    dst.Canvas().CopyRect({0, 0, 2, 1}, src.Canvas(), {0, 0, 4, 1});
    EXPECT_EQ(dst.Pixels().At(0, 0), columns[0] & columns[1]);
    EXPECT_EQ(dst.Pixels().At(1, 0), columns[2] & columns[3]);
    // StretchDraw keeps the last pixel of each run and leaves COLORONCOLOR selected.
    dst.Canvas().StretchDraw({0, 0, 2, 1}, src);
    EXPECT_EQ(dst.Pixels().At(0, 0), columns[1]);
    EXPECT_EQ(GetStretchBltMode(dst.Canvas().Handle()), COLORONCOLOR);
    // A shrink to one pixel leaves the last source pixel out: of 0..2 it keeps 1.
    dst.Canvas().CopyRect({1, 0, 2, 1}, src.Canvas(), {0, 0, 3, 1});
    EXPECT_EQ(dst.Pixels().At(1, 0), columns[1]);
}

TEST(Canvas, MonochromeBitmapsDrawInTheCanvasColours) {
    TBitmap mask(3, 1);
    mask.Canvas().SetPixel(1, 0, clBlack);
    mask.SetMonochrome(true);
    TBitmap dst(3, 1);
    TCanvas& c = dst.Canvas();
    c.Font().SetColor(clRed);
    c.Brush().SetColor(clBlue);
    c.Brush().SetStyle(bsClear);
    // Draw: black takes the font colour, white the brush colour even for a clear brush, and
    // the context's stretch mode stays.
    c.Draw(0, 0, mask);
    EXPECT_EQ(c.Pixel(0, 0), clBlue);
    EXPECT_EQ(c.Pixel(1, 0), clRed);
    EXPECT_EQ(GetStretchBltMode(c.Handle()), BLACKONWHITE);
    // A background colour set through the handle lasts until the brush changes.
    SetBkColor(c.Handle(), clLime);
    c.CopyRect({0, 0, 3, 1}, mask.Canvas(), {0, 0, 3, 1});
    EXPECT_EQ(c.Pixel(2, 0), clLime);
    c.Brush().SetStyle(bsSolid);
    c.CopyRect({0, 0, 3, 1}, mask.Canvas(), {0, 0, 3, 1});
    EXPECT_EQ(c.Pixel(2, 0), clBlue);
    EXPECT_EQ(c.Pixel(1, 0), clRed);
}

TEST(Canvas, ClipRegionLimitsDrawing) {
    TBitmap b(10, 10);
    auto clip = CreateEllipticRgn(0, 0, 11, 11);
    SelectClipRgn(b.Canvas().Handle(), clip);
    b.Canvas().Brush().SetColor(clBlack);
    b.Canvas().FillRect({0, 0, 10, 10});
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x)
            EXPECT_EQ(b.Canvas().Pixel(x, y) == clBlack, PtInRegion(clip, x, y)) << x << "," << y;
    EXPECT_EQ(b.Canvas().ClipRect(), Rect(0, 0, 10, 10));
}

TEST(Canvas, HostileCoordinatesAreClipped) {
    TBitmap b(64, 64);
    TCanvas& c = b.Canvas();
    c.MoveTo(-1000000, -1000000);
    c.LineTo(1000000, 1000000);
    // The diagonal crosses the whole picture.
    EXPECT_EQ(c.Pixel(32, 32), clBlack);
    EXPECT_EQ(c.Pixel(33, 32), clWhite);
    for (int width : {0, 1, 3, 1000}) {
        c.Pen().SetWidth(width);
        c.MoveTo(-1000000, -1000000);
        c.LineTo(1000000, 1000000);
        c.Ellipse(-1000000, -1000000, 1000000, 1000000);
        c.Rectangle(1000000, 1000000, -1000000, -1000000);
        c.Arc(-1000000, -5, 1000000, 70, 0, 0, 10, 70);
        c.RoundRect(-1000000, -1000000, 1000000, 1000000, 2000000, 50);
        const TPoint far[] = {{-1000000, 5}, {1000000, 60}, {30, -1000000}};
        c.Polygon(far);
        c.Polyline(far);
    }
    c.FillRect({2147483000, 0, -2147483000, 10});
    c.FrameRect({10, 10, 5, 5});
    TBitmap empty;
    c.Draw(0, 0, empty);
    c.StretchDraw({0, 0, 100000, 100000}, b);
    empty.Canvas().Ellipse(0, 0, 10, 10);
    empty.Canvas().TextOut(0, 0, "text");
}

TEST(Canvas, Frame3DDrawsBevelAndShrinksRect) {
    TBitmap b(6, 6);
    TRect r{0, 0, 6, 6};
    Frame3D(b.Canvas(), r, clWhite, clBlack, 1);
    EXPECT_EQ(r, Rect(1, 1, 5, 5));
    Frame3D(b.Canvas(), r = Rect(0, 0, 6, 6), clRed, clBlue, 1);
    EXPECT_EQ(b.Canvas().Pixel(0, 0), clRed);
    EXPECT_EQ(b.Canvas().Pixel(5, 0), clBlue);
    EXPECT_EQ(b.Canvas().Pixel(0, 5), clBlue);
    EXPECT_EQ(b.Canvas().Pixel(5, 5), clBlue);
    EXPECT_EQ(b.Canvas().Pixel(2, 2), clWhite);
}

TEST(Canvas, ToolsRaiseOnChangeAndAssign) {
    TPen pen;
    int changes = 0;
    pen.OnChange = [&](TObject*) { ++changes; };
    pen.SetWidth(3);
    pen.SetWidth(3);
    EXPECT_EQ(changes, 1);
    TPen other;
    other.SetColor(clRed);
    other.SetMode(pmXor);
    pen.Assign(other);
    EXPECT_EQ(pen.Color(), clRed);
    EXPECT_EQ(pen.Mode(), pmXor);
    EXPECT_EQ(pen.Width(), 1);
    TBrush brush;
    brush.SetStyle(bsClear);
    brush.SetColor(clRed);
    EXPECT_EQ(brush.Style(), bsSolid);
    EXPECT_THROW(brush.Assign(pen), EConvertError);
    TFont font;
    EXPECT_EQ(font.Size(), 8);
    font.SetSize(12);
    EXPECT_EQ(font.Height(), -16);
    EXPECT_EQ(PenModeToRop2(pmNotXor), R2_NOTXORPEN);
}
