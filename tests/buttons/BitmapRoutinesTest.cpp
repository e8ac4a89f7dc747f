// The bitmap routines against plain per-pixel loops through the canvas, written here from
// the routines' definitions, on random bitmaps of odd and even sizes; and their edge cases.

#include "buttons/Qanimate.h"
#include "buttons/RotateOffsets.h"
#include "support/PixelEvidence.h"
#include "support/RotateByPixelCalls.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace qv;

namespace {

using test::kPaletteFlag;

// A bitmap that copies like a value, for keeping the picture before a routine ran.
struct Pic : TBitmap {
    Pic() = default;
    Pic(int width, int height) : TBitmap(width, height) {}
    Pic(const Pic& other) : TBitmap() { Assign(other); }
    explicit Pic(const TBitmap& other) { Assign(other); }
    Pic& operator=(const Pic& other) {
        Assign(other);
        return *this;
    }
};

const std::vector<std::pair<int, int>> kSizes = {{1, 1},   {2, 3},  {7, 5},   {8, 8},
                                                 {13, 10}, {16, 9}, {31, 17}, {10, 33}};

// A bitmap of random colours drawn from a small set, so that equal colours and greys occur.
Pic RandomBitmap(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<TColor> colors;
    for (int i = 0; i < 12; ++i)
        colors.push_back(static_cast<TColor>(random() & 0xFFFFFF));
    colors.push_back(RGB(50, 50, 50));
    colors.push_back(RGB(255, 255, 255));
    Pic bitmap(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            bitmap.Canvas().SetPixel(x, y, colors[random() % colors.size()]);
    return bitmap;
}

::testing::AssertionResult SamePixels(const TBitmap& actual, const TBitmap& expected,
                                      const std::string& name) {
    const long differing = test::CountDifferentPixels(actual.Pixels(), expected.Pixels());
    if (differing == 0) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << differing << " pixels differ; pictures written: "
           << test::WritePixelEvidence(std::string(QV_TEST_OUT) + "/buttons", name, actual.Pixels(),
                                       expected.Pixels());
}

std::string Name(const char* what, int w, int h) {
    return std::string(what) + "-" + std::to_string(w) + "x" + std::to_string(h);
}

// ---- the reference loops: one canvas read and write per pixel, x outer, y inner ----------

int ReferenceAmount(int percent) {
    return static_cast<int>(std::nearbyint(percent * 255 / 100.0)); // halves are exact here
}

template <class Change>
void ReferenceLoop(TBitmap& b, bool transparent, TColor transColor, Change&& change) {
    TCanvas& c = b.Canvas();
    for (int x = 0; x <= b.Width(); ++x)
        for (int y = 0; y <= b.Height(); ++y) {
            const TColor p = c.Pixel(x, y);
            if (transparent && p == transColor) continue;
            if (auto written = change(ColorToRGB(p))) c.SetPixel(x, y, *written);
        }
}

std::optional<TColor> Shifted(TColor p, int delta) {
    auto channel = [&](int v) { return std::clamp(v + delta, 0, 255); };
    return RGB(channel(GetRValue(p)), channel(GetGValue(p)), channel(GetBValue(p))) | kPaletteFlag;
}

void ReferenceDarken(TBitmap& b, int percent, bool transparent, TColor transColor) {
    const int amount = ReferenceAmount(percent);
    ReferenceLoop(b, transparent, transColor, [&](TColor p) { return Shifted(p, -amount); });
}

void ReferenceLighten(TBitmap& b, int percent, bool transparent, TColor transColor) {
    const int amount = ReferenceAmount(percent);
    ReferenceLoop(b, transparent, transColor, [&](TColor p) { return Shifted(p, amount); });
}

void ReferenceGrey(TBitmap& b, bool transparent, TColor transColor) {
    ReferenceLoop(b, transparent, transColor, [](TColor p) -> std::optional<TColor> {
        const int r = GetRValue(p), g = GetGValue(p), bl = GetBValue(p);
        if (r == g && bl == g) return std::nullopt;
        const int grey = static_cast<int>(std::nearbyint((r + g + bl) / 3.0));
        return RGB(grey, grey, grey) | kPaletteFlag;
    });
}

bool Seed(int x, int y) {
    const int m = x % 8;
    return (y % 2 == 1 && (m == 3 || m == 7)) || (y % 2 == 0 && (m == 1 || m == 5));
}

void ReferenceRaster(TBitmap& b, TColor color, TqRast rast, bool ofset) {
    TCanvas& c = b.Canvas();
    if (rast == Rast75) {
        for (int x = 0; x <= b.Width() - 2; ++x)
            for (int y = 0; y <= b.Height() - 2; ++y)
                if (Seed(x, y)) {
                    c.SetPixel(x, y, color);
                    c.SetPixel(x + 1, y, color);
                    c.SetPixel(x, y + 1, color);
                }
        return;
    }
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y) {
            const bool on = rast == Rast25 ? Seed(x, y) : (x + y) % 2 == 1;
            if (on != ofset) c.SetPixel(x, y, color);
        }
}

void ReferenceFlip(TBitmap& b) {
    const Pic copy(b);
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y)
            b.Canvas().SetPixel(x, y, PixelToColor(copy.Pixels().At(x, b.Height() - 1 - y)));
}

void ReferenceMirror(TBitmap& b) {
    const Pic copy(b);
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y)
            b.Canvas().SetPixel(x, y, PixelToColor(copy.Pixels().At(b.Width() - 1 - x, y)));
}

TColor ColorAt(TBitmap& b, int x, int y) {
    return b.Canvas().Pixel(x, y);
}

} // namespace

TEST(BitmapRoutines, AmountIsPercentTimes255HalvesToEvenAndSaturatesAbove100) {
    for (int percent = 0; percent <= 255; ++percent)
        EXPECT_EQ(PercentAmount(static_cast<std::uint8_t>(percent)), ReferenceAmount(percent))
            << percent;
    EXPECT_EQ(PercentAmount(50), 128);
    EXPECT_EQ(PercentAmount(90), 230);
    EXPECT_EQ(PercentAmount(30), 76);
    Pic b(1, 1);
    b.Canvas().SetPixel(0, 0, RGB(255, 255, 255));
    DarkenBMP(b, 101, false, 0);
    EXPECT_EQ(ColorAt(b, 0, 0), RGB(0, 0, 0));
}

TEST(BitmapRoutines, DarkenAndLightenEqualThePixelLoop) {
    unsigned seed = 1;
    for (auto [w, h] : kSizes)
        for (int percent : {10, 30, 50, 70, 90})
            for (bool transparent : {false, true}) {
                Pic actual = RandomBitmap(w, h, seed++);
                const TColor trans = ColorAt(actual, 0, 0);
                Pic expected = actual;
                DarkenBMP(actual, static_cast<std::uint8_t>(percent), transparent, trans);
                ReferenceDarken(expected, percent, transparent, trans);
                ASSERT_TRUE(SamePixels(actual, expected, Name("darken", w, h))) << percent;

                Pic lighter = RandomBitmap(w, h, seed++);
                Pic lighterExpected = lighter;
                LightenBMP(lighter, static_cast<std::uint8_t>(percent), transparent, trans);
                ReferenceLighten(lighterExpected, percent, transparent, trans);
                ASSERT_TRUE(SamePixels(lighter, lighterExpected, Name("lighten", w, h)));
            }
}

TEST(BitmapRoutines, DarkenLightenAndGreyEdgeCases) {
    Pic b(3, 1);
    b.Canvas().SetPixel(0, 0, RGB(100, 200, 30));
    b.Canvas().SetPixel(1, 0, RGB(9, 9, 9));
    DarkenBMP(b, 50, true, RGB(9, 9, 9));
    EXPECT_EQ(ColorAt(b, 0, 0), RGB(0, 72, 0));
    EXPECT_EQ(ColorAt(b, 1, 0), RGB(9, 9, 9)); // the transparent colour stays
    LightenBMP(b, 30, false, 0);
    EXPECT_EQ(ColorAt(b, 0, 0), RGB(76, 148, 76));
    // A transparent colour with flag bits never equals a pixel as read.
    DarkenBMP(b, 10, true, RGB(76, 148, 76) | kPaletteFlag);
    EXPECT_EQ(ColorAt(b, 0, 0), RGB(50, 122, 50));

    Pic g(4, 1);
    g.Canvas().SetPixel(0, 0, RGB(10, 20, 31));
    g.Canvas().SetPixel(1, 0, RGB(10, 20, 30));
    g.Canvas().SetPixel(2, 0, RGB(50, 50, 50));
    g.Canvas().SetPixel(3, 0, RGB(1, 2, 3));
    GreyBMP(g, true, RGB(1, 2, 3));
    EXPECT_EQ(ColorAt(g, 0, 0), RGB(20, 20, 20));
    EXPECT_EQ(ColorAt(g, 1, 0), RGB(20, 20, 20));
    EXPECT_EQ(ColorAt(g, 2, 0), RGB(50, 50, 50));
    EXPECT_EQ(ColorAt(g, 3, 0), RGB(1, 2, 3));
    GreyBMP(g, false, 0);
    EXPECT_EQ(ColorAt(g, 3, 0), RGB(2, 2, 2));
}

TEST(BitmapRoutines, GreyEqualsThePixelLoop) {
    unsigned seed = 100;
    for (auto [w, h] : kSizes)
        for (bool transparent : {false, true}) {
            Pic actual = RandomBitmap(w, h, seed++);
            const TColor trans = ColorAt(actual, w - 1, h - 1);
            Pic expected = actual;
            GreyBMP(actual, transparent, trans);
            ReferenceGrey(expected, transparent, trans);
            ASSERT_TRUE(SamePixels(actual, expected, Name("grey", w, h)));
        }
}

TEST(BitmapRoutines, RasterEqualsThePixelLoopForEveryDensityAndOffset) {
    unsigned seed = 200;
    for (auto [w, h] : kSizes)
        for (TqRast rast : {Rast25, Rast50, Rast75})
            for (bool ofset : {false, true}) {
                Pic actual = RandomBitmap(w, h, seed++);
                Pic expected = actual;
                RasterOfset = ofset;
                RasterBMP(actual, clBtnShadow, rast);
                RasterOfset = false;
                ReferenceRaster(expected, clBtnShadow, rast, ofset);
                ASSERT_TRUE(SamePixels(actual, expected, Name("raster", w, h)))
                    << rast << " " << ofset;
            }
}

TEST(BitmapRoutines, RasterEdgeCases) {
    auto painted = [](int w, int h, TqRast rast, bool ofset) {
        Pic b(w, h);
        b.Canvas().Brush().SetColor(0);
        b.Canvas().FillRect({0, 0, w, h});
        RasterOfset = ofset;
        RasterBMP(b, RGB(255, 0, 0), rast);
        RasterOfset = false;
        std::vector<std::pair<int, int>> points;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (b.Canvas().Pixel(x, y) != 0) points.emplace_back(x, y);
        return points;
    };
    using P = std::vector<std::pair<int, int>>;
    EXPECT_EQ(painted(8, 2, Rast25, false), (P{{1, 0}, {5, 0}, {3, 1}, {7, 1}}));
    EXPECT_EQ(painted(8, 2, Rast25, true).size(), 12u);
    EXPECT_EQ(painted(2, 2, Rast50, false), (P{{1, 0}, {0, 1}}));
    EXPECT_EQ(painted(2, 2, Rast50, true), (P{{0, 0}, {1, 1}}));
    // Rast75 ignores the offset; its seeds stop one short of the last column and row.
    EXPECT_EQ(painted(8, 2, Rast75, true), painted(8, 2, Rast75, false));
    EXPECT_EQ(painted(8, 2, Rast75, false), (P{{1, 0}, {2, 0}, {5, 0}, {6, 0}, {1, 1}, {5, 1}}));
}

TEST(BitmapRoutines, RotateEqualsThePixelLoopForAnyAngleAndSizes) {
    unsigned seed = 300;
    const std::vector<std::pair<int, int>> destSizes = {{1, 1}, {2, 2},  {3, 2}, {8, 8},
                                                        {9, 7}, {6, 11}, {16, 5}};
    for (auto [sw, sh] : kSizes)
        for (auto [dw, dh] : destSizes)
            for (int angle : {0, 90, 180, 270, 30, 45, -60, 135, 400, -90}) {
                Pic source = RandomBitmap(sw, sh, seed++);
                Pic actual = RandomBitmap(dw, dh, seed++);
                Pic expected = actual;
                BMPRotate(source, actual, angle);
                test::RotateByPixelCalls(source, expected, angle);
                ASSERT_TRUE(SamePixels(actual, expected, Name("rotate", dw, dh)))
                    << sw << "x" << sh << " by " << angle;
            }
}

TEST(BitmapRoutines, RotateOntoItselfReadsWhatEarlierStepsWrote) {
    unsigned seed = 400;
    for (auto [w, h] : kSizes)
        for (int angle : {0, 90, 180, 33}) {
            Pic actual = RandomBitmap(w, h, seed++);
            Pic expected = actual;
            BMPRotate(actual, actual, angle);
            test::RotateByPixelCalls(expected, expected, angle);
            ASSERT_TRUE(SamePixels(actual, expected, Name("rotate-self", w, h))) << angle;
        }
}

// The quarter-turn copy relies on this for every (i, j) it covers.
// Larger bitmaps, where the quarter turns copy whole runs and 4 x 4 blocks: the blocks'
// edges (rows clipped differently, odd widths) against the plain loop. 150 x 133 turns in
// several tiles of columns, the last one partial, with bands left over after the groups.
TEST(BitmapRoutines, QuarterTurnsOfLargerBitmapsEqualThePixelLoop) {
    unsigned seed = 900;
    const std::vector<std::pair<int, int>> sizes = {
        {37, 29}, {64, 48}, {23, 40}, {50, 50}, {150, 133}};
    for (auto [sw, sh] : sizes)
        for (auto [dw, dh] : sizes)
            for (int angle : {0, 90, 180, 270}) {
                Pic source = RandomBitmap(sw, sh, seed++);
                Pic actual = RandomBitmap(dw, dh, seed++);
                Pic expected = actual;
                BMPRotate(source, actual, angle);
                test::RotateByPixelCalls(source, expected, angle);
                ASSERT_TRUE(SamePixels(actual, expected, Name("rotate-large", dw, dh)))
                    << sw << "x" << sh << " by " << angle;
            }
}

// Flip and mirror of odd and even widths against the pixel loops (the rows are copied in
// blocks of four pixels with a tail).
TEST(BitmapRoutines, FlipAndMirrorOfWideRowsEqualThePixelLoop) {
    unsigned seed = 950;
    for (auto [w, h] : {std::pair{37, 5}, std::pair{64, 4}, std::pair{3, 9}, std::pair{130, 7}}) {
        Pic flipped = RandomBitmap(w, h, seed++);
        Pic flippedExpected = flipped;
        FlipBMP(flipped);
        ReferenceFlip(flippedExpected);
        ASSERT_TRUE(SamePixels(flipped, flippedExpected, Name("flip-wide", w, h)));
        Pic mirrored = RandomBitmap(w, h, seed++);
        Pic mirroredExpected = mirrored;
        MirrorBMP(mirrored);
        ReferenceMirror(mirroredExpected);
        ASSERT_TRUE(SamePixels(mirrored, mirroredExpected, Name("mirror-wide", w, h)));
    }
}

TEST(BitmapRoutines, QuarterTurnOffsetsAreExactTurnsUpToTheCoveredRadius) {
    for (int i = 0; i <= kExactQuarterTurnRadius; ++i)
        for (int j = 0; j <= kExactQuarterTurnRadius; ++j) {
            int x = i, y = j;
            for (int angle = 0; angle < 360; angle += 90) {
                const TRotateOffset o = RotateOffset(i, j, angle);
                if (o.ox != x || o.oy != y)
                    FAIL() << "(" << i << ", " << j << ") by " << angle << ": (" << o.ox << ", "
                           << o.oy << ")";
                const int turned = -y;
                y = x;
                x = turned;
            }
        }
}

TEST(BitmapRoutines, RotateEdgeCases) {
    Pic source = RandomBitmap(8, 8, 7);
    Pic dest(8, 8);
    dest.Canvas().Brush().SetColor(RGB(1, 2, 3));
    dest.Canvas().FillRect({0, 0, 8, 8});
    BMPRotate(source, dest, 0);
    for (int k = 0; k < 8; ++k) {
        EXPECT_EQ(ColorAt(dest, k, 0), RGB(1, 2, 3)); // row 0 and column 0 are not written
        EXPECT_EQ(ColorAt(dest, 0, k), RGB(1, 2, 3));
    }
    for (int y = 1; y < 8; ++y)
        for (int x = 1; x < 8; ++x)
            ASSERT_EQ(ColorAt(dest, x, y), ColorAt(source, x, y));

    // A quarter turn anticlockwise: straight below the centre lands straight right of it.
    Pic marked(9, 9);
    marked.Canvas().SetPixel(4, 7, RGB(255, 0, 0));
    Pic turned(9, 9);
    BMPRotate(marked, turned, 90);
    EXPECT_EQ(ColorAt(turned, 7, 4), RGB(255, 0, 0));

    // Empty bitmaps on either side: nothing written, nothing read.
    Pic empty;
    Pic untouched = dest;
    BMPRotate(empty, dest, 45);
    EXPECT_TRUE(SamePixels(dest, untouched, "rotate-empty-source"));
    BMPRotate(dest, empty, 45);
    EXPECT_TRUE(empty.Empty());
    // A 180-degree turn is not a flip on both axes: the centre of an even size moves.
    Pic half = source, flipped = source;
    BMPRotate(source, half, 180);
    FlipBMP(flipped);
    MirrorBMP(flipped);
    EXPECT_GT(test::CountDifferentPixels(half.Pixels(), flipped.Pixels()), 0);
}

TEST(BitmapRoutines, RotateOfAWideStripDoesNotWalkTheWholeSquare) {
    Pic source(1, 1);
    source.Canvas().SetPixel(0, 0, RGB(0, 0, 255));
    Pic strip(1 << 22, 1); // R = 2^21 - 1: the full square would never end
    BMPRotate(source, strip, 45);
    EXPECT_EQ(ColorAt(strip, 1 << 21, 0), RGB(0, 0, 255)); // the centre
    EXPECT_EQ(ColorAt(strip, (1 << 21) + 1, 0), RGB(255, 255, 255));
}

TEST(BitmapRoutines, FlipAndMirrorTurnThePictureAndTwiceRestoreIt) {
    unsigned seed = 500;
    for (auto [w, h] : kSizes) {
        const Pic original = RandomBitmap(w, h, seed++);
        Pic flipped = original, expected = original;
        FlipBMP(flipped);
        ReferenceFlip(expected);
        ASSERT_TRUE(SamePixels(flipped, expected, Name("flip", w, h)));
        FlipBMP(flipped);
        ASSERT_TRUE(SamePixels(flipped, original, Name("flip-twice", w, h)));

        Pic mirrored = original, mirroredExpected = original;
        MirrorBMP(mirrored);
        ReferenceMirror(mirroredExpected);
        ASSERT_TRUE(SamePixels(mirrored, mirroredExpected, Name("mirror", w, h)));
        MirrorBMP(mirrored);
        ASSERT_TRUE(SamePixels(mirrored, original, Name("mirror-twice", w, h)));
    }
}

TEST(BitmapRoutines, ReplaceColorEqualsThePixelLoop) {
    unsigned seed = 600;
    for (auto [w, h] : kSizes) {
        Pic actual = RandomBitmap(w, h, seed++);
        const TColor old = ColorAt(actual, w / 2, h / 2);
        Pic expected = actual;
        ReplaceColor(actual, old, clBtnShadow);
        for (int x = 0; x < w; ++x)
            for (int y = 0; y < h; ++y)
                if (ColorAt(expected, x, y) == old) expected.Canvas().SetPixel(x, y, clBtnShadow);
        ASSERT_TRUE(SamePixels(actual, expected, Name("replace", w, h)));
    }
}

TEST(BitmapRoutines, TransparentBltLeavesTheKeyColourOutAndTheBitmapAlone) {
    unsigned seed = 700;
    for (auto [w, h] : kSizes)
        for (TPoint at : {TPoint{3, 2}, TPoint{-4, -3}, TPoint{30, 25}}) {
            const Pic bitmap = RandomBitmap(w, h, seed++);
            Pic drawn = bitmap;
            const TColor key = ColorAt(drawn, 0, 0);
            Pic actual = RandomBitmap(36, 30, seed++);
            Pic expected = actual;
            TransparentBlt(actual.Canvas(), drawn, at.x, at.y, key);
            for (int u = 0; u < w; ++u)
                for (int v = 0; v < h; ++v) {
                    const TColor q = PixelToColor(bitmap.Pixels().At(u, v));
                    if (q != key) expected.Canvas().SetPixel(at.x + u, at.y + v, q);
                }
            ASSERT_TRUE(SamePixels(actual, expected, Name("transparent-blt", w, h)));
            ASSERT_TRUE(SamePixels(drawn, bitmap, Name("transparent-blt-source", w, h)));
        }
    // A system colour as the key is resolved; a key found nowhere gives a plain copy.
    Pic face(2, 1);
    face.Canvas().SetPixel(0, 0, clBtnFace);
    face.Canvas().SetPixel(1, 0, RGB(1, 1, 1));
    Pic target(2, 1);
    TransparentBlt(target.Canvas(), face, 0, 0, clBtnFace);
    EXPECT_EQ(ColorAt(target, 0, 0), RGB(255, 255, 255));
    EXPECT_EQ(ColorAt(target, 1, 0), RGB(1, 1, 1));
    TransparentBlt(target.Canvas(), face, 0, 0, RGB(7, 7, 7));
    EXPECT_EQ(ColorAt(target, 0, 0), ColorToRGB(clBtnFace));
}

TEST(BitmapRoutines, MonochromeBitmapsStayBlackAndWhite) {
    Pic mono = RandomBitmap(9, 6, 800);
    mono.SetMonochrome(true);
    auto onlyBlackAndWhite = [&] {
        for (int y = 0; y < mono.Height(); ++y)
            for (int x = 0; x < mono.Width(); ++x) {
                const TColor p = ColorAt(mono, x, y);
                if (p != 0 && p != RGB(255, 255, 255)) return false;
            }
        return true;
    };
    mono.Canvas().SetPixel(0, 0, RGB(255, 255, 255));
    LightenBMP(mono, 0, false, 0); // white stays white, black stays black
    EXPECT_EQ(ColorAt(mono, 0, 0), RGB(255, 255, 255));
    DarkenBMP(mono, 50, false, 0); // white - 128 = 127 x 3 = 381 < 383: black
    EXPECT_EQ(ColorAt(mono, 0, 0), 0);
    EXPECT_TRUE(onlyBlackAndWhite());
    RasterBMP(mono, RGB(128, 128, 127), Rast50); // 383: white
    EXPECT_EQ(ColorAt(mono, 1, 0), RGB(255, 255, 255));
    ReplaceColor(mono, 0, RGB(200, 10, 10)); // 220: black
    EXPECT_TRUE(onlyBlackAndWhite());
    Pic colour = RandomBitmap(9, 6, 801);
    BMPRotate(colour, mono, 30);
    EXPECT_TRUE(onlyBlackAndWhite());
}
