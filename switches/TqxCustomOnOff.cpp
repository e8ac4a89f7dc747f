#include "switches/TqxCustomOnOff.h"

#include "componentbase/Steel.h"
#include "platform/controls/ControlProperties.h"
#include "platform/graphics/Text.h"

#include <algorithm>

namespace qv {

TOnOffLayout SplitOnOffClient(const TRect& client, TqxOnOffGraphPlacement placement,
                              bool hasCaption, int lineHeight) {
    TRect picture = client, text = client;
    if (!hasCaption) return {picture, {client.right, client.bottom, client.right, client.bottom}};
    const int line = std::clamp(lineHeight, 0, std::max(client.Height(), 0));
    const int side = std::clamp(client.Height(), 0, std::max(client.Width(), 0));
    switch (placement) {
    case qxgp_Top:
        picture.bottom = text.top = client.bottom - line;
        break;
    case qxgp_Bottom:
        text.bottom = picture.top = client.top + line;
        break;
    case qxgp_Left:
        picture.right = text.left = client.left + side;
        break;
    case qxgp_Right:
        text.right = picture.left = client.right - side;
        break;
    }
    return {picture, text};
}

const TClassInfo& TqxCustomOnOff::StaticClassInfo() {
    static const TClassInfo info = [] {
        using C = TqxCustomOnOff;
        TClassBuilder<C> b("TqxCustomOnOff", &TCustomControl::StaticClassInfo());
        b.Property("UseFocusBold", &C::UseFocusBold, &C::SetUseFocusBold)
            .Default(Defaults::UseFocusBold);
        b.Property("UseFocusFrame", &C::UseFocusFrame, &C::SetUseFocusFrame)
            .Default(Defaults::UseFocusFrame);
        b.Property("ShowTextPress", &C::ShowTextPress, &C::SetShowTextPress)
            .Default(Defaults::ShowTextPress);
        b.Property("BackColor", ColorType(), &C::BackColor, &C::SetBackColor)
            .Default(Defaults::BackColor);
        b.Property("Autofocus", &C::AutoFocus, &C::SetAutoFocus).Default(Defaults::AutoFocus);
        b.Property("SwitchOn", &C::SwitchOn, &C::SetSwitchOn).Default(Defaults::SwitchOn);
        b.Property("HorzAlign", &C::HorzAlign, &C::SetHorzAlign).Default(Defaults::HorzAlign);
        b.Property("MultipleLines", &C::MultipleLines, &C::SetMultipleLines)
            .Default(Defaults::MultipleLines);
        b.Property("WordWrap", &C::WordWrap, &C::SetWordWrap).Default(Defaults::WordWrap);
        b.Property("Alignment", &C::Alignment, &C::SetAlignment).Default(Defaults::Alignment);
        b.Event("OnPaint", &C::OnPaint);
        PublishControlProperties(b, {"PopupMenu", "OnDragDrop", "OnDragOver", "OnEndDrag",
                                     "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown",
                                     "OnMouseMove", "OnMouseUp", "DragCursor", "DragMode", "Font",
                                     "ParentFont", "Caption", "Color"});
        b.Default(Defaults::Color);
        PublishControlProperties(b, {"ParentColor"});
        b.Default(Defaults::ParentColor);
        PublishControlProperties(b, {"HelpContext"});
        b.Property("HighLightColor", ColorType(), &C::HighLightColor, &C::SetHighLightColor)
            .Default(Defaults::HighLightColor);
        b.Property("ShadowColor", ColorType(), &C::ShadowColor, &C::SetShadowColor)
            .Default(Defaults::ShadowColor);
        PublishControlProperties(b, {"TabStop"});
        b.Default(Defaults::TabStop);
        PublishControlProperties(b, {"TabOrder", "Enabled", "ParentShowHint", "ShowHint", "Visible",
                                     "OnEnter", "OnExit", "OnClick"});
        b.Event("OnMouseEnter", &C::OnMouseEnter);
        b.Event("OnMouseLeave", &C::OnMouseLeave);
        b.Event("OnOn", &C::OnOn);
        b.Event("OnOff", &C::OnOff);
        b.Property("SteelLook", &C::SteelLook, &C::SetSteelLook).Default(Defaults::SteelLook);
        return b.Build();
    }();
    return info;
}

// No csDoubleClicks: a fast second click arrives as a second press and toggles again.
TqxCustomOnOff::TqxCustomOnOff(TComponent* AOwner) : TFocusableInput<TCustomControl>(AOwner) {
    SetBounds(Left(), Top(), Defaults::Width, Defaults::Height);
    SetControlStyle({csCaptureMouse, csClickEvents, csSetCaption, csOpaque});
    SetColor(Defaults::Color);
}

// Properties.

void TqxCustomOnOff::SetUseFocusBold(bool value) {
    if (value == m_useFocusBold) return;
    m_useFocusBold = value;
    Invalidate();
}

void TqxCustomOnOff::SetUseFocusFrame(bool value) {
    if (value == m_useFocusFrame) return;
    m_useFocusFrame = value;
    Invalidate();
}

void TqxCustomOnOff::SetShowTextPress(bool value) {
    if (value == m_showTextPress) return;
    m_showTextPress = value;
    Invalidate();
}

void TqxCustomOnOff::SetBackColor(TColor value) {
    m_backColor = value;
    Repaint();
}

void TqxCustomOnOff::SetSwitchOn(bool value) {
    if (value == m_switchOn) return;
    m_switchOn = value;
    Invalidate();
    const TNotifyEvent& event = value ? OnOn : OnOff;
    if (event) event(this);
}

void TqxCustomOnOff::SetHorzAlign(qbHorzAlign value) {
    m_horzAlign = value;
    Invalidate();
}

void TqxCustomOnOff::SetMultipleLines(bool value) {
    m_multipleLines = value;
    Invalidate();
}

void TqxCustomOnOff::SetWordWrap(bool value) {
    m_wordWrap = value;
    Invalidate();
}

void TqxCustomOnOff::SetAlignment(TAlignment value) {
    if (value == m_alignment) return;
    m_alignment = value;
    Invalidate();
}

void TqxCustomOnOff::SetHighLightColor(TColor value) {
    m_highLightColor = value;
    Repaint();
}

void TqxCustomOnOff::SetShadowColor(TColor value) {
    m_shadowColor = value;
    Repaint();
}

void TqxCustomOnOff::SetSteelLook(bool value) {
    m_steelLook = value;
    Invalidate();
}

void TqxCustomOnOff::SetGlyphAlign(TqxOnOffGraphPlacement value) {
    if (value == m_glyphAlign) return;
    m_glyphAlign = value;
    GetRegs();
    Invalidate();
}

// Regions and geometry.

void TqxCustomOnOff::Loaded() {
    TFocusableInput<TCustomControl>::Loaded();
    GetRegs();
}

void TqxCustomOnOff::GetRegs() {
    m_onRegion.reset();
    m_offRegion.reset();
    GetOnReg(m_onRegion);
    GetOffReg(m_offRegion);
}

void TqxCustomOnOff::GetOnReg(HRGN& region) {
    region = CreateRectRgn(0, 0, Width(), Height() / 2);
}

void TqxCustomOnOff::GetOffReg(HRGN& region) {
    region = CreateRectRgn(0, Height() / 2, Width(), Height());
}

void TqxCustomOnOff::FollowGeometry() {
    m_followGeometry = true;
    GetRegs();
}

void TqxCustomOnOff::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    const bool resized = AWidth != Width() || AHeight != Height();
    TFocusableInput<TCustomControl>::SetBounds(ALeft, ATop, AWidth, AHeight);
    if (resized && m_followGeometry) GetRegs();
}

int TqxCustomOnOff::FontLineHeight() const {
    TFontSpec request;
    request.name = Font()->Name();
    request.height = Font()->Height();
    return AcquireFontFace(request)->Height();
}

TOnOffLayout TqxCustomOnOff::PictureLayout() const {
    return SplitOnOffClient(ClientRect(), m_glyphAlign, !Caption().empty(), FontLineHeight());
}

TColor TqxCustomOnOff::LampColor(bool lit) const {
    const TColor rgb = ColorToRGB(Color());
    return lit ? rgb : TColor((rgb >> 1) & 0x7F7F7F);
}

bool TqxCustomOnOff::Inside(int X, int Y) const {
    return X >= 0 && X < ClientWidth() && Y >= 0 && Y <= ClientHeight();
}

bool TqxCustomOnOff::InTargetRegion(int X, int Y) const {
    const HRGN& target = m_switchOn ? m_offRegion : m_onRegion;
    return target && PtInRegion(target, X, Y);
}

// Mouse.

void TqxCustomOnOff::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    TFocusableInput<TCustomControl>::MouseDown(Button, Shift, X, Y);
    if (Button != mbLeft || !Enabled() || !Inside(X, Y) || !InTargetRegion(X, Y)) return;
    if (!m_pressed) {
        FocusForPress();
        m_pressed = true;
        Repaint();
    }
    m_mousePress = true;
}

// During a mouse press the look springs back while the pointer is outside and presses again
// when it returns.
void TqxCustomOnOff::MouseMove(TShiftState Shift, int X, int Y) {
    if (!m_mousePress) {
        TFocusableInput<TCustomControl>::MouseMove(Shift, X, Y);
        return;
    }
    const bool inside = Inside(X, Y);
    if (inside != m_pressed) {
        m_pressed = inside;
        Repaint();
    }
    if (OnMouseMove) OnMouseMove(this, Shift, X, Y);
}

void TqxCustomOnOff::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    TFocusableInput<TCustomControl>::MouseUp(Button, Shift, X, Y);
    if (!m_mousePress) return;
    m_pressed = m_mousePress = false;
    Repaint();
}

void TqxCustomOnOff::Click() {
    if (!m_pressed && !m_keyClick) return;
    m_keyClick = m_pressed = m_mousePress = false;
    SetSwitchOn(!m_switchOn);
    TFocusableInput<TCustomControl>::Click();
}

// Keys. The space bar presses and toggles without OnKeyDown or OnKeyUp.

void TqxCustomOnOff::KeyDown(unsigned& Key, TShiftState Shift) {
    if (Key != VK_SPACE) {
        TFocusableInput<TCustomControl>::KeyDown(Key, Shift);
        return;
    }
    if (m_pressed) return;
    FocusForPress();
    m_mousePress = false;
    m_pressed = true;
    Repaint();
}

void TqxCustomOnOff::KeyUp(unsigned& Key, TShiftState Shift) {
    if (Key != VK_SPACE) {
        TFocusableInput<TCustomControl>::KeyUp(Key, Shift);
        return;
    }
    if (!m_pressed || m_mousePress) return;
    m_pressed = false;
    m_keyClick = true;
    Click();
}

void TqxCustomOnOff::WMGetDlgCode(TMessage& Message) {
    TCustomControl::WMGetDlgCode(Message);
}

void TqxCustomOnOff::CMDialogChar(TMessage& Message) {
    if (IsAccel(static_cast<unsigned>(Message.WParam), Caption()) && CanFocus()) {
        m_keyClick = true;
        Click();
        Message.Result = 1;
        return;
    }
    TFocusableInput<TCustomControl>::CMDialogChar(Message);
}

// Notifications.

void TqxCustomOnOff::CMFocusChanged(TMessage& Message) {
    if (!Focused()) m_pressed = m_mousePress = false;
    TFocusableInput<TCustomControl>::CMFocusChanged(Message);
    Invalidate();
}

void TqxCustomOnOff::CMTextChanged(TMessage& Message) {
    TFocusableInput<TCustomControl>::CMTextChanged(Message);
    if (m_followGeometry) GetRegs();
    Invalidate();
}

void TqxCustomOnOff::CMEnabledChanged(TMessage& Message) {
    TFocusableInput<TCustomControl>::CMEnabledChanged(Message);
    Invalidate();
}

void TqxCustomOnOff::CMFontChanged(TMessage& Message) {
    TFocusableInput<TCustomControl>::CMFontChanged(Message);
    if (m_followGeometry) GetRegs();
    Invalidate();
}

void TqxCustomOnOff::CMSysColorChange(TMessage& Message) {
    TFocusableInput<TCustomControl>::CMSysColorChange(Message);
    Invalidate();
}

// Painting.

void TqxCustomOnOff::Paint() {
    TCanvas& canvas =
        m_frame.Begin(*this, Canvas(), TFrameBackground::FlatOrSteel(m_backColor, m_steelLook));
    canvas.Brush().SetColor(m_backColor);
    canvas.Pen().SetWidth(1);
    if (!Enabled())
        PaintDisabled(canvas);
    else if (m_switchOn)
        PaintOn(canvas);
    else
        PaintOff(canvas);
    if (Focused() && Enabled() && m_useFocusFrame) {
        canvas.Brush().SetStyle(bsSolid);
        canvas.DrawFocusRect(ClientRect());
    }
    m_frame.End(*this, Canvas(), OnPaint);
}

void TqxCustomOnOff::PaintText(TRect rect, TCanvas& canvas) {
    canvas.SetFont(*Font());
    canvas.Font().SetStyle(Focused() && m_useFocusBold ? TFontStyles{fsBold} : TFontStyles{});
    if (Enabled() && m_pressed && m_showTextPress) OffsetRect(rect, 1, 1);
    canvas.Brush().SetStyle(bsClear);
    DrawCaptionText(canvas, Caption(), rect,
                    CaptionTextFlags(m_horzAlign, m_alignment, m_multipleLines, m_wordWrap),
                    Enabled());
}

} // namespace qv
