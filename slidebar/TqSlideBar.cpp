#include "slidebar/TqSlideBar.h"

#include "componentbase/KeySteps.h"
#include "platform/controls/ControlProperties.h"

#include <algorithm>
#include <climits>

namespace qv {

namespace {

// num / den rounded half to even, for den > 0, exactly.
std::int64_t RoundDiv(std::int64_t num, std::int64_t den) {
    const bool negative = num < 0;
    const std::int64_t magnitude = negative ? -num : num;
    std::int64_t q = magnitude / den;
    const std::int64_t twiceRest = magnitude % den * 2;
    if (twiceRest > den || (twiceRest == den && (q & 1) != 0)) ++q;
    return negative ? -q : q;
}

// What a tick's coordinates are limited to before they reach the canvas: far enough outside
// every picture that the visible pixels stay the same.
constexpr std::int64_t FarOutside = std::int64_t{4} * TControl::MaxCoordinate;

int Limited(std::int64_t v) {
    return static_cast<int>(std::clamp(v, -FarOutside, FarOutside));
}

} // namespace

const TTypeInfo& BarTickType() {
    static const TTypeInfo info = TTypeInfo::Integer("TBarTick", 1, INT_MAX);
    return info;
}

const TClassInfo& TqSlideBar::StaticClassInfo() {
    static const TClassInfo info = [] {
        using C = TqSlideBar;
        TClassBuilder<C> b("TqSlideBar", &TCustomControl::StaticClassInfo());
        b.Property("JumpToMouse", &C::JumpToMouse, &C::SetJumpToMouse)
            .Default(Defaults::JumpToMouse);
        b.Property("AutoFocus", &C::AutoFocus, &C::SetAutoFocus).Default(Defaults::AutoFocus);
        b.Event("OnMouseEnter", &C::OnMouseEnter);
        b.Event("OnMouseLeave", &C::OnMouseLeave);
        b.Event("OnMouseUpTwo", &C::OnMouseUpTwo);
        b.Property("Color", ColorType(), &C::Color, &C::SetColor).Default(Defaults::Color);
        b.Property("SteelLook", &C::SteelLook, &C::SetSteel).Default(Defaults::SteelLook);
        b.Property("TickSpace", &C::TickSpace, &C::SetTickSpace).Default(Defaults::TickSpace);
        b.Property("TickSize", &C::TickSize, &C::SetTickSize).Default(Defaults::TickSize);
        b.Property("TickStyle", &C::TickStyle, &C::SetTickStyle).Default(Defaults::TickStyle);
        b.Property("TickWhere", &C::TickWhere, &C::SetTickWhere).Default(Defaults::TickWhere);
        b.Property("StepPerTick", BarTickType(), &C::StepPerTick, &C::SetStepPerTick)
            .Default(Defaults::StepPerTick);
        b.Property("FocusColor", ColorType(), &C::FocusColor, &C::SetFocusColor)
            .Default(Defaults::FocusColor);
        b.Property("NonFocusColor", ColorType(), &C::NonFocusColor, &C::SetNonFocusColor)
            .Default(Defaults::NonFocusColor);
        b.Object("Labels", &C::Labels);
        b.Property("Max", &C::Max, &C::SetMax).Default(Defaults::Max);
        b.Property("Min", &C::Min, &C::SetMin).Default(Defaults::Min);
        b.Property("Orientation", &C::Orientation, &C::SetOrientation)
            .Default(Defaults::Orientation);
        b.Property("Value", &C::Value, &C::SetPosition).Default(Defaults::Value);
        b.Property("Thickness", &C::Thickness, &C::SetThickness).Default(Defaults::Thickness);
        b.Property("ThumbStyle", &C::ThumbStyle, &C::SetThumbStyle).Default(Defaults::ThumbStyle);
        b.Property("Ticks", &C::Ticks, &C::SetTicks).Default(Defaults::Ticks);
        b.Property("Style", &C::Style, &C::SetStyle).Default(Defaults::Style);
        b.Event("OnChange", &C::OnChange);
        b.Event("OnMinimum", &C::OnMinimum);
        b.Event("OnMaximum", &C::OnMaximum);
        b.Event("OnOwnerDraw", &C::OnOwnerDraw);
        PublishControlProperties(b, {"TabStop"});
        b.Default(Defaults::TabStop);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Height);
        PublishControlProperties(b, {"ParentShowHint", "Enabled", "Cursor", "PopupMenu", "ShowHint",
                                     "TabOrder", "Visible", "OnEnter", "OnExit", "OnKeyDown",
                                     "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseUp",
                                     "OnMouseMove"});
        return b.Build();
    }();
    return info;
}

TqSlideBar::TqSlideBar(TComponent* AOwner)
    : TFocusableInput<TCustomControl>(AOwner), m_labels(std::make_unique<TStringList>()) {
    SetColor(Defaults::Color);
    SetBounds(Left(), Top(), Defaults::Width, Defaults::Height);
    BuildThumb();
}

// Properties.

void TqSlideBar::SetColor(TColor value) {
    const bool changed = value != Color();
    TFocusableInput<TCustomControl>::SetColor(value); // stops following the parent's colour
    if (changed) Refresh();
}

void TqSlideBar::SetSteel(bool value) {
    if (value == m_steelLook) return;
    m_steelLook = value;
    Refresh();
}

void TqSlideBar::SetTickSpace(int value) {
    if (value == m_tickSpace) return;
    m_tickSpace = value;
    Refresh();
}

void TqSlideBar::SetTickSize(int value) {
    if (value == m_tickSize) return;
    m_tickSize = value;
    Refresh();
}

void TqSlideBar::SetTickStyle(TqTickStyle value) {
    if (value == m_tickStyle) return;
    m_tickStyle = value;
    Refresh();
}

void TqSlideBar::SetTickWhere(TBarTickStyle value) {
    if (value == m_tickWhere) return;
    m_tickWhere = value;
    Refresh();
}

void TqSlideBar::SetStepPerTick(int value) {
    value = std::max(value, static_cast<int>(BarTickType().minValue));
    if (value == m_stepPerTick) return;
    m_stepPerTick = value;
    Refresh();
}

void TqSlideBar::SetFocusColor(TColor value) {
    if (value == m_focusColor) return;
    m_focusColor = value;
    Refresh();
}

void TqSlideBar::SetNonFocusColor(TColor value) {
    if (value == m_nonFocusColor) return;
    m_nonFocusColor = value;
    Refresh();
}

void TqSlideBar::SetLabels(const TStrings& value) {
    m_labels->Assign(value);
}

void TqSlideBar::SetMax(int value) {
    if (IsLoading()) {
        m_range.SetMax(value, true);
        return;
    }
    if (value <= Min() || value == Max()) return;
    m_range.SetMax(value, false);
    Refresh();
}

void TqSlideBar::SetMin(int value) {
    if (IsLoading()) {
        m_range.SetMin(value, true);
        return;
    }
    if (value >= Max() || value == Min()) return;
    m_range.SetMin(value, false);
    Refresh();
}

void TqSlideBar::SetOrientation(TOrientation value) {
    if (value == m_orientation) return;
    m_orientation = value;
    const bool tall = Height() > Width();
    if (!IsLoading() && IsVert() != tall) SetBounds(Left(), Top(), Height(), Width());
    Refresh();
}

void TqSlideBar::SetPosition(int value) {
    if (value == m_value) return;
    if (IsLoading()) {
        m_value = value;
        return;
    }
    if (value >= Min() && value <= Max()) m_value = value;
    Refresh();
    if (IsDesigning()) return;
    if (OnChange) OnChange(this);
    if (m_value == Min() && OnMinimum) OnMinimum(this);
    if (m_value == Max() && OnMaximum) OnMaximum(this);
}

void TqSlideBar::SetThickness(std::uint8_t value) {
    if (value == m_thickness) return;
    m_thickness = value;
    Refresh();
}

void TqSlideBar::SetThumbStyle(TThumbStyle value) {
    m_thumbStyle = value;
    BuildThumb();
    Refresh();
}

void TqSlideBar::BuildThumb() {
    qv::BuildThumb(m_thumbStyle, m_thumb);
    DoMask(m_thumb, m_mask);
    m_halfHeight = m_thumb.Height() / 2;
    m_halfWidth = m_thumb.Width() / 2;
}

void TqSlideBar::SetTicks(bool value) {
    if (value == m_ticks) return;
    m_ticks = value;
    Refresh();
}

void TqSlideBar::SetStyle(TBarStyle value) {
    if (value == m_style) return;
    m_style = value;
    Refresh();
}

// Min, Max and Value were stored as read. The range settles here; Value stays as read, as
// the range setters never bring it into the range either.
void TqSlideBar::Loaded() {
    TFocusableInput<TCustomControl>::Loaded();
    m_range.Loaded();
}

std::string TqSlideBar::CurrentLabel() const {
    const std::int64_t index = static_cast<std::int64_t>(m_value) - Min();
    if (index < 0 || index >= m_labels->Count()) return {};
    return m_labels->Strings(static_cast<int>(index));
}

void TqSlideBar::SetTLColor(TCanvas* canvas) const {
    canvas->Pen().SetColor(m_style == bsLowered ? clBtnShadow : clBtnHighlight);
}

void TqSlideBar::SetBRColor(TCanvas* canvas) const {
    canvas->Pen().SetColor(m_style == bsLowered ? clBtnHighlight : clBtnShadow);
}

// Geometry.

int TqSlideBar::Travel() const {
    return IsVert() ? Height() - m_thumb.Height() : Width() - m_thumb.Width();
}

// Min = Max (possible only through a form file) places the thumb at the Min end instead of
// dividing by zero.
int TqSlideBar::ThumbOffset(std::int64_t value) const {
    const std::int64_t range = static_cast<std::int64_t>(Max()) - Min();
    const std::int64_t travel = Travel();
    const std::int64_t share = range == 0 ? 0 : RoundDiv((value - Min()) * travel, range);
    const std::int64_t offset = IsVert() ? travel - share : share;
    return static_cast<int>(std::max<std::int64_t>(std::min(offset, travel), 0));
}

TRect TqSlideBar::WhereIsBar() {
    const int tw = m_thumb.Width(), th = m_thumb.Height();
    const int along = ThumbOffset(m_value);
    const TPoint at =
        IsVert() ? TPoint{(Width() - tw) / 2, along} : TPoint{along, (Height() - th) / 2};
    m_thumbRect = {at.x, at.y, at.x + tw, at.y + th};
    return m_thumbRect;
}

int TqSlideBar::NewPosition(int X, int Y) const {
    const std::int64_t extent = IsVert() ? Height() : Width();
    if (extent <= 0) return Min();
    const std::int64_t along = std::clamp<std::int64_t>(IsVert() ? extent - Y : X, 0, extent);
    const std::int64_t range = static_cast<std::int64_t>(Max()) - Min();
    const std::int64_t value = RoundDiv(along * range, extent) + Min();
    return static_cast<int>(std::max<std::int64_t>(std::min<std::int64_t>(value, Max()), Min()));
}

TRect TqSlideBar::GrooveRect() const {
    const int half = HalfLength();
    const int end = half + std::max(Travel(), 0) + 2;
    if (IsVert()) {
        const int left = (Width() - m_thickness) / 2 - 1;
        return {left, half - 1, left + m_thickness + 2, end};
    }
    const int top = (Height() - m_thickness) / 2 - 1;
    return {half - 1, top, end, top + m_thickness + 2};
}

// Painting.

void TqSlideBar::Paint() {
    m_frame.Paint(
        *this, Canvas(), TFrameBackground::FlatOrSteel(Color(), m_steelLook),
        [this](TCanvas& c) {
            const TRect groove = GrooveRect();
            DrawGroove(c, groove);
            if (m_ticks) DrawTicks(c, groove);
            WhereIsBar();
            c.MaskedDraw(m_thumbRect.left, m_thumbRect.top, m_thumb, m_mask);
        },
        TNotifyEvent{});
}

void TqSlideBar::DrawGroove(TCanvas& c, const TRect& groove) const {
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(Focused() ? m_focusColor : m_nonFocusColor);
    c.FillRect({groove.left + 1, groove.top + 1, groove.right - 1, groove.bottom - 1});
    const int r = groove.right - 1, b = groove.bottom - 1;
    SetTLColor(&c);
    c.MoveTo(groove.left, b);
    c.LineTo(groove.left, groove.top);
    c.LineTo(r, groove.top);
    SetBRColor(&c);
    c.LineTo(r, b);
    c.LineTo(groove.left - 1, b);
}

// Tick k stands for Min + k * StepPerTick. Along a travel of L pixels over a range of R values
// it lies u(k) = Round(k * step * L / R) pixels from the Min end; u never falls as k grows, so
// after the tick at u the walk jumps straight to the first k whose u is larger, found from
// (2u + 1) * R / (2 * step * L) and at most two steps after it. All in 64 bits: R < 2^32,
// L <= 2^28.
void TqSlideBar::DrawTicks(TCanvas& c, const TRect& groove) {
    const std::int64_t range = static_cast<std::int64_t>(Max()) - Min();
    if (range < 0) return;
    const std::int64_t step = m_stepPerTick;
    const std::int64_t travel = Travel();
    const std::int64_t last = range / step;
    const int half = HalfLength();
    if (range == 0 || travel <= 0) {
        DrawTick(c, groove, ThumbOffset(Min()) + half, 0);
        return;
    }
    const auto at = [&](std::int64_t k) { return RoundDiv(k * step * travel, range); };
    std::int64_t k = 0;
    while (k <= last) {
        const std::int64_t u = at(k);
        DrawTick(c, groove, static_cast<int>((IsVert() ? travel - u : u) + half), k);
        std::int64_t next = std::max((2 * u + 1) * range / (2 * step * travel), k + 1);
        while (next <= last && at(next) <= u)
            ++next;
        k = next;
    }
}

void TqSlideBar::DrawTick(TCanvas& c, const TRect& groove, int along, std::int64_t number) {
    const std::int64_t space = m_tickSpace, size = m_tickSize;
    const std::int64_t nearSide = IsVert() ? groove.left : groove.top;
    const std::int64_t farSide = IsVert() ? groove.right : groove.bottom;
    if (m_tickWhere != ttsRight) DrawTickLine(c, along, nearSide - space - size, true, number);
    if (m_tickWhere != ttsLeft) DrawTickLine(c, along, farSide + space, false, number);
}

// Tick numbers beyond the Integer range (more than 2^31 ticks between Min and Max) are passed
// as 2147483647.
void TqSlideBar::DrawTickLine(TCanvas& c, int along, std::int64_t from, bool left,
                              std::int64_t number) {
    if (m_tickStyle == tsOwnerDraw) {
        if (!OnOwnerDraw) return;
        const int across = Limited(from);
        const int tickNum = static_cast<int>(std::min<std::int64_t>(number, INT_MAX));
        if (IsVert())
            OnOwnerDraw(this, &c, across, along, left, tickNum);
        else
            OnOwnerDraw(this, &c, along, across, left, tickNum);
        return;
    }
    if (m_tickSize <= 0) return;
    const int start = Limited(from), end = Limited(from + m_tickSize);
    c.Pen().SetColor(clBlack);
    if (IsVert()) {
        c.MoveTo(start, along);
        c.LineTo(end, along);
    } else {
        c.MoveTo(along, start);
        c.LineTo(along, end);
    }
}

// Keys and mouse.

void TqSlideBar::KeyDown(unsigned& Key, TShiftState Shift) {
    if (const auto target = StepKeyTarget(Key, m_value, Min(), Max()))
        SetPosition(static_cast<int>(*target));
    TFocusableInput<TCustomControl>::KeyDown(Key, Shift);
}

void TqSlideBar::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    FocusForPress();
    WhereIsBar();
    m_dragging = m_thumbRect.Contains({X, Y});
    if (m_jumpToMouse && m_dragging) {
        m_dragStart = IsVert() ? Y : X;
        SetFromPoint(X, Y);
    }
    TFocusableInput<TCustomControl>::MouseDown(Button, Shift, X, Y);
}

void TqSlideBar::MouseMove(TShiftState Shift, int X, int Y) {
    if (Shift.Contains(ssLeft) && m_dragging && (IsVert() ? Y : X) != m_dragStart)
        SetFromPoint(X, Y);
    TFocusableInput<TCustomControl>::MouseMove(Shift, X, Y);
}

void TqSlideBar::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    TFocusableInput<TCustomControl>::MouseUp(Button, Shift, X, Y);
    if (Button == mbLeft && !m_dragging) StepTowards(X, Y);
    Refresh();
    m_dragging = false;
    if (OnMouseUpTwo) OnMouseUpTwo(this, Button, Shift, X, Y);
}

// One value towards the pointer from the thumb's centre line; nothing on the line itself.
void TqSlideBar::StepTowards(int X, int Y) {
    const TRect thumb = WhereIsBar();
    const int centre = IsVert() ? thumb.top + m_halfHeight : thumb.left + m_halfWidth;
    const int pointer = IsVert() ? Y : X;
    if (pointer == centre) return;
    // Up the value: right of the centre, or above it on a vertical bar.
    const bool up = IsVert() ? pointer < centre : pointer > centre;
    const std::int64_t target = static_cast<std::int64_t>(m_value) + (up ? 1 : -1);
    SetPosition(
        static_cast<int>(std::max<std::int64_t>(std::min<std::int64_t>(target, Max()), Min())));
}

void TqSlideBar::WMSize(TMessage& Message) {
    TFocusableInput<TCustomControl>::WMSize(Message);
    m_orientation = Height() <= Width() ? orHorizontal : orVertical;
}

} // namespace qv
