#include "componentbase/Bevels.h"

namespace qv {

void PaintBevel(TCanvas& canvas, TRect& rect, TBevelKind kind, int width,
                const TBevelColors& colors) {
    if (width <= 0) return;
    const bool raised = kind == TBevelKind::Raised;
    Frame3D(canvas, rect, raised ? colors.highlight : colors.shadow,
            raised ? colors.shadow : colors.highlight, width);
}

TRect PaintButtonFace(TCanvas& canvas, TRect rect, bool pressed, TColor face,
                      const TBevelColors& colors, TColor frame) {
    if (pressed) {
        Frame3D(canvas, rect, frame, colors.highlight, 1);
        Frame3D(canvas, rect, colors.shadow, face, 1);
    } else {
        Frame3D(canvas, rect, colors.highlight, frame, 1);
        Frame3D(canvas, rect, face, colors.shadow, 1);
    }
    canvas.Brush().SetColor(face);
    canvas.Brush().SetStyle(bsSolid);
    canvas.FillRect(rect);
    return rect;
}

void PaintFocusRect(TCanvas& canvas, const TRect& rect, int inset) {
    TRect focus = rect;
    InflateRect(focus, -inset, -inset);
    if (focus.right <= focus.left || focus.bottom <= focus.top) return;
    canvas.DrawFocusRect(focus);
}

} // namespace qv
