#include "instruments/TqKnob.h"

#include "componentbase/KeySteps.h"
#include "componentbase/Steel.h"
#include "platform/controls/ControlProperties.h"
#include "platform/core/SysUtils.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace qv {

namespace {
constexpr TColor Rgb(int r, int g, int b) {
    return static_cast<TColor>(r | g << 8 | b << 16);
}
constexpr long double Pi = std::numbers::pi_v<long double>;
constexpr int FaceInset = 8;      // the face and the hit region lie 8 pixels inside the bounds
constexpr int ClearingMargin = 3; // the clearing disc reaches 3 pixels beyond the face
} // namespace

const std::array<TKnobShades, 8> KnobShadeTable = {{
    {Rgb(255, 0, 0), Rgb(128, 0, 0), Rgb(64, 0, 0)},              // kcRed
    {Rgb(0, 0, 255), Rgb(0, 0, 128), Rgb(0, 0, 64)},              // kcBlue
    {Rgb(0, 255, 0), Rgb(0, 128, 0), Rgb(0, 64, 0)},              // kcGreen
    {Rgb(255, 255, 0), Rgb(128, 128, 0), Rgb(192, 192, 0)},       // kcYellow
    {Rgb(255, 0, 255), Rgb(128, 0, 128), Rgb(64, 0, 64)},         // kcMagenta
    {Rgb(255, 255, 255), Rgb(192, 192, 192), Rgb(128, 128, 128)}, // kcSilver
    {Rgb(0, 255, 255), Rgb(0, 128, 128), Rgb(0, 64, 64)},         // kcCyan
    {Rgb(255, 255, 255), Rgb(226, 226, 226), Rgb(192, 192, 192)}, // kcWhite
}};

const TTypeInfo& KnobPointWidthType() {
    static const TTypeInfo info = TTypeInfo::Integer("KnobPointWidth", 1, 5);
    return info;
}

int PointAngle(int cx, int cy, int X, int Y) {
    const long double dy = static_cast<long double>(cy) - Y;
    const long double dx = static_cast<long double>(X) - cx;
    // The tiny addend keeps a point straight above or below the centre from dividing by zero.
    auto angle = static_cast<int>(Round(std::atan(dy / (dx + 0.0000001L)) / (2 * Pi) * 360));
    if (X > cx && Y > cy)
        angle += 360;
    else if (X < cx)
        angle += 180;
    return angle;
}

const TClassInfo& TqKnob::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqKnob> b("TqKnob", &TCustomControl::StaticClassInfo());
        b.Property("AutoFocus", &TqKnob::AutoFocus, &TqKnob::SetAutoFocus)
            .Default(Defaults::AutoFocus);
        PublishControlProperties(b, {"PopupMenu"});
        b.Property("HideReflex", &TqKnob::HideReflex, &TqKnob::SetNoReflex)
            .Default(Defaults::HideReflex);
        b.Property("Min", &TqKnob::Min, &TqKnob::SetScaledMin).Default(Defaults::Min);
        b.Property("Max", &TqKnob::Max, &TqKnob::SetScaledMax).Default(Defaults::Max);
        b.Property("Ticks", &TqKnob::Ticks, &TqKnob::SetTicks).Default(Defaults::Ticks);
        b.Property("TickColor", ColorType(), &TqKnob::TickColor, &TqKnob::SetTickColor)
            .Default(Defaults::TickColor);
        b.Property("StepPerTick", &TqKnob::StepPerTick, &TqKnob::SetStep)
            .Default(Defaults::StepPerTick);
        b.Property("PointColor", ColorType(), &TqKnob::PointColor, &TqKnob::SetPoint)
            .Default(Defaults::PointColor);
        b.Property("PointWidth", KnobPointWidthType(), &TqKnob::PointWidth, &TqKnob::SetPointW)
            .Default(Defaults::PointWidth);
        b.Property("Width", &TqKnob::Width, &TqKnob::SetheightWidth).Default(Defaults::Size);
        b.Property("Height", &TqKnob::Height, &TqKnob::SetheightWidth).Default(Defaults::Size);
        b.Property("KnobColor", &TqKnob::KnobColor, &TqKnob::SetKnobCol)
            .Default(Defaults::KnobColor);
        b.Property("Value", &TqKnob::Value, &TqKnob::SetKnobValue).Default(Defaults::Value);
        b.Event("OnPaint", &TqKnob::OnPaint);
        // Color has no storage default: it is written whenever ParentColor is off. A default
        // of clWindow would leave a clWindow knob's colour out of the file, and it would read
        // back with its parent's colour.
        PublishControlProperties(b, {"Color", "ParentColor"});
        b.Property("SteelLook", &TqKnob::SteelLook, &TqKnob::SetSteel).Default(Defaults::SteelLook);
        b.Event("OnChange", &TqKnob::OnChange);
        b.Event("OnMinimum", &TqKnob::OnMinimum);
        b.Event("OnMaximum", &TqKnob::OnMaximum);
        PublishControlProperties(b, {"Hint", "ShowHint", "ParentShowHint", "Cursor", "Visible",
                                     "Enabled", "TabOrder", "OnEnter", "OnExit", "OnKeyDown",
                                     "OnKeyPress", "OnKeyUp", "TabStop"});
        b.Default(Defaults::TabStop);
        b.Event("OnMouseEnter", &TqKnob::OnMouseEnter);
        b.Event("OnMouseLeave", &TqKnob::OnMouseLeave);
        return b.Build();
    }();
    return info;
}

TqKnob::TqKnob(TComponent* AOwner) : TFocusableInput<TCustomControl>(AOwner) {
    SetBounds(Left(), Top(), Defaults::Size, Defaults::Size);
}

// Properties.

void TqKnob::SetNoReflex(bool value) {
    if (value == m_hideReflex) return;
    m_hideReflex = value;
    Invalidate();
}

// No equality test: the values are applied again, with their events, whatever Min was.
void TqKnob::SetScaledMin(int value) {
    m_range.SetMin(value, IsLoading());
    ReapplyValues();
    Invalidate();
}

void TqKnob::SetScaledMax(int value) {
    m_range.SetMax(value, IsLoading());
    ReapplyValues();
    Invalidate();
}

void TqKnob::ReapplyValues() {
    for (int i = 0; i < RingCount(); ++i)
        SetRingValue(i, *Ring(i).value);
}

void TqKnob::SetTicks(bool value) {
    if (value == m_ticks) return;
    m_ticks = value;
    Invalidate();
}

void TqKnob::SetTickColor(TColor value) {
    m_tickColor = value;
    Invalidate();
}

void TqKnob::SetStep(int value) {
    if (value == m_stepPerTick) return;
    m_stepPerTick = value;
    Invalidate();
}

void TqKnob::SetPoint(TColor value) {
    if (value == m_pointColor) return;
    m_pointColor = value;
    Invalidate();
}

void TqKnob::SetPointW(int value) {
    value = std::clamp(value, static_cast<int>(KnobPointWidthType().minValue),
                       static_cast<int>(KnobPointWidthType().maxValue));
    if (value == m_pointWidth) return;
    m_pointWidth = value;
    Refresh();
}

void TqKnob::SetheightWidth(int value) {
    SetBounds(Left(), Top(), value, value);
}

void TqKnob::SetKnobCol(KnobColorType value) {
    if (value == m_knobColor) return;
    m_knobColor = value;
    Invalidate();
}

void TqKnob::SetKnobValue(int value) {
    SetRingValue(0, value);
}

void TqKnob::SetSteel(bool value) {
    m_steelLook = value;
    Invalidate();
}

TqKnob::TRing TqKnob::Ring(int) {
    return {&m_value, &OnMinimum, &OnMaximum, m_pointColor};
}

void TqKnob::SetRingValue(const TRing& ring, int value) {
    if (IsLoading()) {
        *ring.value = value;
        return;
    }
    *ring.value = m_range.Clamp(value);
    if (OnChange) OnChange(this);
    if (value == Min() && *ring.onMinimum) (*ring.onMinimum)(this);
    if (value == Max() && *ring.onMaximum) (*ring.onMaximum)(this);
    Refresh();
}

// Size and loading.

void TqKnob::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    AWidth = std::clamp(AWidth, MinSize, MaxSize);
    AHeight = std::clamp(AHeight, MinSize, MaxSize);
    const int side = AWidth != Width() ? AWidth : AHeight;
    TFocusableInput<TCustomControl>::SetBounds(ALeft, ATop, side, side);
    if (Parent()) BuildHitRegions();
}

// Min, Max and the values were stored as read; they settle here, without events.
void TqKnob::Loaded() {
    TFocusableInput<TCustomControl>::Loaded();
    m_range.Loaded();
    for (int i = 0; i < RingCount(); ++i) {
        int& value = *Ring(i).value;
        value = m_range.Clamp(value);
    }
    BuildHitRegions();
}

// Mouse and keys.

void TqKnob::BuildHitRegions() {
    const int inset = Width() / 8;
    m_hitRegions.clear();
    for (int i = 0; i < RingCount(); ++i) {
        const int edge = FaceInset + i * inset;
        m_hitRegions.push_back(TRegion::FromEllipse(edge, edge, Width() - edge, Height() - edge));
    }
}

int TqKnob::RingAt(int X, int Y) const {
    for (int i = static_cast<int>(m_hitRegions.size()) - 1; i >= 0; --i)
        if (m_hitRegions[static_cast<std::size_t>(i)].Contains(X, Y)) return i;
    return -1;
}

int TqKnob::Where(int X, int Y) const {
    const int c = Width() / 2;
    int a = 360 - PointAngle(c, c, X, Y) - 125;
    if (a < 0) a += 360;
    if (a > 360) a -= 360;
    std::int64_t percent = 0;
    if (a >= 330 && a <= 360)
        percent = 0;
    else if (a >= 290)
        percent = 100;
    else
        percent = Round(a * 0.3448275862068966L);
    // Exact in integers: as a real product, 29 % of 0..100 would truncate to 28.
    const std::int64_t range = static_cast<std::int64_t>(Max()) - Min();
    return static_cast<int>(Min() + range * percent / 100);
}

void TqKnob::DragTo(int X, int Y) {
    SetRingValue(m_dragRing, Where(X, Y));
    Refresh();
}

// Any button focuses; a press on a ring's face starts dragging that ring (the innermost one
// that holds the point), elsewhere it only focuses.
void TqKnob::MouseDown(TMouseButtonKind, TShiftState, int X, int Y) {
    FocusForPress();
    m_dragRing = RingAt(X, Y);
    if (m_dragRing >= 0) DragTo(X, Y);
}

void TqKnob::MouseMove(TShiftState Shift, int X, int Y) {
    if (Shift.Contains(ssLeft) && m_dragRing >= 0) DragTo(X, Y);
}

void TqKnob::MouseUp(TMouseButtonKind Button, TShiftState, int X, int Y) {
    if (Button != mbLeft) return;
    if (m_dragRing >= 0) DragTo(X, Y);
    m_dragRing = -1;
}

// The inherited handling is not called: OnKeyDown is not raised.
void TqKnob::KeyDown(unsigned& Key, TShiftState Shift) {
    const TRing ring = Ring(KeyRing(Shift));
    if (const auto target = StepKeyTarget(Key, *ring.value, Min(), Max()))
        SetRingValue(ring, static_cast<int>(*target));
}

// Painting.

void TqKnob::Paint() {
    m_frame.Paint(
        *this, Canvas(), TFrameBackground::FlatOrSteel(Color(), m_steelLook),
        [this](TCanvas& c) { DrawKnob(c); }, OnPaint);
}

TRect TqKnob::OuterFace() const {
    return {FaceInset, FaceInset, Width() - FaceInset, Height() - FaceInset};
}

TBitmap& TqKnob::Underlay() {
    const int W = Width(), H = Height();
    const TUnderlayLook look{
        W, H, Color(), m_steelLook, m_ticks, m_tickColor, m_stepPerTick, Min(), Max(), m_knobColor};
    return m_underlay.Picture(look, W, H, [&](TCanvas& c) {
        FillBackground(c, {0, 0, W, H}, TFrameBackground::FlatOrSteel(Color(), m_steelLook));
        if (m_ticks) DrawTick(c, W / 2);
        DrawClearingDisc(c, OuterFace());
        DrawStack(c, OuterFace(), W / 22);
    });
}

// The rings are painted outermost first, each face Width div 8 inside the previous one; an
// inner ring's stack is a twentieth of its face deep.
void TqKnob::DrawKnob(TCanvas& c) {
    const int W = Width(), H = Height(), centre = W / 2, inset = W / 8;
    c.Draw(0, 0, Underlay());
    TRect face = OuterFace();
    for (int i = 0; i < RingCount(); ++i) {
        if (i > 0) {
            face = {face.left + inset, face.top + inset, face.right - inset, face.bottom - inset};
            DrawStack(c, face, face.Width() / 20);
        }
        const TRing ring = Ring(i);
        DrawFace(c, face, *ring.value, ring.pointColor, centre - i * inset);
    }
    c.Pen().SetWidth(1);
    c.Brush().SetColor(Color());
    c.Brush().SetStyle(bsSolid);
    c.Pen().SetColor(clBlack);
    if (Focused()) c.DrawFocusRect({0, 0, W, H});
}

void TqKnob::DrawTick(TCanvas& c, int centre) const {
    c.Pen().SetColor(m_tickColor);
    // Values at the same percent share one angle: each is drawn once.
    ForEachScalePercent(Min(), Max(), m_stepPerTick, [&](std::int64_t percent) {
        const long double angle = static_cast<long double>(percent - 50) / 125 * 2 * Pi;
        c.MoveTo(centre, centre);
        c.LineTo(centre + static_cast<int>(Round(std::sin(angle) * centre)),
                 centre - static_cast<int>(Round(std::cos(angle) * centre)));
    });
}

// A disc of the background over the ticks' inner part: only their outer pixels stay.
void TqKnob::DrawClearingDisc(TCanvas& c, const TRect& face) const {
    c.Brush().SetColor(Color());
    c.Pen().SetStyle(psClear);
    std::optional<TSteelBrush> steel;
    if (m_steelLook) steel.emplace(c);
    c.Ellipse(face.left - ClearingMargin, face.top - ClearingMargin, face.right + ClearingMargin,
              face.bottom + ClearingMargin);
}

// Drawing the top (the ellipse at shift 0) once more would change no pixel. An inner ring's
// pen keeps the width the previous ring's pointer left it with.
void TqKnob::DrawStack(TCanvas& c, const TRect& face, int depth) const {
    c.Pen().SetStyle(psSolid);
    c.Pen().SetColor(clBlack);
    c.Brush().SetColor(Shades().face);
    for (int i = depth; i >= 0; --i)
        c.Ellipse(face.left + i, face.top + i, face.right + i, face.bottom + i);
}

void TqKnob::DrawFace(TCanvas& c, const TRect& face, int value, TColor pointColor,
                      int radius) const {
    if (!m_hideReflex) DrawReflex(c, face.Width(), face, value & 1);
    c.Pen().SetColor(clBlack);
    c.Brush().SetStyle(bsClear);
    c.Ellipse(face);
    DrawPointer(c, value, pointColor, radius);
}

// The wedges move by a pixel with the value's parity, so the metal glints as the knob turns;
// the first wedge's start point lies at y = -shift, above the face, on purpose.
void TqKnob::DrawReflex(TCanvas& c, int d, const TRect& face, int shift) const {
    const int L = face.left, T = face.top, R = face.right, B = face.bottom;
    const TKnobShades& shades = Shades();
    c.Brush().SetColor(shades.light);
    c.Pen().SetColor(shades.light);
    c.Pie(L, T, R, B, L + d / 5 + shift, -shift, L + d / 5 + shift, T + d / 3 - shift);
    c.Pie(L, T, R, B, R - d / 5 - shift, B + shift, R - d / 5 - shift, B - d / 3 + shift);
    c.Brush().SetColor(shades.dark);
    c.Pen().SetColor(shades.dark);
    c.Pie(L, T, R, B, R - d / 8 + shift, T + d / 4 + shift, R - d / 5, T + d / 6 - shift);
    c.Pie(L, T, R, B, L + d / 8 - shift, B - d / 4 - shift, L + d / 5, B - d / 6 - shift);
}

// From the centre towards the value's angle: +-144 degrees at the ends of the range.
void TqKnob::DrawPointer(TCanvas& c, int value, TColor color, int radius) const {
    const int centre = Width() / 2;
    const std::int64_t q = ScalePercent(value, Min(), Max()) - 50;
    const long double angle = static_cast<long double>(q) / 125 * 2 * Pi;
    const int r = radius - (m_pointWidth + 8);
    c.Pen().SetColor(color);
    c.Pen().SetWidth(m_pointWidth);
    c.MoveTo(centre, centre);
    c.LineTo(centre + static_cast<int>(Round(std::sin(angle) * r)),
             centre - static_cast<int>(Round(std::cos(angle) * r)));
}

} // namespace qv
