#include "buttons/ColorButtonBase.h"

#include "platform/controls/Application.h"
#include "platform/controls/Menus.h"

namespace qv {

namespace {

// A polyline through three points; as every polyline, it leaves out its last point.
void Polyline3(TCanvas& canvas, TPoint a, TPoint b, TPoint c) {
    const TPoint points[] = {a, b, c};
    canvas.Polyline(points);
}

// The caption as drawn: at most MaxCaption bytes, never cut inside a UTF-8 sequence.
std::string DrawnCaption(const std::string& caption) {
    std::size_t length = std::min(caption.size(), TColorButtonDefaults::MaxCaption);
    while (length < caption.size() && length > 0 &&
           (static_cast<unsigned char>(caption[length]) & 0xC0) == 0x80)
        --length;
    return caption.substr(0, length);
}

} // namespace

void PaintColorButtonBevel(TCanvas& canvas, int R, int B, bool down, TColor highlight,
                           TColor shadow) {
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(shadow);
    Polyline3(canvas, {0, B}, {0, 0}, {R, 0});
    Polyline3(canvas, {R - 1, 1}, {R - 1, B - 1}, {0, B - 1});
    canvas.Pen().SetColor(down ? clBlack : highlight);
    Polyline3(canvas, {1, B}, {1, 1}, {R, 1});
    canvas.Pen().SetColor(down ? highlight : clBlack);
    Polyline3(canvas, {R, 0}, {R, B}, {0, B});
}

template <class Base>
TColorButtonBase<Base>::TColorButtonBase(TComponent* AOwner) : TEnterLeaveEvents<Base>(AOwner) {
    this->SetBounds(this->Left(), this->Top(), Defaults::Width, Defaults::Height);
}

template <class Base> void TColorButtonBase<Base>::SetFlat(bool value) {
    if (value == m_flat) return;
    m_flat = value;
    SetMouseIn();
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::SetHorzAlign(qbHorzAlign value) {
    m_horzAlign = value;
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::SetMultipleLines(bool value) {
    m_multipleLines = value;
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::SetWordWrap(bool value) {
    m_wordWrap = value;
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::SetAlignment(TAlignment value) {
    if (value == m_alignment) return;
    m_alignment = value;
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::SetHighLightColor(TColor value) {
    if (value == m_highLightColor) return;
    m_highLightColor = value;
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::SetShadowColor(TColor value) {
    if (value == m_shadowColor) return;
    m_shadowColor = value;
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::SetMouseIn() {
    if (!TracksHover()) return;
    TApplication* app = ApplicationIfAlive();
    const TControl* under = app ? app->FindControlAtScreen(app->CursorPos(), true) : nullptr;
    m_hover = under != this;
    this->Perform(m_hover ? CM_MOUSELEAVE : CM_MOUSEENTER);
}

template <class Base> bool TColorButtonBase<Base>::Inside(int X, int Y) const {
    return X >= 0 && X < this->ClientWidth() && Y >= 0 && Y <= this->ClientHeight();
}

template <class Base> bool TColorButtonBase<Base>::BevelShown() const {
    return !m_flat || (m_hover && this->Enabled()) || m_held || m_down || this->IsDesigning();
}

template <class Base> void TColorButtonBase<Base>::PaintCaption(TCanvas& canvas) {
    const int R = this->Width() - 1, B = this->Height() - 1;
    TRect r{5, 5, R - 4, B - 4};
    canvas.SetFont(*this->Font());
    AdjustCaptionFont(canvas.Font());
    if (CaptionMoves()) OffsetRect(r, 1, 1);
    canvas.Brush().SetStyle(bsClear);
    DrawCaptionText(canvas, DrawnCaption(this->Caption()), r,
                    CaptionTextFlags(m_horzAlign, m_alignment, m_multipleLines, m_wordWrap),
                    this->Enabled());
}

template <class Base> void TColorButtonBase<Base>::Paint() {
    TCanvas& canvas = m_frame.Begin(*this, this->Canvas(), Background());
    canvas.Brush().SetColor(this->Color());
    if (!PaintFace(canvas)) return;
    if (BevelShown())
        PaintColorButtonBevel(canvas, this->Width() - 1, this->Height() - 1, m_down,
                              m_highLightColor, m_shadowColor);
    PaintCaption(canvas);
    PaintAfterCaption(canvas);
    m_frame.End(*this, this->Canvas(), PaintEvent());
}

template <class Base>
void TColorButtonBase<Base>::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    Base::MouseDown(Button, Shift, X, Y);
    if (Button != mbLeft || !this->Enabled() || !Inside(X, Y)) return;
    if (!m_down) PressByMouse();
    m_held = true;
}

template <class Base> void TColorButtonBase<Base>::MouseMove(TShiftState Shift, int X, int Y) {
    if (!m_hover) SetMouseIn();
    if (m_held && Inside(X, Y) != m_down) {
        m_down = !m_down;
        this->Invalidate();
    }
    Base::MouseMove(Shift, X, Y);
}

template <class Base>
void TColorButtonBase<Base>::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    Base::MouseUp(Button, Shift, X, Y);
    if (Button != mbLeft || !m_held) return;
    EndHolding();
    RepaintAfterRelease();
    SetMouseIn();
}

template <class Base> void TColorButtonBase<Base>::WMRButtonUp(TMessage& Message) {
    if (!m_flat || !this->PopupMenu()) {
        Base::WMRButtonUp(Message);
        return;
    }
    m_hover = false;
    this->Repaint();
    Base::WMRButtonUp(Message);
    SetMouseIn();
}

template <class Base> void TColorButtonBase<Base>::CMEnabledChanged(TMessage& Message) {
    Base::CMEnabledChanged(Message);
    SetMouseIn();
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::CMFontChanged(TMessage& Message) {
    Base::CMFontChanged(Message);
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::CMTextChanged(TMessage& Message) {
    Base::CMTextChanged(Message);
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::CMSysColorChange(TMessage& Message) {
    Base::CMSysColorChange(Message);
    this->Invalidate();
}

template <class Base> void TColorButtonBase<Base>::EnterHover() {
    if (m_flat && !m_hover && this->Enabled()) {
        m_hover = true;
        this->Repaint();
    }
}

template <class Base> void TColorButtonBase<Base>::CMMouseEnter(TMessage& Message) {
    Base::CMMouseEnter(Message);
    EnterHover();
    if (this->OnMouseEnter) this->OnMouseEnter(this);
}

template <class Base> void TColorButtonBase<Base>::CMMouseLeave(TMessage& Message) {
    if (LeavesHover()) {
        m_hover = false;
        this->Invalidate();
    }
    Base::CMMouseLeave(Message);
    if (this->OnMouseLeave) this->OnMouseLeave(this);
}

template class TColorButtonBase<TCustomControl>;
template class TColorButtonBase<TGraphicControl>;

} // namespace qv
