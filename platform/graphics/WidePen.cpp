#include "WidePen.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace qv {

namespace {

// From this many points on, the joins are added as the rows of their union: a curve has a
// point per pixel step, and adding each join on its own costs a span per join row and point.
constexpr std::size_t kJoinsByRowsFrom = 8;

// Up to this many chains are merged row by row side by side (a closed curve makes three).
constexpr std::size_t kChainsSideBySide = 8;

int RoundHalfAway(double v) {
    return static_cast<int>(v > 0 ? v + 0.5 : v - 0.5);
}

// Four 32-bit lanes: two points (x, y, x, y) tested at a time without a branch per point.
typedef unsigned TLanes __attribute__((vector_size(16)));
static_assert(sizeof(TPoint) == 2 * sizeof(unsigned));

TLanes PointPairAt(const TPoint* points) {
    TLanes pair;
    std::memcpy(&pair, points, sizeof pair);
    return pair;
}

bool AnyLaneSet(TLanes lanes) {
    return (lanes[0] | lanes[1] | lanes[2] | lanes[3]) != 0;
}

} // namespace

TWidePen::TWidePen(int width) : m_width(width) {
    const TRegion cap =
        TRegion::FromEllipse(-(width / 2), -(width / 2), (width + 1) / 2 + 1, (width + 1) / 2 + 1);
    m_capBox = cap.Bounds();
    for (const TBand& band : cap.Bands())
        for (int y = band.top; y < band.bottom; ++y)
            for (const TSpan& span : band.spans)
                m_capRows.push_back({y, span.left, span.right});
    // Chains need one span per join row, the rows without a gap, each holding the centre.
    m_capFitsChains = !m_capRows.empty();
    for (std::size_t i = 0; i < m_capRows.size(); ++i) {
        const TRowSpan& c = m_capRows[i];
        if (c.y != m_capBox.top + static_cast<int>(i) || c.left > 0 || c.right <= 0)
            m_capFitsChains = false;
    }
}

void TWidePen::Stroke(std::span<const TPoint> points, bool close, TSpanCollector& out,
                      TJoins joins) {
    if (points.empty()) return;
    m_out = &out;
    const bool joinByJoin = !m_capFitsChains || joins == TJoins::OneByOne ||
                            (joins == TJoins::Automatic && points.size() < kJoinsByRowsFrom);
    m_byRows = !joinByJoin;
    if (joinByJoin)
        StrokeJoinByJoin(points, close);
    else
        StrokeByRows(points, close);
    m_out = nullptr;
}

void TWidePen::StrokeJoinByJoin(std::span<const TPoint> points, bool close) {
    std::size_t first = 0, end = points.size();
    while (end - first > 2 && points[first] == points[first + 1])
        ++first;
    while (end - first > 2 && points[end - 1] == points[end - 2])
        --end;
    m_pts.assign(points.begin() + static_cast<std::ptrdiff_t>(first),
                 points.begin() + static_cast<std::ptrdiff_t>(end));
    const int n = static_cast<int>(m_pts.size());
    if (n == 1)
        AddJoin(m_pts[0]);
    else if (close)
        Segments(true, n, m_pts[0], m_pts[0]);
    else
        Segments(false, n - 1, m_pts[0], m_pts[static_cast<std::size_t>(n - 1)]);
}

const TPoint& TWidePen::Pt(int i) const {
    const auto at = static_cast<std::size_t>(i);
    return m_pts[at < m_pts.size() ? at : at - m_pts.size()];
}

bool TWidePen::JoinReaches(TPoint p, const TRect& window) const {
    // In 64 bits: a point of a polyline may lie anywhere in the int range.
    return std::int64_t{p.x} + m_capBox.right > window.left &&
           std::int64_t{p.x} + m_capBox.left < window.right &&
           std::int64_t{p.y} + m_capBox.bottom > window.top &&
           std::int64_t{p.y} + m_capBox.top < window.bottom;
}

void TWidePen::AddJoin(TPoint p) {
    if (!JoinReaches(p, m_out->Window())) return;
    for (const TRowSpan& r : m_capRows)
        m_out->AddSpan(p.y + r.y, p.x + r.left, p.x + r.right);
}

// A span of a segment's body: added to the output, or kept with the rows of the joins.
void TWidePen::PutSpan(int y, int left, int right) {
    if (!m_byRows) return m_out->AddSpan(y, left, right);
    const TRect& window = m_out->Window();
    left = std::max(left, window.left);
    right = std::min(right, window.right);
    if (y >= window.top && y < window.bottom && left < right)
        m_looseSpans.push_back({y, left, right});
}

void TWidePen::Segments(bool close, int count, TPoint first, TPoint last) {
    if (!close) {
        AddJoin(first);
        AddJoin(last);
    }
    if (count == 1) {
        Segment(first, last, Pt(1).x - Pt(0).x, Pt(1).y - Pt(0).y);
        return;
    }
    Segment(first, Pt(1), Pt(1).x - Pt(0).x, Pt(1).y - Pt(0).y);
    for (int i = 1; i < count - 1; ++i) {
        const TPoint p1 = Pt(i);
        const TPoint p2 = Pt(i + 1);
        if (Segment(p1, p2, p2.x - p1.x, p2.y - p1.y)) AddJoin(p1);
    }
    const TPoint p1 = Pt(count - 1);
    const TPoint p2 = Pt(count);
    Segment(p1, last, p2.x - p1.x, p2.y - p1.y);
    AddJoin(p1);
    if (close) AddJoin(last);
}

// One segment's body from p1 to p2; (dx, dy) is the direction of the original segment.
bool TWidePen::Segment(TPoint p1, TPoint p2, int dx, int dy) {
    if (dx == 0 && dy == 0) return false;
    const bool oneStep =
        std::abs(dx) <= 1 && std::abs(dy) <= 1 && p2.x - p1.x == dx && p2.y - p1.y == dy;
    // Every point of a stroke gets a round join, so the body of a one-step segment (the
    // points of a curve) adds nothing when the joins at its two ends cover it.
    if (oneStep && OneStepBodyInsideJoins(dx, dy)) return true;
    if (dy == 0 || dx == 0) {
        const TRect r = Intersect(StraightBody(p1, p2), m_out->Window());
        for (int y = r.top; y < r.bottom; ++y)
            PutSpan(y, r.left, r.right);
        return true;
    }
    // The body of a one-step segment depends only on the direction: it is scanned once per
    // direction at the origin and moved to each point.
    if (oneStep) {
        for (const TRowSpan& r : OneStepBody(dx, dy))
            PutSpan(p1.y + r.y, p1.x + r.left, p1.x + r.right);
        return true;
    }
    const std::array<TPoint, 4> quad = Quad(p1, p2, dx, dy);
    TRect box{quad[0].x, quad[0].y, quad[0].x + 1, quad[0].y + 1};
    for (const TPoint& q : quad)
        box = {std::min(box.left, q.x), std::min(box.top, q.y), std::max(box.right, q.x + 1),
               std::max(box.bottom, q.y + 1)};
    if (!Intersect(box, m_out->Window()).IsEmpty())
        ScanPolygon(quad, ALTERNATE, &m_out->Window(), [this](int y, std::span<const TSpan> spans) {
            for (const TSpan& s : spans)
                PutSpan(y, s.left, s.right);
        });
    return true;
}

// The body of a horizontal or vertical segment.
TRect TWidePen::StraightBody(TPoint p1, TPoint p2) const {
    if (p1.y == p2.y) {
        const int top = p1.y - m_width / 2;
        return {std::min(p1.x, p2.x), top, std::max(p1.x, p2.x), top + m_width};
    }
    const int left = p1.x - m_width / 2;
    return {left, std::min(p1.y, p2.y), left + m_width, std::max(p1.y, p2.y)};
}

// The body of a slanted segment from p1 to p2; (dx, dy) is the original segment's direction.
std::array<TPoint, 4> TWidePen::Quad(TPoint p1, TPoint p2, int dx, int dy) const {
    const double len = std::hypot(static_cast<double>(dx), static_cast<double>(dy));
    const double widthX = static_cast<double>(m_width) * std::abs(dy) / len;
    const double widthY = static_cast<double>(m_width) * std::abs(dx) / len;
    TPoint narrow{RoundHalfAway(widthX / 2), RoundHalfAway(widthY / 2)};
    TPoint wide{RoundHalfAway((widthX + 1) / 2), RoundHalfAway((widthY + 1) / 2)};
    if (dx < 0) {
        wide.y = -wide.y;
        narrow.y = -narrow.y;
    }
    if (dy < 0) {
        std::swap(narrow, wide);
        wide.x = -wide.x;
        narrow.x = -narrow.x;
    }
    return {{{p1.x - narrow.x, p1.y + narrow.y},
             {p1.x + wide.x, p1.y - wide.y},
             {p2.x + wide.x, p2.y - wide.y},
             {p2.x - narrow.x, p2.y + narrow.y}}};
}

// The spans of a one-step diagonal body, relative to its first point; scanned the first time
// the direction comes up.
const std::vector<TWidePen::TRowSpan>& TWidePen::OneStepBody(int dx, int dy) {
    const std::size_t direction = (dy > 0 ? 2 : 0) + (dx > 0 ? 1 : 0);
    std::vector<TRowSpan>& body = m_oneStepBodies[direction];
    if (!m_haveOneStepBody[direction]) {
        ScanPolygon(Quad({0, 0}, {dx, dy}, dx, dy), ALTERNATE, nullptr,
                    [&](int y, std::span<const TSpan> spans) {
                        for (const TSpan& span : spans)
                            body.push_back({y, span.left, span.right});
                    });
        m_haveOneStepBody[direction] = true;
    }
    return body;
}

// Whether the body of a one-step segment in direction (dx, dy) lies inside the joins at its
// two ends; worked out once per direction, at the origin.
bool TWidePen::OneStepBodyInsideJoins(int dx, int dy) {
    const auto direction = static_cast<std::size_t>((dy + 1) * 3 + dx + 1);
    if (!m_bodyInsideJoinsKnown[direction]) {
        std::vector<TRowSpan> body;
        if (dx == 0 || dy == 0) {
            const TRect r = StraightBody({0, 0}, {dx, dy});
            for (int y = r.top; y < r.bottom; ++y)
                body.push_back({y, r.left, r.right});
        } else {
            body = OneStepBody(dx, dy);
        }
        m_bodyInsideJoins[direction] =
            std::ranges::all_of(body, [&](const TRowSpan& b) { return JoinsCover(b, dx, dy); });
        m_bodyInsideJoinsKnown[direction] = true;
    }
    return m_bodyInsideJoins[direction];
}

// Whether the joins at the origin and at (dx, dy) together cover the row span `b`. A join is
// round: one span per row, so each row meets at most two here (a join with more would only be
// answered "not covered", which keeps the body).
bool TWidePen::JoinsCover(const TRowSpan& b, int dx, int dy) const {
    std::array<TSpan, 4> cover;
    std::size_t count = 0;
    for (const TRowSpan& c : m_capRows) {
        const bool here = c.y == b.y, there = c.y + dy == b.y;
        if (count + static_cast<std::size_t>(here) + static_cast<std::size_t>(there) > cover.size())
            return false;
        if (here) cover[count++] = {c.left, c.right};
        if (there) cover[count++] = {c.left + dx, c.right + dx};
    }
    const std::span<TSpan> merged(cover.data(), NormalizeSpans({cover.data(), count}));
    return std::ranges::any_of(
        merged, [&](const TSpan& c) { return c.left <= b.left && c.right >= b.right; });
}

// ---- the stroke as rows ------------------------------------------------------------------
//
// Every point of a stroke gets a join, so the stroke is the union of the join placed at every
// point, the bodies of the segments longer than one step, and of each one-step segment's body
// what the joins at its two ends leave out (mostly nothing; a pixel or two beside a diagonal
// step). The joins are added along chains: points one step apart that move down only or up
// only reach each row with one run of neighbours, so row y of their joins' union is the union
// over the join's rows (dy, left, right) of the run of row y - dy widened by [left, right).
// The join holds its centre column in every row, so these pieces of consecutive join rows
// touch (the runs of consecutive rows are neighbours) and the union is one span: from the
// least left end to the greatest right end. The spans of all chains and bodies are sorted by
// row with a counting sort and merged per row, in the order the painter wants them. Every
// span is cut to the window first (cutting spans and merging them can go in either order).

void TWidePen::StrokeByRows(std::span<const TPoint> points, bool close) {
    if (!m_haveBodyRests) FindBodyRests();
    m_rowSpans.clear();
    m_looseSpans.clear();
    m_chains.clear();
    m_pendingRestCount = 0;
    if (m_out->Window().IsEmpty()) return; // every span would be cut away
    // A closed outline is walked from where a chain ends, so that no chain is cut in two where
    // the outline closes (an ellipse makes two chains, its two sides).
    const std::size_t start = close ? ClosedWalkStart(points) : 0;
    if (JoinsInsideWindow(points) && OneStepApart(points, close))
        WalkSteps(points, close, start);
    else
        Walk(points, close, start);
    for (TChain& chain : m_chains)
        ChainRows(chain);
    AddRests();
    EmitRows();
}

// Whether the joins and body rests at every point lie inside the window (then nothing needs
// to be cut or left out on the way).
bool TWidePen::JoinsInsideWindow(std::span<const TPoint> points) const {
    // Placed at x, the box lies inside the window when x + reach.left >= window.left and
    // x + reach.right <= window.right: x in [lowX, highX], and the same for y.
    const TRect& window = m_out->Window();
    const std::int64_t lowX = std::int64_t{window.left} - m_reachBox.left;
    const std::int64_t highX = std::int64_t{window.right} - m_reachBox.right;
    const std::int64_t lowY = std::int64_t{window.top} - m_reachBox.top;
    const std::int64_t highY = std::int64_t{window.bottom} - m_reachBox.bottom;
    if (lowX > highX || lowY > highY || lowX < INT_MIN || highX > INT_MAX || lowY < INT_MIN ||
        highY > INT_MAX)
        return false; // (a window reaching the ends of the int range is simply not used)
    // One unsigned comparison per axis: x - lowX wraps round for x below lowX. Two points at a
    // time; the lanes of points outside are or-ed together.
    const auto x0 = static_cast<unsigned>(lowX), y0 = static_cast<unsigned>(lowY);
    const auto width = static_cast<unsigned>(highX - lowX);
    const auto height = static_cast<unsigned>(highY - lowY);
    const TLanes origin{x0, y0, x0, y0}, size{width, height, width, height};
    TLanes outside{};
    std::size_t i = 0;
    for (; i + 2 <= points.size(); i += 2)
        outside |= static_cast<TLanes>(PointPairAt(&points[i]) - origin > size);
    if (AnyLaneSet(outside)) return false;
    return i == points.size() || (static_cast<unsigned>(points[i].x) - x0 <= width &&
                                  static_cast<unsigned>(points[i].y) - y0 <= height);
}

// Whether each point lies at most one pixel from the one before (and the last from the first
// when `close`) each way, as a curve's outline does. Differences are taken modulo 2^32: the
// points lie inside the window here, and no two points of one window are 2^32 - 1 apart.
// Two steps at a time; the lanes of steps further are or-ed together.
bool TWidePen::OneStepApart(std::span<const TPoint> points, bool close) {
    const TLanes one{1, 1, 1, 1}, two{2, 2, 2, 2};
    TLanes far{};
    std::size_t i = 0;
    for (; i + 3 <= points.size(); i += 2)
        far |=
            static_cast<TLanes>(PointPairAt(&points[i + 1]) - PointPairAt(&points[i]) + one > two);
    if (AnyLaneSet(far)) return false;
    const auto oneStep = [](TPoint a, TPoint b) {
        return static_cast<unsigned>(b.x) - static_cast<unsigned>(a.x) + 1 <= 2 &&
               static_cast<unsigned>(b.y) - static_cast<unsigned>(a.y) + 1 <= 2;
    };
    for (; i + 1 < points.size(); ++i)
        if (!oneStep(points[i], points[i + 1])) return false;
    return !close || oneStep(points.back(), points.front());
}

// The walk of a stroke whose joins and rests lie inside the window and whose points lie one
// step apart (a curve's outline): no segment bodies and nothing to cut. The chain's last run
// and row count stay in registers, and runs and rests are written through pointers into room
// made when a chain starts (at most a run per step, and the step's rests).
void TWidePen::WalkSteps(std::span<const TPoint> points, bool close, std::size_t start) {
    const std::size_t n = points.size();
    const std::size_t steps = close ? n : n - 1;
    const std::size_t sentinels = m_capRows.size() - 1;
    std::size_t walked = 0; // steps
    std::size_t runCount = 0, restCount = 0;
    TPoint p = points[start];
    for (;;) {
        const std::size_t stepsLeft = steps - walked;
        m_runs.resize(std::max(m_runs.size(), runCount + stepsLeft + 2 * sentinels + 1));
        m_pendingRests.resize(
            std::max(m_pendingRests.size(), restCount + stepsLeft * m_mostRestsPerStep));
        TRun* const runs = m_runs.data();
        TPendingRest* const rests = m_pendingRests.data();
        std::fill_n(runs + runCount, sentinels, kNoRun);
        runCount += sentinels;
        TChain chain{p.y, 1, runCount};
        const int chainIndex = static_cast<int>(m_chains.size());
        TRun run{p.x, p.x};
        int rowStep = 0; // +1 down, -1 up, 0 while the chain has one row
        bool turned = false;
        while (walked < steps) {
            const std::size_t i = start + walked + 1;
            const TPoint q = points[i < n ? i : i - n];
            const int dx = q.x - p.x, dy = q.y - p.y;
            ++walked;
            const auto direction = static_cast<std::size_t>((dy + 1) * 3 + dx + 1);
            for (std::size_t k = m_restStart[direction]; k < m_restStart[direction + 1]; ++k) {
                const TRowSpan& r = m_rests[k];
                rests[restCount++] = {{p.y + r.y, p.x + r.left, p.x + r.right}, chainIndex};
            }
            if (walked == n) break; // back at the first point of a closed outline
            p = q;
            if (dy == 0) {
                run = {std::min(run.x0, q.x), std::max(run.x1, q.x)};
            } else if (dy != -rowStep) {
                runs[runCount++] = run;
                run = {q.x, q.x};
                ++chain.rows;
                rowStep = dy;
            } else {
                turned = true; // q starts the next chain
                break;
            }
        }
        runs[runCount++] = run;
        if (rowStep < 0) {
            std::reverse(runs + chain.firstRun, runs + runCount);
            chain.top -= chain.rows - 1;
        }
        std::fill_n(runs + runCount, sentinels, kNoRun);
        runCount += sentinels;
        m_chains.push_back(chain);
        if (!turned) break;
    }
    m_pendingRestCount = restCount;
}

// Walks the points from `start` on: the chains of their joins, the bodies of longer segments
// and the rests of one-step ones, cut to the window.
void TWidePen::Walk(std::span<const TPoint> points, bool close, std::size_t start) {
    const TRect& window = m_out->Window();
    // The points whose join reaches the window, and the first points of one-step segments
    // whose body rest does.
    const TReach joinReach(window, m_capBox);
    const TReach restReach(window, m_restBox);
    m_runs.clear();
    m_pendingRests.clear();
    bool inChain = false;
    int rowStep = 0; // the current chain's: +1 down, -1 up, 0 while it has one row
    // The step from the point before to this one (in 64 bits: a point of a polyline may lie
    // anywhere in the int range), and whether it is at most one pixel each way.
    std::int64_t stepX = 0, stepY = 0;
    bool oneStep = false;
    const std::size_t n = points.size();
    for (std::size_t walked = 0; walked < n; ++walked) {
        const std::size_t i = start + walked < n ? start + walked : start + walked - n;
        const TPoint p = points[i];
        if (!joinReach.Contains(p)) {
            if (inChain) EndChain(rowStep);
            inChain = false;
        } else if (inChain && oneStep && (stepY == 0 || stepY != -rowStep)) {
            if (stepY == 0) {
                TRun& run = m_runs.back();
                run = {std::min(run.x0, p.x), std::max(run.x1, p.x)};
            } else {
                rowStep = static_cast<int>(stepY);
                ++m_chains.back().rows;
                m_runs.push_back({p.x, p.x});
            }
        } else {
            if (inChain) EndChain(rowStep);
            StartChain(p);
            inChain = true;
            rowStep = 0;
        }
        if (walked + 1 == n && !close) break;
        const TPoint next = points[i + 1 < n ? i + 1 : 0];
        stepX = std::int64_t{next.x} - p.x;
        stepY = std::int64_t{next.y} - p.y;
        oneStep = static_cast<std::uint64_t>(stepX + 1) <= 2 &&
                  static_cast<std::uint64_t>(stepY + 1) <= 2;
        if (!oneStep) {
            Segment(p, next, static_cast<int>(stepX), static_cast<int>(stepY));
            continue;
        }
        const auto direction = static_cast<std::size_t>((stepY + 1) * 3 + stepX + 1);
        const std::size_t firstRest = m_restStart[direction], endRest = m_restStart[direction + 1];
        if (firstRest == endRest || !restReach.Contains(p)) continue;
        const int chain = inChain ? static_cast<int>(m_chains.size()) - 1 : -1;
        for (std::size_t k = firstRest; k < endRest; ++k) {
            const TRowSpan& r = m_rests[k];
            const int y = p.y + r.y;
            const int left = std::max(p.x + r.left, window.left);
            const int right = std::min(p.x + r.right, window.right);
            if (y >= window.top && y < window.bottom && left < right)
                m_pendingRests.push_back({{y, left, right}, chain});
        }
    }
    if (inChain) EndChain(rowStep);
    m_pendingRestCount = m_pendingRests.size();
}

// A body rest mostly touches the joins' span of its own chain in its row: it widens that span
// (two touching spans are one). The others are spans of their own.
void TWidePen::AddRests() {
    for (const TPendingRest& rest : std::span(m_pendingRests).first(m_pendingRestCount)) {
        const TRowSpan& r = rest.span;
        if (rest.chain >= 0) {
            const TChain& chain = m_chains[static_cast<std::size_t>(rest.chain)];
            const int k = r.y - chain.spanTop;
            if (k >= 0 && k < chain.spanRows) {
                TRowSpan& s = m_rowSpans[chain.firstSpan + static_cast<std::size_t>(k)];
                if (s.left < s.right && r.left <= s.right && r.right >= s.left) {
                    s = {s.y, std::min(s.left, r.left), std::max(s.right, r.right)};
                    continue;
                }
            }
        }
        m_looseSpans.push_back(r);
    }
}

// The first point at which the chain that starts at point 0 ends (0 when it does not).
// (Only a guess at where to start: any start gives the same pixels.)
std::size_t TWidePen::ClosedWalkStart(std::span<const TPoint> points) {
    // Differences modulo 2^32: points far apart may pass for neighbours, which costs a wrong
    // guess at most.
    int rowStep = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const unsigned dx =
            static_cast<unsigned>(points[i].x) - static_cast<unsigned>(points[i - 1].x);
        const unsigned dy =
            static_cast<unsigned>(points[i].y) - static_cast<unsigned>(points[i - 1].y);
        if (dx + 1 > 2 || dy + 1 > 2) return i;
        const int step = static_cast<int>(dy);
        if (step != 0 && step == -rowStep) return i;
        if (step != 0) rowStep = step;
    }
    return 0;
}

TWidePen::TReach::TReach(const TRect& window, const TRect& box) {
    // Something of `box` placed at x reaches into the window when x + box.right > window.left
    // and x + box.left < window.right.
    const auto clamp = [](std::int64_t v) {
        return static_cast<int>(std::clamp<std::int64_t>(v, INT_MIN, INT_MAX));
    };
    const int left = clamp(std::int64_t{window.left} - box.right + 1);
    const int top = clamp(std::int64_t{window.top} - box.bottom + 1);
    x0 = static_cast<unsigned>(left);
    y0 = static_cast<unsigned>(top);
    width = static_cast<unsigned>(clamp(std::int64_t{window.right} - box.left - 1)) - x0;
    height = static_cast<unsigned>(clamp(std::int64_t{window.bottom} - box.top - 1)) - y0;
}

// A chain's runs lie between sentinels that widen nothing, as many as the join has rows less
// one on either side, so that every join row finds a run.
void TWidePen::StartChain(TPoint p) {
    m_runs.insert(m_runs.end(), m_capRows.size() - 1, kNoRun);
    m_chains.push_back({p.y, 1, m_runs.size()});
    m_runs.push_back({p.x, p.x});
}

// A chain that went up has its runs turned round, so that every chain keeps them top down.
void TWidePen::EndChain(int rowStep) {
    TChain& chain = m_chains.back();
    if (rowStep < 0) {
        std::reverse(m_runs.begin() + static_cast<std::ptrdiff_t>(chain.firstRun), m_runs.end());
        chain.top -= chain.rows - 1;
    }
    m_runs.insert(m_runs.end(), m_capRows.size() - 1, kNoRun);
}

// The chain's rows of the joins' union, one span a row (an empty one where the window cuts it
// away), from chain.spanTop on in m_rowSpans.
namespace {

// Row by row from `runs` on (the run of the first row's join row 0; join row i takes the run
// i before it): the least left and greatest right end of the runs widened by the join's rows
// `cap`. `Rows` is the join's row count when it is known here (a loop the compiler unrolls),
// 0 otherwise.
template <int Rows, class TRunT, class TCapRow, class TOut>
void UnionRows(const TRunT* runs, std::span<const TCapRow> cap, int top, int bottom,
               const TRect& window, TOut* out) {
    // The join's ends in locals when their count is known, which stay in registers while the
    // rows are written.
    constexpr std::size_t kLocal = Rows > 0 ? static_cast<std::size_t>(Rows) : 1;
    std::array<int, kLocal> lefts{}, rights{};
    if constexpr (Rows > 0) {
        for (std::size_t i = 0; i < kLocal; ++i) {
            lefts[i] = cap[i].left;
            rights[i] = cap[i].right;
        }
    }
    out->reserve(out->size() + static_cast<std::size_t>(bottom - top));
    for (int y = top; y < bottom; ++y, ++runs) {
        int left = INT_MAX, right = INT_MIN;
        if constexpr (Rows > 0) {
#pragma GCC unroll 16
            for (std::size_t i = 0; i < kLocal; ++i) {
                left = std::min(left, (runs - i)->x0 + lefts[i]);
                right = std::max(right, (runs - i)->x1 + rights[i]);
            }
        } else {
            for (std::size_t i = 0; i < cap.size(); ++i) {
                left = std::min(left, (runs - i)->x0 + cap[i].left);
                right = std::max(right, (runs - i)->x1 + cap[i].right);
            }
        }
        out->push_back({y, std::max(left, window.left), std::min(right, window.right)});
    }
}

} // namespace

void TWidePen::ChainRows(TChain& chain) {
    const TRect& window = m_out->Window();
    const int top = std::max(window.top, chain.top + m_capBox.top);
    const int bottom = std::min(window.bottom, chain.top + chain.rows - 1 + m_capBox.bottom);
    chain.firstSpan = m_rowSpans.size();
    chain.spanTop = top;
    chain.spanRows = std::max(0, bottom - top);
    if (chain.spanRows == 0) return;
    const TRun* runs = m_runs.data() + chain.firstRun + (top - m_capBox.top - chain.top);
    const std::span<const TRowSpan> cap(m_capRows);
    // The usual pens, up to 9 pixels wide, have joins of 2 to 9 rows.
    switch (cap.size()) {
    case 2:
        return UnionRows<2>(runs, cap, top, bottom, window, &m_rowSpans);
    case 3:
        return UnionRows<3>(runs, cap, top, bottom, window, &m_rowSpans);
    case 4:
        return UnionRows<4>(runs, cap, top, bottom, window, &m_rowSpans);
    case 5:
        return UnionRows<5>(runs, cap, top, bottom, window, &m_rowSpans);
    case 6:
        return UnionRows<6>(runs, cap, top, bottom, window, &m_rowSpans);
    case 7:
        return UnionRows<7>(runs, cap, top, bottom, window, &m_rowSpans);
    case 8:
        return UnionRows<8>(runs, cap, top, bottom, window, &m_rowSpans);
    case 9:
        return UnionRows<9>(runs, cap, top, bottom, window, &m_rowSpans);
    default:
        return UnionRows<0>(runs, cap, top, bottom, window, &m_rowSpans);
    }
}

// What the body of a one-step segment from the origin adds to the joins at its two ends, row by
// row, for each direction.
void TWidePen::FindBodyRests() {
    m_haveBodyRests = true;
    m_rests.clear();
    m_restBox = {};
    std::vector<TRowSpan> body;
    std::vector<TSpan> cover;
    for (int direction = 0; direction < 9; ++direction) {
        m_restStart[static_cast<std::size_t>(direction)] = m_rests.size();
        const int dx = direction % 3 - 1, dy = direction / 3 - 1;
        body.clear();
        if (dx == 0 && dy == 0) continue;
        if (dx == 0 || dy == 0) {
            const TRect r = StraightBody({0, 0}, {dx, dy});
            for (int y = r.top; y < r.bottom; ++y)
                body.push_back({y, r.left, r.right});
        } else {
            body = OneStepBody(dx, dy);
        }
        for (const TRowSpan& b : body) {
            cover.clear();
            for (const TRowSpan& c : m_capRows) {
                if (c.y == b.y) cover.push_back({c.left, c.right});
                if (c.y + dy == b.y) cover.push_back({c.left + dx, c.right + dx});
            }
            cover.resize(NormalizeSpans(cover));
            int from = b.left;
            for (const TSpan& c : cover) {
                if (c.left > from) m_rests.push_back({b.y, from, std::min(c.left, b.right)});
                from = std::max(from, c.right);
                if (from >= b.right) break;
            }
            if (from < b.right) m_rests.push_back({b.y, from, b.right});
        }
    }
    m_restStart[9] = m_rests.size();
    for (std::size_t d = 0; d < 9; ++d)
        m_mostRestsPerStep = std::max(m_mostRestsPerStep, m_restStart[d + 1] - m_restStart[d]);
    const auto unite = [](const TRect& a, const TRect& b) {
        return a.IsEmpty() ? b
                           : TRect{std::min(a.left, b.left), std::min(a.top, b.top),
                                   std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
    };
    for (const TRowSpan& r : m_rests)
        m_restBox = unite(m_restBox, {r.left, r.y, r.right, r.y + 1});
    m_reachBox = unite(m_capBox, m_restBox);
}

// Sorts the loose spans by row (a counting sort: the rows are few) into m_sortedSpans.
void TWidePen::SortLooseSpans() {
    m_sortedSpans.clear();
    m_mostLooseInRow = 0;
    if (m_looseSpans.empty()) return;
    const auto [low, high] = std::ranges::minmax_element(
        m_looseSpans, [](const TRowSpan& a, const TRowSpan& b) { return a.y < b.y; });
    const int firstRow = low->y;
    const auto rows = static_cast<std::size_t>(high->y - firstRow) + 1;
    // Each row's start, then each span placed at its row's next slot.
    m_rowStart.assign(rows + 1, 0);
    for (const TRowSpan& s : m_looseSpans)
        ++m_rowStart[static_cast<std::size_t>(s.y - firstRow) + 1];
    m_mostLooseInRow = *std::ranges::max_element(m_rowStart);
    for (std::size_t r = 1; r <= rows; ++r)
        m_rowStart[r] += m_rowStart[r - 1];
    m_sortedSpans.resize(m_looseSpans.size());
    for (const TRowSpan& s : m_looseSpans)
        m_sortedSpans[m_rowStart[static_cast<std::size_t>(s.y - firstRow)]++] = s;
}

namespace {

// The union of two spans of row y (the two sides of a curve), written to `out` left to right.
template <class Span>
TSpanCollector::TRowSpan* MergeTwo(int y, const Span* a, const Span* b,
                                   TSpanCollector::TRowSpan* out) {
    if (b->left < a->left) std::swap(a, b);
    if (b->left <= a->right) {
        *out++ = {y, {a->left, std::max(a->right, b->right)}};
    } else {
        *out++ = {y, {a->left, a->right}};
        *out++ = {y, {b->left, b->right}};
    }
    return out;
}

// The union of the spans of row y, written to `out` left to right.
TSpanCollector::TRowSpan* MergeRow(int y, std::span<TSpan> row, TSpanCollector::TRowSpan* out) {
    if (row.size() == 2) return MergeTwo(y, &row[0], &row[1], out);
    for (const TSpan& s : row.first(NormalizeSpans(row)))
        *out++ = {y, s};
    return out;
}

} // namespace

// The rows of at most two chains side by side, with the loose spans of the rows that have any
// (a curve's two sides, and now and then a rest that widens neither).
TSpanCollector::TRowSpan* TWidePen::MergeTwoChains(int top, int bottom,
                                                   TSpanCollector::TRowSpan* out) {
    const auto spanAt = [&](const TChain* chain, int y) -> const TRowSpan* {
        if (!chain) return nullptr;
        const auto k = static_cast<unsigned>(y - chain->spanTop);
        if (k >= static_cast<unsigned>(chain->spanRows)) return nullptr;
        const TRowSpan* s = &m_rowSpans[chain->firstSpan + k];
        return s->left < s->right ? s : nullptr;
    };
    const TChain* first = m_chains.empty() ? nullptr : &m_chains[0];
    const TChain* second = m_chains.size() < 2 ? nullptr : &m_chains[1];
    std::size_t loose = 0;
    for (int y = top; y < bottom; ++y) {
        const TRowSpan* a = spanAt(first, y);
        const TRowSpan* b = spanAt(second, y);
        if (loose < m_sortedSpans.size() && m_sortedSpans[loose].y == y) {
            std::size_t count = 0;
            for (const TRowSpan* s : {a, b})
                if (s) m_row[count++] = {s->left, s->right};
            for (; loose < m_sortedSpans.size() && m_sortedSpans[loose].y == y; ++loose)
                m_row[count++] = {m_sortedSpans[loose].left, m_sortedSpans[loose].right};
            out = MergeRow(y, {m_row.data(), count}, out);
            continue;
        }
        if (a && b)
            out = MergeTwo(y, a, b, out);
        else if (a || b)
            *out++ = {y, {(a ? a : b)->left, (a ? a : b)->right}};
    }
    return out;
}

// The chains' spans are visited row by row side by side (a curve makes a few chains); with
// many chains they are sorted by row together with the loose spans instead.
void TWidePen::EmitRows() {
    if (m_chains.size() > kChainsSideBySide) {
        for (const TRowSpan& s : m_rowSpans)
            if (s.left < s.right) m_looseSpans.push_back(s);
        m_chains.clear();
    }
    SortLooseSpans();
    int top = INT_MAX, bottom = INT_MIN;
    for (const TChain& chain : m_chains) {
        if (chain.spanRows == 0) continue;
        top = std::min(top, chain.spanTop);
        bottom = std::max(bottom, chain.spanTop + chain.spanRows);
    }
    if (!m_sortedSpans.empty()) {
        top = std::min(top, m_sortedSpans.front().y);
        bottom = std::max(bottom, m_sortedSpans.back().y + 1);
    }
    // A row holds at most a span of each chain and its loose spans; the output no more.
    m_row.resize(std::max<std::size_t>(m_chains.size(), 2) + m_mostLooseInRow);
    // Written through a pointer (a row gives no more spans than it gathers) into a buffer that
    // only grows, so that its spans are not made afresh for every stroke.
    const std::size_t most = m_rowSpans.size() + m_sortedSpans.size();
    if (m_outSpans.size() < most) m_outSpans.resize(most);
    TSpanCollector::TRowSpan* const first = m_outSpans.data();
    if (m_chains.size() <= 2) {
        m_out->AppendInOrder({first, MergeTwoChains(top, bottom, first)});
        return;
    }
    TSpanCollector::TRowSpan* out = first;
    std::size_t loose = 0;
    for (int y = top; y < bottom; ++y) {
        TSpan* const row = m_row.data();
        std::size_t count = 0;
        for (const TChain& chain : m_chains) {
            const int k = y - chain.spanTop;
            if (k < 0 || k >= chain.spanRows) continue;
            const TRowSpan& s = m_rowSpans[chain.firstSpan + static_cast<std::size_t>(k)];
            if (s.left < s.right) row[count++] = {s.left, s.right};
        }
        for (; loose < m_sortedSpans.size() && m_sortedSpans[loose].y == y; ++loose)
            row[count++] = {m_sortedSpans[loose].left, m_sortedSpans[loose].right};
        if (count > 0) out = MergeRow(y, {row, count}, out);
    }
    m_out->AppendInOrder({first, out});
}

} // namespace qv
