#include "switches/SwitchPictures.h"

#include <algorithm>

namespace qv {

TRect CentredIn(const TRect& area, int width, int height) {
    width = std::clamp(width, 0, std::max(area.Width(), 0));
    height = std::clamp(height, 0, std::max(area.Height(), 0));
    const int left = area.left + (area.Width() - width) / 2;
    const int top = area.top + (area.Height() - height) / 2;
    return {left, top, left + width, top + height};
}

TRect SquareIn(const TRect& area, int margin) {
    const int side = std::max(std::min(area.Width(), area.Height()) - 2 * margin, 0);
    return CentredIn(area, side, side);
}

TRect Shrunk(const TRect& rect, int inset) {
    const int dx = std::min(inset, std::max(rect.Width(), 0) / 2);
    const int dy = std::min(inset, std::max(rect.Height(), 0) / 2);
    return {rect.left + dx, rect.top + dy, rect.right - dx, rect.bottom - dy};
}

// The lower colour as a whole disc, the upper one as a disc drawn a little up and left inside
// it: a crescent of each shows round the content drawn inside later.
void PaintBevelledDisc(TCanvas& canvas, const TRect& rect, bool sunken,
                       const TBevelColors& colors) {
    const TColor upper = sunken ? colors.shadow : colors.highlight;
    const TColor lower = sunken ? colors.highlight : colors.shadow;
    const int shift = std::max(1, rect.Width() / 16);
    PaintDisc(canvas, rect, lower, lower);
    const TRect shifted{rect.left, rect.top, rect.right - shift, rect.bottom - shift};
    PaintDisc(canvas, shifted, upper, upper);
}

void PaintDisc(TCanvas& canvas, const TRect& rect, TColor fill, TColor outline) {
    canvas.Pen().SetStyle(psSolid);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(outline);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(fill);
    canvas.Ellipse(rect);
}

void OutlineRect(TCanvas& canvas, const TRect& rect, TColor color) {
    canvas.Pen().SetStyle(psSolid);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(color);
    canvas.Brush().SetStyle(bsClear);
    canvas.Rectangle(rect);
}

void OutlineDisc(TCanvas& canvas, const TRect& rect, TColor color) {
    canvas.Pen().SetStyle(psSolid);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(color);
    canvas.Brush().SetStyle(bsClear);
    canvas.Ellipse(rect);
}

} // namespace qv
