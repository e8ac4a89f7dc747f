#include "CustomPanel.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>

namespace qv {

const TClassInfo& TCustomPanel::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCustomPanel>("TCustomPanel", &TCustomControl::StaticClassInfo()).Build();
    return info;
}

TCustomPanel::TCustomPanel(TComponent* AOwner) : TCustomControl(AOwner) {
    SetControlStyle({csAcceptsControls, csCaptureMouse, csClickEvents, csSetCaption, csOpaque,
                     csDoubleClicks, csReplicatable});
    SetBounds(Left(), Top(), 185, 41);
    SetColor(clBtnFace);
}

void TCustomPanel::SetAlignment(TAlignment v) {
    if (v == m_alignment) return;
    m_alignment = v;
    Invalidate();
}

void TCustomPanel::SetBevelInner(TPanelBevel v) {
    if (v == m_bevelInner) return;
    m_bevelInner = v;
    FrameChanged();
}

void TCustomPanel::SetBevelOuter(TPanelBevel v) {
    if (v == m_bevelOuter) return;
    m_bevelOuter = v;
    FrameChanged();
}

void TCustomPanel::SetBevelWidth(int v) {
    v = std::max(v, 1);
    if (v == m_bevelWidth) return;
    m_bevelWidth = v;
    FrameChanged();
}

void TCustomPanel::SetBorderWidth(int v) {
    v = std::max(v, 0);
    if (v == m_borderWidth) return;
    m_borderWidth = v;
    FrameChanged();
}

void TCustomPanel::SetBorderStyle(TBorderStyle v) {
    if (v == m_borderStyle) return;
    m_borderStyle = v;
    FrameChanged();
}

void TCustomPanel::FrameChanged() {
    Realign();
    Invalidate();
}

TRect TCustomPanel::InnerRect() const {
    TRect rect = ClientRect();
    if (m_borderStyle == bsSingle) InflateRect(rect, -ClientEdgeWidth, -ClientEdgeWidth);
    int inset = m_borderWidth;
    if (m_bevelOuter != bvNone) inset += m_bevelWidth;
    if (m_bevelInner != bvNone) inset += m_bevelWidth;
    InflateRect(rect, -inset, -inset);
    return rect;
}

void TCustomPanel::AlignControls(TRect& rect) {
    rect = InnerRect();
    TCustomControl::AlignControls(rect);
}

void TCustomPanel::CMTextChanged(TMessage& Message) {
    TCustomControl::CMTextChanged(Message);
    Invalidate();
}

// A lowered bevel is shadow above and left, highlight below and right; the other cuts
// the other way round.
void TCustomPanel::PaintBevel(TCanvas& canvas, TRect& rect, TPanelBevel bevel) const {
    if (bevel == bvNone) return;
    const bool lowered = bevel == bvLowered;
    Frame3D(canvas, rect, lowered ? clBtnShadow : clBtnHighlight,
            lowered ? clBtnHighlight : clBtnShadow, m_bevelWidth);
}

void TCustomPanel::Paint() {
    TCanvas& canvas = Canvas();
    TRect rect = ClientRect();
    if (m_borderStyle == bsSingle) DrawClientEdge(canvas, rect);
    PaintBevel(canvas, rect, m_bevelOuter);
    Frame3D(canvas, rect, Color(), Color(), m_borderWidth);
    PaintBevel(canvas, rect, m_bevelInner);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(Color());
    canvas.FillRect(rect);
    PaintCaption(canvas, rect);
}

// The caption sits on one text line centred vertically in what the bevels leave.
void TCustomPanel::PaintCaption(TCanvas& canvas, TRect rect) {
    canvas.Brush().SetStyle(bsClear);
    canvas.Font().Assign(*Font());
    const int fontHeight = canvas.TextHeight("W");
    rect.top = ((rect.bottom + rect.top) - fontHeight) / 2;
    rect.bottom = rect.top + fontHeight;
    canvas.DrawText(Caption(), rect, DT_EXPANDTABS | DT_VCENTER | AlignmentFlags(m_alignment));
    canvas.Brush().SetStyle(bsSolid);
}

} // namespace qv
