#include "EllipseGeometry.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace qv {

namespace {

// Error terms of the midpoint walk; a and b are the box extents minus one. The terms grow
// with the cube of the box size, so they are kept in 128 bits to stay exact for any int box.
// Every term depends only on how many x and y steps were taken, so the walk can resume at
// any point it passed.
struct TEllipseWalk {
    using Wide = __int128;
    Wide asq, bsq, dx, dy, err;

    TEllipseWalk(int width, int height, Wide stepsX = 0, Wide stepsY = 0) {
        const Wide a = width - 1;
        const Wide b = height - 1;
        asq = 8 * a * a;
        bsq = 8 * b * b;
        const Wide dx0 = 4 * b * b * (1 - a);
        const Wide dy0 = 4 * a * a * (1 + (b % 2));
        dx = dx0 + stepsX * bsq;
        dy = dy0 + stepsY * asq;
        err = dx0 + dy0 + a * a * (b % 2) + stepsX * dx0 + bsq * stepsX * (stepsX + 1) / 2 +
              stepsY * dy0 + asq * stepsY * (stepsY + 1) / 2;
    }

    // One step: reports whether x and/or y moved.
    void Step(bool& stepX, bool& stepY) {
        const Wide e2 = 2 * err;
        stepX = e2 >= dx;
        if (stepX) {
            dx += bsq;
            err += dx;
        }
        stepY = e2 <= dy;
        if (stepY) {
            dy += asq;
            err += dy;
        }
    }
};

// Walks the quadrant from its point number `index`, `from` (a point the walk passed), for as
// long as `visit` asks, calling visit(point) for each point, `from` first. Boxes turned inside
// out by an inside-frame pen still run the walk (the outline then degenerates into a short run
// of points); the step limit keeps every input finite.
template <typename Visit>
void WalkQuadrant(int width, int height, TPoint from, long long index, Visit visit) {
    if (width == 0 || height == 0) return;
    TEllipseWalk walk(width, height, static_cast<long long>(width) - 1 - from.x,
                      static_cast<long long>(from.y) - height / 2);
    // Each step moves x or y (or both), so a proper box ends within width + height steps.
    const long long limit = 4 * (std::llabs(width) + std::llabs(height)) + 8;
    TPoint p = from;
    for (long long i = index; p.x >= width / 2 && i < limit; ++i) {
        if (!visit(p)) return;
        bool stepX = false, stepY = false;
        walk.Step(stepX, stepY);
        if (stepX) --p.x;
        if (stepY) ++p.y;
    }
}

TRect BoxOf(TPoint a, TPoint b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x) + 1, std::max(a.y, b.y) + 1};
}

int Chebyshev(TPoint a, TPoint b) {
    return std::max(std::abs(a.x - b.x), std::abs(a.y - b.y));
}

} // namespace

TEllipseQuadrant::TEllipseQuadrant(int width, int height, int denseLimit)
    : m_width(width), m_height(height) {
    TPoint last{};
    WalkQuadrant(width, height, {width - 1, height / 2}, 0, [&](TPoint p) {
        if (m_count % kBlock == 0) m_kept.push_back(p);
        if (m_count < denseLimit) m_all.push_back(p);
        last = p;
        ++m_count;
        return true;
    });
    if (m_count > denseLimit) m_all = {};
    if (m_count > 0) m_kept.push_back(last);
}

std::span<const TPoint> TEllipseQuadrant::Points(int first, int last,
                                                 std::vector<TPoint>& scratch) const {
    if (first >= last) return {};
    if (!m_all.empty())
        return std::span<const TPoint>(m_all).subspan(static_cast<std::size_t>(first),
                                                      static_cast<std::size_t>(last - first));
    scratch.clear();
    const int block = first / kBlock;
    int index = block * kBlock;
    WalkQuadrant(m_width, m_height, m_kept[static_cast<std::size_t>(block)], index, [&](TPoint p) {
        if (index >= first) scratch.push_back(p);
        return ++index < last;
    });
    return scratch;
}

TPoint TEllipseQuadrant::At(int index) const {
    std::vector<TPoint> scratch;
    return Points(index, index + 1, scratch).front();
}

TRect TEllipseQuadrant::Hull(int first, int last) const {
    // The kept point at or before `first` and the one after `last - 1` enclose the run.
    return BoxOf(m_kept[static_cast<std::size_t>(first / kBlock)],
                 m_kept[static_cast<std::size_t>((last - 1) / kBlock + 1)]);
}

int TOutlineThinner::SideBeyond(const TRect& box, int preferred) const {
    const auto beyond = [&](int side) {
        switch (side) {
        case 1:
            return box.right <= m_keep.left;
        case 2:
            return box.bottom <= m_keep.top;
        case 3:
            return box.left >= m_keep.right;
        case 4:
            return box.top >= m_keep.bottom;
        default:
            return false;
        }
    };
    if (beyond(preferred)) return preferred;
    for (int side = 1; side <= 4; ++side)
        if (beyond(side)) return side;
    return 0;
}

void TOutlineThinner::Emit(TPoint p, int hiddenSteps) {
    // The steps are listed only from the first segment that stands in for a hidden stretch.
    if (hiddenSteps != 0 || !m_out.hiddenSteps.empty()) {
        m_out.hiddenSteps.resize(m_out.points.size() - 1, 0);
        m_out.hiddenSteps.push_back(hiddenSteps);
    }
    m_out.points.push_back(p);
}

void TOutlineThinner::CloseStretch() {
    if (m_pending) Emit(m_last, static_cast<int>(m_steps));
    m_pending = false;
    m_side = 0;
}

void TOutlineThinner::Add(TPoint p, int preferredSide) {
    const int side = SideBeyond(BoxOf(p, p), m_side ? m_side : preferredSide);
    if (side != 0 && side == m_side) {
        m_steps += Chebyshev(m_last, p);
        m_last = p;
        m_pending = true;
        return;
    }
    CloseStretch();
    Emit(p, 0);
    m_last = p;
    m_side = side;
    m_steps = 0;
}

void TOutlineThinner::AddQuadrant(const TEllipseQuadrant& quadrant, int first, int last,
                                  bool reverse, const TMirror& mirror) {
    std::vector<TPoint> scratch;
    const int step = TEllipseQuadrant::kBlock;
    const int blocks = first < last ? (last - 1) / step - first / step + 1 : 0;
    bool started = false; // a point of this run has been taken
    int skippedLast = -1; // the last point of the blocks passed over, while not yet looked up
    const auto lookUpSkipped = [&] {
        if (skippedLast >= 0) m_last = mirror(quadrant.At(skippedLast));
        skippedLast = -1;
    };
    for (int k = 0; k < blocks; ++k) {
        const int block = reverse ? (last - 1) / step - k : first / step + k;
        const int from = std::max(first, block * step);
        const int to = std::min(last, (block + 1) * step);
        const TRect hull = quadrant.Hull(from, to);
        const TRect placed =
            BoxOf(mirror(hull.TopLeft()), mirror({hull.right - 1, hull.bottom - 1}));
        if (m_side != 0 && SideBeyond(placed, m_side) == m_side) {
            // The whole block lies beyond the current stretch's side: it only adds steps, one
            // per point, and walking it is left out.
            m_steps += started
                           ? to - from
                           : to - from - 1 +
                                 Chebyshev(m_last, mirror(quadrant.At(reverse ? to - 1 : from)));
            skippedLast = reverse ? from : to - 1;
            m_pending = true;
            started = true;
            continue;
        }
        lookUpSkipped();
        const std::span<const TPoint> run = quadrant.Points(from, to, scratch);
        const auto each = [&](auto take) {
            if (reverse)
                for (auto p = run.rbegin(); p != run.rend(); ++p)
                    take(mirror(*p));
            else
                for (const TPoint& p : run)
                    take(mirror(p));
        };
        started = true;
        if (m_side == 0 && placed.left >= m_keep.left && placed.top >= m_keep.top &&
            placed.right <= m_keep.right && placed.bottom <= m_keep.bottom) {
            // No point of the block can lie beyond the window: all are taken as they are.
            each([&](TPoint p) { m_out.points.push_back(p); });
            if (!m_out.hiddenSteps.empty()) m_out.hiddenSteps.resize(m_out.points.size() - 1, 0);
            m_last = m_out.points.back();
            continue;
        }
        const int preferred = SideBeyond(placed, 0);
        each([&](TPoint p) { Add(p, preferred); });
    }
    lookUpSkipped();
}

TThinOutline TOutlineThinner::Finish() {
    CloseStretch();
    return std::move(m_out);
}

TThinOutline RoundRectOutline(const TRect& rect, int ew, int eh, bool clockwise,
                              const TRect& keep) {
    const TEllipseQuadrant q(ew, eh);
    const int count = q.Count();
    TOutlineThinner out(keep);
    if (count == 0) return out.Finish();
    out.Reserve(count);
    // The corner quadrant, then its mirror image across the vertical axis walked back, then
    // both mirrored across the horizontal axis; a full-width or full-height ellipse leaves out
    // the mid point that the halves would otherwise share.
    const bool dropX = ew % 2 && ew == rect.Width();
    const bool dropY = eh % 2 && eh == rect.Height();
    const TMirror corner = clockwise ? TMirror{rect.right - ew, 1, rect.bottom - eh, 1}
                                     : TMirror{rect.right - ew, 1, rect.top + eh - 1, -1};
    const TMirror acrossX{rect.left + ew - 1, -1, corner.oy, corner.sy};
    const int flipY = rect.top + rect.bottom - 1;
    out.AddQuadrant(q, 0, count - dropX, false, corner);
    out.AddQuadrant(q, dropY ? 1 : 0, count, true, acrossX);
    out.AddQuadrant(q, 0, count, false, acrossX.FlippedY(flipY));
    out.AddQuadrant(q, 0, count - dropX, true, corner.FlippedY(flipY));
    return out.Finish();
}

TThinOutline ArcOutline(const TRect& rect, TPoint start, TPoint end, bool clockwise,
                        const TRect& keep) {
    const int width = rect.Width();
    const int height = rect.Height();
    const TEllipseQuadrant q(width, height);
    const int count = q.Count();
    TOutlineThinner out(keep);
    if (count == 0) return out.Finish();
    out.Reserve(count);
    if (!clockwise) {
        start.y = -start.y;
        end.y = -end.y;
    }
    // Position of the first outline point at or beyond the direction (x, y), counting the
    // points of all four quadrants in sequence.
    const int hw = width / 2;
    const int hh = height / 2;
    const auto position = [&](std::int64_t x, std::int64_t y) {
        const auto first = [&](auto reached) {
            return q.FirstReaching([&](TPoint p) {
                return reached(static_cast<std::int64_t>(p.x - hw),
                               static_cast<std::int64_t>(p.y - hh));
            });
        };
        if (y >= 0) {
            if (x >= 0)
                return first([&](std::int64_t px, std::int64_t py) { return px * y <= py * x; });
            return 2 * count -
                   first([&](std::int64_t px, std::int64_t py) { return px * y < py * -x; });
        }
        if (x >= 0)
            return 4 * count -
                   first([&](std::int64_t px, std::int64_t py) { return px * -y <= py * x; });
        return 2 * count +
               first([&](std::int64_t px, std::int64_t py) { return px * -y < py * -x; });
    };
    const int startPos = position(start.x, start.y);
    int endPos = position(end.x, end.y);
    if (endPos <= startPos) endPos += 4 * count;
    const int cx = rect.left + hw;
    const int cy = rect.top + hh;
    const int rx = rect.right - 1 - hw;
    const int by = rect.bottom - 1 - hh;
    // Where each quadrant's points go; the odd quadrants are walked backwards.
    const TMirror clockwiseMirrors[4] = {{cx - hw, 1, cy - hh, 1},
                                         {rx + hw, -1, cy - hh, 1},
                                         {rx + hw, -1, by + hh, -1},
                                         {cx - hw, 1, by + hh, -1}};
    const TMirror counterMirrors[4] = {{cx - hw, 1, by + hh, -1},
                                       {rx + hw, -1, by + hh, -1},
                                       {rx + hw, -1, cy - hh, 1},
                                       {cx - hw, 1, cy - hh, 1}};
    for (int pos = startPos; pos < endPos;) {
        const int quadrant = (pos / count) % 4;
        const int index = pos % count;
        const int n = std::min(count - index, endPos - pos);
        const TMirror& mirror = clockwise ? clockwiseMirrors[quadrant] : counterMirrors[quadrant];
        if (quadrant % 2)
            out.AddQuadrant(q, count - index - n, count - index, true, mirror);
        else
            out.AddQuadrant(q, index, index + n, false, mirror);
        pos += n;
    }
    return out.Finish();
}

std::vector<int> RoundRectRowInsets(int width, int height, int firstRow, int endRow) {
    std::vector<int> inset;
    if (firstRow >= endRow) return inset;
    // The walk runs down the lower half from the middle row; rows of the upper half take the
    // inset of the row they mirror. Only the walked rows that are asked for are kept.
    const int half = height / 2;
    const int last = height - 1;
    const auto walkRow = [&](int row) { return row < half ? last - row : row; };
    int lo = height, hi = half;
    if (firstRow < half) {
        lo = last - std::min(endRow, half) + 1;
        hi = last - firstRow + 1;
    }
    if (endRow > half) {
        lo = std::min(lo, std::max(firstRow, half));
        hi = std::max(hi, endRow);
    }
    std::vector<int> walked(static_cast<std::size_t>(hi - lo), 0);
    TEllipseWalk walk(width, height);
    int x = 0;
    int y = half;
    int entryX = 0; // x where the walk entered row y
    const int limit = width + height + 2;
    for (int i = 0; x <= width / 2 && i < limit && y < hi; ++i) {
        bool stepX = false, stepY = false;
        walk.Step(stepX, stepY);
        if (stepX) ++x;
        if (stepY) {
            ++y;
            if (y >= height) break;
            entryX = x;
            if (y >= lo && y < hi) walked[static_cast<std::size_t>(y - lo)] = x;
        }
    }
    // Rows the walk never reached (very narrow, tall ellipses) take the last inset written.
    for (int row = std::max(y + 1, lo); row < hi; ++row)
        walked[static_cast<std::size_t>(row - lo)] = entryX;
    inset.reserve(static_cast<std::size_t>(endRow - firstRow));
    for (int row = firstRow; row < endRow; ++row)
        inset.push_back(walked[static_cast<std::size_t>(walkRow(row) - lo)]);
    return inset;
}

} // namespace qv
