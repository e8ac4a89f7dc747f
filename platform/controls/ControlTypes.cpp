#include "ControlTypes.h"

namespace qv {

const TTypeInfo& BorderStyleType() {
    static const TTypeInfo info = TTypeInfo::Enumeration("TBorderStyle", {"bsNone", "bsSingle"});
    return info;
}

void DrawClientEdge(TCanvas& canvas, TRect& rect) {
    Frame3D(canvas, rect, clBtnShadow, clBtnHighlight, 1);
    Frame3D(canvas, rect, cl3DDkShadow, cl3DLight, 1);
}

unsigned AlignmentFlags(TAlignment alignment) {
    switch (alignment) {
    case taRightJustify:
        return DT_RIGHT;
    case taCenter:
        return DT_CENTER;
    case taLeftJustify:
        break;
    }
    return DT_LEFT;
}

TSize TextExtentOf(const TFont& font, const std::string& text) {
    TBitmap measure(1, 1);
    measure.Canvas().Font().Assign(font);
    return measure.Canvas().TextExtent(text);
}

void PaintListItem(TCanvas& canvas, const TFont& font, TColor color, int index, const TRect& rect,
                   TOwnerDrawState state, const std::function<void()>& drawItem) {
    canvas.Font().Assign(font);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(color);
    if (index >= 0 && state.Contains(odSelected)) {
        canvas.Brush().SetColor(clHighlight);
        canvas.Font().SetColor(clHighlightText);
    }
    if (index >= 0)
        drawItem();
    else
        canvas.FillRect(rect);
    if (state.Contains(odFocused)) {
        canvas.Brush().SetStyle(bsSolid);
        canvas.DrawFocusRect(rect);
    }
}

void DrawItemText(TCanvas& canvas, const TRect& rect, const std::string& text) {
    canvas.FillRect(rect);
    TRect textRect = rect;
    textRect.left += 2;
    canvas.DrawText(text, textRect, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

} // namespace qv
