// Pen strokes: one-pixel lines (solid and dashed, Bresenham with the classic octant bias)
// and wide lines (TWidePen) collected as spans.

#include "DeviceContext.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace qv {

namespace {

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
    const std::int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}
std::int64_t CeilDiv(std::int64_t a, std::int64_t b) {
    return -FloorDiv(-a, b);
}

// The steps k in [0, length) whose coordinate start + k * dir lies in [lo, hi).
bool StepRange(int start, int dir, std::int64_t length, int lo, int hi, std::int64_t& first,
               std::int64_t& last) {
    std::int64_t a = 0, b = 0;
    if (dir > 0) {
        a = static_cast<std::int64_t>(lo) - start;
        b = static_cast<std::int64_t>(hi) - start;
    } else {
        a = static_cast<std::int64_t>(start) - hi + 1;
        b = static_cast<std::int64_t>(start) - lo + 1;
    }
    a = std::max<std::int64_t>(a, 0);
    b = std::min<std::int64_t>(b, length);
    if (a >= b) return false;
    first = a;
    last = b;
    return true;
}

// Walks the one-pixel line from `from` (drawn) to `to` (not drawn) inside `window` and calls
// plot(x, y, k) for each visible pixel, k being its step number along the line.
template <class Plot> void WalkLine(TPoint from, TPoint to, const TRect& window, Plot&& plot) {
    // In 64 bits: the ends of a line may lie on opposite sides of the whole int range.
    const std::int64_t dx = std::int64_t{to.x} - from.x;
    const std::int64_t dy = std::int64_t{to.y} - from.y;
    const std::int64_t adx = std::abs(dx);
    const std::int64_t ady = std::abs(dy);
    const int xInc = dx > 0 ? 1 : -1;
    const int yInc = dy > 0 ? 1 : -1;
    if (dx == 0 && dy == 0) return;
    const bool xMajor = adx > ady;
    const std::int64_t length = xMajor ? adx : ady;
    // Octants 3, 5, 6 and 8 (counting clockwise from +x) round their half steps the other way.
    const bool bias =
        (dy > 0 && dx < 0 && adx <= ady) || (dy < 0 && dx < 0) || (dy < 0 && dx > 0 && adx > ady);
    const std::int64_t major0 = xMajor ? from.x : from.y;
    const int majorInc = xMajor ? xInc : yInc;
    const int minor0 = xMajor ? from.y : from.x;
    const int minorInc = xMajor ? yInc : xInc;
    const int minorLo = xMajor ? window.top : window.left;
    const int minorHi = xMajor ? window.bottom : window.right;
    std::int64_t first = 0, last = 0;
    if (!StepRange(major0, majorInc, length, xMajor ? window.left : window.top,
                   xMajor ? window.right : window.bottom, first, last))
        return;
    const std::int64_t dMajor = xMajor ? adx : ady;
    const std::int64_t dMinor = xMajor ? ady : adx;
    // Minor steps taken before step `first`, and the error term at that step (in 64 bits: `first`
    // passes 2^30 for a line that starts far outside the target).
    const std::int64_t taken =
        dMinor == 0 ? 0 : CeilDiv(2 * dMinor * first - dMajor + bias, 2 * dMajor);
    std::int64_t err = 2 * dMinor - dMajor + 2 * dMinor * first - 2 * taken * dMajor;
    std::int64_t minor = minor0 + taken * minorInc;
    for (std::int64_t k = first; k < last; ++k) {
        if (minor >= minorLo && minor < minorHi) {
            const auto major = static_cast<int>(major0 + k * majorInc);
            if (xMajor)
                plot(major, static_cast<int>(minor), k);
            else
                plot(static_cast<int>(minor), major, k);
        } else if ((minorInc > 0 && minor >= minorHi) || (minorInc < 0 && minor < minorLo)) {
            break;
        }
        if (err + bias > 0) {
            minor += minorInc;
            err += 2 * dMinor - 2 * dMajor;
        } else {
            err += 2 * dMinor;
        }
    }
}

std::int64_t Distance(int a, int b) {
    return std::abs(std::int64_t{b} - a);
}

// Whether every pixel a one-pixel line from `from` to `to` draws lies in `bounds`: `to` is left
// out along the major axis, so the line ends one major step short of it, where its minor
// coordinate may already be that of `to`.
bool DrawnInside(TPoint from, TPoint to, const TRect& bounds) {
    TPoint last = to; // one step back towards `from` never leaves the int range
    if (Distance(from.x, to.x) > Distance(from.y, to.y))
        last.x -= to.x > from.x ? 1 : -1;
    else
        last.y -= to.y > from.y ? 1 : -1;
    return bounds.Contains(from) && bounds.Contains(last);
}

// The box spanned by a line's ends, its far edges cut at the int range.
TRect LineBox(TPoint from, TPoint to) {
    const auto end = [](int a, int b) {
        return static_cast<int>(std::min<std::int64_t>(std::int64_t{std::max(a, b)} + 1, INT_MAX));
    };
    return {std::min(from.x, to.x), std::min(from.y, to.y), end(from.x, to.x), end(from.y, to.y)};
}

} // namespace

bool TDeviceContext::DashMark(int phase) const {
    for (std::size_t i = 0; i < m_dash.dashes.size(); ++i) {
        if (phase < m_dash.dashes[i]) return i % 2 == 0;
        phase -= m_dash.dashes[i];
    }
    return true;
}

TDeviceContext::TPenMasks TDeviceContext::PenMasks() const {
    return {RopMaskFor(m_rop2, PixelOf(m_logPen.color)),
            m_bkMode == TRANSPARENT ? TRopMask{0xFFFFFFFFu, 0}
                                    : RopMaskFor(m_rop2, PixelOf(m_bkColor))};
}

// The common line: solid, unclipped and wholly on the target. The same steps as WalkLine
// from its first point, walking a pointer through the rows instead of testing every pixel.
void TDeviceContext::SolidLineInside(TPoint from, TPoint to, TRopMask ink) {
    const int dx = to.x - from.x;
    const int dy = to.y - from.y;
    const int adx = std::abs(dx);
    const int ady = std::abs(dy);
    const bool xMajor = adx > ady;
    const bool bias =
        (dy > 0 && dx < 0 && adx <= ady) || (dy < 0 && dx < 0) || (dy < 0 && dx > 0 && adx > ady);
    const std::ptrdiff_t stride = m_target->Stride();
    const std::ptrdiff_t xStep = dx > 0 ? 1 : -1;
    const std::ptrdiff_t yStep = dy > 0 ? stride : -stride;
    const std::ptrdiff_t majorStep = xMajor ? xStep : yStep;
    const std::ptrdiff_t minorStep = xMajor ? yStep : xStep;
    const std::int64_t dMajor = xMajor ? adx : ady;
    const std::int64_t dMinor = xMajor ? ady : adx;
    const int length = static_cast<int>(dMajor);
    std::int64_t err = 2 * dMinor - dMajor;
    std::uint32_t* p = &m_target->At(from.x, from.y);
    const auto walk = [&](auto&& mix) {
        for (int k = 0;; ++k) {
            mix(*p);
            if (k + 1 == length) break; // the pointer never steps past the last pixel drawn
            if (err + bias > 0) {
                p += minorStep;
                err += 2 * dMinor - 2 * dMajor;
            } else {
                err += 2 * dMinor;
            }
            p += majorStep;
        }
    };
    if (ink.andMask == 0)
        walk([&](std::uint32_t& pixel) { pixel = ink.xorMask; });
    else
        walk([&](std::uint32_t& pixel) { pixel = (pixel & ink.andMask) ^ ink.xorMask; });
}

void TDeviceContext::ThinLine(TPoint from, TPoint to, const TPenMasks& masks) {
    if (!m_target) return;
    const std::int64_t length = std::max(Distance(from.x, to.x), Distance(from.y, to.y));
    if (length == 0) return;
    const int phase0 = m_dashPhase;
    if (m_dash.total)
        m_dashPhase = static_cast<int>((static_cast<std::int64_t>(phase0) + length) % m_dash.total);
    const auto mix = [](std::uint32_t& p, const TRopMask& m) { p = (p & m.andMask) ^ m.xorMask; };
    // A one-step line (the points of a curve) draws only its first point.
    if (length == 1) {
        if (!m_target->Contains(from.x, from.y) || (m_clip && !m_clip->Contains(from.x, from.y)))
            return;
        mix(m_target->At(from.x, from.y),
            m_dash.total == 0 || DashMark(phase0) ? masks.ink : masks.gap);
        return;
    }
    const TRect box = LineBox(from, to);
    // Lines wholly outside the target only move the dash pattern on.
    if (Intersect(box, m_target->Bounds()).IsEmpty()) return;
    if (m_dash.total == 0) {
        if (!m_clip && DrawnInside(from, to, m_target->Bounds()))
            return SolidLineInside(from, to, masks.ink);
        ForEachVisibleRect(box, [&](const TRect& window) {
            WalkLine(from, to, window,
                     [&](int x, int y, std::int64_t) { mix(m_target->At(x, y), masks.ink); });
        });
        return;
    }
    ForEachVisibleRect(box, [&](const TRect& window) {
        WalkLine(from, to, window, [&](int x, int y, std::int64_t k) {
            mix(m_target->At(x, y),
                DashMark(static_cast<int>((phase0 + k) % m_dash.total)) ? masks.ink : masks.gap);
        });
    });
}

void TDeviceContext::WideLines(std::span<const TPoint> points, bool close,
                               TSpanCollector& outline) {
    // What depends on the width alone is kept from stroke to stroke.
    if (!m_widePen || m_widePen->Width() != m_penWidth) m_widePen.emplace(m_penWidth);
    m_widePen->Stroke(points, close, outline);
}

// Solid lines through points that all lie on an unclipped target (the outlines of curves,
// traces) go straight to the pointer walk: every pixel of a line lies in the box of its ends.
bool TDeviceContext::SolidLinesInside(std::span<const TPoint> points, bool close,
                                      std::span<const int> hiddenSteps, TRopMask ink) {
    if (!m_target || m_clip || m_dash.total != 0) return false;
    const TRect bounds = m_target->Bounds();
    for (const TPoint& p : points)
        if (!bounds.Contains(p)) return false;
    const auto line = [&](TPoint from, TPoint to) {
        if (from == to) return;
        if (std::abs(to.x - from.x) <= 1 && std::abs(to.y - from.y) <= 1) { // one step: one pixel
            std::uint32_t& pixel = m_target->At(from.x, from.y);
            pixel = (pixel & ink.andMask) ^ ink.xorMask;
            return;
        }
        SolidLineInside(from, to, ink);
    };
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        if (i >= hiddenSteps.size() || hiddenSteps[i] == 0) line(points[i], points[i + 1]);
    if (close) line(points.back(), points.front());
    return true;
}

void TDeviceContext::PenLines(std::span<const TPoint> points, bool close, TSpanCollector* outline,
                              std::span<const int> hiddenSteps) {
    if (m_penStyle == PS_NULL || points.size() < 2) return;
    if (outline) {
        WideLines(points, close, *outline);
        return;
    }
    const TPenMasks masks = PenMasks();
    if (SolidLinesInside(points, close, hiddenSteps, masks.ink)) return;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const int hidden = i < hiddenSteps.size() ? hiddenSteps[i] : 0;
        if (hidden == 0)
            ThinLine(points[i], points[i + 1], masks);
        else if (m_dash.total)
            m_dashPhase =
                static_cast<int>((static_cast<std::int64_t>(m_dashPhase) + hidden) % m_dash.total);
    }
    if (close) ThinLine(points.back(), points.front(), masks);
}

void TDeviceContext::LineTo(int x, int y) {
    const TPoint pts[2] = {m_pos, {x, y}};
    m_pos = {x, y};
    if (!m_target) return;
    ResetDash();
    if (PenUsesRegion()) {
        TSpanCollector outline(m_target->Bounds());
        PenLines(pts, false, &outline);
        PaintStroke(outline, nullptr);
        return;
    }
    PenLines(pts, false, nullptr);
}

void TDeviceContext::Polyline(std::span<const TPoint> points) {
    if (!m_target || points.size() < 2) return;
    ResetDash();
    if (PenUsesRegion()) {
        TSpanCollector outline(m_target->Bounds());
        PenLines(points, false, &outline);
        PaintStroke(outline, nullptr);
        return;
    }
    PenLines(points, false, nullptr);
}

} // namespace qv
