#include "controls/TqxSpinBtn.h"

#include "platform/controls/ControlProperties.h"

#include <algorithm>
#include <initializer_list>
#include <span>

namespace qv {

namespace {

// A polyline through `points`; its last pixel is not drawn.
void Poly(TCanvas& c, std::initializer_list<TPoint> points) {
    c.Polyline(std::span<const TPoint>(points.begin(), points.size()));
}

int Clamped(int value, const TTypeInfo& type) {
    return static_cast<int>(std::clamp<std::int64_t>(value, type.minValue, type.maxValue));
}

} // namespace

const TTypeInfo& TqxSpinSpeedType() {
    static const TTypeInfo info = TTypeInfo::Integer("TqxSpinSpeed", 50, 2500);
    return info;
}

const TTypeInfo& TqxSpinWaitRepeatType() {
    static const TTypeInfo info = TTypeInfo::Integer("TqxSpinWaitRepeat", 0, 10);
    return info;
}

const TClassInfo& TqxSpinBtn::StaticClassInfo() {
    static const TClassInfo info = [] {
        using C = TqxSpinBtn;
        TClassBuilder<C> b("TqxSpinBtn", &TGraphicControl::StaticClassInfo());
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Width);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Height);
        PublishControlProperties(b, {"PopupMenu", "DragCursor", "DragMode"});
        b.Property("Color", ColorType(), &C::Color, &C::SetColor)
            .Stored([](const C& c) { return !c.ParentColor(); })
            .Default(Defaults::Color);
        b.Property("GlyphColor", ColorType(), &C::GlyphColor, &C::SetGlyphColor)
            .Default(Defaults::GlyphColor);
        b.Property("GlyphDisableColor", ColorType(), &C::GlyphDisableColor,
                   &C::SetGlyphDisableColor)
            .Default(Defaults::GlyphDisableColor);
        PublishControlProperties(b, {"ParentColor"});
        b.Default(false);
        b.Property("HighLightColor", ColorType(), &C::HighLightColor, &C::SetHighLightColor)
            .Default(Defaults::HighLightColor);
        b.Property("ShadowColor", ColorType(), &C::ShadowColor, &C::SetShadowColor)
            .Default(Defaults::ShadowColor);
        PublishControlProperties(b, {"Enabled", "ParentShowHint", "ShowHint", "Visible"});
        b.Property("SpinSpeed", TqxSpinSpeedType(), &C::SpinSpeed, &C::SetSpinSpeed)
            .Default(Defaults::SpinSpeed);
        b.Property("WaitRepeat", TqxSpinWaitRepeatType(), &C::WaitRepeat, &C::SetWaitRepeat)
            .Default(Defaults::WaitRepeat);
        b.Property("UseRepeat", &C::UseRepeat, &C::SetUseRepeat).Default(Defaults::UseRepeat);
        PublishControlProperties(b, {"OnClick"});
        b.Event("OnUpClick", &C::OnUpClick);
        b.Event("OnDownClick", &C::OnDownClick);
        b.Event("OnPaint", &C::OnPaint);
        PublishControlProperties(b, {"OnDragDrop", "OnDragOver", "OnEndDrag", "OnMouseDown",
                                     "OnMouseMove", "OnMouseUp"});
        return b.Build();
    }();
    return info;
}

TqxSpinBtn::TqxSpinBtn(TComponent* AOwner) : TGraphicControl(AOwner) {
    // Every pixel is painted; a second fast press is a press, so fast clicks each step.
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque} - TControlStyle{csDoubleClicks});
    TGraphicControl::SetColor(Defaults::Color);
    m_timer = new TTimer(this);
    m_timer->SetEnabled(false);
    m_timer->SetInterval(static_cast<unsigned>(Defaults::SpinSpeed));
    m_timer->SetOnTimer([this](TObject*) { TimerStep(); });
    SetBounds(Left(), Top(), Defaults::Width, Defaults::Height);
}

// Properties.

void TqxSpinBtn::SetColor(TColor value) {
    TGraphicControl::SetColor(value);
    Repaint();
}

void TqxSpinBtn::SetGlyphColor(TColor value) {
    m_glyphColor = value;
    Repaint();
}

void TqxSpinBtn::SetGlyphDisableColor(TColor value) {
    m_glyphDisableColor = value;
    Repaint();
}

void TqxSpinBtn::SetHighLightColor(TColor value) {
    if (value == m_highLightColor) return;
    m_highLightColor = value;
    Repaint();
}

void TqxSpinBtn::SetShadowColor(TColor value) {
    if (value == m_shadowColor) return;
    m_shadowColor = value;
    Repaint();
}

void TqxSpinBtn::SetSpinSpeed(int value) {
    value = Clamped(value, TqxSpinSpeedType());
    if (value == m_spinSpeed) return;
    m_spinSpeed = value;
    m_timer->SetInterval(static_cast<unsigned>(value));
}

void TqxSpinBtn::SetWaitRepeat(int value) {
    value = Clamped(value, TqxSpinWaitRepeatType());
    if (value == m_waitRepeat) return;
    m_waitRepeat = value;
    m_counter = 0;
}

void TqxSpinBtn::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    TGraphicControl::SetBounds(ALeft, ATop, AWidth, AHeight);
    Layout();
}

void TqxSpinBtn::Loaded() {
    TGraphicControl::Loaded();
    Layout();
}

// Layout.

void TqxSpinBtn::Layout() {
    m_upperHeight = Height() / 2;
    m_lowerTop = m_upperHeight;
    SetArrowFromUpperHeight();
}

// 0 below an upper height of 6, then 1, 2, 3 and from 9 on 4; smaller while it does not fit
// the width with 4 pixels either side (possibly below 0, which draws nothing).
void TqxSpinBtn::SetArrowFromUpperHeight() {
    int size = m_upperHeight < 6 ? 0 : std::min(m_upperHeight - 5, 4);
    while (size * 2 + 8 >= Width())
        --size;
    m_arrowSize = size;
    m_arrowTop = (m_upperHeight - size) / 2;
}

TqxSpinBtn::TButton TqxSpinBtn::ButtonAt(int X, int Y) const {
    if (X < 0 || X >= ClientWidth()) return TButton::None;
    if (Y >= 0 && Y <= m_upperHeight) return TButton::Up;
    if (Y > m_upperHeight && Y <= Height()) return TButton::Down;
    return TButton::None;
}

// Clicks.

void TqxSpinBtn::Click() {
    TGraphicControl::Click();
    ButtonClicked(m_pressed);
}

void TqxSpinBtn::ButtonClicked(TButton button) {
    if (button == TButton::Up && OnUpClick) OnUpClick(this);
    if (button == TButton::Down && OnDownClick) OnDownClick(this);
}

// The wait counts WaitRepeat + 1 ticks; each later tick clicks while a button is pressed.
void TqxSpinBtn::TimerStep() {
    if (!Enabled() || !m_useRepeat) return;
    if (m_counter <= m_waitRepeat)
        ++m_counter;
    else if (m_pressed != TButton::None && m_capturing)
        Click();
}

// Mouse.

void TqxSpinBtn::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft && Enabled()) {
        const TButton button = ButtonAt(X, Y);
        if (button != TButton::None) {
            if (!IsPressed(button)) {
                m_counter = 0;
                m_pressed = m_captured = button;
                Repaint();
            }
            m_capturing = true;
        }
        if (m_capturing) m_timer->SetEnabled(true);
    }
    TGraphicControl::MouseDown(Button, Shift, X, Y);
}

// While a press holds, the button it began on pops out when the pointer leaves its zone and
// presses in again on return; OnMouseMove is raised only without a press.
void TqxSpinBtn::MouseMove(TShiftState Shift, int X, int Y) {
    if (!m_capturing) {
        TGraphicControl::MouseMove(Shift, X, Y);
        return;
    }
    const bool inside = ButtonAt(X, Y) == m_captured;
    if (inside == IsPressed(m_captured)) return;
    m_pressed = inside ? m_captured : TButton::None;
    Repaint();
}

// The framework has already clicked when the release was inside. A release of another button
// while the left one is held changes nothing.
void TqxSpinBtn::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft) Release();
    TGraphicControl::MouseUp(Button, Shift, X, Y);
}

void TqxSpinBtn::Release() {
    if (!m_capturing) return;
    m_counter = 0;
    m_timer->SetEnabled(false);
    m_pressed = m_captured = TButton::None;
    m_capturing = false;
    Repaint();
}

// Painting.

void TqxSpinBtn::WMEraseBkgnd(TMessage& Message) {
    Message.Result = 1;
}

void TqxSpinBtn::Paint() {
    m_frame.Paint(
        *this, Canvas(), TFrameBackground::Flat(Color()),
        [this](TCanvas& c) {
            c.Pen().SetWidth(1);
            c.Pen().SetColor(GlyphPen());
            if (m_arrowSize > 0) DrawUpArrow(c);
            DrawBevel(c, 0, m_upperHeight, UpPressed());
            c.Pen().SetColor(GlyphPen());
            DrawDownArrow(c);
            DrawBevel(c, m_lowerTop, Height(), DownPressed());
            DrawCentre(c);
        },
        OnPaint);
}

// Rows widen downwards from the tip: the arrow points up.
void TqxSpinBtn::DrawUpArrow(TCanvas& c) const {
    const int d = UpPressed() ? 1 : 0, centre = Width() / 2;
    for (int i = 0; i <= m_arrowSize; ++i) {
        const int y = m_arrowTop + i + d;
        Poly(c, {{centre - i + d, y - 1}, {centre + i + d, y - 1}});
    }
}

// Rows widen upwards to the tip: the arrow points down.
void TqxSpinBtn::DrawDownArrow(TCanvas& c) const {
    const int d = DownPressed() ? 1 : 0, centre = Width() / 2, H = Height();
    for (int i = m_arrowSize; i >= 0; --i) {
        const int y = m_arrowTop + i - d;
        Poly(c, {{centre - i + d, H - y - 1}, {centre + i + d, H - y - 1}});
    }
}

void TqxSpinBtn::DrawBevel(TCanvas& c, int top, int bottom, bool pressed) const {
    const int W = Width();
    c.Pen().SetColor(m_shadowColor);
    Poly(c, {{0, bottom - 1}, {0, top}, {W - 1, top}});
    Poly(c, {{W - 2, top + 1}, {W - 2, bottom - 2}, {0, bottom - 2}});
    c.Pen().SetColor(pressed ? clBlack : m_highLightColor);
    Poly(c, {{1, bottom - 1}, {1, top + 1}, {W - 1, top + 1}});
    c.Pen().SetColor(pressed ? m_highLightColor : clBlack);
    Poly(c, {{W - 1, top}, {W - 1, bottom - 1}, {0, bottom - 1}});
}

} // namespace qv
