#pragma once
// TDeviceContext: the drawing state and primitives of the classic GDI on a 32-bit pixel
// buffer (a memory device context with a DIB section selected). Every pixel rule follows the
// classic raster model: right and bottom edges exclusive, lines without their last point,
// wide pens built as regions with round caps and joins, brushes tiled from the brush origin,
// ROP2 mixes on pens and brushes, ternary raster operations on blits.

#include "Color.h"
#include "PixelBuffer.h"
#include "Region.h"
#include "Types.h"
#include "WidePen.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace qv {

enum TRop2 : int {
    R2_BLACK = 1,
    R2_NOTMERGEPEN,
    R2_MASKNOTPEN,
    R2_NOTCOPYPEN,
    R2_MASKPENNOT,
    R2_NOT,
    R2_XORPEN,
    R2_NOTMASKPEN,
    R2_MASKPEN,
    R2_NOTXORPEN,
    R2_NOP,
    R2_MERGENOTPEN,
    R2_COPYPEN,
    R2_MERGEPENNOT,
    R2_MERGEPEN,
    R2_WHITE,
};

enum TGdiPenStyle : int {
    PS_SOLID = 0,
    PS_DASH,
    PS_DOT,
    PS_DASHDOT,
    PS_DASHDOTDOT,
    PS_NULL,
    PS_INSIDEFRAME,
};

enum TGdiBrushStyle : int { BS_SOLID = 0, BS_NULL = 1, BS_HATCHED = 2, BS_PATTERN = 3 };
enum THatchStyle : int {
    HS_HORIZONTAL = 0,
    HS_VERTICAL,
    HS_FDIAGONAL,
    HS_BDIAGONAL,
    HS_CROSS,
    HS_DIAGCROSS,
};
enum TBkMode : int { TRANSPARENT = 1, OPAQUE = 2 };
enum TArcDirection : int { AD_COUNTERCLOCKWISE = 1, AD_CLOCKWISE = 2 };
// How StretchBlt combines the source pixels of a shrink that fall on one destination pixel:
// ANDed, ORed, or one kept. HALFTONE is accepted and stretches like COLORONCOLOR.
enum TStretchMode : int { BLACKONWHITE = 1, WHITEONBLACK, COLORONCOLOR, HALFTONE };
constexpr int STRETCH_ANDSCANS = BLACKONWHITE;
constexpr int STRETCH_ORSCANS = WHITEONBLACK;
constexpr int STRETCH_DELETESCANS = COLORONCOLOR;
constexpr int STRETCH_HALFTONE = HALFTONE;

// Ternary raster operations of the blits.
constexpr std::uint32_t SRCCOPY = 0x00CC0020;
constexpr std::uint32_t SRCPAINT = 0x00EE0086;
constexpr std::uint32_t SRCAND = 0x008800C6;
constexpr std::uint32_t SRCINVERT = 0x00660046;
constexpr std::uint32_t SRCERASE = 0x00440328;
constexpr std::uint32_t NOTSRCCOPY = 0x00330008;
constexpr std::uint32_t NOTSRCERASE = 0x001100A6;
constexpr std::uint32_t MERGECOPY = 0x00C000CA;
constexpr std::uint32_t MERGEPAINT = 0x00BB0226;
constexpr std::uint32_t PATCOPY = 0x00F00021;
constexpr std::uint32_t PATPAINT = 0x00FB0A09;
constexpr std::uint32_t PATINVERT = 0x005A0049;
constexpr std::uint32_t DSTINVERT = 0x00550009;
constexpr std::uint32_t BLACKNESS = 0x00000042;
constexpr std::uint32_t WHITENESS = 0x00FF0062;
// Whether a ternary raster operation reads the source (GDI decodes only its index byte).
constexpr bool RopUsesSource(std::uint32_t rop) {
    return ((rop >> 2) & 0x330000) != (rop & 0x330000);
}

struct TLogPen {
    int style{PS_SOLID};
    int width{1};
    TColor color{clBlack};
};

struct TLogBrush {
    int style{BS_SOLID};
    TColor color{clWhite};
    int hatch{HS_HORIZONTAL};
    // BS_PATTERN: the tile. A monochrome tile draws its black pixels in the text colour and
    // its white pixels in the background colour.
    std::shared_ptr<const TPixelBuffer> pattern;
    bool monochrome{false};
};

// dst = (dst & andMask) ^ xorMask: every ROP2 mix of a fixed source colour has this form.
struct TRopMask {
    std::uint32_t andMask{0};
    std::uint32_t xorMask{0};
};
TRopMask RopMaskFor(int rop2, std::uint32_t pixel);

// What a blit reads: pixels, and whether they hold a monochrome bitmap. A monochrome source
// is mapped through the destination's colours: black pixels (0 bits) take its text colour,
// white pixels (1 bits) its background colour.
struct TBlitSource {
    TBlitSource(const TPixelBuffer* source = nullptr, bool isMonochrome = false)
        : pixels(source), monochrome(isMonochrome) {}
    const TPixelBuffer* pixels;
    bool monochrome;
};

class TDeviceContext {
public:
    explicit TDeviceContext(TPixelBuffer* target = nullptr);

    // The pixels drawn on; not owned. Null makes every drawing call a no-op.
    void SelectTarget(TPixelBuffer* target) { m_target = target; }
    TPixelBuffer* Target() const { return m_target; }
    // Whether the selected pixels stand for a monochrome bitmap (see TBlitSource).
    void SetMonochrome(bool monochrome) { m_monochrome = monochrome; }
    bool IsMonochrome() const { return m_monochrome; }
    TBlitSource AsBlitSource() const { return {m_target, m_monochrome}; }

    void SelectPen(const TLogPen& pen);
    void SelectBrush(const TLogBrush& brush) { m_logBrush = brush; }
    void SelectBrush(TLogBrush&& brush) { m_logBrush = std::move(brush); }
    // The same as selecting TLogBrush{BS_SOLID, color}, without building one.
    // Only what differs is written: gradients select a brush per band right after filling the
    // last one, while the fill's stores are still draining.
    void SelectSolidBrush(TColor color) {
        if (m_logBrush.style != BS_SOLID || m_logBrush.hatch != HS_HORIZONTAL ||
            m_logBrush.pattern || m_logBrush.monochrome)
            m_logBrush = TLogBrush{};
        m_logBrush.color = color;
    }
    const TLogPen& Pen() const { return m_logPen; }
    const TLogBrush& Brush() const { return m_logBrush; }
    int SetROP2(int rop2);
    int GetROP2() const { return m_rop2; }
    TColor SetBkColor(TColor color) { return std::exchange(m_bkColor, color); }
    TColor GetBkColor() const { return m_bkColor; }
    int SetBkMode(int mode) {
        const int old = m_bkMode;
        if (mode != old && (mode == TRANSPARENT || mode == OPAQUE)) m_bkMode = mode;
        return old;
    }
    int GetBkMode() const { return m_bkMode; }
    TColor SetTextColor(TColor color);
    TColor GetTextColor() const { return m_textColor; }
    int SetArcDirection(int direction);
    int GetArcDirection() const { return m_arcDirection; }
    int SetPolyFillMode(int mode);
    int GetPolyFillMode() const { return m_polyFillMode; }
    int SetStretchBltMode(int mode);
    int GetStretchBltMode() const { return m_stretchMode; }
    void SetBrushOrg(TPoint origin) { m_brushOrg = origin; }
    TPoint GetBrushOrg() const { return m_brushOrg; }

    // Clipping: a copy of `region` (null removes clipping), or `region` itself when it is
    // handed over. Returns the region type.
    int SelectClipRgn(const TRegion* region);
    int SelectClipRgn(TRegion&& region);
    int IntersectClipRect(const TRect& r);
    // The clip box: the clip region's bounds within the target, or the target bounds.
    TRect GetClipBox() const;

    TPoint CurrentPos() const { return m_pos; }
    void MoveTo(int x, int y) { m_pos = {x, y}; }
    void LineTo(int x, int y);
    void Polyline(std::span<const TPoint> points);
    void Polygon(std::span<const TPoint> points);
    void Rectangle(int left, int top, int right, int bottom);
    void RoundRect(int left, int top, int right, int bottom, int width, int height);
    void Ellipse(int left, int top, int right, int bottom);
    void Arc(int left, int top, int right, int bottom, int x3, int y3, int x4, int y4);
    void Pie(int left, int top, int right, int bottom, int x3, int y3, int x4, int y4);
    void Chord(int left, int top, int right, int bottom, int x3, int y3, int x4, int y4);

    // SetPixel mixes with the current ROP2; GetPixel returns 0xFFFFFFFF outside the target.
    TColor SetPixel(int x, int y, TColor color);
    TColor GetPixel(int x, int y) const;

    // Brush fills: a negative width or height mirrors the extent around x or y. A raster
    // operation that reads a source draws nothing.
    void PatBlt(int x, int y, int width, int height, std::uint32_t rop);
    void FillRect(const TRect& r, const TLogBrush& brush);
    void FrameRect(const TRect& r, const TLogBrush& brush);
    void InvertRect(const TRect& r);
    void FillRgn(const TRegion& region, const TLogBrush& brush);
    void PaintRgn(const TRegion& region);
    // XORs a one-pixel frame with the 50% grey pattern (dots where x + y is even).
    void DrawFocusRect(const TRect& r);

    // Block transfers with ternary raster operations (the pattern is the selected brush).
    // BitBlt covers x .. x + width - 1; StretchBlt mirrors through negative extents (the
    // rectangle then covers x + width + 1 .. x) and shrinks in the stretch mode. Destination
    // pixels whose source pixels lie outside the source keep their colour. `source` may be the
    // target itself. SRCCOPY moves whole pixels, a top byte written through ScanLine included;
    // every other operation writes pixels with the top byte clear.
    void BitBlt(int x, int y, int width, int height, TBlitSource source, int sx, int sy,
                std::uint32_t rop);
    void StretchBlt(int x, int y, int width, int height, TBlitSource source, int sx, int sy, int sw,
                    int sh, std::uint32_t rop);
    // Copies the source pixels that differ from `transparentPixel`, stretched like StretchBlt
    // (a shrink keeps one pixel of each run); negative extents draw nothing.
    void TransparentBlt(int x, int y, int width, int height, const TPixelBuffer& source, int sx,
                        int sy, int sw, int sh, std::uint32_t transparentPixel);

    // Paints `region` (already in device coordinates) with the current pen colour and ROP2,
    // or with the given brush; both clip to the target and the clip region.
    void PaintRegionWithPen(const TRegion& region);
    void PaintRegionWithBrush(const TRegion& region, const TLogBrush& brush, int rop2);
    // The rectangles of `r` that are visible: inside the target and the clip region.
    std::vector<TRect> VisibleRects(const TRect& r) const;
    // Calls fn(piece) for each of those rectangles, top to bottom, without collecting them.
    template <class Fn> void ForEachVisibleRect(const TRect& r, Fn&& fn) const;

private:
    struct TDashPattern {
        std::vector<int> dashes;
        int total{0};
    };
    // A brush prepared for one ROP2: a tile of masks repeated from `origin`. A solid brush
    // keeps its one mask in `solid` and allocates nothing.
    struct TBrushMasks {
        bool null{true};
        int width{1};
        int height{1};
        TRopMask solid;
        std::vector<TRopMask> cells; // width * height masks, row by row; empty when solid
        TPoint origin{0, 0};

        bool IsSolid() const { return cells.empty(); }
        const TRopMask* Row(int tileY) const {
            return cells.empty() ? &solid : cells.data() + static_cast<std::size_t>(tileY) * width;
        }
        // The cell of the tile over device pixel (x, y): the tile repeats from `origin`.
        TPoint TileCellOf(int x, int y) const {
            return {((x - origin.x) % width + width) % width,
                    ((y - origin.y) % height + height) % height};
        }
        // The mask of device pixel (x, y).
        const TRopMask& At(int x, int y) const {
            if (cells.empty()) return solid;
            const TPoint cell = TileCellOf(x, y);
            return Row(cell.y)[cell.x];
        }
    };

    // Pens.
    // `hiddenSteps`, when given, holds per segment the dash steps of a stretch outside the
    // target that the segment stands in for (0 for a segment drawn as it is).
    void PenLines(std::span<const TPoint> points, bool close, TSpanCollector* outline,
                  std::span<const int> hiddenSteps = {});
    // The pen's mix and, for dashed pens, the mix of the gaps.
    struct TPenMasks {
        TRopMask ink;
        TRopMask gap;
    };
    TPenMasks PenMasks() const;
    void ThinLine(TPoint from, TPoint to, const TPenMasks& masks);
    void SolidLineInside(TPoint from, TPoint to, TRopMask ink);
    bool SolidLinesInside(std::span<const TPoint> points, bool close,
                          std::span<const int> hiddenSteps, TRopMask ink);
    void WideLines(std::span<const TPoint> points, bool close, TSpanCollector& outline);
    void DashedThinPixel(int x, int y, int phase);
    bool DashMark(int phase) const;
    void ResetDash() { m_dashPhase = 0; }
    bool PenUsesRegion() const { return m_penWidth > 1; }
    std::optional<TRect> PenDeviceRect(int left, int top, int right, int bottom) const;
    // The target grown by what a pen stroke or a fill edge can reach into it from outside.
    TRect OutlineWindow() const;
    void DrawArc(int left, int top, int right, int bottom, int x3, int y3, int x4, int y4,
                 int extraLines);
    void FinishShape(std::optional<TRegion> interior, TSpanCollector* outline);
    // Paints a wide pen's outline in the pen's colour and, when given, the shape's interior
    // where the outline does not cover it.
    void PaintStroke(TSpanCollector& outline, const TRegion* interior);
    // The visible part of the target when it is one rectangle (no clip region, or a
    // rectangular one); nullopt when a clip region cuts it into more.
    std::optional<TRect> RectangularVisibleArea() const;
    // Interiors painted straight from the scan conversion with a thin pen, when the visible
    // area is one rectangle: that rectangle.
    std::optional<TRect> DirectInteriorArea() const;
    void PaintPolygonInterior(std::span<const TPoint> points, TPolyFillMode mode,
                              const TRect& visible);
    void PaintRoundRectInterior(const TRect& r, int ew, int eh, const TRect& visible);

    // Brushes.
    TBrushMasks MakeBrushMasks(const TLogBrush& brush, int rop2) const;
    // Paints one rectangle that lies inside the target.
    void PaintRect(const TRect& r, const TBrushMasks& masks);
    // Paints the visible part of `r`.
    void PaintVisible(const TRect& r, const TBrushMasks& masks);
    void PaintRectWithBrush(const TRect& r, const TLogBrush& brush, int rop2);
    // FillRect of anything but a solid brush inside one visible rectangle.
    void FillRectThroughBrush(const TRect& r, const TLogBrush& brush);
    void ApplyMaskToRect(const TRect& r, TRopMask mask);
    void FillVisibleRows(const TRect& r, std::uint32_t pixel);
    // SRCCOPY of `r` (inside the target) from `src` at (sx, sy) onwards, row by row; the
    // source rectangle lies inside `src`.
    void CopyRows(const TRect& r, const TPixelBuffer& src, int sx, int sy);
    std::uint32_t PixelOf(TColor color) const;

    TPixelBuffer* m_target{nullptr};
    TLogPen m_logPen;
    TLogBrush m_logBrush;
    int m_penStyle{PS_SOLID};
    int m_penWidth{1};
    TDashPattern m_dash;
    int m_dashPhase{0};
    int m_rop2{R2_COPYPEN};
    TColor m_bkColor{clWhite};
    int m_bkMode{OPAQUE};
    TColor m_textColor{clBlack};
    int m_arcDirection{AD_COUNTERCLOCKWISE};
    int m_polyFillMode{ALTERNATE};
    int m_stretchMode{BLACKONWHITE};
    bool m_monochrome{false};
    TPoint m_brushOrg{0, 0};
    TPoint m_pos{0, 0};
    std::optional<TRegion> m_clip;
    std::optional<TWidePen> m_widePen; // the last wide pen stroked with, kept for its width
};

template <class Fn> void TDeviceContext::ForEachVisibleRect(const TRect& r, Fn&& fn) const {
    if (!m_target) return;
    const TRect inside = Intersect(r, m_target->Bounds());
    if (inside.IsEmpty()) return;
    if (!m_clip) {
        fn(inside);
        return;
    }
    for (const auto& band : m_clip->Bands()) {
        if (band.bottom <= inside.top) continue;
        if (band.top >= inside.bottom) break;
        for (const auto& span : band.spans) {
            const TRect piece = Intersect({span.left, band.top, span.right, band.bottom}, inside);
            if (!piece.IsEmpty()) fn(piece);
        }
    }
}

// GDI-style free functions on a device context.
using HDC = TDeviceContext*;

inline bool MoveToEx(HDC dc, int x, int y, TPoint* old = nullptr) {
    if (!dc) return false;
    if (old) *old = dc->CurrentPos();
    dc->MoveTo(x, y);
    return true;
}
inline bool LineTo(HDC dc, int x, int y) {
    if (!dc) return false;
    dc->LineTo(x, y);
    return true;
}
inline bool PatBlt(HDC dc, int x, int y, int w, int h, std::uint32_t rop) {
    if (!dc) return false;
    dc->PatBlt(x, y, w, h, rop);
    return true;
}
inline bool BitBlt(HDC dc, int x, int y, int w, int h, HDC src, int sx, int sy, std::uint32_t rop) {
    if (!dc) return false;
    dc->BitBlt(x, y, w, h, src ? src->AsBlitSource() : TBlitSource{}, sx, sy, rop);
    return true;
}
inline bool StretchBlt(HDC dc, int x, int y, int w, int h, HDC src, int sx, int sy, int sw, int sh,
                       std::uint32_t rop) {
    if (!dc) return false;
    dc->StretchBlt(x, y, w, h, src ? src->AsBlitSource() : TBlitSource{}, sx, sy, sw, sh, rop);
    return true;
}
inline bool TransparentBlt(HDC dc, int x, int y, int w, int h, HDC src, int sx, int sy, int sw,
                           int sh, TColor transparent) {
    if (!dc || !src || !src->Target()) return false;
    dc->TransparentBlt(x, y, w, h, *src->Target(), sx, sy, sw, sh,
                       ColorToPixel(ColorToDrawRGB(transparent)));
    return true;
}
inline int SetStretchBltMode(HDC dc, int mode) {
    return dc ? dc->SetStretchBltMode(mode) : 0;
}
inline int GetStretchBltMode(HDC dc) {
    return dc ? dc->GetStretchBltMode() : 0;
}
inline int IntersectClipRect(HDC dc, int left, int top, int right, int bottom) {
    return dc ? dc->IntersectClipRect({left, top, right, bottom}) : RGN_ERROR;
}
inline int SelectClipRgn(HDC dc, const HRGN& region) {
    return dc ? dc->SelectClipRgn(region.get()) : RGN_ERROR;
}
inline bool FillRgn(HDC dc, const HRGN& region, const TLogBrush& brush) {
    if (!dc || !region) return false;
    dc->FillRgn(*region, brush);
    return true;
}
inline int SetROP2(HDC dc, int rop2) {
    return dc ? dc->SetROP2(rop2) : 0;
}
inline TColor SetBkColor(HDC dc, TColor c) {
    return dc ? dc->SetBkColor(c) : clNone;
}
inline int SetBkMode(HDC dc, int mode) {
    return dc ? dc->SetBkMode(mode) : 0;
}
inline TColor SetTextColor(HDC dc, TColor c) {
    return dc ? dc->SetTextColor(c) : clNone;
}
inline TColor SetPixel(HDC dc, int x, int y, TColor c) {
    return dc ? dc->SetPixel(x, y, c) : -1;
}
inline TColor GetPixel(HDC dc, int x, int y) {
    return dc ? dc->GetPixel(x, y) : -1;
}

} // namespace qv
