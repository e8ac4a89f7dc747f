#pragma once
// The digital ellipse that Ellipse, Arc, Pie, Chord, RoundRect and the elliptic regions share:
// an integer midpoint walk (after Alois Zingl's rasterizing algorithm) over one quadrant, and
// the outlines built from its mirror images, thinned to what can show inside a window so that
// figures far larger than the target cost memory and time in proportion to what is visible.

#include "Types.h"

#include <algorithm>
#include <span>
#include <vector>

namespace qv {

// The outline points of one quadrant of the ellipse that fills a width x height box, in box
// coordinates, starting on the horizontal axis at the right (x = width - 1, y = height / 2) and
// walking towards the bottom while x stays in the right half. Every step moves x down and/or
// y up by one, so any run of points lies in the box between its two ends. Quadrants of up to
// kDense points keep them all; larger ones keep every kBlock-th point and walk the others
// again from there on demand.
class TEllipseQuadrant {
public:
    static constexpr int kBlock = 256;
    static constexpr int kDense = 16 * kBlock;

    // `denseLimit`: the most points kept all together.
    TEllipseQuadrant(int width, int height, int denseLimit = kDense);

    int Count() const { return m_count; }
    TPoint At(int index) const;
    // The points [first, last): the kept ones, or walked into `scratch` from the block that
    // holds `first`.
    std::span<const TPoint> Points(int first, int last, std::vector<TPoint>& scratch) const;
    // A box around the points [first, last), from the kept points around them.
    TRect Hull(int first, int last) const;
    // The first index whose point satisfies `reached`, a condition that once true stays true
    // along the walk (Count() when none does).
    template <typename Reached> int FirstReaching(Reached reached) const;

private:
    int m_width;
    int m_height;
    int m_count{0};
    std::vector<TPoint> m_all;  // every point, for quadrants of up to kDense points
    std::vector<TPoint> m_kept; // point k * kBlock for each block, then the last point
};

template <typename Reached> int TEllipseQuadrant::FirstReaching(Reached reached) const {
    if (!m_all.empty()) {
        const auto found = std::find_if(m_all.begin(), m_all.end(), reached);
        return static_cast<int>(found - m_all.begin());
    }
    // Whole blocks are passed over while their first point falls short.
    const int blocks = static_cast<int>(m_kept.size()) - 1;
    int block = 0;
    while (block < blocks && !reached(m_kept[static_cast<std::size_t>(block)]))
        ++block;
    const int first = std::max(block - 1, 0) * kBlock;
    std::vector<TPoint> scratch;
    const std::span<const TPoint> points =
        Points(first, std::min(first + kBlock, m_count), scratch);
    for (std::size_t i = 0; i < points.size(); ++i)
        if (reached(points[i])) return first + static_cast<int>(i);
    return std::min(first + kBlock, m_count);
}

// A quadrant point placed in the device: (ox + sx * x, oy + sy * y) with sx, sy = +-1.
struct TMirror {
    int ox, sx, oy, sy;
    constexpr TPoint operator()(TPoint p) const { return {ox + sx * p.x, oy + sy * p.y}; }
    // The same placement mirrored across the horizontal line halfway between rows 0 and `flip`.
    constexpr TMirror FlippedY(int flip) const { return {ox, sx, flip - oy, -sy}; }
};

// An outline as drawn: its points, and for each segment the dash steps of the stretch it
// stands in for when that stretch was dropped (0 for a segment that is drawn as it is; the
// list ends early when no later segment stands in for one).
struct TThinOutline {
    std::vector<TPoint> points;
    std::vector<int> hiddenSteps;
};

// Collects an outline point by point, dropping what cannot show inside `keep`: a stretch of
// consecutive points beyond one side of `keep` is replaced by its first and last point. The
// stretch and the straight line between its ends both lie in that half-plane, so pens no
// wider than the margin left around the target and polygon fills scanned inside it look the
// same; the steps a dashed pen would have counted along the stretch are kept with it.
class TOutlineThinner {
public:
    explicit TOutlineThinner(const TRect& keep) : m_keep(keep) {}

    // Room for the four quadrants of a small ellipse, whose points are all likely to stay.
    void Reserve(int quadrantCount) {
        if (quadrantCount <= TEllipseQuadrant::kDense)
            m_out.points.reserve(4 * static_cast<std::size_t>(quadrantCount) + 1);
    }
    void Add(TPoint p, int preferredSide = 0);
    // Feeds points [first, last) of `quadrant`, backwards when `reverse`, placed by `mirror`.
    void AddQuadrant(const TEllipseQuadrant& quadrant, int first, int last, bool reverse,
                     const TMirror& mirror);
    TThinOutline Finish();

private:
    // The side (1 left, 2 above, 3 right, 4 below) of `keep` that `box` lies wholly beyond,
    // trying `preferred` first; 0 when there is none.
    int SideBeyond(const TRect& box, int preferred) const;
    void CloseStretch();
    void Emit(TPoint p, int hiddenSteps);

    TRect m_keep;
    TThinOutline m_out;
    int m_side{0};         // the side the current stretch lies beyond, 0 when none
    TPoint m_last{};       // the last point added
    long long m_steps{0};  // dash steps since the stretch's first point
    bool m_pending{false}; // m_last belongs to the stretch but is not emitted yet
};

// The closed outline of a round rectangle whose corner ellipse is ew x eh (the whole
// outline of an ellipse when they are the rectangle's size), thinned to `keep`.
TThinOutline RoundRectOutline(const TRect& rect, int ew, int eh, bool clockwise, const TRect& keep);

// The arc of `rect`'s ellipse from the direction of `start` to that of `end` (both relative to
// the centre), in the drawing direction, thinned to `keep`.
TThinOutline ArcOutline(const TRect& rect, TPoint start, TPoint end, bool clockwise,
                        const TRect& keep);

// For a round-rect region whose corner ellipse is width x height: how far each of the corner
// rows [firstRow, endRow) (of 0 to height - 1) is inset from the rectangle's sides.
std::vector<int> RoundRectRowInsets(int width, int height, int firstRow, int endRow);

} // namespace qv
