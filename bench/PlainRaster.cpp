#include "bench/PlainRaster.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <utility>

namespace qv::bench {

// Row by row, the columns an ellipse covers: centre and half-axes in half pixels.
struct TPlainRaster::TEllipseRows {
    std::int64_t cx2, cy2, a2, b2; // doubled centre and half-axes

    TEllipseRows(int left, int top, int right, int bottom)
        : cx2(left + right - 1), cy2(top + bottom - 1), a2(right - left - 1), b2(bottom - top - 1) {
    }
    // The first and last column of pixel row y, or first > last outside the ellipse.
    void At(int y, int& first, int& last) const {
        const std::int64_t dy2 = 2 * std::int64_t{y} - cy2;
        if (b2 <= 0 || std::llabs(dy2) > b2) {
            first = 1;
            last = 0;
            return;
        }
        const double t = 1.0 - static_cast<double>(dy2 * dy2) / static_cast<double>(b2 * b2);
        const auto half2 = static_cast<std::int64_t>(static_cast<double>(a2) * std::sqrt(t));
        first = static_cast<int>((cx2 - half2 + 1) / 2);
        last = static_cast<int>((cx2 + half2) / 2);
    }
};

void TPlainRaster::Span(int y, int x0, int x1, std::uint32_t color) {
    if (y < 0 || y >= m_height) return;
    x0 = std::max(x0, 0);
    x1 = std::min(x1, m_width - 1);
    static_assert(sizeof(wchar_t) == sizeof(std::uint32_t));
    if (x0 <= x1)
        std::wmemset(reinterpret_cast<wchar_t*>(Row(y) + x0), static_cast<wchar_t>(color),
                     static_cast<std::size_t>(x1 - x0 + 1));
}

void TPlainRaster::FillRect(int left, int top, int right, int bottom, std::uint32_t color) {
    for (int y = std::max(top, 0); y < std::min(bottom, m_height); ++y)
        Span(y, left, right - 1, color);
}

void TPlainRaster::Line(int x0, int y0, int x1, int y1, std::uint32_t color) {
    const int dx = std::abs(x1 - x0);
    const int dy = -std::abs(y1 - y0);
    const int sx = x0 < x1 ? 1 : -1;
    const int sy = y0 < y1 ? 1 : -1;
    int error = dx + dy;
    while (x0 != x1 || y0 != y1) {
        Plot(x0, y0, color);
        const int e2 = 2 * error;
        if (e2 >= dy) {
            error += dy;
            x0 += sx;
        }
        if (e2 <= dx) {
            error += dx;
            y0 += sy;
        }
    }
}

void TPlainRaster::WideLine(int x0, int y0, int x1, int y1, int width, std::uint32_t color) {
    const int before = (width - 1) / 2;
    for (int i = 0; i < width; ++i) // parallel lines across the major axis
        if (std::abs(x1 - x0) >= std::abs(y1 - y0))
            Line(x0, y0 - before + i, x1, y1 - before + i, color);
        else
            Line(x0 - before + i, y0, x1 - before + i, y1, color);
}

void TPlainRaster::Polyline(const int* xy, int count, std::uint32_t color) {
    for (int i = 0; i + 1 < count; ++i)
        Line(xy[2 * i], xy[2 * i + 1], xy[2 * i + 2], xy[2 * i + 3], color);
}

void TPlainRaster::Ellipse(int left, int top, int right, int bottom, std::uint32_t fill,
                           std::uint32_t outline) {
    const TEllipseRows rows(left, top, right, bottom);
    int prevFirst = 0, prevLast = -1;
    for (int y = top; y < bottom; ++y) {
        int first = 0, last = 0;
        rows.At(y, first, last);
        if (first > last) continue;
        Span(y, first, last, fill);
        // The outline joins this row's ends to the previous row's, so that it has no gaps.
        const bool edgeRow = prevFirst > prevLast || y == bottom - 1;
        if (edgeRow) {
            Span(y, first, last, outline);
        } else {
            Span(y, std::min(first, prevFirst - 1), std::max(first, prevFirst - 1), outline);
            Span(y, std::min(last, prevLast + 1), std::max(last, prevLast + 1), outline);
        }
        prevFirst = first;
        prevLast = last;
    }
}

namespace {

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
    const std::int64_t q = a / b;
    return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}
std::int64_t CeilDiv(std::int64_t a, std::int64_t b) {
    return -FloorDiv(-a, b);
}

// Narrows [lo, hi] to the columns x with k * x >= m (at least) or k * x <= m (at most).
void Narrow(std::int64_t k, std::int64_t m, bool atLeast, std::int64_t& lo, std::int64_t& hi) {
    if (k == 0) {
        if (atLeast ? m > 0 : m < 0) hi = lo - 1; // no column qualifies
        return;
    }
    if (atLeast == (k > 0))
        lo = std::max(lo, CeilDiv(m, k));
    else
        hi = std::min(hi, FloorDiv(m, k));
}

} // namespace

void TPlainRaster::Pie(int left, int top, int right, int bottom, int ax, int ay, int bx, int by,
                       std::uint32_t fill, std::uint32_t outline) {
    const TEllipseRows rows(left, top, right, bottom);
    const int cx = (left + right) / 2;
    const int cy = (top + bottom) / 2;
    // Counter-clockwise on screen (y down) from ray u to ray v: a row's columns x (from the
    // centre) with uy * x >= ux * y and vy * x <= vx * y.
    const std::int64_t ux = ax - cx, uy = ay - cy, vx = bx - cx, vy = by - cy;
    for (int y = std::max(top, 0); y < std::min(bottom, m_height); ++y) {
        int first = 0, last = 0;
        rows.At(y, first, last);
        std::int64_t lo = first - cx, hi = last - cx;
        Narrow(uy, ux * (y - cy), true, lo, hi);
        Narrow(vy, vx * (y - cy), false, lo, hi);
        if (lo > hi) continue;
        Span(y, static_cast<int>(cx + lo), static_cast<int>(cx + hi), fill);
        if (cx + lo == first) Plot(first, y, outline);
        if (cx + hi == last) Plot(last, y, outline);
    }
    const auto edgeOf = [&](std::int64_t dx, std::int64_t dy) {
        // The ray's end on the box's ellipse, scaled from the point given.
        const double a = (right - left) / 2.0, b = (bottom - top) / 2.0;
        const double k = 1.0 / std::sqrt(dx * dx / (a * a) + dy * dy / (b * b));
        return std::pair<int, int>{cx + static_cast<int>(std::lround(dx * k)),
                                   cy + static_cast<int>(std::lround(dy * k))};
    };
    const auto [aex, aey] = edgeOf(ux, uy);
    const auto [bex, bey] = edgeOf(vx, vy);
    Line(cx, cy, aex, aey, outline);
    Line(cx, cy, bex, bey, outline);
}

} // namespace qv::bench
