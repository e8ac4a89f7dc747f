#include "componentbase/PaintFrame.h"

#include "componentbase/Steel.h"
#include "platform/controls/WinControl.h"

#include <algorithm>
#include <cstdint>

namespace qv {

TFrameBackground TFrameBackground::ParentOrSteel(const TControl& control, bool steel) {
    if (steel) return Steel();
    TWinControl* parent = control.Parent();
    return Flat(parent ? parent->Brush().Color() : clBtnFace);
}

void FillBackground(TCanvas& canvas, const TRect& rect, const TFrameBackground& background) {
    if (background.kind == TFrameBackground::TKind::Steel) {
        if (!background.paintedOver) PaintSteel(canvas, rect);
        return;
    }
    if (background.kind == TFrameBackground::TKind::Beneath) return;
    canvas.Brush().SetColor(background.color);
    if (!background.paintedOver) canvas.FillRect(rect);
}

void DrawDesignOutline(TCanvas& canvas, int width, int height) {
    TPen pen;
    pen.Assign(canvas.Pen());
    const TBrushStyle brushStyle = canvas.Brush().Style();
    canvas.Pen().SetColor(clBlack);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetStyle(psDash);
    canvas.Brush().SetStyle(bsClear);
    canvas.Rectangle(0, 0, width, height);
    canvas.SetPen(pen);
    canvas.Brush().SetStyle(brushStyle);
}

void SetOpaqueStyle(TControl& control, bool opaque) {
    TControlStyle style = control.ControlStyle();
    if (opaque)
        style.Include(csOpaque);
    else
        style.Exclude(csOpaque);
    control.SetControlStyle(style);
}

void ResetCanvasTools(TCanvas& canvas) {
    canvas.SetPen(TPen());
    canvas.SetBrush(TBrush());
    canvas.SetFont(TFont());
    canvas.SetCopyMode(cmSrcCopy);
    canvas.MoveTo(0, 0);
}

// The picture reaches from the control's origin to its far corner, but no further than the
// target's surface: what lies beyond could not be shown, and drawing is clipped the same way
// in a smaller bitmap, so a huge control costs no more than what is visible of it.
TCanvas& TPaintFrame::Begin(const TControl& control, TCanvas& target,
                            const TFrameBackground& background) {
    int width = std::max(control.Width(), 0), height = std::max(control.Height(), 0);
    if (const TPixelBuffer* surface = target.Handle()->Target()) {
        width = std::min(width, surface->Width());
        height = std::min(height, surface->Height());
    }
    width += m_grow;
    height += m_grow;
    m_direct = static_cast<std::int64_t>(width) * height > TPixelBuffer::MaxPixels;
    TCanvas* canvas = &target;
    if (!m_direct) {
        if (m_picture.Width() != width || m_picture.Height() != height)
            m_picture.SetSize(width, height);
        canvas = &m_picture.Canvas();
        ResetCanvasTools(*canvas);
        if (background.kind == TFrameBackground::TKind::Beneath && !background.paintedOver)
            canvas->CopyRect({0, 0, width, height}, target, {0, 0, width, height});
    }
    FillBackground(*canvas, {0, 0, width, height}, background);
    return *canvas;
}

void TPaintFrame::End(TControl& control, TCanvas& target, const TNotifyEvent& onPaint) {
    TCanvas& drawn = m_direct ? target : m_picture.Canvas();
    if (m_outline == TOutline::WhileDesigning && control.IsDesigning())
        DrawDesignOutline(drawn, control.Width(), control.Height());
    if (!m_direct) target.Draw(0, 0, m_picture);
    if (onPaint) onPaint(&control);
}

} // namespace qv
