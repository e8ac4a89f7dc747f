// Filled and outlined figures: Rectangle, RoundRect, Ellipse, Arc, Pie, Chord and Polygon.
// Curves follow the one-pixel digital ellipse of their box; a wide pen strokes the same
// points. The interior is painted before a thin outline, or as interior minus outline when
// the outline is a region.

#include "DeviceContext.h"
#include "EllipseGeometry.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace qv {

namespace {

// Curved figures whose box reaches beyond this many pixels from the origin are not drawn, as
// in the classic drawing layer; it bounds the walk along the ellipse for any int input.
constexpr int kCurveCoordinateLimit = 1 << 27;

bool CurveBoxInRange(const TRect& r) {
    return std::max({std::abs(static_cast<long long>(r.left)),
                     std::abs(static_cast<long long>(r.top)),
                     std::abs(static_cast<long long>(r.right)),
                     std::abs(static_cast<long long>(r.bottom))}) <= kCurveCoordinateLimit;
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
    if (outline) PaintStroke(*outline, interior ? &*interior : nullptr);
}

TRect TDeviceContext::OutlineWindow() const {
    const TRect bounds = m_target->Bounds();
    const int margin = std::min(m_penWidth, kCurveCoordinateLimit) + 2;
    return {bounds.left - margin, bounds.top - margin, bounds.right + margin,
            bounds.bottom + margin};
}

std::optional<TRect> TDeviceContext::DirectInteriorArea() const {
    if (PenUsesRegion()) return std::nullopt;
    return RectangularVisibleArea();
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
    // A solid brush that replaces the pixels (the usual one) fills its rows directly.
    const bool plainFill = masks.IsSolid() && masks.solid.andMask == 0;
    ScanRoundRect(r.left, r.top, r.right + 1, r.bottom + 1, ew, eh, &visible,
                  [&](int top, int bottom, int left, int right) {
                      const TRect piece = Intersect({left, top, right, bottom}, visible);
                      if (piece.IsEmpty()) return;
                      if (!plainFill) return PaintRect(piece, masks);
                      for (int y = piece.top; y < piece.bottom; ++y)
                          FillPixels(m_target->Row(y) + piece.left, piece.Width(),
                                     masks.solid.xorMask);
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
    if (!m_target || !CurveBoxInRange({left, top, right, bottom})) return;
    auto box = PenDeviceRect(left, top, right, bottom);
    if (!box) return;
    const TRect r = *box;
    const int ew = static_cast<int>(std::min<long long>(r.Width(), std::llabs(width)));
    const int eh = static_cast<int>(std::min<long long>(r.Height(), std::llabs(height)));
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
    const TThinOutline pts =
        RoundRectOutline(r, ew, eh, m_arcDirection == AD_CLOCKWISE, OutlineWindow());
    ResetDash();
    if (PenUsesRegion()) {
        TSpanCollector outline(m_target->Bounds());
        PenLines(pts.points, true, &outline);
        FinishShape(std::move(interior), &outline);
        return;
    }
    if (interior) PaintRegionWithBrush(*interior, m_logBrush, m_rop2);
    PenLines(pts.points, true, nullptr, pts.hiddenSteps);
}

void TDeviceContext::Ellipse(int left, int top, int right, int bottom) {
    if (!CurveBoxInRange({left, top, right, bottom})) return;
    RoundRect(left, top, right, bottom, right - left, bottom - top);
}

void TDeviceContext::DrawArc(int left, int top, int right, int bottom, int x3, int y3, int x4,
                             int y4, int extraLines) {
    if (!m_target || !CurveBoxInRange({left, top, right, bottom})) return;
    auto box = PenDeviceRect(left, top, right, bottom);
    if (!box) return;
    const TRect r = *box;
    const TPoint centre{r.left + r.Width() / 2, r.top + r.Height() / 2};
    const auto relative = [&](int x, int y) {
        const auto clampToInt = [](long long v) {
            return static_cast<int>(std::clamp<long long>(v, INT_MIN, INT_MAX));
        };
        return TPoint{clampToInt(static_cast<long long>(x) - centre.x),
                      clampToInt(static_cast<long long>(y) - centre.y)};
    };
    TThinOutline arc = ArcOutline(r, relative(x3, y3), relative(x4, y4),
                                  m_arcDirection == AD_CLOCKWISE, OutlineWindow());
    std::vector<TPoint>& pts = arc.points;
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
    PenLines(pts, close, nullptr, arc.hiddenSteps);
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
