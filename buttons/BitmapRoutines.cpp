#include "buttons/BitmapRoutines.h"
#include "buttons/RotateOffsets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

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

// Four pixels as one vector, for the block copies of the flips and quarter turns.
using TPixel4 = TPixel __attribute__((vector_size(16)));
constexpr TPixel4 kColourMask4 = {0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF};

TPixel4 Load4(const TPixel* p) {
    TPixel4 v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
void Store4(TPixel* p, TPixel4 v) {
    std::memcpy(p, &v, sizeof v);
}
TPixel4 Reversed4(TPixel4 v) {
    return __builtin_shufflevector(v, v, 3, 2, 1, 0);
}

// to[k] = from[k] (forwards) or from[-k] (backwards), k = 0..n-1, colour bytes only.
void CopyPixelRun(const TPixel* from, bool backwards, TPixel* to, int n) {
    int k = 0;
    if (backwards) {
        for (; k + 4 <= n; k += 4)
            Store4(to + k, Reversed4(Load4(from - k - 3)) & kColourMask4);
        for (; k < n; ++k)
            to[k] = from[-k] & 0xFFFFFF;
        return;
    }
    for (; k + 4 <= n; k += 4)
        Store4(to + k, Load4(from + k) & kColourMask4);
    for (; k < n; ++k)
        to[k] = from[k] & 0xFFFFFF;
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
        const std::ptrdiff_t stride = source.Stride();
        const std::ptrdiff_t step = ux + uy * stride;
        // Each destination row v reads a straight run of source pixels, u from low to high.
        std::vector<TTurnedRow> rows;
        for (int v = vLow; v <= vHigh; ++v) {
            const int x0 = sx + vx * v, y0 = sy + vy * v; // source of u = 0
            int low = uLow, high = uHigh;
            ClampToSource(x0, ux, source.Width(), low, high);
            ClampToSource(y0, uy, source.Height(), low, high);
            if (low <= high) rows.push_back({dest.Row(dy + v) + dx, x0 + y0 * stride, low, high});
        }
        const TPixel* pixels = source.Row(0);
        if (monochrome) {
            for (const TTurnedRow& r : rows)
                for (int u = r.low; u <= r.high; ++u)
                    r.to[u] = Stored(true, pixels[r.base + step * u]);
        } else if (step == 1 || step == -1) {
            for (const TTurnedRow& r : rows)
                CopyRun(pixels + r.base, step, r.to, r.low, r.high);
        } else {
            CopyColumns(pixels, step, rows);
        }
    }

    // One destination row's pixels, u in low..high, from source index base + step * u.
    struct TTurnedRow {
        TPixel* to;
        std::ptrdiff_t base;
        int low, high;
    };

    // A row read forwards (step 1) or backwards (step -1).
    static void CopyRun(const TPixel* from, std::ptrdiff_t step, TPixel* to, int low, int high) {
        CopyPixelRun(from + step * low, step < 0, to + low, high - low + 1);
    }

    // Four destination rows whose sources are four neighbouring columns, each reading the
    // columns low..high (a multiple of four of them) by 4 x 4 transposes.
    struct TBand {
        const TTurnedRow* rows;
        std::ptrdiff_t across; // +1 or -1
        int low, high;
    };

    // Rows that read source columns (step is a whole source row): bands of four rows are
    // copied by 4 x 4 transposes, the rest pixel by pixel.
    static void CopyColumns(const TPixel* pixels, std::ptrdiff_t step,
                            const std::vector<TTurnedRow>& rows) {
        auto copy = [&](const TTurnedRow& r, int first, int last) {
            for (int u = first; u <= last; ++u)
                r.to[u] = pixels[r.base + step * u] & 0xFFFFFF;
        };
        std::vector<TBand> bands;
        std::size_t k = 0;
        for (; k + 4 <= rows.size(); k += 4) {
            const TTurnedRow* band = &rows[k];
            const std::ptrdiff_t across = band[1].base - band[0].base;
            bool neighbours = across == 1 || across == -1;
            int low = band[0].low, high = band[0].high;
            for (int i = 1; i < 4; ++i) {
                neighbours = neighbours && band[i].base == band[0].base + i * across;
                low = std::max(low, band[i].low);
                high = std::min(high, band[i].high);
            }
            if (!neighbours || high - low < 3) {
                for (int i = 0; i < 4; ++i)
                    copy(band[i], band[i].low, band[i].high);
                continue;
            }
            const int end = low + (high - low + 1) / 4 * 4; // the transposed columns: low..end-1
            for (int i = 0; i < 4; ++i) {
                copy(band[i], band[i].low, low - 1);
                copy(band[i], end, band[i].high);
            }
            bands.push_back({band, across, low, end - 1});
        }
        for (; k < rows.size(); ++k)
            copy(rows[k], rows[k].low, rows[k].high);
        // Neighbouring bands that read the same columns the same way go together, kGroup at a
        // time (a turned rectangle gives nothing else).
        for (std::size_t first = 0; first < bands.size();) {
            std::size_t last = first + 1;
            while (last < bands.size() && last - first < kGroup &&
                   bands[last].low == bands[first].low && bands[last].high == bands[first].high &&
                   bands[last].across == bands[first].across)
                ++last;
            if (bands[first].across > 0)
                CopyBandGroup<false>(pixels, step, &bands[first], last - first);
            else
                CopyBandGroup<true>(pixels, step, &bands[first], last - first);
            first = last;
        }
    }

    static constexpr std::size_t kGroup = 8;
    static constexpr int kTile = 64;

    // Copies up to kGroup bands with the same columns, kTile columns at a time. Source rows
    // and destination rows lie a row of pixels apart, so the lines of a column share a few
    // cache sets and would push each other out if one were needed twice: each tile reads its
    // source rows four at a time, taking their pixels for every band at once, into a buffer,
    // and then writes each destination row's part in one run.
    template <bool backwards>
    static void CopyBandGroup(const TPixel* pixels, std::ptrdiff_t step, const TBand* group,
                              std::size_t count) {
        std::array<TPixel, 4 * kGroup * kTile> buffer; // destination row r at r * kTile
        for (int tile = group[0].low; tile <= group[0].high; tile += kTile) {
            const int width = std::min(kTile, group[0].high + 1 - tile); // a multiple of four
            for (int u = 0; u < width; u += 4)
                for (std::size_t b = 0; b < count; ++b) {
                    const TPixel* at = pixels + group[b].rows[0].base + step * (tile + u);
                    TransposeBlock<backwards>(backwards ? at - 3 : at, step,
                                              &buffer[4 * b * kTile + static_cast<std::size_t>(u)]);
                }
            for (std::size_t r = 0; r < 4 * count; ++r) {
                const TPixel* from = &buffer[r * kTile];
                TPixel* to = group[r / 4].rows[r % 4].to + tile;
                for (int u = 0; u < width; u += 4)
                    Store4(to + u, Load4(from + u));
            }
        }
    }

    // The 4 x 4 pixels at `at` (four source rows `step` apart) turned into four buffer rows
    // kTile apart, colour bytes only: buffer row i takes lane i of each source row, or lane
    // 3 - i when the band reads its columns backwards. Written out in full: at -O2 a loop over
    // an array of vectors would keep them in memory.
    template <bool backwards>
    static void TransposeBlock(const TPixel* at, std::ptrdiff_t step, TPixel* to) {
        const TPixel4 a = Load4(at), b = Load4(at + step), c = Load4(at + 2 * step),
                      d = Load4(at + 3 * step);
        const TPixel4 ab01 = __builtin_shufflevector(a, b, 0, 4, 1, 5);
        const TPixel4 ab23 = __builtin_shufflevector(a, b, 2, 6, 3, 7);
        const TPixel4 cd01 = __builtin_shufflevector(c, d, 0, 4, 1, 5);
        const TPixel4 cd23 = __builtin_shufflevector(c, d, 2, 6, 3, 7);
        const auto row = [to](int lane) { return to + kTile * (backwards ? 3 - lane : lane); };
        Store4(row(0), __builtin_shufflevector(ab01, cd01, 0, 1, 4, 5) & kColourMask4);
        Store4(row(1), __builtin_shufflevector(ab01, cd01, 2, 3, 6, 7) & kColourMask4);
        Store4(row(2), __builtin_shufflevector(ab23, cd23, 0, 1, 4, 5) & kColourMask4);
        Store4(row(3), __builtin_shufflevector(ab23, cd23, 2, 3, 6, 7) & kColourMask4);
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

// Rows are exchanged through a buffer of one row: three block copies.
void FlipBMP(TBitmap& Bitmap) {
    TPixelBuffer& pixels = Bitmap.Pixels();
    const std::size_t bytes = static_cast<std::size_t>(pixels.Width()) * sizeof(TPixel);
    std::vector<TPixel> held(static_cast<std::size_t>(pixels.Width()));
    for (int top = 0, bottom = pixels.Height() - 1; top < bottom; ++top, --bottom) {
        std::memcpy(held.data(), pixels.Row(top), bytes);
        std::memcpy(pixels.Row(top), pixels.Row(bottom), bytes);
        std::memcpy(pixels.Row(bottom), held.data(), bytes);
    }
    Bitmap.Changed();
}

// Each row is read backwards into a buffer and copied back.
void MirrorBMP(TBitmap& Bitmap) {
    TPixelBuffer& pixels = Bitmap.Pixels();
    const int W = pixels.Width();
    std::vector<TPixel> reversed(static_cast<std::size_t>(W));
    for (int y = 0; y < pixels.Height(); ++y) {
        CopyPixelRun(pixels.Row(y) + W - 1, true, reversed.data(), W);
        std::memcpy(pixels.Row(y), reversed.data(), static_cast<std::size_t>(W) * sizeof(TPixel));
    }
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
