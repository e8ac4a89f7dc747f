#pragma once
// TWidePen: the stroke of a pen wider than one pixel, with round caps and round joins, collected
// as spans row by row (TSpanCollector). It keeps what depends only on the width (the join's rows,
// the bodies of one-step segments and whether the joins cover them), so a device context builds
// it once per pen width and strokes many outlines with it.

#include "Region.h"
#include "Types.h"

#include <array>
#include <climits>
#include <cstdint>
#include <span>
#include <vector>

namespace qv {

class TWidePen {
public:
    explicit TWidePen(int width);

    int Width() const { return m_width; }

    // How the round joins (one at every point of a stroke) are added. `OneByOne` adds each
    // join's rows on its own; `ByRows` works out each row of their union from the points of the
    // rows the join reaches. Both give the same pixels; `Automatic` picks by the point count.
    enum class TJoins { Automatic, OneByOne, ByRows };

    // Adds the stroke through `points` (a closed figure when `close`) to `out`.
    void Stroke(std::span<const TPoint> points, bool close, TSpanCollector& out,
                TJoins joins = TJoins::Automatic);

private:
    struct TRowSpan {
        int y, left, right;
    };
    // A run of points of one row, from x0 to x1 (both included).
    struct TRun {
        int x0, x1;
    };
    // A run that widens no row: its ends moved by a join row stay beyond every other.
    static constexpr TRun kNoRun{INT_MAX / 2, INT_MIN / 2};
    // Consecutive points of a stroke one step apart that move down only or up only: each row
    // they reach holds one run of them, and the rows of their joins' union are single spans.
    struct TChain {
        int top; // the first row, once the chain is ended
        int rows;
        std::size_t firstRun;     // the runs of its rows, top down once it is ended, in m_runs
        std::size_t firstSpan{0}; // its joins' spans of rows spanTop on in m_rowSpans
        int spanTop{0};
        int spanRows{0};
    };
    // A body rest's span in the window, and the chain its segment starts on (-1 for none).
    struct TPendingRest {
        TRowSpan span;
        int chain;
    };

    // Point i of the stroke; i runs up to the point count, which stands for the first point.
    const TPoint& Pt(int i) const;
    // Whether the join at `p` reaches into the window (joins far outside it cost nothing).
    bool JoinReaches(TPoint p, const TRect& window) const;
    void AddJoin(TPoint p);
    void Segments(bool close, int count, TPoint first, TPoint last);
    bool Segment(TPoint p1, TPoint p2, int dx, int dy);
    TRect StraightBody(TPoint p1, TPoint p2) const;
    std::array<TPoint, 4> Quad(TPoint p1, TPoint p2, int dx, int dy) const;
    const std::vector<TRowSpan>& OneStepBody(int dx, int dy);
    bool OneStepBodyInsideJoins(int dx, int dy);
    bool JoinsCover(const TRowSpan& b, int dx, int dy) const;

    // The stroke's parts as rows (TJoins::ByRows): the joins along each chain, and what the
    // bodies of one-step segments add beyond the joins at their ends.
    // The points at which something of `box` placed there reaches into `window` (a window
    // that is not empty): x in [x0, x0 + width], y likewise, one unsigned test per axis.
    struct TReach {
        TReach(const TRect& window, const TRect& box);
        bool Contains(TPoint p) const {
            return static_cast<unsigned>(p.x) - x0 <= width &&
                   static_cast<unsigned>(p.y) - y0 <= height;
        }
        unsigned x0, y0, width, height;
    };
    void StrokeJoinByJoin(std::span<const TPoint> points, bool close);
    void StrokeByRows(std::span<const TPoint> points, bool close);
    bool JoinsInsideWindow(std::span<const TPoint> points) const;
    static bool OneStepApart(std::span<const TPoint> points, bool close);
    void WalkSteps(std::span<const TPoint> points, bool close, std::size_t start);
    void Walk(std::span<const TPoint> points, bool close, std::size_t start);
    static std::size_t ClosedWalkStart(std::span<const TPoint> points);
    void StartChain(TPoint p);
    void EndChain(int rowStep);
    void ChainRows(TChain& chain);
    void AddRests();
    void PutSpan(int y, int left, int right);
    void FindBodyRests();
    void SortLooseSpans();
    void EmitRows();
    TSpanCollector::TRowSpan* MergeTwoChains(int top, int bottom, TSpanCollector::TRowSpan* out);

    int m_width;
    std::vector<TRowSpan> m_capRows; // the round join at the origin, row by row, top down
    TRect m_capBox;
    std::array<std::vector<TRowSpan>, 4> m_oneStepBodies;
    std::array<bool, 4> m_haveOneStepBody{};
    std::array<bool, 9> m_bodyInsideJoins{};
    std::array<bool, 9> m_bodyInsideJoinsKnown{};

    bool m_capFitsChains{false}; // whether chains may be used (see the constructor)
    // What the body of a one-step segment adds to the joins at its ends, per direction
    // (dy + 1) * 3 + dx + 1: m_rests[m_restStart[d], m_restStart[d + 1]); their bounds.
    bool m_haveBodyRests{false};
    std::vector<TRowSpan> m_rests;
    std::array<std::size_t, 10> m_restStart{};
    std::size_t m_mostRestsPerStep{0}; // the most rests of any one direction
    TRect m_restBox;
    TRect m_reachBox; // the join's box and m_restBox together

    // Per stroke (kept to reuse their memory).
    TSpanCollector* m_out{nullptr};
    bool m_byRows{false};
    std::vector<TPoint> m_pts;
    std::vector<TChain> m_chains;
    // The walks fill these; the one of one-step strokes writes through pointers and only grows
    // them, so the rests in use are counted apart (the runs are reached through the chains).
    std::vector<TRun> m_runs;
    std::vector<TPendingRest> m_pendingRests;
    std::size_t m_pendingRestCount{0};
    std::vector<TRowSpan> m_rowSpans;    // the chains' spans, chain by chain, row by row
    std::vector<TRowSpan> m_looseSpans;  // the spans of bodies and rests that widen no chain
    std::vector<TRowSpan> m_sortedSpans; // the loose spans by row
    std::vector<std::size_t> m_rowStart; // per row: where its spans end in m_sortedSpans
    std::size_t m_mostLooseInRow{0};
    std::vector<TSpan> m_row; // the spans of one row, to merge
    std::vector<TSpanCollector::TRowSpan> m_outSpans;
};

} // namespace qv
