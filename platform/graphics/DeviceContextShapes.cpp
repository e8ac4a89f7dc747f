// Filled and outlined figures: Rectangle, RoundRect, Ellipse, Arc, Pie, Chord and Polygon.
// Curves follow the one-pixel digital ellipse of their box; a wide pen strokes the same
// points. The interior is painted before a thin outline, or as interior minus outline when
// the outline is a region.

#include "DeviceContext.h"
#include "EllipseGeometry.h"

#include <algorithm>
#include <cstdlib>

namespace qv {

namespace {

// Index of the first quadrant point at or beyond the direction (x, y), counting the points of
// all four quadrants in sequence.
int FindIntersection(const std::vector<TPoint>& q, std::int64_t x, std::int64_t y) {
    const int count = static_cast<int>(q.size());
    int i = 0;
    auto px = [&](int k) { return static_cast<std::int64_t>(q[static_cast<std::size_t>(k)].x); };
    auto py = [&](int k) { return static_cast<std::int64_t>(q[static_cast<std::size_t>(k)].y); };
    if (y >= 0) {
        if (x >= 0) {
            while (i < count && !(px(i) * y <= py(i) * x))
                ++i;
            return i;
        }
        while (i < count && !(px(i) * y < py(i) * -x))
            ++i;
        return 2 * count - i;
    }
    if (x >= 0) {
        while (i < count && !(px(i) * -y <= py(i) * x))
            ++i;
        return 4 * count - i;
    }
    while (i < count && !(px(i) * -y < py(i) * -x))
        ++i;
    return 2 * count + i;
}

// The outline points of the arc of `rect`'s ellipse from the direction of `start` to that of
// `end` (both relative to the centre), in the drawing direction.
std::vector<TPoint> ArcPoints(bool clockwise, const TRect& rect, TPoint start, TPoint end) {
    const int width = rect.Width();
    const int height = rect.Height();
    std::vector<TPoint> q = EllipseQuadrant(width, height);
    std::vector<TPoint> out;
    const int count = static_cast<int>(q.size());
    if (count == 0) return out;
    for (auto& p : q) {
        p.x -= width / 2;
        p.y -= height / 2;
    }
    if (!clockwise) {
        start.y = -start.y;
        end.y = -end.y;
    }
    const int startPos = FindIntersection(q, start.x, start.y);
    int endPos = FindIntersection(q, end.x, end.y);
    if (endPos <= startPos) endPos += 4 * count;
    const int cx = rect.left + width / 2;
    const int cy = rect.top + height / 2;
    const int rx = rect.right - 1 - width / 2;
    const int by = rect.bottom - 1 - height / 2;
    out.reserve(static_cast<std::size_t>(endPos - startPos));
    for (int i = startPos; i < endPos; ++i) {
        const TPoint& fwd = q[static_cast<std::size_t>(i % count)];
        const TPoint& back = q[static_cast<std::size_t>(count - 1 - i % count)];
        const int quadrant = (i / count) % 4;
        TPoint p;
        if (clockwise) {
            switch (quadrant) {
            case 0:
                p = {cx + fwd.x, cy + fwd.y};
                break;
            case 1:
                p = {rx - back.x, cy + back.y};
                break;
            case 2:
                p = {rx - fwd.x, by - fwd.y};
                break;
            default:
                p = {cx + back.x, by - back.y};
                break;
            }
        } else {
            switch (quadrant) {
            case 0:
                p = {cx + fwd.x, by - fwd.y};
                break;
            case 1:
                p = {rx - back.x, by - back.y};
                break;
            case 2:
                p = {rx - fwd.x, cy + fwd.y};
                break;
            default:
                p = {cx + back.x, cy + back.y};
                break;
            }
        }
        out.push_back(p);
    }
    return out;
}

// The closed outline of a round rectangle: the corner quadrant mirrored horizontally and then
// vertically, leaving out duplicated mid points of a full-width or full-height ellipse.
std::vector<TPoint> RoundRectPoints(const TRect& rect, int ew, int eh, bool clockwise) {
    const std::vector<TPoint> q = EllipseQuadrant(ew, eh);
    int count = static_cast<int>(q.size());
    std::vector<TPoint> pts(static_cast<std::size_t>(4 * count + 4));
    for (int i = 0; i < count; ++i) {
        const TPoint& p = q[static_cast<std::size_t>(i)];
        pts[static_cast<std::size_t>(i)] =
            clockwise ? TPoint{rect.right - ew + p.x, rect.bottom - eh + p.y}
                      : TPoint{rect.right - ew + p.x, rect.top + eh - 1 - p.y};
    }
    int end = 2 * count - 1;
    if (ew % 2 && ew == rect.Width()) --end;
    for (int i = 0; i < count; ++i) {
        const TPoint p = pts[static_cast<std::size_t>(i)];
        pts[static_cast<std::size_t>(end - i)] = {rect.left + rect.right - 1 - p.x, p.y};
    }
    count = end + 1;
    end = 2 * count - 1;
    if (eh % 2 && eh == rect.Height()) --end;
    for (int i = 0; i < count; ++i) {
        const TPoint p = pts[static_cast<std::size_t>(i)];
        pts[static_cast<std::size_t>(end - i)] = {p.x, rect.top + rect.bottom - 1 - p.y};
    }
    pts.resize(static_cast<std::size_t>(std::max(end + 1, 0)));
    return pts;
}

} // namespace

std::optional<TRect> TDeviceContext::PenDeviceRect(int left, int top, int right, int bottom) const {
    TRect r = Ordered({left, top, right, bottom});
    if (r.left == r.right || r.top == r.bottom) return std::nullopt;
    if (m_penStyle == PS_INSIDEFRAME) {
        r.left += m_penWidth / 2;
        r.top += m_penWidth / 2;
        r.right -= (m_penWidth - 1) / 2;
        r.bottom -= (m_penWidth - 1) / 2;
    }
    return r;
}

// Paints a figure: `interior` (if any) with the brush and the outline `points` with the pen.
void TDeviceContext::FinishShape(std::optional<TRegion> interior, TSpanCollector* outline) {
    if (outline) {
        TRegion stroke = outline->ToRegion();
        if (interior) PaintRegionWithBrush(interior->Combine(stroke, RGN_DIFF), m_logBrush, m_rop2);
        PaintRegionWithPen(stroke);
    }
}

std::optional<TRect> TDeviceContext::DirectInteriorArea() const {
    if (PenUsesRegion()) return std::nullopt;
    if (!m_clip) return m_target->Bounds();
    if (m_clip->Type() != SIMPLEREGION) return std::nullopt;
    return Intersect(m_target->Bounds(), m_clip->Bounds());
}

void TDeviceContext::PaintPolygonInterior(std::span<const TPoint> points, TPolyFillMode mode,
                                          const TRect& visible) {
    const TBrushMasks masks = MakeBrushMasks(m_logBrush, m_rop2);
    if (masks.null || visible.IsEmpty()) return;
    // Rows are scanned within the target, as the region of the polygon would be.
    const TRect bounds = m_target->Bounds();
    ScanPolygon(points, mode, &bounds, [&](int y, std::span<const TSpan> spans) {
        if (y < visible.top || y >= visible.bottom) return;
        for (const TSpan& s : spans) {
            const TRect piece = Intersect({s.left, y, s.right, y + 1}, visible);
            if (!piece.IsEmpty()) PaintRect(piece, masks);
        }
    });
}

void TDeviceContext::PaintRoundRectInterior(const TRect& r, int ew, int eh, const TRect& visible) {
    const TBrushMasks masks = MakeBrushMasks(m_logBrush, m_rop2);
    if (masks.null) return;
    ScanRoundRect(r.left, r.top, r.right + 1, r.bottom + 1, ew, eh,
                  [&](int top, int bottom, int left, int right) {
                      const TRect piece = Intersect({left, top, right, bottom}, visible);
                      if (!piece.IsEmpty()) PaintRect(piece, masks);
                  });
}

void TDeviceContext::Rectangle(int left, int top, int right, int bottom) {
    if (!m_target) return;
    auto box = PenDeviceRect(left, top, right, bottom);
    if (!box) return;
    TRect r = *box;
    --r.right;
    --r.bottom;
    std::array<TPoint, 4> pts;
    if (m_arcDirection == AD_CLOCKWISE)
        pts = {TPoint{r.right, r.bottom}, {r.left, r.bottom}, {r.left, r.top}, {r.right, r.top}};
    else
        pts = {TPoint{r.right, r.top}, {r.left, r.top}, {r.left, r.bottom}, {r.right, r.bottom}};
    ResetDash();
    if (PenUsesRegion()) {
        TSpanCollector outline(m_target->Bounds());
        PenLines(pts, true, &outline);
        std::optional<TRegion> interior;
        if (m_logBrush.style != BS_NULL) interior = TRegion::FromRect(r);
        FinishShape(std::move(interior), &outline);
        return;
    }
    PenLines(pts, true, nullptr);
    const TRect inner{r.left + (m_penWidth + 1) / 2, r.top + (m_penWidth + 1) / 2,
                      r.right - m_penWidth / 2, r.bottom - m_penWidth / 2};
    if (!inner.IsEmpty()) PaintRectWithBrush(inner, m_logBrush, m_rop2);
}

void TDeviceContext::RoundRect(int left, int top, int right, int bottom, int width, int height) {
    if (!m_target) return;
    auto box = PenDeviceRect(left, top, right, bottom);
    if (!box) return;
    const TRect r = *box;
    const int ew = std::min(r.Width(), std::abs(width));
    const int eh = std::min(r.Height(), std::abs(height));
    if (ew <= 2 || eh <= 2) return Rectangle(left, top, right, bottom);

    std::optional<TRegion> interior;
    const TRect bounds = m_target->Bounds();
    if (m_logBrush.style != BS_NULL) {
        if (const auto visible = DirectInteriorArea())
            PaintRoundRectInterior(r, ew, eh, *visible);
        else
            interior =
                TRegion::FromRoundRect(r.left, r.top, r.right + 1, r.bottom + 1, ew, eh, &bounds);
    }
    const std::vector<TPoint> pts = RoundRectPoints(r, ew, eh, m_arcDirection == AD_CLOCKWISE);
    ResetDash();
    if (PenUsesRegion()) {
        TSpanCollector outline(m_target->Bounds());
        PenLines(pts, true, &outline);
        FinishShape(std::move(interior), &outline);
        return;
    }
    if (interior) PaintRegionWithBrush(*interior, m_logBrush, m_rop2);
    PenLines(pts, true, nullptr);
}

void TDeviceContext::Ellipse(int left, int top, int right, int bottom) {
    RoundRect(left, top, right, bottom, right - left, bottom - top);
}

void TDeviceContext::DrawArc(int left, int top, int right, int bottom, int x3, int y3, int x4,
                             int y4, int extraLines) {
    if (!m_target) return;
    auto box = PenDeviceRect(left, top, right, bottom);
    if (!box) return;
    const TRect r = *box;
    const TPoint centre{r.left + r.Width() / 2, r.top + r.Height() / 2};
    std::vector<TPoint> pts =
        ArcPoints(m_arcDirection == AD_CLOCKWISE, r, {x3 - centre.x, y3 - centre.y},
                  {x4 - centre.x, y4 - centre.y});
    if (extraLines == 2) pts.push_back(centre);
    if (pts.size() < 2) return;

    std::optional<TRegion> interior;
    const TRect bounds = m_target->Bounds();
    if (m_logBrush.style != BS_NULL && extraLines > 0) {
        if (const auto visible = DirectInteriorArea())
            PaintPolygonInterior(pts, WINDING, *visible);
        else
            interior = TRegion::FromPolygon(pts, WINDING, &bounds);
    }
    const bool close = extraLines > 0;
    ResetDash();
    if (PenUsesRegion()) {
        TSpanCollector outline(bounds);
        PenLines(pts, close, &outline);
        FinishShape(std::move(interior), &outline);
        return;
    }
    if (interior) PaintRegionWithBrush(*interior, m_logBrush, m_rop2);
    PenLines(pts, close, nullptr);
}

void TDeviceContext::Arc(int left, int top, int right, int bottom, int x3, int y3, int x4, int y4) {
    DrawArc(left, top, right, bottom, x3, y3, x4, y4, 0);
}

void TDeviceContext::Chord(int left, int top, int right, int bottom, int x3, int y3, int x4,
                           int y4) {
    DrawArc(left, top, right, bottom, x3, y3, x4, y4, 1);
}

void TDeviceContext::Pie(int left, int top, int right, int bottom, int x3, int y3, int x4, int y4) {
    DrawArc(left, top, right, bottom, x3, y3, x4, y4, 2);
}

void TDeviceContext::Polygon(std::span<const TPoint> points) {
    if (!m_target || points.size() < 2) return;
    const TRect bounds = m_target->Bounds();
    std::optional<TRegion> interior;
    const TPolyFillMode mode = m_polyFillMode == WINDING ? WINDING : ALTERNATE;
    if (m_logBrush.style != BS_NULL) {
        if (const auto visible = DirectInteriorArea())
            PaintPolygonInterior(points, mode, *visible);
        else
            interior = TRegion::FromPolygon(points, mode, &bounds);
    }
    ResetDash();
    if (PenUsesRegion()) {
        TSpanCollector outline(bounds);
        PenLines(points, true, &outline);
        FinishShape(std::move(interior), &outline);
        return;
    }
    if (interior) PaintRegionWithBrush(*interior, m_logBrush, m_rop2);
    PenLines(points, true, nullptr);
}

} // namespace qv
