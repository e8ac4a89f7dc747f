#pragma once
// TCanvas: the drawing surface of a bitmap or control, with its pen, brush and font. Each
// call selects the tools into the device context first: the pen colour, style, width and mode
// (as ROP2), the brush (a solid or pattern brush paints text and pen gaps in its colour; a
// clear or hatched brush leaves the background alone) and the font colour. The background and
// text colours are set again only after the brush or font changed, so colours set through
// Handle() last until then, as in the classic canvas.

#include "Bitmap.h"
#include "DeviceContext.h"
#include "GraphicsObjects.h"
#include "Text.h"

#include "platform/core/Persistent.h"

#include <memory>
#include <span>
#include <string>

namespace qv {

// CopyMode values for CopyRect, Draw and StretchDraw.
using TCopyMode = std::uint32_t;
constexpr TCopyMode cmBlackness = BLACKNESS;
constexpr TCopyMode cmDstInvert = DSTINVERT;
constexpr TCopyMode cmMergeCopy = MERGECOPY;
constexpr TCopyMode cmMergePaint = MERGEPAINT;
constexpr TCopyMode cmNotSrcCopy = NOTSRCCOPY;
constexpr TCopyMode cmNotSrcErase = NOTSRCERASE;
constexpr TCopyMode cmPatCopy = PATCOPY;
constexpr TCopyMode cmPatInvert = PATINVERT;
constexpr TCopyMode cmPatPaint = PATPAINT;
constexpr TCopyMode cmSrcAnd = SRCAND;
constexpr TCopyMode cmSrcCopy = SRCCOPY;
constexpr TCopyMode cmSrcErase = SRCERASE;
constexpr TCopyMode cmSrcInvert = SRCINVERT;
constexpr TCopyMode cmSrcPaint = SRCPAINT;
constexpr TCopyMode cmWhiteness = WHITENESS;

class TCanvas : public TPersistent {
    QV_OBJECT
public:
    // Draws on `target` (not owned; may be null for a canvas without a surface yet).
    explicit TCanvas(TPixelBuffer* target = nullptr);
    ~TCanvas() override;

    void SetTarget(TPixelBuffer* target) { m_dc.SelectTarget(target); }
    // Whether the surface is a monochrome bitmap: copies from it map its black and white
    // through the destination's text and background colours.
    void SetMonochrome(bool value) { m_dc.SetMonochrome(value); }

    TPen& Pen() { return *m_pen; }
    TBrush& Brush() { return *m_brush; }
    TFont& Font() { return *m_font; }
    void SetPen(const TPen& value) { m_pen->Assign(value); }
    void SetBrush(const TBrush& value) { m_brush->Assign(value); }
    void SetFont(const TFont& value) { m_font->Assign(value); }

    // The device context with the canvas's tools selected.
    HDC Handle();
    TPoint PenPos() const { return m_dc.CurrentPos(); }
    void SetPenPos(TPoint p) { m_dc.MoveTo(p.x, p.y); }
    TCopyMode CopyMode() const { return m_copyMode; }
    void SetCopyMode(TCopyMode mode) { m_copyMode = mode; }
    // The visible part of the surface.
    TRect ClipRect() const { return m_dc.GetClipBox(); }

    void MoveTo(int x, int y);
    void LineTo(int x, int y);
    void Rectangle(int left, int top, int right, int bottom);
    void Rectangle(const TRect& r) { Rectangle(r.left, r.top, r.right, r.bottom); }
    void FillRect(const TRect& r);
    void FrameRect(const TRect& r);
    void DrawFocusRect(const TRect& r);
    void Ellipse(int left, int top, int right, int bottom);
    void Ellipse(const TRect& r) { Ellipse(r.left, r.top, r.right, r.bottom); }
    void Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    void Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    void Chord(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    void RoundRect(int x1, int y1, int x2, int y2, int x3, int y3);
    void Polygon(std::span<const TPoint> points);
    void Polyline(std::span<const TPoint> points);

    TColor Pixel(int x, int y);
    void SetPixel(int x, int y, TColor color);

    // The copies use CopyMode. CopyRect stretches in the context's stretch mode (BLACKONWHITE
    // unless set otherwise); Draw and StretchDraw stretch a colour bitmap in COLORONCOLOR, which
    // stays the context's mode, and a monochrome one in the context's mode. cmSrcCopy moves
    // whole pixels, a top byte written through ScanLine included.
    void CopyRect(const TRect& dest, TCanvas& source, const TRect& sourceRect);
    void Draw(int x, int y, TBitmap& bitmap);
    void StretchDraw(const TRect& dest, TBitmap& bitmap);
    // Copies `source` of `bitmap` to `dest` in the context's stretch mode, painting the pixels
    // of `color` with the brush; with a clear brush the destination shows through them.
    void BrushCopy(const TRect& dest, TBitmap& bitmap, const TRect& source, TColor color);
    // The two-step transparent copy of a picture with its mask, unstretched at (x, y): the
    // mask is ANDed onto the destination (SRCAND: white keeps the destination, black clears
    // it), then the picture is ORed on (SRCPAINT). The picture must be black where the mask is
    // white. A monochrome mask maps black to black and white to white. Pen, brush and copy
    // mode stay as they are.
    void MaskedDraw(int x, int y, TBitmap& picture, TBitmap& mask);

    void TextOut(int x, int y, const std::string& text);
    void TextRect(const TRect& r, int x, int y, const std::string& text);
    TSize TextExtent(const std::string& text);
    int TextWidth(const std::string& text) { return TextExtent(text).cx; }
    int TextHeight(const std::string& text) { return TextExtent(text).cy; }
    // DrawText with the canvas font; returns the text height.
    int DrawText(const std::string& text, TRect& r, unsigned flags);

    TNotifyEvent OnChange;
    TNotifyEvent OnChanging;

    // The font as the text renderer sees it.
    TFontSpec FontSpec() const;

private:
    void SelectPen();
    void SelectBrush();
    void SelectFontColor();
    void SelectAll();
    void DrawBitmap(const TRect& dest, TBitmap& bitmap);
    void Changing();
    void Changed();

    TDeviceContext m_dc;
    std::unique_ptr<TPen> m_pen;
    std::unique_ptr<TBrush> m_brush;
    std::unique_ptr<TFont> m_font;
    TCopyMode m_copyMode{cmSrcCopy};
    // The change counts of the brush and the font whose background and text colours the
    // context holds (the classic canvas selects them again only after a change); none at first.
    std::uint64_t m_brushColorsSelectedAt{UINT64_MAX};
    std::uint64_t m_fontColorSelectedAt{UINT64_MAX};
};

// Draws a bevel of `width` lines: top-left in topColor, bottom-right in bottomColor; `rect`
// shrinks by `width` on every side.
void Frame3D(TCanvas& canvas, TRect& rect, TColor topColor, TColor bottomColor, int width);

// GDI-style DrawText on a canvas handle.
int DrawText(TCanvas& canvas, const std::string& text, TRect& rect, unsigned flags);

} // namespace qv
