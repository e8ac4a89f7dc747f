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
        PaintSteel(canvas, rect);
        return;
    }
    canvas.Brush().SetColor(background.color);
    canvas.FillRect(rect);
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

void ResetCanvasTools(TCanvas& canvas) {
    canvas.SetPen(TPen());
    canvas.SetBrush(TBrush());
    canvas.SetFont(TFont());
    canvas.SetCopyMode(cmSrcCopy);
    canvas.MoveTo(0, 0);
}

TCanvas& TPaintFrame::Begin(const TControl& control, TCanvas& target,
                            const TFrameBackground& background) {
    const int width = std::max(control.Width(), 0), height = std::max(control.Height(), 0);
    m_direct = static_cast<std::int64_t>(width) * height > TPixelBuffer::MaxPixels;
    TCanvas* canvas = &target;
    if (!m_direct) {
        if (m_picture.Width() != width || m_picture.Height() != height)
            m_picture.SetSize(width, height);
        canvas = &m_picture.Canvas();
        ResetCanvasTools(*canvas);
    }
    FillBackground(*canvas, {0, 0, width, height}, background);
    return *canvas;
}

void TPaintFrame::End(TControl& control, TCanvas& target, const TNotifyEvent& onPaint) {
    const bool outline = m_outline == TOutline::WhileDesigning && control.IsDesigning();
    if (m_direct) {
        if (outline) DrawDesignOutline(target, control.Width(), control.Height());
    } else {
        if (outline) DrawDesignOutline(m_picture.Canvas(), m_picture.Width(), m_picture.Height());
        target.Draw(0, 0, m_picture);
    }
    if (onPaint) onPaint(&control);
}

} // namespace qv
