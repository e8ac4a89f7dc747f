#include "CustomLabel.h"

#include "platform/core/ClassBuilder.h"

namespace qv {

const TClassInfo& TCustomLabel::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCustomLabel>("TCustomLabel", &TGraphicControl::StaticClassInfo()).Build();
    return info;
}

TCustomLabel::TCustomLabel(TComponent* AOwner) : TGraphicControl(AOwner) {
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque, csReplicatable});
    SetBounds(Left(), Top(), 65, 17);
}

void TCustomLabel::SetAlignment(TAlignment v) {
    if (v == m_alignment) return;
    m_alignment = v;
    Invalidate();
}

void TCustomLabel::SetAutoSize(bool v) {
    if (v == m_autoSize) return;
    m_autoSize = v;
    AdjustBounds();
}

void TCustomLabel::SetFocusControl(TWinControl* v) {
    m_focusControl = v;
    if (v) v->FreeNotification(this);
}

void TCustomLabel::SetLayout(TTextLayout v) {
    if (v == m_layout) return;
    m_layout = v;
    Invalidate();
}

void TCustomLabel::SetShowAccelChar(bool v) {
    if (v == m_showAccelChar) return;
    m_showAccelChar = v;
    Invalidate();
    AdjustBounds();
}

// A transparent label is not opaque, so what lies beneath is painted first.
void TCustomLabel::SetTransparent(bool v) {
    if (v == m_transparent) return;
    m_transparent = v;
    TControlStyle style = ControlStyle();
    if (v)
        style.Exclude(csOpaque);
    else
        style.Include(csOpaque);
    SetControlStyle(style);
    Invalidate();
}

void TCustomLabel::SetWordWrap(bool v) {
    if (v == m_wordWrap) return;
    m_wordWrap = v;
    AdjustBounds();
    Invalidate();
}

void TCustomLabel::Notification(TComponent* AComponent, TOperation Operation) {
    TGraphicControl::Notification(AComponent, Operation);
    if (Operation == opRemove && AComponent == m_focusControl) m_focusControl = nullptr;
}

void TCustomLabel::Loaded() {
    TGraphicControl::Loaded();
    AdjustBounds();
}

unsigned TCustomLabel::DrawFlags() const {
    return DT_EXPANDTABS | (m_wordWrap ? DT_WORDBREAK : 0u) | AlignmentFlags(m_alignment);
}

void TCustomLabel::DoDrawText(TCanvas& canvas, TRect& rect, unsigned flags) {
    std::string text = GetLabelText();
    // An empty line (or a lone '&') still measures one line high.
    if ((flags & DT_CALCRECT) && (text.empty() || (m_showAccelChar && text == "&"))) text += ' ';
    if (!m_showAccelChar) flags |= DT_NOPREFIX;
    canvas.Font().Assign(*Font());
    if (Enabled()) {
        canvas.DrawText(text, rect, flags);
        return;
    }
    // Disabled: a highlight copy one pixel down and right under the shadow-coloured text.
    OffsetRect(rect, 1, 1);
    canvas.Font().SetColor(clBtnHighlight);
    canvas.DrawText(text, rect, flags);
    OffsetRect(rect, -1, -1);
    canvas.Font().SetColor(clBtnShadow);
    canvas.DrawText(text, rect, flags);
}

void TCustomLabel::Paint() {
    TCanvas& canvas = Canvas();
    if (!m_transparent) {
        canvas.Brush().SetColor(Color());
        canvas.Brush().SetStyle(bsSolid);
        canvas.FillRect(ClientRect());
    }
    canvas.Brush().SetStyle(bsClear);
    TRect rect = ClientRect();
    const unsigned flags = DrawFlags();
    if (m_layout != tlTop) {
        TRect measured = rect;
        DoDrawText(canvas, measured, flags | DT_CALCRECT);
        const int spare = Height() - measured.bottom;
        OffsetRect(rect, 0, m_layout == tlBottom ? spare : spare / 2);
    }
    DoDrawText(canvas, rect, flags);
    canvas.Brush().SetStyle(bsSolid);
}

void TCustomLabel::AdjustBounds() {
    if (ComponentState().Contains(csReading) || !m_autoSize) return;
    TBitmap measure(1, 1);
    TRect rect = ClientRect();
    DoDrawText(measure.Canvas(), rect,
               DT_EXPANDTABS | DT_CALCRECT | (m_wordWrap ? DT_WORDBREAK : 0u));
    int left = Left();
    if (m_alignment == taRightJustify) left += Width() - rect.right;
    SetBounds(left, Top(), rect.right, rect.bottom);
}

void TCustomLabel::CMTextChanged(TMessage& Message) {
    TGraphicControl::CMTextChanged(Message);
    Invalidate();
    AdjustBounds();
}

void TCustomLabel::CMFontChanged(TMessage& Message) {
    TGraphicControl::CMFontChanged(Message);
    AdjustBounds();
}

void TCustomLabel::CMDialogChar(TMessage& Message) {
    if (m_focusControl && Enabled() && m_showAccelChar &&
        IsAccel(static_cast<unsigned>(Message.WParam), Caption()) && m_focusControl->CanFocus()) {
        m_focusControl->SetFocus();
        Message.Result = 1;
        return;
    }
    TGraphicControl::CMDialogChar(Message);
}

} // namespace qv
