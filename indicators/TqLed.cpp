#include "indicators/TqLed.h"

#include "platform/controls/ControlProperties.h"

#include <algorithm>

namespace qv {

const std::array<TColor, 9> LedLitColors = {TColor(0x0000FF), TColor(0xFF0000), TColor(0x00FF00),
                                            TColor(0x00FFFF), TColor(0xFF00FF), TColor(0xC0C0C0),
                                            TColor(0xFFFF00), TColor(0xFFFFFF), TColor(0x0000FF)};
const std::array<TColor, 9> LedDarkColors = {TColor(0x000080), TColor(0x800000), TColor(0x008000),
                                             TColor(0x008080), TColor(0x800080), TColor(0x000000),
                                             TColor(0x808000), TColor(0x808080), TColor(0x000080)};

const TClassInfo& TqLed::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqLed> b("TqLed", &TGraphicControl::StaticClassInfo());
        b.Property("SteelLook", &TqLed::SteelLook, &TqLed::SetSteelLook)
            .Default(Defaults::SteelLook);
        b.Property("LedStyle", &TqLed::LedStyle, &TqLed::SetLedStyle).Default(Defaults::LedStyle);
        PublishControlProperties(b, {"DragCursor", "DragMode", "Align", "Hint", "ShowHint",
                                     "ParentShowHint", "Visible", "Width"});
        b.Default(Defaults::Size);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Size);
        b.Property("LEDColor", &TqLed::LEDColor, &TqLed::SetLEDColor);
        b.Property("Enabled", &TqLed::LedOn, &TqLed::writeLedOn).Default(Defaults::LedOn);
        b.Event("OnChange", &TqLed::OnChange);
        b.Event("OnPaint", &TqLed::OnPaint);
        b.Property("Blink", &TqLed::Blink, &TqLed::SetBlink).Default(Defaults::Blink);
        b.Property("BlinkInterval", &TqLed::BlinkInterval, &TqLed::SetBlinkInterval)
            .Default(Defaults::BlinkInterval);
        PublishControlProperties(b, {"OnClick", "OnDblClick", "OnMouseDown", "OnMouseUp",
                                     "OnMouseMove", "OnDragDrop", "OnDragOver", "OnEndDrag"});
        b.Event("OnMouseEnter", &TqLed::OnMouseEnter);
        b.Event("OnMouseLeave", &TqLed::OnMouseLeave);
        b.Event("OnGetOnColor", &TqLed::OnGetOnColor);
        b.Event("OnGetOffColor", &TqLed::OnGetOffColor);
        return b.Build();
    }();
    return info;
}

TqLed::TqLed(TComponent* AOwner) : TEnterLeaveEvents<TGraphicControl>(AOwner) {
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
    SetBounds(Left(), Top(), Defaults::Size, Defaults::Size);
}

TqLed::~TqLed() {
    FreeTimer();
}

void TqLed::FreeTimer() {
    delete m_timer;
    m_timer = nullptr;
}

// Stored without an equality test, as the lamp's look is cheap to repaint.
void TqLed::SetSteelLook(bool value) {
    m_steelLook = value;
    Invalidate();
}

void TqLed::SetLedStyle(LedStyleType value) {
    if (value == m_ledStyle) return;
    m_ledStyle = value;
    Invalidate();
}

void TqLed::SetLEDColor(LedColorType value) {
    m_ledColor = value;
    Refresh();
}

void TqLed::writeLedOn(bool Value) {
    if (Value == m_ledOn) return;
    m_ledOn = Value;
    Refresh();
    if (OnChange) OnChange(this);
}

void TqLed::StartBlinkTimer() {
    m_timer = new TTimer(this);
    m_timer->SetInterval(static_cast<unsigned>(std::max(m_blinkInterval, 0)));
    m_timer->SetOnTimer([this](TObject* sender) { DoTheBlink(sender); });
}

// Unlike BlinkInterval, this setter does not look at csDesigning: a blinking LED blinks in
// the designer too.
void TqLed::SetBlink(bool value) {
    if (value == m_blink) return;
    FreeTimer();
    m_blink = value;
    if (value) StartBlinkTimer();
    Refresh();
}

void TqLed::SetBlinkInterval(int value) {
    if (value == m_blinkInterval) return;
    FreeTimer();
    m_blinkInterval = value;
    if (m_blink && !IsDesigning()) StartBlinkTimer();
    Refresh();
}

void TqLed::DoTheBlink(TObject*) {
    writeLedOn(!m_ledOn);
}

void TqLed::Pulse(unsigned Value) {
    if (m_blink) return;
    if (!m_timer) m_timer = new TTimer(this);
    m_timer->SetEnabled(false);
    m_timer->SetInterval(Value * 100);
    m_timer->SetOnTimer([this](TObject* sender) { DoThePulse(sender); });
    m_timer->SetEnabled(true);
    writeLedOn(true);
}

void TqLed::DoThePulse(TObject*) {
    writeLedOn(false);
    FreeTimer();
}

TColor TqLed::LampColor() {
    TColor color = m_ledOn ? LedLitColors[m_ledColor] : LedDarkColors[m_ledColor];
    const qxGetColor& ask = m_ledOn ? OnGetOnColor : OnGetOffColor;
    if (m_ledColor == lctUser && ask) ask(this, color);
    return color;
}

namespace {

// The highlight arcs that end both round styles.
void HighlightArcs(TCanvas& c, int W, int H, int s, int h) {
    c.Pen().SetWidth(h);
    c.Pen().SetColor(TColor(0x808080));
    c.Arc(4 * s, 4 * s, W - 4 * s, H - 4 * s, W - 4 * s, H - 2 * s, W - 4 * s, H - 9 * s);
    c.Pen().SetColor(TColor(0xFFFFFF));
    c.Arc(4 * s, 4 * s, W - 4 * s, H - 4 * s, 8 * s, 0, 7 * s, 9 * s);
    c.Pen().SetColor(TColor(0xC0C0C0));
    c.Arc(4 * s, 4 * s, W - 4 * s, H - 4 * s, 8 * s, 0, 7 * s, 8 * s);
}

void RoundStyle(TCanvas& c, int W, int H, int s) {
    c.Ellipse(0, 0, W, H);
    c.Pen().SetColor(TColor(0xC0C0C0));
    c.Ellipse(s, s, W - s, H - s);
    c.Pen().SetColor(TColor(0x808080));
    c.Arc(s, s, W - s, H - s, s, H - s, W - s, s);
    c.Pen().SetColor(TColor(0x000000));
    c.Ellipse(2 * s, 2 * s, W - 2 * s, H - 2 * s);
    c.Arc(s, s, W - s, H - s, W / 2 + 3 * s, s, W / 2 - 3 * s, s);
    c.Arc(s, s, W - s, H - s, W / 2 - 3 * s, H - s, W / 2 + 3 * s, H - s);
    c.Arc(s, s, W - s, H - s, s, H / 2 - 3 * s, s, H / 2 + 3 * s);
    c.Arc(s, s, W - s, H - s, W - s, H / 2 + 3 * s, W - s, H / 2 - 3 * s);
}

void Polyline(TCanvas& c, std::initializer_list<TPoint> points) {
    c.Polyline(std::span<const TPoint>(points.begin(), points.size()));
}

void SquareStyle(TCanvas& c, int W, int H, int s) {
    c.FillRect({0, 0, W, H});
    Polyline(c, {{s - 1, s - 1}, {W - 1, s - 1}, {W - 1, H - 1}, {s - 1, H - 1}, {s - 1, s - 1}});
    Polyline(c, {{3 * s - 1, 3 * s - 1},
                 {W - 1 - 2 * s, 3 * s - 1},
                 {W - 1 - 2 * s, H - 1 - 2 * s},
                 {3 * s - 1, H - 1 - 2 * s},
                 {3 * s - 1, 3 * s - 1}});
    c.Pen().SetColor(TColor(0xC0C0C0));
    // The end x is W - 2s + 1, not W - s - 1: the asymmetry with the next line is kept.
    Polyline(c, {{2 * s - 1, H - s - 1}, {2 * s - 1, 2 * s - 1}, {W - 2 * s + 1, 2 * s - 1}});
    c.Pen().SetColor(TColor(0x808080));
    Polyline(c, {{W - s - 1, 3 * s - 1}, {W - s - 1, H - s - 1}, {2 * s - 1, H - s - 1}});
    // The grey patches are passed with their corners reversed (left > right, top > bottom).
    c.Brush().SetColor(TColor(0x808080));
    c.FillRect({W - 4 * s, H - 4 * s, W - 6 * s, H - 5 * s});
    c.FillRect({W - 7 * s, H - 4 * s, W - 9 * s, H - 5 * s});
    c.Brush().SetColor(TColor(0xFFFFFF));
    c.Pen().SetColor(TColor(0xFFFFFF));
    c.FillRect({4 * s, 4 * s, 6 * s, 5 * s});
    c.Brush().SetColor(TColor(0xC0C0C0));
    c.Pen().SetColor(TColor(0xC0C0C0));
    c.FillRect({7 * s, 4 * s, 9 * s, 5 * s});
}

} // namespace

void TqLed::DrawLamp(TCanvas& c) {
    const int W = Width(), H = Height();
    const int s = std::clamp(W / 17, 1, 6);
    const int h = std::max(s / 2, 1);
    c.Brush().SetColor(LampColor());
    c.Pen().SetColor(TColor(0x000000));
    c.Pen().SetWidth(s);
    switch (m_ledStyle) {
    case lstSimpleRound:
        c.Ellipse(0, 0, W, H);
        HighlightArcs(c, W, H, s, h);
        break;
    case lstRound:
        RoundStyle(c, W, H, s);
        HighlightArcs(c, W, H, s, h);
        break;
    default:
        SquareStyle(c, W, H, s);
        break;
    }
}

void TqLed::Paint() {
    m_frame.Paint(
        *this, Canvas(), TFrameBackground::ParentOrSteel(*this, m_steelLook),
        [this](TCanvas& c) { DrawLamp(c); }, OnPaint);
}

} // namespace qv
