#include "buttons/BitmapRoutines.h"
#include "buttons/RotateOffsets.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qv {

bool RasterOfset = false;

namespace {

using TPixel = std::uint32_t;

TPixel Red(TPixel p) {
    return (p >> 16) & 0xFF;
}
TPixel Green(TPixel p) {
    return (p >> 8) & 0xFF;
}
TPixel Blue(TPixel p) {
    return p & 0xFF;
}
TPixel MakePixel(TPixel r, TPixel g, TPixel b) {
    return (r << 16) | (g << 8) | b;
}

// The pixel a bitmap holds after `pixel` is written to it: on a monochrome bitmap the nearer
// of black and white.
TPixel Stored(bool monochrome, TPixel pixel) {
    if (!monochrome) return pixel & 0xFFFFFF;
    return Red(pixel) + Green(pixel) + Blue(pixel) >= 383 ? 0xFFFFFF : 0;
}

// The pixel a colour is drawn with (system colours resolved, flag bytes dropped).
TPixel DrawnPixel(TColor color) {
    return ColorToPixel(ColorToDrawRGB(color));
}

// Calls `visit(pixel)` for every pixel of the bitmap, then tells the bitmap it changed.
template <class Visit> void ForEachPixel(TBitmap& bitmap, Visit&& visit) {
    TPixelBuffer& pixels = bitmap.Pixels();
    for (int y = 0; y < pixels.Height(); ++y) {
        TPixel* row = pixels.Row(y);
        std::for_each(row, row + pixels.Width(), visit);
    }
    bitmap.Changed();
}

// Applies `table` to each channel of every pixel, skipping TransColor when Transparent.
void MapChannels(TBitmap& bitmap, const std::array<TPixel, 256>& table, bool transparent,
                 TColor transColor) {
    const bool mono = bitmap.Monochrome();
    ForEachPixel(bitmap, [&](TPixel& p) {
        if (transparent && PixelToColor(p) == transColor) return;
        p = Stored(mono, MakePixel(table[Red(p)], table[Green(p)], table[Blue(p)]));
    });
}

bool IsSeed(int x, int y) {
    return x % 4 == ((y & 1) != 0 ? 3 : 1);
}

// Fills the pixels of `pixels` for which `painted(x, y)` holds with `pixel`.
template <class Painted> void PaintWhere(TPixelBuffer& pixels, TPixel pixel, Painted&& painted) {
    for (int y = 0; y < pixels.Height(); ++y) {
        TPixel* row = pixels.Row(y);
        for (int x = 0; x < pixels.Width(); ++x)
            if (painted(x, y)) row[x] = pixel;
    }
}

// Rast75: each seed inside (0..W-2, 0..H-2) with its right and lower neighbours.
void PaintRast75(TPixelBuffer& pixels, TPixel pixel) {
    for (int y = 0; y + 1 < pixels.Height(); ++y)
        for (int x = 0; x + 1 < pixels.Width(); ++x)
            if (IsSeed(x, y)) pixels.At(x, y) = pixels.At(x + 1, y) = pixels.At(x, y + 1) = pixel;
}

// ---- rotation ------------------------------------------------------------------------------

struct TRotation {
    const TPixelBuffer& source;
    TPixelBuffer& dest;
    bool monochrome;
    int sx, sy, dx, dy, R;

    TRotation(const TPixelBuffer& s, TPixelBuffer& d, bool mono)
        : source(s), dest(d), monochrome(mono), sx(s.Width() / 2), sy(s.Height() / 2),
          dx(d.Width() / 2), dy(d.Height() / 2), R(std::max(d.Width(), d.Height()) / 2 - 1) {}

    void Copy(int fromX, int fromY, int toX, int toY) {
        if (!source.Contains(fromX, fromY) || !dest.Contains(toX, toY)) return;
        dest.At(toX, toY) = Stored(monochrome, source.At(fromX, fromY));
    }

    // The largest j for which one of the four destination points of (i, j) lies inside
    // Dest, or -1: larger j write nothing, so leaving them out changes no pixel.
    int LastUsefulJ(int i) const {
        const int W = dest.Width(), H = dest.Height();
        int last = -1;
        if (i <= W - 1 - dx) last = std::max(last, H - 1 - dy); // (dx + i, dy + j)
        if (i <= dx) last = std::max(last, dy);                 // (dx - i, dy - j)
        if (i <= dy) last = std::max(last, W - 1 - dx);         // (dx + j, dy - i)
        if (i <= H - 1 - dy) last = std::max(last, dx);         // (dx - j, dy + i)
        return std::min(last, R);
    }

    // The defined loop: four copies per (i, j), in order, a later one winning.
    void Plain(int angle) {
        for (int i = 0; i <= R; ++i) {
            const int lastJ = LastUsefulJ(i);
            for (int j = 0; j <= lastJ; ++j) {
                const TRotateOffset o = RotateOffset(i, j, angle);
                Copy(sx + o.ox, sy + o.oy, dx + i, dy + j);
                Copy(sx - o.ox, sy - o.oy, dx - i, dy - j);
                Copy(sx + o.oy, sy - o.ox, dx + j, dy - i);
                Copy(sx - o.oy, sy + o.ox, dx - j, dy + i);
            }
        }
    }

    // Quarter turns: every destination pixel (dx + u, dy + v) of the square takes the source
    // pixel at (sx, sy) + turn(u, v), whatever (i, j) writes it, so each is written once.
    void QuarterTurns(int quarters) {
        // turn(u, v) = (ux * u + vx * v, uy * u + vy * v)
        static constexpr int kTurns[4][4] = {
            {1, 0, 0, 1}, {0, 1, -1, 0}, {-1, 0, 0, -1}, {0, -1, 1, 0}};
        const auto [ux, uy, vx, vy] = kTurns[quarters];
        const int uLow = std::max(-R, -dx), uHigh = std::min(R, dest.Width() - 1 - dx);
        const int vLow = std::max(-R, -dy), vHigh = std::min(R, dest.Height() - 1 - dy);
        for (int v = vLow; v <= vHigh; ++v) {
            const int x0 = sx + vx * v, y0 = sy + vy * v; // source of u = 0
            int low = uLow, high = uHigh;
            ClampToSource(x0, ux, source.Width(), low, high);
            ClampToSource(y0, uy, source.Height(), low, high);
            if (low > high) continue;
            const std::ptrdiff_t stride = source.Stride();
            const std::ptrdiff_t step = ux + uy * stride;
            std::ptrdiff_t from = (x0 + ux * low) + (y0 + uy * low) * stride;
            const TPixel* pixels = source.Row(0);
            TPixel* to = dest.Row(dy + v) + dx;
            for (int u = low; u <= high; ++u, from += step)
                to[u] = Stored(monochrome, pixels[from]);
        }
    }

    // Narrows [low, high] to the u for which base + step * u lies in 0..size-1.
    static void ClampToSource(int base, int step, int size, int& low, int& high) {
        if (step == 0) {
            if (base < 0 || base >= size) high = low - 1;
        } else if (step > 0) {
            low = std::max(low, -base);
            high = std::min(high, size - 1 - base);
        } else {
            low = std::max(low, base - (size - 1));
            high = std::min(high, base);
        }
    }
};

} // namespace

TRotateOffset RotateOffset(int i, int j, int Angle) {
    constexpr double kRadiansPerDegree = 0.017453292519943295;
    constexpr double kHalfPi = 1.5707963267948966;
    const double a = Angle * kRadiansPerDegree;
    const double theta = (i == 0 ? kHalfPi : std::atan(static_cast<double>(j) / i)) + a;
    const double d =
        std::nearbyint(std::sqrt(static_cast<double>(i) * i + static_cast<double>(j) * j));
    return {static_cast<int>(std::nearbyint(std::cos(theta) * d)),
            static_cast<int>(std::nearbyint(std::sin(theta) * d))};
}

int PercentAmount(std::uint8_t Percent) {
    const int hundredths = Percent * 51; // Percent x 2.55 = Percent x 51 / 20
    int amount = hundredths / 20;
    const int rest = hundredths % 20;
    if (rest > 10 || (rest == 10 && amount % 2 != 0)) ++amount;
    return amount;
}

void DarkenBMP(TBitmap& Bitmap, std::uint8_t Percent, bool Transparent, TColor TransColor) {
    const int amount = PercentAmount(Percent);
    std::array<TPixel, 256> table{};
    for (int v = 0; v < 256; ++v)
        table[v] = static_cast<TPixel>(std::max(v - amount, 0));
    MapChannels(Bitmap, table, Transparent, TransColor);
}

void LightenBMP(TBitmap& Bitmap, std::uint8_t Percent, bool Transparent, TColor TransColor) {
    const int amount = PercentAmount(Percent);
    std::array<TPixel, 256> table{};
    for (int v = 0; v < 256; ++v)
        table[v] = static_cast<TPixel>(std::min(v + amount, 255));
    MapChannels(Bitmap, table, Transparent, TransColor);
}

void GreyBMP(TBitmap& Bitmap, bool Transparent, TColor TransColor) {
    const bool mono = Bitmap.Monochrome();
    ForEachPixel(Bitmap, [&](TPixel& p) {
        if (Transparent && PixelToColor(p) == TransColor) return;
        if (Red(p) == Green(p) && Blue(p) == Green(p)) return;
        // The mean rounded to nearest; a sum of three integers never falls on a half.
        const TPixel g = (Red(p) + Green(p) + Blue(p) + 1) / 3;
        p = Stored(mono, MakePixel(g, g, g));
    });
}

void RasterBMP(TBitmap& Bitmap, TColor Color, TqRast Rast) {
    const TPixel pixel = Stored(Bitmap.Monochrome(), DrawnPixel(Color));
    TPixelBuffer& pixels = Bitmap.Pixels();
    const bool inverted = RasterOfset;
    switch (Rast) {
    case Rast25:
        PaintWhere(pixels, pixel, [&](int x, int y) { return IsSeed(x, y) != inverted; });
        break;
    case Rast50:
        PaintWhere(pixels, pixel, [&](int x, int y) { return ((x + y) % 2 != 0) != inverted; });
        break;
    case Rast75:
        PaintRast75(pixels, pixel);
        break;
    }
    Bitmap.Changed();
}

void BMPRotate(TBitmap& Source, TBitmap& Dest, int Angle) {
    if (Source.Empty() || Dest.Empty()) return; // every read or every write would miss
    TRotation rotation(Source.Pixels(), Dest.Pixels(), Dest.Monochrome());
    const bool quarterTurn = Angle == 0 || Angle == 90 || Angle == 180 || Angle == 270;
    if (&Source != &Dest && quarterTurn && rotation.R <= kExactQuarterTurnRadius)
        rotation.QuarterTurns(Angle / 90);
    else
        rotation.Plain(Angle);
    Dest.Changed();
}

void FlipBMP(TBitmap& Bitmap) {
    TPixelBuffer& pixels = Bitmap.Pixels();
    const int W = pixels.Width();
    for (int top = 0, bottom = pixels.Height() - 1; top < bottom; ++top, --bottom)
        std::swap_ranges(pixels.Row(top), pixels.Row(top) + W, pixels.Row(bottom));
    Bitmap.Changed();
}

void MirrorBMP(TBitmap& Bitmap) {
    TPixelBuffer& pixels = Bitmap.Pixels();
    for (int y = 0; y < pixels.Height(); ++y)
        std::reverse(pixels.Row(y), pixels.Row(y) + pixels.Width());
    Bitmap.Changed();
}

void ReplaceColor(TBitmap& Bitmap, TColor OldColor, TColor NewColor) {
    const TPixel oldPixel = DrawnPixel(OldColor);
    const TPixel newPixel = Stored(Bitmap.Monochrome(), DrawnPixel(NewColor));
    ForEachPixel(Bitmap, [&](TPixel& p) {
        if ((p & 0xFFFFFF) == oldPixel) p = newPixel;
    });
}

void TransparentBlt(TCanvas& Canvas, TBitmap& Bitmap, int X, int Y, TColor TransColor) {
    const int w = Bitmap.Width(), h = Bitmap.Height();
    Canvas.Handle()->TransparentBlt(X, Y, w, h, Bitmap.Pixels(), 0, 0, w, h,
                                    DrawnPixel(TransColor));
}

} // namespace qv
