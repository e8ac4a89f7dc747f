#include "Region.h"

#include "EllipseGeometry.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory_resource>

namespace qv {

std::size_t NormalizeSpans(std::span<TSpan> spans) {
    const auto kept = std::remove_if(spans.begin(), spans.end(),
                                     [](const TSpan& s) { return s.right <= s.left; });
    const auto count = static_cast<std::size_t>(kept - spans.begin());
    if (count < 2) return count;
    std::sort(spans.begin(), kept, [](const TSpan& a, const TSpan& b) { return a.left < b.left; });
    std::size_t out = 0;
    for (std::size_t i = 1; i < count; ++i) {
        if (spans[i].left <= spans[out].right)
            spans[out].right = std::max(spans[out].right, spans[i].right);
        else
            spans[++out] = spans[i];
    }
    return out + 1;
}

// ---- TRegion ----------------------------------------------------------------------------

namespace {

// Appends a band to `bands`, or lengthens the last band when it touches the new one and has
// the same spans; the spans are copied only for a new band.
void AppendBandTo(std::vector<TBand>& bands, int top, int bottom, std::span<const TSpan> spans) {
    if (spans.empty() || bottom <= top) return;
    if (!bands.empty() && bands.back().bottom == top &&
        std::ranges::equal(bands.back().spans, spans)) {
        bands.back().bottom = bottom;
        return;
    }
    bands.push_back({top, bottom, {spans.begin(), spans.end()}});
}

} // namespace

void TRegion::AppendBand(int top, int bottom, std::span<const TSpan> spans) {
    AppendBandTo(m_bands, top, bottom, spans);
}

TRegion TRegion::FromRect(const TRect& r) {
    const TRect o = Ordered(r);
    TRegion region;
    const TSpan row{o.left, o.right};
    region.AppendBand(o.top, o.bottom, {&row, 1});
    if (o.left == o.right) region.m_bands.clear();
    return region;
}

TRegion TRegion::FromRects(std::span<const TRect> rects) {
    std::vector<TRect> ordered;
    std::vector<int> edges; // every top and bottom: between two of them no rectangle starts or ends
    for (const TRect& r : rects) {
        const TRect o = Ordered(r);
        if (o.IsEmpty()) continue;
        ordered.push_back(o);
        edges.push_back(o.top);
        edges.push_back(o.bottom);
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    TRegion region;
    std::vector<TSpan> row;
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        row.clear();
        for (const TRect& o : ordered)
            if (o.top <= edges[i] && o.bottom >= edges[i + 1]) row.push_back({o.left, o.right});
        region.AppendBand(edges[i], edges[i + 1], {row.data(), NormalizeSpans(row)});
    }
    return region;
}

TRegion TRegion::FromEllipse(int left, int top, int right, int bottom) {
    return FromRoundRect(left, top, right, bottom, right - left, bottom - top);
}

void ScanRoundRect(int left, int top, int right, int bottom, int ellipseWidth, int ellipseHeight,
                   const TRect* clipRows, const std::function<void(int, int, int, int)>& band) {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    // The region covers the box without its last column and row.
    --right;
    --bottom;
    const int ew = std::min(right - left, std::abs(ellipseWidth));
    const int eh = std::min(bottom - top, std::abs(ellipseHeight));
    if (ew < 2 || eh < 2) {
        // A plain rectangle, in either corner order (an empty box turns into one row or column).
        const TRect o = Ordered({left, top, right, bottom});
        band(o.top, o.bottom, o.left, o.right);
        return;
    }
    // Corner row i covers one row at the top (i below the middle) or at the bottom; the
    // middle row stretches over the straight sides. Only rows that reach clipRows are scanned.
    const int half = eh / 2;
    const auto rowTop = [&](int i) { return i <= half ? top + i : bottom - eh + i; };
    const auto rowBottom = [&](int i) { return i < half ? top + i + 1 : bottom - eh + i + 1; };
    int first = 0, end = eh;
    if (clipRows) {
        const auto clampRow = [](long long i, int lo, int hi) {
            return static_cast<int>(std::clamp<long long>(i, lo, hi));
        };
        const long long lowerTop = static_cast<long long>(bottom) - eh;
        first = clampRow(static_cast<long long>(clipRows->top) - top, 0, half);
        if (first == half && rowBottom(half) <= clipRows->top)
            first = clampRow(clipRows->top - lowerTop, half + 1, eh);
        end = clampRow(clipRows->bottom - lowerTop, half + 1, eh);
        if (end == half + 1 && rowTop(half) >= clipRows->bottom)
            end = clampRow(static_cast<long long>(clipRows->bottom) - top, 0, half);
        end = std::max(end, first);
    }
    const std::vector<int> inset = RoundRectRowInsets(ew, eh, first, end);
    for (int i = first; i < end; ++i)
        band(rowTop(i), rowBottom(i), left + inset[static_cast<std::size_t>(i - first)],
             right - inset[static_cast<std::size_t>(i - first)]);
}

TRegion TRegion::FromRoundRect(int left, int top, int right, int bottom, int ellipseWidth,
                               int ellipseHeight, const TRect* clipRows) {
    TRegion region;
    ScanRoundRect(left, top, right, bottom, ellipseWidth, ellipseHeight, clipRows,
                  [&](int rowTop, int rowBottom, int l, int r) {
                      if (clipRows) {
                          rowTop = std::max(rowTop, clipRows->top);
                          rowBottom = std::min(rowBottom, clipRows->bottom);
                          l = std::max(l, clipRows->left);
                          r = std::min(r, clipRows->right);
                      }
                      const TSpan row{l, r};
                      if (l < r) region.AppendBand(rowTop, rowBottom, {&row, 1});
                  });
    return region;
}

namespace {

struct TPolyEdge {
    int yTop;
    int yLast; // the last row the edge takes part in
    int xTop;
    int dx;
    int dy;
    bool clockwise;
    int order; // insertion order, for the tie rules of the active edge list

    int XAt(int y) const {
        const std::int64_t k = y - yTop;
        if (dx >= 0) return xTop + static_cast<int>((k * dx + dy - 1) / dy);
        return xTop - static_cast<int>((k * -static_cast<std::int64_t>(dx)) / dy);
    }
};

using TEdgeList = std::pmr::vector<TPolyEdge>;

// The edge from `from` to `to` (not horizontal), kept from its upper end.
TPolyEdge EdgeBetween(const TPoint& from, const TPoint& to, int order) {
    const bool down = from.y <= to.y;
    const TPoint& top = down ? from : to;
    const TPoint& bottom = down ? to : from;
    return {top.y, bottom.y - 1, top.x, bottom.x - top.x, bottom.y - top.y, down, order};
}

TEdgeList BuildEdges(std::span<const TPoint> points, const TRect* clipRows,
                     std::pmr::memory_resource* memory) {
    TEdgeList edges(memory);
    if (points.size() < 2) return edges;
    edges.reserve(points.size());
    const TPoint* prev = &points.back();
    for (const TPoint& curr : points) {
        const TPoint& from = *prev;
        prev = &curr;
        if (from.y == curr.y) continue;
        const TPolyEdge edge = EdgeBetween(from, curr, static_cast<int>(edges.size()));
        if (clipRows && (edge.yTop >= clipRows->bottom || edge.yLast < clipRows->top)) continue;
        edges.push_back(edge);
    }
    return edges;
}

// An outline that runs down once and up once (every convex polygon, for one) crosses each row
// it covers exactly once going down and once going up, so each row is the one span between
// those two edges and the active edge list has nothing to order. Scans such a polygon and
// returns true; returns false, having emitted nothing, for any other.
bool ScanMonotone(std::span<const TPoint> points, const TRect* clipRows,
                  std::pmr::memory_resource* memory,
                  const std::function<void(int, std::span<const TSpan>)>& emit) {
    TEdgeList down(memory), up(memory);
    int turns = 0, firstSign = 0, lastSign = 0;
    const TPoint* prev = &points.back();
    for (const TPoint& curr : points) {
        if (curr.y != prev->y) {
            const int sign = curr.y > prev->y ? 1 : -1;
            if (firstSign == 0)
                firstSign = sign;
            else if (sign != lastSign)
                ++turns;
            lastSign = sign;
            (sign > 0 ? down : up).push_back(EdgeBetween(*prev, curr, 0));
        }
        prev = &curr;
    }
    if (firstSign != lastSign) ++turns; // the outline closes
    if (turns != 2) return false;
    const auto byTop = [](const TPolyEdge& a, const TPolyEdge& b) { return a.yTop < b.yTop; };
    std::sort(down.begin(), down.end(), byTop);
    std::sort(up.begin(), up.end(), byTop);
    int y = down.front().yTop;
    int end = down.back().yLast + 1;
    if (clipRows) {
        y = std::max(y, clipRows->top);
        end = std::min(end, clipRows->bottom);
    }
    for (std::size_t d = 0, u = 0; y < end; ++y) {
        while (down[d].yLast < y)
            ++d;
        while (up[u].yLast < y)
            ++u;
        const int a = down[d].XAt(y), b = up[u].XAt(y);
        if (a == b) continue;
        const TSpan span{std::min(a, b), std::max(a, b)};
        emit(y, {&span, 1});
    }
    return true;
}

// The active edge list keeps the classic ordering rules: a newly loaded edge goes before the
// first edge at the same or a larger x, and after each row an edge moves only in front of the
// first edge that lies strictly right of it.
class TActiveEdges {
public:
    explicit TActiveEdges(TEdgeList edges)
        : m_edges(std::move(edges)), m_pending(m_edges.get_allocator()),
          m_active(m_edges.get_allocator()), m_snapshot(m_edges.get_allocator()),
          m_x(m_edges.get_allocator()) {
        // Bucket order: by top row, later edges first among equal x.
        m_pending.resize(m_edges.size());
        for (std::size_t i = 0; i < m_edges.size(); ++i)
            m_pending[i] = static_cast<int>(i);
        std::stable_sort(m_pending.begin(), m_pending.end(), [this](int a, int b) {
            const auto& ea = m_edges[static_cast<std::size_t>(a)];
            const auto& eb = m_edges[static_cast<std::size_t>(b)];
            if (ea.yTop != eb.yTop) return ea.yTop < eb.yTop;
            if (ea.xTop != eb.xTop) return ea.xTop < eb.xTop;
            return ea.order > eb.order;
        });
    }

    int FirstRow() const {
        int y = INT32_MAX;
        for (const auto& e : m_edges)
            y = std::min(y, e.yTop);
        return y;
    }
    int EndRow() const {
        int y = INT32_MIN;
        for (const auto& e : m_edges)
            y = std::max(y, e.yLast + 1);
        return y;
    }

    // Loads the edges that start at or above row y (those starting above are entered as if
    // they had been followed from their first row).
    void LoadUpTo(int y) {
        while (m_next < m_pending.size() &&
               m_edges[static_cast<std::size_t>(m_pending[m_next])].yTop <= y) {
            const int e = m_pending[m_next++];
            if (Edge(e).yLast < y) continue;
            const int x = Edge(e).XAt(y);
            auto pos = std::find_if(m_active.begin(), m_active.end(),
                                    [&](int a) { return Edge(a).XAt(y) >= x; });
            m_active.insert(pos, e);
        }
        m_x.resize(m_active.size());
        for (std::size_t i = 0; i < m_active.size(); ++i)
            m_x[i] = Edge(m_active[i]).XAt(y);
    }

    // Drops the edges that end at row y and re-sorts the rest for row y + 1.
    void Advance(int y) {
        std::erase_if(m_active, [&](int e) { return Edge(e).yLast == y; });
        m_snapshot.assign(m_active.begin(), m_active.end());
        for (int e : m_snapshot) {
            const int x = Edge(e).XAt(y + 1);
            auto self = std::find(m_active.begin(), m_active.end(), e);
            auto insert =
                std::find_if(m_active.begin(), self, [&](int a) { return Edge(a).XAt(y + 1) > x; });
            if (insert != self) {
                m_active.erase(self);
                m_active.insert(insert, e);
            }
        }
    }

    const std::pmr::vector<int>& Active() const { return m_active; }
    const std::pmr::vector<int>& X() const { return m_x; }
    const TPolyEdge& Edge(int e) const { return m_edges[static_cast<std::size_t>(e)]; }

private:
    TEdgeList m_edges;
    std::pmr::vector<int> m_pending;
    std::size_t m_next{0};
    std::pmr::vector<int> m_active;
    std::pmr::vector<int> m_snapshot; // the order before re-sorting, kept to reuse its storage
    std::pmr::vector<int> m_x;
};

void EmitAlternate(const TActiveEdges& aet, std::pmr::vector<TSpan>& row) {
    const auto& x = aet.X();
    for (std::size_t i = 0; i + 1 < x.size(); i += 2)
        if (x[i] != x[i + 1]) row.push_back({x[i], x[i + 1]});
}

void EmitWinding(const TActiveEdges& aet, std::pmr::vector<TSpan>& row) {
    const auto& active = aet.Active();
    const auto& x = aet.X();
    bool inside = true;
    int winding = 0;
    bool haveLeft = false;
    int left = 0;
    for (std::size_t i = 0; i < active.size(); ++i) {
        winding += aet.Edge(active[i]).clockwise ? 1 : -1;
        if ((!inside && winding == 0) || (inside && winding != 0)) {
            inside = !inside;
            if (!haveLeft) {
                left = x[i];
                haveLeft = true;
            } else {
                if (x[i] != left) row.push_back({left, x[i]});
                haveLeft = false;
            }
        }
    }
}

} // namespace

void ScanPolygon(std::span<const TPoint> points, TPolyFillMode mode, const TRect* clipRows,
                 const std::function<void(int, std::span<const TSpan>)>& emit) {
    // The small polygons of instruments and curves fit this arena, so scanning them does not
    // touch the heap; larger ones continue in heap memory.
    std::array<std::byte, 4096> arena;
    std::pmr::monotonic_buffer_resource memory(arena.data(), arena.size());
    if (points.size() >= 3 && ScanMonotone(points, clipRows, &memory, emit)) return;
    TActiveEdges aet(BuildEdges(points, clipRows, &memory));
    int y = aet.FirstRow();
    int end = aet.EndRow();
    if (clipRows) {
        y = std::max(y, clipRows->top);
        end = std::min(end, clipRows->bottom);
    }
    std::pmr::vector<TSpan> row(&memory);
    for (; y < end; ++y) {
        aet.LoadUpTo(y);
        if (mode == WINDING)
            EmitWinding(aet, row);
        else
            EmitAlternate(aet, row);
        row.resize(NormalizeSpans(row));
        if (!row.empty()) emit(y, row);
        row.clear();
        aet.Advance(y);
    }
}

TRegion TRegion::FromPolygon(std::span<const TPoint> points, TPolyFillMode mode,
                             const TRect* clipRows) {
    TRegion region;
    ScanPolygon(points, mode, clipRows,
                [&](int y, std::span<const TSpan> spans) { region.AppendBand(y, y + 1, spans); });
    return region;
}

TRect TRegion::Bounds() const {
    if (m_bands.empty()) return {};
    TRect r{INT32_MAX, m_bands.front().top, INT32_MIN, m_bands.back().bottom};
    for (const auto& band : m_bands) {
        r.left = std::min(r.left, band.spans.front().left);
        r.right = std::max(r.right, band.spans.back().right);
    }
    return r;
}

bool TRegion::Contains(int x, int y) const {
    auto band = std::upper_bound(m_bands.begin(), m_bands.end(), y,
                                 [](int v, const TBand& b) { return v < b.bottom; });
    if (band == m_bands.end() || band->top > y) return false;
    auto span = std::upper_bound(band->spans.begin(), band->spans.end(), x,
                                 [](int v, const TSpan& s) { return v < s.right; });
    return span != band->spans.end() && span->left <= x;
}

TRegionType TRegion::Type() const {
    if (m_bands.empty()) return NULLREGION;
    if (m_bands.size() == 1 && m_bands.front().spans.size() == 1) return SIMPLEREGION;
    return COMPLEXREGION;
}

void TRegion::Offset(int dx, int dy) {
    for (auto& band : m_bands) {
        band.top += dy;
        band.bottom += dy;
        for (auto& s : band.spans) {
            s.left += dx;
            s.right += dx;
        }
    }
}

namespace {

bool Keep(bool inA, bool inB, TCombineMode mode) {
    switch (mode) {
    case RGN_AND:
        return inA && inB;
    case RGN_OR:
        return inA || inB;
    case RGN_XOR:
        return inA != inB;
    case RGN_DIFF:
        return inA && !inB;
    case RGN_COPY:
        return inA;
    }
    return false;
}

std::vector<TSpan> CombineSpans(const std::vector<TSpan>& a, const std::vector<TSpan>& b,
                                TCombineMode mode) {
    std::vector<int> xs;
    xs.reserve(2 * (a.size() + b.size()));
    for (const auto& s : a)
        xs.insert(xs.end(), {s.left, s.right});
    for (const auto& s : b)
        xs.insert(xs.end(), {s.left, s.right});
    std::sort(xs.begin(), xs.end());
    xs.erase(std::unique(xs.begin(), xs.end()), xs.end());
    std::vector<TSpan> out;
    std::size_t ia = 0, ib = 0;
    for (std::size_t k = 0; k + 1 < xs.size(); ++k) {
        const int x = xs[k];
        while (ia < a.size() && a[ia].right <= x)
            ++ia;
        while (ib < b.size() && b[ib].right <= x)
            ++ib;
        const bool inA = ia < a.size() && a[ia].left <= x;
        const bool inB = ib < b.size() && b[ib].left <= x;
        if (!Keep(inA, inB, mode)) continue;
        if (!out.empty() && out.back().right == x)
            out.back().right = xs[k + 1];
        else
            out.push_back({x, xs[k + 1]});
    }
    return out;
}

} // namespace

TRegion TRegion::Combine(const TRegion& other, TCombineMode mode) const {
    if (mode == RGN_COPY) return *this;
    std::vector<int> ys;
    ys.reserve(2 * (m_bands.size() + other.m_bands.size()));
    for (const auto& b : m_bands)
        ys.insert(ys.end(), {b.top, b.bottom});
    for (const auto& b : other.m_bands)
        ys.insert(ys.end(), {b.top, b.bottom});
    std::sort(ys.begin(), ys.end());
    ys.erase(std::unique(ys.begin(), ys.end()), ys.end());
    static const std::vector<TSpan> none;
    TRegion out;
    std::size_t ia = 0, ib = 0;
    for (std::size_t k = 0; k + 1 < ys.size(); ++k) {
        const int y = ys[k];
        while (ia < m_bands.size() && m_bands[ia].bottom <= y)
            ++ia;
        while (ib < other.m_bands.size() && other.m_bands[ib].bottom <= y)
            ++ib;
        const auto& sa = ia < m_bands.size() && m_bands[ia].top <= y ? m_bands[ia].spans : none;
        const auto& sb = ib < other.m_bands.size() && other.m_bands[ib].top <= y
                             ? other.m_bands[ib].spans
                             : none;
        out.AppendBand(y, ys[k + 1], CombineSpans(sa, sb, mode));
    }
    return out;
}

bool TRegion::operator==(const TRegion& other) const {
    if (m_bands.size() != other.m_bands.size()) return false;
    for (std::size_t i = 0; i < m_bands.size(); ++i) {
        const auto& a = m_bands[i];
        const auto& b = other.m_bands[i];
        if (a.top != b.top || a.bottom != b.bottom || a.spans != b.spans) return false;
    }
    return true;
}

// ---- Builder ----------------------------------------------------------------------------

void TRegion::Builder::AddSpan(int y, int left, int right) {
    if (right <= left) return;
    if (m_haveRow && y != m_rowY) FlushRow();
    m_rowY = y;
    m_haveRow = true;
    m_row.push_back({left, right});
}

void TRegion::Builder::FlushRow() {
    if (!m_haveRow) return;
    m_row.resize(NormalizeSpans(m_row));
    AppendBandTo(m_bands, m_rowY, m_rowY + 1, m_row);
    m_row.clear();
    m_haveRow = false;
}

TRegion TRegion::Builder::Finish() {
    FlushRow();
    TRegion region;
    region.m_bands = std::move(m_bands);
    m_bands.clear();
    return region;
}

// ---- TSpanCollector ---------------------------------------------------------------------

TSpanCollector::TSpanCollector(const TRect& window) : m_window(window) {}

void TSpanCollector::AppendSpan(int y, int left, int right) {
    m_rowsReady = false;
    if (m_lastOfRow.empty())
        m_lastOfRow.assign(static_cast<std::size_t>(std::max(0, m_window.Height())), -1);
    m_lastOfRow[static_cast<std::size_t>(y - m_window.top)] = static_cast<int>(m_spans.size());
    m_spans.push_back({y, {left, right}});
}

void TSpanCollector::AddRect(const TRect& r) {
    const TRect c = Intersect(r, m_window);
    for (int y = c.top; y < c.bottom; ++y)
        AddSpan(y, c.left, c.right);
}

std::span<const TSpanCollector::TRowSpan> TSpanCollector::Rows() {
    // Spans appended in order (a curve's stroke worked out row by row) are ready as they are.
    if (m_rowsReady) return m_spans;
    std::sort(m_spans.begin(), m_spans.end(), [](const TRowSpan& a, const TRowSpan& b) {
        return a.y != b.y ? a.y < b.y : a.span.left < b.span.left;
    });
    std::size_t kept = 0;
    for (const TRowSpan& s : m_spans) {
        TRowSpan* previous = kept > 0 ? &m_spans[kept - 1] : nullptr;
        if (previous && previous->y == s.y && s.span.left <= previous->span.right)
            previous->span.right = std::max(previous->span.right, s.span.right);
        else
            m_spans[kept++] = s;
    }
    m_spans.resize(kept);
    std::fill(m_lastOfRow.begin(), m_lastOfRow.end(), -1); // spans moved: no row's last is known
    m_rowsReady = true;
    return m_spans;
}

TRegion TSpanCollector::ToRegion() {
    TRegion::Builder builder;
    for (const TRowSpan& s : Rows())
        builder.AddSpan(s.y, s.span.left, s.span.right);
    return builder.Finish();
}

// ---- handle functions -------------------------------------------------------------------

HRGN CreateRectRgn(int left, int top, int right, int bottom) {
    return std::make_unique<TRegion>(TRegion::FromRect({left, top, right, bottom}));
}
HRGN CreateRectRgnIndirect(const TRect& r) {
    return CreateRectRgn(r.left, r.top, r.right, r.bottom);
}
HRGN CreateEllipticRgn(int left, int top, int right, int bottom) {
    return std::make_unique<TRegion>(TRegion::FromEllipse(left, top, right, bottom));
}
HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int width, int height) {
    return std::make_unique<TRegion>(
        TRegion::FromRoundRect(left, top, right, bottom, width, height));
}
HRGN CreatePolygonRgn(const TPoint* points, int count, int fillMode) {
    if (!points || count < 2) return std::make_unique<TRegion>();
    return std::make_unique<TRegion>(TRegion::FromPolygon(
        {points, static_cast<std::size_t>(count)}, fillMode == WINDING ? WINDING : ALTERNATE));
}

int CombineRgn(const HRGN& dest, const HRGN& src1, const HRGN& src2, int mode) {
    if (!dest || !src1 || mode < RGN_AND || mode > RGN_COPY) return RGN_ERROR;
    if (mode != RGN_COPY && !src2) return RGN_ERROR;
    *dest = mode == RGN_COPY ? *src1 : src1->Combine(*src2, static_cast<TCombineMode>(mode));
    return dest->Type();
}

bool PtInRegion(const HRGN& region, int x, int y) {
    return region && region->Contains(x, y);
}

int GetRgnBox(const HRGN& region, TRect& box) {
    if (!region) return RGN_ERROR;
    box = region->Bounds();
    return region->Type();
}

int OffsetRgn(const HRGN& region, int dx, int dy) {
    if (!region) return RGN_ERROR;
    region->Offset(dx, dy);
    return region->Type();
}

bool EqualRgn(const HRGN& a, const HRGN& b) {
    return a && b && *a == *b;
}

bool DeleteObject(HRGN& region) {
    const bool had = static_cast<bool>(region);
    region.reset();
    return had;
}

} // namespace qv
