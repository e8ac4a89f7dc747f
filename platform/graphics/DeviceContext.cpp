#include "DeviceContext.h"

#include <algorithm>
#include <array>
#include <utility>

namespace qv {

namespace {

// The eight rows of each hatch, most significant bit leftmost.
constexpr std::array<std::array<std::uint8_t, 8>, 6> HatchRows = {{
    {0x00, 0x00, 0x00, 0xff, 0x00, 0x00, 0x00, 0x00}, // horizontal
    {0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08}, // vertical
    {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01}, // forward diagonal
    {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80}, // backward diagonal
    {0x08, 0x08, 0x08, 0xff, 0x08, 0x08, 0x08, 0x08}, // cross
    {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81}, // diagonal cross
}};

int PositiveMod(int value, int modulus) {
    const int r = value % modulus;
    return r < 0 ? r + modulus : r;
}

// The ROP2 of a ternary raster operation whose source bits are ignored.
int Rop2FromRop3(std::uint32_t rop) {
    return static_cast<int>((((rop >> 18) & 0x0c) | ((rop >> 16) & 0x03)) + 1);
}

// The rectangle of a blit at (x, y) with the given extents; a negative extent mirrors the
// span around x or y (x .. x + width + 1). Coordinates are clamped so that extreme input
// cannot overflow.
TRect BlitRect(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) {
    auto axis = [](std::int64_t pos, std::int64_t extent, int& lo, int& hi) {
        std::int64_t a = pos, b = pos + extent;
        if (a > b) {
            const std::int64_t t = b + 1;
            b = a + 1;
            a = t;
        }
        constexpr std::int64_t limit = std::int64_t{1} << 30;
        lo = static_cast<int>(std::clamp(a, -limit, limit));
        hi = static_cast<int>(std::clamp(b, -limit, limit));
    };
    TRect r;
    axis(x, width, r.left, r.right);
    axis(y, height, r.top, r.bottom);
    return r;
}

} // namespace

TRopMask RopMaskFor(int rop2, std::uint32_t pixel) {
    if (rop2 == R2_COPYPEN) return {0, pixel};
    // Bit (2 * P + D) of (rop2 - 1) is the result for pen bit P and destination bit D.
    const unsigned table = static_cast<unsigned>(std::clamp(rop2, 1, 16) - 1);
    auto maskFor = [&](unsigned penBit) {
        const bool whenDst0 = (table >> (2 * penBit)) & 1;
        const bool whenDst1 = (table >> (2 * penBit + 1)) & 1;
        return TRopMask{whenDst0 != whenDst1 ? 0xFFFFFFFFu : 0u, whenDst0 ? 0xFFFFFFFFu : 0u};
    };
    const TRopMask one = maskFor(1);
    const TRopMask zero = maskFor(0);
    // The mix never sets the unused top byte of a pixel.
    return {(pixel & one.andMask) | (~pixel & zero.andMask),
            ((pixel & one.xorMask) | (~pixel & zero.xorMask)) & 0x00FFFFFFu};
}

TDeviceContext::TDeviceContext(TPixelBuffer* target) : m_target(target) {
    SelectPen(m_logPen);
}

void TDeviceContext::SelectPen(const TLogPen& pen) {
    static const std::array<std::vector<int>, 4> cosmeticDashes = {{
        {18, 6},
        {3, 3},
        {9, 6, 3, 6},
        {9, 3, 3, 3, 3, 3},
    }};
    m_logPen = pen;
    m_penStyle = (pen.style >= PS_SOLID && pen.style <= PS_INSIDEFRAME) ? pen.style : PS_SOLID;
    m_penWidth = std::clamp(std::abs(pen.width), 1, 1 << 16);
    m_dash = {};
    if (m_penStyle == PS_NULL) m_penWidth = 0;
    // Wide cosmetic pens are not dashed.
    if (m_penStyle >= PS_DASH && m_penStyle <= PS_DASHDOTDOT && m_penWidth == 1) {
        m_dash.dashes = cosmeticDashes[static_cast<std::size_t>(m_penStyle - PS_DASH)];
        for (int d : m_dash.dashes)
            m_dash.total += d;
    }
}

int TDeviceContext::SetROP2(int rop2) {
    const int old = m_rop2;
    if (rop2 >= R2_BLACK && rop2 <= R2_WHITE) m_rop2 = rop2;
    return old;
}

TColor TDeviceContext::SetTextColor(TColor color) {
    return std::exchange(m_textColor, color);
}

int TDeviceContext::SetArcDirection(int direction) {
    const int old = m_arcDirection;
    if (direction == AD_CLOCKWISE || direction == AD_COUNTERCLOCKWISE) m_arcDirection = direction;
    return old;
}

int TDeviceContext::SetPolyFillMode(int mode) {
    const int old = m_polyFillMode;
    if (mode == ALTERNATE || mode == WINDING) m_polyFillMode = mode;
    return old;
}

int TDeviceContext::SelectClipRgn(const TRegion* region) {
    if (!region) {
        m_clip.reset();
        return SIMPLEREGION;
    }
    m_clip = *region;
    return m_clip->Type();
}

int TDeviceContext::SelectClipRgn(TRegion&& region) {
    m_clip = std::move(region);
    return m_clip->Type();
}

int TDeviceContext::IntersectClipRect(const TRect& r) {
    const TRegion rect = TRegion::FromRect(r);
    if (m_clip)
        m_clip = m_clip->Combine(rect, RGN_AND);
    else if (m_target)
        m_clip = TRegion::FromRect(m_target->Bounds()).Combine(rect, RGN_AND);
    else
        m_clip = rect;
    return m_clip->Type();
}

TRect TDeviceContext::GetClipBox() const {
    const TRect bounds = m_target ? m_target->Bounds() : TRect{};
    if (!m_clip) return bounds;
    return Intersect(m_clip->Bounds(), bounds);
}

std::uint32_t TDeviceContext::PixelOf(TColor color) const {
    return ColorToPixel(ColorToDrawRGB(color));
}

std::vector<TRect> TDeviceContext::VisibleRects(const TRect& r) const {
    std::vector<TRect> rects;
    ForEachVisibleRect(r, [&](const TRect& piece) { rects.push_back(piece); });
    return rects;
}

// ---- brushes ----------------------------------------------------------------------------

TDeviceContext::TBrushMasks TDeviceContext::MakeBrushMasks(const TLogBrush& brush, int rop2) const {
    TBrushMasks masks;
    masks.origin = m_brushOrg;
    switch (brush.style) {
    case BS_SOLID:
        masks.null = false;
        masks.solid = RopMaskFor(rop2, PixelOf(brush.color));
        break;
    case BS_HATCHED: {
        const auto& rows = HatchRows[static_cast<std::size_t>(std::clamp(brush.hatch, 0, 5))];
        const TRopMask foreground = RopMaskFor(rop2, PixelOf(brush.color));
        const TRopMask background = m_bkMode == TRANSPARENT ? TRopMask{0xFFFFFFFFu, 0}
                                                            : RopMaskFor(rop2, PixelOf(m_bkColor));
        masks.null = false;
        masks.width = masks.height = 8;
        masks.cells.resize(64);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                masks.cells[static_cast<std::size_t>(y * 8 + x)] =
                    (rows[static_cast<std::size_t>(y)] & (0x80 >> x)) ? foreground : background;
        break;
    }
    case BS_PATTERN: {
        if (!brush.pattern || brush.pattern->IsEmpty()) break;
        const TPixelBuffer& tile = *brush.pattern;
        masks.null = false;
        masks.width = tile.Width();
        masks.height = tile.Height();
        masks.cells.resize(static_cast<std::size_t>(masks.width) * masks.height);
        const TRopMask text = RopMaskFor(rop2, PixelOf(m_textColor));
        const TRopMask back = RopMaskFor(rop2, PixelOf(m_bkColor));
        for (int y = 0; y < masks.height; ++y)
            for (int x = 0; x < masks.width; ++x) {
                const std::uint32_t p = tile.At(x, y) & 0xFFFFFF;
                masks.cells[static_cast<std::size_t>(y * masks.width + x)] =
                    brush.monochrome ? (p == 0 ? text : back) : RopMaskFor(rop2, p);
            }
        break;
    }
    default:
        break;
    }
    return masks;
}

void TDeviceContext::PaintRect(const TRect& r, const TBrushMasks& masks) {
    if (masks.null || !m_target) return;
    if (masks.IsSolid()) {
        ApplyMaskToRect(r, masks.solid);
        return;
    }
    for (int y = r.top; y < r.bottom; ++y) {
        const TRopMask* row = masks.Row(PositiveMod(y - masks.origin.y, masks.height));
        std::uint32_t* dst = m_target->Row(y);
        int px = PositiveMod(r.left - masks.origin.x, masks.width);
        for (int x = r.left; x < r.right; ++x) {
            dst[x] = (dst[x] & row[px].andMask) ^ row[px].xorMask;
            if (++px == masks.width) px = 0;
        }
    }
}

void TDeviceContext::PaintVisible(const TRect& r, const TBrushMasks& masks) {
    if (masks.null) return;
    if (m_clip && m_target && masks.IsSolid() && masks.solid.andMask == 0)
        return FillVisibleRows(r, masks.solid.xorMask);
    ForEachVisibleRect(r, [&](const TRect& piece) { PaintRect(piece, masks); });
}

// A replacing solid fill under a clip region, row by row and each row's visible pieces left
// to right: the pixels are written in the order they lie in memory. (Piece by piece, a band
// of several narrow pieces, such as the gaps between a form's children, was walked down one
// column after another, with more cache misses and about 1.8 times the time.)
void TDeviceContext::FillVisibleRows(const TRect& r, std::uint32_t pixel) {
    const TRect inside = Intersect(r, m_target->Bounds());
    if (inside.IsEmpty()) return;
    for (const TBand& band : m_clip->Bands()) {
        if (band.bottom <= inside.top) continue;
        if (band.top >= inside.bottom) break;
        const int top = std::max(band.top, inside.top);
        const int bottom = std::min(band.bottom, inside.bottom);
        for (int y = top; y < bottom; ++y) {
            std::uint32_t* row = m_target->Row(y);
            for (const TSpan& span : band.spans) {
                const int left = std::max(span.left, inside.left);
                const int right = std::min(span.right, inside.right);
                if (left < right) FillPixels(row + left, right - left, pixel);
            }
        }
    }
}

void TDeviceContext::ApplyMaskToRect(const TRect& r, TRopMask mask) {
    if (mask.andMask == 0xFFFFFFFFu && mask.xorMask == 0) return;
    if (mask.andMask == 0) { // a replacing colour (the usual fill): rows filled directly
        for (int y = r.top; y < r.bottom; ++y)
            FillPixels(m_target->Row(y) + r.left, r.Width(), mask.xorMask);
        return;
    }
    for (int y = r.top; y < r.bottom; ++y)
        RopPixels(m_target->Row(y) + r.left, r.Width(), mask.andMask, mask.xorMask);
}

void TDeviceContext::PaintRectWithBrush(const TRect& r, const TLogBrush& brush, int rop2) {
    if (!m_target || brush.style == BS_NULL) return;
    PaintVisible(r, MakeBrushMasks(brush, rop2));
}

void TDeviceContext::PaintRegionWithBrush(const TRegion& region, const TLogBrush& brush, int rop2) {
    if (!m_target) return;
    const TBrushMasks masks = MakeBrushMasks(brush, rop2);
    if (masks.null) return;
    const TRect bounds = m_target->Bounds();
    std::optional<TRegion> clipped;
    if (m_clip) clipped = region.Combine(*m_clip, RGN_AND);
    const TRegion& visible = clipped ? *clipped : region;
    for (const auto& band : visible.Bands()) {
        if (band.bottom <= bounds.top) continue;
        if (band.top >= bounds.bottom) break;
        for (const auto& span : band.spans) {
            const TRect piece = Intersect({span.left, band.top, span.right, band.bottom}, bounds);
            if (!piece.IsEmpty()) PaintRect(piece, masks);
        }
    }
}

void TDeviceContext::PaintRegionWithPen(const TRegion& region) {
    TLogBrush penBrush;
    penBrush.color = m_logPen.color;
    PaintRegionWithBrush(region, penBrush, m_rop2);
}

std::optional<TRect> TDeviceContext::RectangularVisibleArea() const {
    if (!m_clip) return m_target->Bounds();
    if (m_clip->Type() == COMPLEXREGION) return std::nullopt;
    return Intersect(m_target->Bounds(), m_clip->Bounds());
}

namespace {

// Paints the part of span `s` of row `y` that lies in `visible`.
template <class PaintRectFn>
void PaintSpanIn(int y, TSpan s, const TRect& visible, PaintRectFn&& paint) {
    const TRect piece = Intersect({s.left, y, s.right, y + 1}, visible);
    if (!piece.IsEmpty()) paint(piece);
}

// Paints what the spans `fill` of row `y` leave uncovered by `cover` (sorted, disjoint).
template <class PaintRectFn>
void PaintSpansBeside(int y, std::span<const TSpan> fill,
                      std::span<const TSpanCollector::TRowSpan> cover, const TRect& visible,
                      PaintRectFn&& paint) {
    auto first = cover.begin();
    for (const TSpan& s : fill) {
        int left = s.left;
        while (first != cover.end() && first->span.right <= left)
            ++first;
        for (auto c = first; c != cover.end() && c->span.left < s.right; ++c) {
            if (c->span.left > left) PaintSpanIn(y, {left, c->span.left}, visible, paint);
            left = std::max(left, c->span.right);
        }
        if (left < s.right) PaintSpanIn(y, {left, s.right}, visible, paint);
    }
}

} // namespace

void TDeviceContext::PaintStroke(TSpanCollector& outline, const TRegion* interior) {
    const std::optional<TRect> visible = RectangularVisibleArea();
    if (!visible) {
        const TRegion stroke = outline.ToRegion();
        if (interior) PaintRegionWithBrush(interior->Combine(stroke, RGN_DIFF), m_logBrush, m_rop2);
        PaintRegionWithPen(stroke);
        return;
    }
    // One rectangle is visible: the outline's sorted rows are painted as they are, and the
    // interior row by row around them, without building the regions.
    const std::span<const TSpanCollector::TRowSpan> stroke = outline.Rows();
    if (interior) {
        const TBrushMasks fill = MakeBrushMasks(m_logBrush, m_rop2);
        const auto paintFill = [&](const TRect& piece) { PaintRect(piece, fill); };
        auto row = stroke.begin();
        for (const TBand& band : interior->Bands()) {
            for (int y = std::max(band.top, visible->top);
                 y < std::min(band.bottom, visible->bottom); ++y) {
                while (row != stroke.end() && row->y < y)
                    ++row;
                auto rowEnd = row;
                while (rowEnd != stroke.end() && rowEnd->y == y)
                    ++rowEnd;
                PaintSpansBeside(y, band.spans, {row, rowEnd}, *visible, paintFill);
                row = rowEnd;
            }
        }
    }
    // The pen's colour is one mask: its spans are mixed into their rows directly.
    const TRopMask ink = RopMaskFor(m_rop2, PixelOf(m_logPen.color));
    if (ink.andMask == 0xFFFFFFFFu && ink.xorMask == 0) return;
    // Spans cut to a window inside the visible rectangle (the target's, without a clip) need
    // no more cutting.
    if (Intersect(outline.Window(), *visible) == outline.Window()) {
        for (const TSpanCollector::TRowSpan& s : stroke) {
            std::uint32_t* row = m_target->Row(s.y) + s.span.left;
            const int count = s.span.right - s.span.left;
            if (ink.andMask == 0 && count < 16) { // a curve's spans are a few pixels: no call
                for (int i = 0; i < count; ++i)
                    row[i] = ink.xorMask;
            } else {
                RopPixels(row, count, ink.andMask, ink.xorMask);
            }
        }
        return;
    }
    for (const TSpanCollector::TRowSpan& s : stroke) {
        if (s.y < visible->top || s.y >= visible->bottom) continue;
        const int left = std::max(s.span.left, visible->left);
        const int right = std::min(s.span.right, visible->right);
        if (left < right)
            RopPixels(m_target->Row(s.y) + left, right - left, ink.andMask, ink.xorMask);
    }
}

void TDeviceContext::FillRgn(const TRegion& region, const TLogBrush& brush) {
    PaintRegionWithBrush(region, brush, R2_COPYPEN);
}

void TDeviceContext::PaintRgn(const TRegion& region) {
    PaintRegionWithBrush(region, m_logBrush, m_rop2);
}

void TDeviceContext::PatBlt(int x, int y, int width, int height, std::uint32_t rop) {
    if (RopUsesSource(rop)) return; // as GDI refuses
    const int rop2 = Rop2FromRop3(rop);
    const TRect r = BlitRect(x, y, width, height);
    if (rop2 == R2_BLACK || rop2 == R2_WHITE || rop2 == R2_NOT || rop2 == R2_NOP) {
        const TRopMask mask = RopMaskFor(rop2, 0);
        ForEachVisibleRect(r, [&](const TRect& piece) { ApplyMaskToRect(piece, mask); });
        return;
    }
    PaintRectWithBrush(r, m_logBrush, rop2);
}

void TDeviceContext::FillRect(const TRect& r, const TLogBrush& brush) {
    // The common case, a solid brush on a rectangle in the usual corner order without a clip
    // region or with a rectangular one (a control painting its damaged part), fills the rows
    // directly; it is kept small because gradients call it once per band.
    if (brush.style != BS_SOLID || !m_target || r.left > r.right || r.top > r.bottom ||
        (m_clip && m_clip->Type() == COMPLEXREGION))
        return FillRectThroughBrush(r, brush);
    TRect inside = Intersect(r, m_target->Bounds());
    if (m_clip) inside = Intersect(inside, m_clip->Bounds());
    if (inside.IsEmpty()) return;
    const std::uint32_t pixel = PixelOf(brush.color);
    // Whole rows of a buffer without gaps between its rows are one run of pixels.
    if (inside.Width() == m_target->Width() && m_target->Stride() == m_target->Width())
        return FillPixels(m_target->Row(inside.top), inside.Width() * inside.Height(), pixel);
    for (int y = inside.top; y < inside.bottom; ++y)
        FillPixels(m_target->Row(y) + inside.left, inside.Width(), pixel);
}

void TDeviceContext::FillRectThroughBrush(const TRect& r, const TLogBrush& brush) {
    PaintRectWithBrush(
        BlitRect(r.left, r.top, std::int64_t{r.right} - r.left, std::int64_t{r.bottom} - r.top),
        brush, R2_COPYPEN);
}

void TDeviceContext::FrameRect(const TRect& r, const TLogBrush& brush) {
    if (r.right <= r.left || r.bottom <= r.top) return;
    const TBrushMasks masks = MakeBrushMasks(brush, R2_COPYPEN);
    PaintVisible({r.left, r.top, r.left + 1, r.bottom}, masks);
    PaintVisible({r.right - 1, r.top, r.right, r.bottom}, masks);
    PaintVisible({r.left, r.top, r.right, r.top + 1}, masks);
    PaintVisible({r.left, r.bottom - 1, r.right, r.bottom}, masks);
}

void TDeviceContext::InvertRect(const TRect& r) {
    const TRopMask mask = RopMaskFor(R2_NOT, 0);
    ForEachVisibleRect(
        BlitRect(r.left, r.top, std::int64_t{r.right} - r.left, std::int64_t{r.bottom} - r.top),
        [&](const TRect& piece) { ApplyMaskToRect(piece, mask); });
}

void TDeviceContext::DrawFocusRect(const TRect& r) {
    // The grey pattern: a 2 x 2 tile whose "dots" (x + y even) carry the background colour
    // and whose other pixels carry the text colour, XORed onto the frame.
    TBrushMasks masks;
    masks.null = false;
    masks.width = masks.height = 2;
    const TRopMask dot = RopMaskFor(R2_XORPEN, PixelOf(m_bkColor));
    const TRopMask gap = RopMaskFor(R2_XORPEN, PixelOf(m_textColor));
    masks.cells = {dot, gap, gap, dot};
    const std::int64_t w = std::int64_t{r.right} - r.left;
    const std::int64_t h = std::int64_t{r.bottom} - r.top;
    PaintVisible(BlitRect(r.left, r.top, w, 1), masks);
    PaintVisible(BlitRect(r.left, r.bottom - 1, w, 1), masks);
    if (h > 2) {
        PaintVisible(BlitRect(r.left, r.top + 1, 1, h - 2), masks);
        PaintVisible(BlitRect(r.right - 1, r.top + 1, 1, h - 2), masks);
    }
}

// ---- pixels -----------------------------------------------------------------------------

TColor TDeviceContext::SetPixel(int x, int y, TColor color) {
    const std::uint32_t pixel = PixelOf(color);
    const TRopMask mask = RopMaskFor(m_rop2, pixel);
    ForEachVisibleRect({x, y, x + 1, y + 1}, [&](const TRect& r) { ApplyMaskToRect(r, mask); });
    return PixelToColor(pixel);
}

TColor TDeviceContext::GetPixel(int x, int y) const {
    if (!m_target || !m_target->Contains(x, y)) return MakeColor(0xFFFFFFFFu);
    return PixelToColor(m_target->At(x, y));
}

} // namespace qv
