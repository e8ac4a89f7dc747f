#pragma once
// TRegion: a set of pixels kept as horizontal bands, each band a sorted list of disjoint
// spans. Regions are built from rectangles, ellipses, round rectangles and polygons by the
// classic scan-conversion rules and combined with and/or/xor/diff.

#include "Types.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace qv {

struct TSpan {
    int left{0};
    int right{0};
    bool operator==(const TSpan&) const = default;
};

struct TBand {
    int top{0};
    int bottom{0};
    std::vector<TSpan> spans;
};

enum TPolyFillMode { ALTERNATE = 1, WINDING = 2 };
enum TCombineMode { RGN_AND = 1, RGN_OR = 2, RGN_XOR = 3, RGN_DIFF = 4, RGN_COPY = 5 };
enum TRegionType { RGN_ERROR = 0, NULLREGION = 1, SIMPLEREGION = 2, COMPLEXREGION = 3 };

class TRegion {
public:
    TRegion() = default;

    // A rectangle in either corner order; empty when it has no width or height.
    static TRegion FromRect(const TRect& r);
    // The union of rectangles, built in one pass (cheaper than combining them one by one).
    static TRegion FromRects(std::span<const TRect> rects);
    // The classic elliptic region of a bounding box (its right and bottom edges excluded).
    static TRegion FromEllipse(int left, int top, int right, int bottom);
    // Rows outside `clipRows` (when given) are left out.
    static TRegion FromRoundRect(int left, int top, int right, int bottom, int ellipseWidth,
                                 int ellipseHeight, const TRect* clipRows = nullptr);
    // The interior of a polygon; rows outside `clipRows` (when given) are left out.
    static TRegion FromPolygon(std::span<const TPoint> points, TPolyFillMode mode,
                               const TRect* clipRows = nullptr);

    bool IsEmpty() const { return m_bands.empty(); }
    TRect Bounds() const;
    bool Contains(int x, int y) const;
    TRegionType Type() const;
    void Offset(int dx, int dy);
    TRegion Combine(const TRegion& other, TCombineMode mode) const;
    bool operator==(const TRegion& other) const;

    const std::vector<TBand>& Bands() const { return m_bands; }

    // Builds a region band by band. Rows are added top to bottom; the spans of one row may
    // come in any order and may overlap.
    class Builder {
    public:
        void AddSpan(int y, int left, int right);
        TRegion Finish();

    private:
        void FlushRow();
        std::vector<TBand> m_bands;
        std::vector<TSpan> m_row;
        int m_rowY{0};
        bool m_haveRow{false};
    };

private:
    friend class Builder;
    // Appends a band, merging it with the previous one when they touch and have equal spans.
    void AppendBand(int top, int bottom, std::span<const TSpan> spans);

    std::vector<TBand> m_bands;
};

// Drops empty spans, sorts the rest and merges overlapping or touching ones, at the front of
// `spans`; returns how many there are.
std::size_t NormalizeSpans(std::span<TSpan> spans);

// The scan conversions behind FromPolygon and FromRoundRect, for painting without building a
// region. ScanPolygon calls row(y, spans) for each row that has pixels, top to bottom, with
// the row's sorted, disjoint spans. ScanRoundRect calls band(top, bottom, left, right) for
// each band of the round rectangle that reaches the rows of `clipRows` (when given), top to
// bottom, before any clipping (bands may be empty).
void ScanPolygon(std::span<const TPoint> points, TPolyFillMode mode, const TRect* clipRows,
                 const std::function<void(int, std::span<const TSpan>)>& row);
void ScanRoundRect(int left, int top, int right, int bottom, int ellipseWidth, int ellipseHeight,
                   const TRect* clipRows, const std::function<void(int, int, int, int)>& band);

// Collects spans of many shapes row by row inside a fixed window (used to build a wide pen's
// outline cheaply); rows and columns outside the window are dropped.
class TSpanCollector {
public:
    explicit TSpanCollector(const TRect& window);
    void AddSpan(int y, int left, int right); // inline: strokes call it for every row of a join
    void AddRect(const TRect& r);
    const TRect& Window() const { return m_window; }

    struct TRowSpan {
        int y;
        TSpan span;
    };
    // The collected pixels as sorted rows: by row, then left edge, overlapping and touching
    // spans of a row merged. Painting these needs no region (no allocation per band).
    std::span<const TRowSpan> Rows();
    // Appends spans that lie in the window, sorted by row and left edge, disjoint and not
    // touching, without looking at them one by one: added after the spans of earlier rows (and
    // right of the row's last one), they need no sort in Rows(). (Spans added this way are
    // not widened by later ones; Rows() merges them all the same.)
    void AppendInOrder(std::span<const TRowSpan> spans);
    TRegion ToRegion();

private:
    // A span that starts a row or does not touch the row's last one (out of line: rare).
    void AppendSpan(int y, int left, int right);

    TRect m_window;
    std::vector<TRowSpan> m_spans; // in the order they were added
    std::vector<int> m_lastOfRow;  // per row of the window: index of its last span, or -1;
                                   // made by the first span added one at a time
    bool m_rowsReady{true};        // m_spans sorted and merged, and no row's last span known
};

inline void TSpanCollector::AppendInOrder(std::span<const TRowSpan> spans) {
    if (spans.empty()) return;
    if (!m_spans.empty()) {
        const TRowSpan& last = m_spans.back();
        const TRowSpan& next = spans.front();
        if (next.y < last.y || (next.y == last.y && next.span.left <= last.span.right))
            m_rowsReady = false;
    }
    m_spans.insert(m_spans.end(), spans.begin(), spans.end());
}

inline void TSpanCollector::AddSpan(int y, int left, int right) {
    if (y < m_window.top || y >= m_window.bottom) return;
    left = std::max(left, m_window.left);
    right = std::min(right, m_window.right);
    if (right <= left) return;
    // A curve's pen adds overlapping spans to a row one after another (a round join per point):
    // one that overlaps or touches the row's last span widens it instead, which leaves the
    // union the same and keeps the rows short.
    if (m_lastOfRow.empty()) return AppendSpan(y, left, right);
    const int last = m_lastOfRow[static_cast<std::size_t>(y - m_window.top)];
    if (last >= 0) {
        TSpan& previous = m_spans[static_cast<std::size_t>(last)].span;
        if (left <= previous.right && right >= previous.left) {
            previous = {std::min(left, previous.left), std::max(right, previous.right)};
            return;
        }
    }
    AppendSpan(y, left, right);
}

// GDI-style region handles: owning, freed by DeleteObject or when they go out of scope.
using HRGN = std::unique_ptr<TRegion>;

HRGN CreateRectRgn(int left, int top, int right, int bottom);
HRGN CreateRectRgnIndirect(const TRect& r);
HRGN CreateEllipticRgn(int left, int top, int right, int bottom);
HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int width, int height);
HRGN CreatePolygonRgn(const TPoint* points, int count, int fillMode);
// dest = src1 <mode> src2 (src2 is ignored for RGN_COPY); returns the region type.
int CombineRgn(const HRGN& dest, const HRGN& src1, const HRGN& src2, int mode);
bool PtInRegion(const HRGN& region, int x, int y);
int GetRgnBox(const HRGN& region, TRect& box);
int OffsetRgn(const HRGN& region, int dx, int dy);
bool EqualRgn(const HRGN& a, const HRGN& b);
bool DeleteObject(HRGN& region);

} // namespace qv
