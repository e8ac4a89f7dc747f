#include "componentbase/Gradient.h"

#include <algorithm>
#include <cstdlib>

namespace qv {

namespace {

// MulDiv with a 64-bit divisor (N + 1 of INT_MAX bands does not fit an int): a x b / c
// rounded half away from zero, -1 for c = 0 or a result beyond an int.
int MulDiv64(std::int64_t a, std::int64_t b, std::int64_t c) {
    if (c == 0) return -1;
    const std::int64_t product = a * b;
    std::int64_t quotient = product / c;
    if (2 * std::llabs(product % c) >= std::llabs(c))
        quotient += ((product < 0) != (c < 0)) ? -1 : 1;
    if (quotient < INT32_MIN || quotient > INT32_MAX) return -1;
    return static_cast<int>(quotient);
}

int Component(int start, int difference, int i, int divisor) {
    return ((MulDiv64(i, difference, divisor) + start) % 65536 + 65536) % 65536 & 0xFF;
}

void Fill(TCanvas& canvas, TColor color, const TRect& r) {
    canvas.Brush().SetColor(color);
    canvas.FillRect(r);
}

// Band i covers [MulDiv(i, extent, N + 1), MulDiv(i + 1, extent, N + 1)) along the extent.
struct TStraightBands {
    int extent;
    std::int64_t count; // N + 1

    int Start(std::int64_t i) const { return MulDiv64(i, extent, count); }
    // The band whose span holds position `at`: the last i with Start(i) <= at.
    std::int64_t BandAt(int at) const {
        std::int64_t low = 0, high = count - 1;
        while (low < high) {
            const std::int64_t mid = low + (high - low + 1) / 2;
            if (Start(mid) <= at)
                low = mid;
            else
                high = mid - 1;
        }
        return low;
    }
};

void PaintStraight(TCanvas& canvas, bool vertical, const TGradientColors& colors, int N,
                   const TRect& area) {
    if (N < 0) return;
    const int extent = vertical ? area.Height() : area.Width();
    const TStraightBands bands{extent, std::int64_t{N} + 1};
    auto stripe = [&](int from, int to) {
        return vertical ? TRect{area.left, area.top + from, area.right, area.top + to}
                        : TRect{area.left + from, area.top, area.left + to, area.bottom};
    };
    if (bands.count <= extent) {
        for (int i = 0; i <= N; ++i)
            Fill(canvas, BandColor(colors, i, N), stripe(bands.Start(i), bands.Start(i + 1)));
        return;
    }
    for (int at = 0; at < extent; ++at) {
        const auto i = static_cast<int>(bands.BandAt(at));
        if (bands.Start(i + 1) > at) Fill(canvas, BandColor(colors, i, N), stripe(at, at + 1));
    }
}

bool PaintCentre(TCanvas& canvas, const TGradientColors& colors, int bands,
                 const TGradientLayout& layout) {
    const int n = std::min({bands, layout.halfWidth, layout.halfHeight});
    if (n == 0) return false; // the frame width would divide by zero
    const int sx = std::max(layout.halfWidth / n, 1), sy = std::max(layout.halfHeight / n, 1);
    TRect r = layout.centre;
    for (int i = 0; i <= n; ++i) {
        const TColor color = BandColor(colors, i, n);
        if (i == n) {
            Fill(canvas, color, r);
            break;
        }
        const int sideTop = layout.fullHeightSides ? r.top : r.top + sy;
        const int sideBottom = layout.fullHeightSides ? r.bottom : r.bottom - sy;
        Fill(canvas, color, {r.left, r.top, r.right, r.top + sy});
        Fill(canvas, color, {r.left, sideTop, r.left + sx, sideBottom});
        Fill(canvas, color, {r.left, r.bottom - sy, r.right, r.bottom});
        Fill(canvas, color, {r.right - sx, sideTop, r.right, sideBottom});
        r = {r.left + sx, r.top + sy, r.right - sx, r.bottom - sy};
    }
    return true;
}

std::int16_t Byte(TColor c, int shift) {
    return static_cast<std::int16_t>((static_cast<std::uint32_t>(c) >> shift) & 0xFF);
}

} // namespace

TGradientColors GradientColors(TColor start, TColor end) {
    TGradientColors g;
    g.r0 = Byte(start, 0);
    g.g0 = Byte(start, 8);
    g.b0 = Byte(start, 16);
    g.dr = static_cast<std::int16_t>(Byte(end, 0) - g.r0);
    g.dg = static_cast<std::int16_t>(Byte(end, 8) - g.g0);
    g.db = static_cast<std::int16_t>(Byte(end, 16) - g.b0);
    return g;
}

TColor BandColor(const TGradientColors& c, int i, int divisor) {
    return RGB(Component(c.r0, c.dr, i, divisor), Component(c.g0, c.dg, i, divisor),
               Component(c.b0, c.db, i, divisor));
}

TGradientLayout TGradientLayout::Control(int width, int height) {
    const TRect all{0, 0, width, height};
    return {all, all, width / 2, height / 2, false};
}

TGradientLayout TGradientLayout::ButtonFace(int width, int height, int offset) {
    const int R = width - 1, B = height - 1;
    return {{offset, offset, offset + R, offset + B},
            {offset + 1, offset + 1, width + offset - 1, height + offset - 1},
            R / 2,
            B / 2,
            true};
}

bool PaintGradient(TCanvas& canvas, gradType type, const TGradientColors& colors, int bands,
                   const TGradientLayout& layout) {
    canvas.Brush().SetStyle(bsSolid);
    if (type == gCenter) return PaintCentre(canvas, colors, bands, layout);
    PaintStraight(canvas, type == gVert, colors, bands, layout.straight);
    return true;
}

} // namespace qv
