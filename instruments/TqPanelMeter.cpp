#include "instruments/TqPanelMeter.h"

#include "componentbase/Steel.h"
#include "componentbase/TurnPoint.h"
#include "platform/controls/ControlProperties.h"
#include "platform/graphics/Text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace qv {

const TTypeInfo& QScaleWidthType() {
    static const TTypeInfo info = TTypeInfo::Integer("qScaleWidthType", 0, 5);
    return info;
}

const TClassInfo& TqPanelMeter::StaticClassInfo() {
    static const TClassInfo info = [] {
        using M = TqPanelMeter;
        TClassBuilder<M> b("TqPanelMeter", &TGraphicControl::StaticClassInfo());
        PublishControlProperties(b, {"PopupMenu", "OnDragDrop", "OnDragOver", "OnEndDrag",
                                     "OnMouseDown", "OnMouseMove", "OnMouseUp", "DragCursor",
                                     "DragMode", "ParentFont", "ParentShowHint", "ShowHint",
                                     "Visible", "OnClick", "OnDblClick", "Font", "Caption"});
        b.Property("Min", &M::Min, &M::SetScaledMin).Default(Defaults::Min);
        b.Property("Max", &M::Max, &M::SetScaledMax).Default(Defaults::Max);
        b.Property("ShowAll", &M::ShowAll, &M::SetShowAll).Default(Defaults::ShowAll);
        b.Property("UseAlert", &M::UseAlert, &M::SetUseAlert).Default(Defaults::UseAlert);
        b.Property("PanelType", &M::PanelType, &M::SetPanelType).Default(Defaults::PanelType);
        b.Property("HouseColor", ColorType(), &M::HouseColor, &M::SetHouseColor)
            .Default(Defaults::HouseColor);
        b.Property("HouseStyle", &M::HouseStyle, &M::SetHouseStyle).Default(Defaults::HouseStyle);
        b.Property("ShadowColor", ColorType(), &M::ShadowColor, &M::SetShadowColor)
            .Default(Defaults::ShadowColor);
        b.Property("HighColor", ColorType(), &M::HighColor, &M::SetHighColor)
            .Default(Defaults::HighColor);
        b.Property("FaceColor", ColorType(), &M::FaceColor, &M::SetFaceColor)
            .Default(Defaults::FaceColor);
        b.Property("NormalColor", ColorType(), &M::NormalColor, &M::SetNormalColor)
            .Default(Defaults::NormalColor);
        b.Property("AlertColor", ColorType(), &M::AlertColor, &M::SetAlertColor)
            .Default(Defaults::AlertColor);
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Width);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Height);
        b.Property("Ticks", &M::Ticks, &M::SetTicks).Default(Defaults::Ticks);
        b.Property("StepPerTick", &M::StepPerTick, &M::SetStep).Default(Defaults::StepPerTick);
        b.Property("Alert", &M::Alert, &M::SetAlert).Default(Defaults::Alert);
        b.Property("Value", &M::Value, &M::SetValue).Default(Defaults::Value);
        b.Property("Hand", ColorType(), &M::Hand, &M::SetHand).Default(Defaults::Hand);
        b.Property("ScaleWidth", QScaleWidthType(), &M::ScaleWidth, &M::SetScaleWidth)
            .Default(Defaults::ScaleWidth);
        b.Property("SteelLook", &M::SteelLook, &M::SetSteelLook).Default(Defaults::SteelLook);
        b.Event("OnPaint", &M::OnPaint);
        b.Event("OnAlert", &M::OnAlert);
        b.Event("OnNotAlert", &M::OnNotAlert);
        b.Event("OnChange", &M::OnChange);
        b.Event("OnMouseEnter", &M::OnMouseEnter);
        b.Event("OnMouseLeave", &M::OnMouseLeave);
        return b.Build();
    }();
    return info;
}

TqPanelMeter::TqPanelMeter(TComponent* AOwner) : TEnterLeaveEvents<TGraphicControl>(AOwner) {
    SetOpaqueStyle(*this, true);
    SetBounds(Left(), Top(), Defaults::Width, Defaults::Height);
}

// Value and range.

void TqPanelMeter::SetValue(int value) {
    if (IsLoading()) {
        m_value = value;
        return;
    }
    m_value = m_range.Clamp(value);
    UpdateAlert();
    if (OnChange) OnChange(this);
    Refresh();
}

void TqPanelMeter::UpdateAlert() {
    if (!m_useAlert) return;
    if (m_value < m_alert) {
        if (!m_inAlert) return;
        m_inAlert = false;
        if (OnNotAlert) OnNotAlert(this);
    } else if (!m_inAlert) {
        m_inAlert = true;
        if (OnAlert) OnAlert(this);
    }
}

void TqPanelMeter::SetAlert(int value) {
    m_alertRead = IsLoading();
    m_alert = m_alertRead ? value : m_range.Clamp(value);
    Invalidate();
}

// No equality test: the value is applied again, with its events.
void TqPanelMeter::SetScaledMin(int value) {
    m_range.SetMin(value, IsLoading());
    SetValue(m_value);
    Invalidate();
}

void TqPanelMeter::SetScaledMax(int value) {
    m_range.SetMax(value, IsLoading());
    SetValue(m_value);
    Invalidate();
}

// Min, Max, Alert and Value were stored as read; they settle here as the setters would have
// settled them in the file's order, without events. Alert is clamped only if it was read: the
// range setters leave an Alert outside the range as it is.
void TqPanelMeter::Loaded() {
    TEnterLeaveEvents<TGraphicControl>::Loaded();
    m_range.Loaded();
    if (m_alertRead) m_alert = m_range.Clamp(m_alert);
    m_alertRead = false;
    m_value = m_range.Clamp(m_value);
}

// The other properties.

namespace {
template <class T> void Store(TControl& control, T& member, T value) {
    member = value;
    control.Invalidate();
}
} // namespace

void TqPanelMeter::SetShowAll(bool value) {
    Store(*this, m_showAll, value);
}
void TqPanelMeter::SetUseAlert(bool value) {
    Store(*this, m_useAlert, value);
}
void TqPanelMeter::SetPanelType(qPanelType value) {
    Store(*this, m_panelType, value);
}
void TqPanelMeter::SetHouseColor(TColor value) {
    Store(*this, m_houseColor, value);
}
void TqPanelMeter::SetHouseStyle(TBrushStyle value) {
    Store(*this, m_houseStyle, value);
}
void TqPanelMeter::SetShadowColor(TColor value) {
    Store(*this, m_shadowColor, value);
}
void TqPanelMeter::SetHighColor(TColor value) {
    Store(*this, m_highColor, value);
}
void TqPanelMeter::SetFaceColor(TColor value) {
    Store(*this, m_faceColor, value);
}
void TqPanelMeter::SetNormalColor(TColor value) {
    Store(*this, m_normalColor, value);
}
void TqPanelMeter::SetAlertColor(TColor value) {
    Store(*this, m_alertColor, value);
}
void TqPanelMeter::SetTicks(bool value) {
    Store(*this, m_ticks, value);
}
void TqPanelMeter::SetStep(int value) {
    Store(*this, m_stepPerTick, value);
}
void TqPanelMeter::SetHand(TColor value) {
    Store(*this, m_hand, value);
}

void TqPanelMeter::SetScaleWidth(int value) {
    Store(*this, m_scaleWidth,
          std::clamp(value, static_cast<int>(QScaleWidthType().minValue),
                     static_cast<int>(QScaleWidthType().maxValue)));
}

void TqPanelMeter::SetSteelLook(bool value) {
    m_steelLook = value;
    if (value) Steel();
    Invalidate();
}

void TqPanelMeter::Steel() {
    m_shadowColor = Defaults::SteelShadow;
    m_highColor = Defaults::SteelHigh;
}

void TqPanelMeter::CMFontChanged(TMessage&) {
    m_dial.Invalidate();
    Invalidate();
}
void TqPanelMeter::CMTextChanged(TMessage&) {
    Invalidate();
}
void TqPanelMeter::CMSysColorChange(TMessage&) {
    m_dial.Invalidate(); // system colours may stand for other pixels now
    Invalidate();
}

// Painting.

struct TqPanelMeter::TGeometry {
    int W, H, wx, hy, cx, base;
    TGeometry(int w, int h) : W(w), H(h), wx(w / 11), hy(h / 11), cx(w / 2), base(h - h / 4) {}
    // The scale point of percent p: x and the band's baseline y0.
    TPoint ScalePoint(std::int64_t p) const {
        const TPoint offset = TurnPoint(0, 0, W / 2, H / 2, p + 310, 360, TAngleOrigin::Top,
                                        TPixelRounding::RoundOffset);
        return {W / 2 + offset.x, H / 2 + 2 * hy + offset.y};
    }
};

namespace {
// Larger dials are drawn straight into the picture on every paint instead of being kept.
constexpr long long kMaxCachedPixels = 1LL << 22;
} // namespace

TqPanelMeter::TDialLook TqPanelMeter::DialLook() const {
    return {Width(),     Height(),     m_houseColor,  m_houseStyle,  m_steelLook, m_shadowColor,
            m_highColor, m_faceColor,  m_normalColor, m_alertColor,  m_hand,      m_showAll,
            m_useAlert,  m_ticks,      m_panelType,   m_stepPerTick, m_alert,     Min(),
            Max(),       m_scaleWidth, Caption()};
}

// Everything but the needle is kept between paints while its look holds; the needle is drawn
// last, so the pixels are those of drawing it all in one go.
void TqPanelMeter::Paint() {
    if (m_steelLook) Steel();
    const bool cached = static_cast<long long>(Width()) * Height() <= kMaxCachedPixels;
    TCanvas& c =
        m_frame.Begin(*this, Canvas(), TFrameBackground::Flat(clWhite).PaintedOver(cached));
    if (cached) {
        c.Draw(0, 0, m_dial.Picture(DialLook(), Width(), Height(), [this](TCanvas& dial) {
            dial.Brush().SetColor(clWhite);
            dial.FillRect({0, 0, Width(), Height()});
            PaintDial(dial);
        }));
    } else {
        PaintDial(c);
    }
    PaintNeedle(c, TGeometry(Width() - 1, Height() - 1));
    m_frame.End(*this, Canvas(), OnPaint);
}

// The housing's fill falls on white: a hatch leaves white between its lines.
void TqPanelMeter::PaintDial(TCanvas& c) const {
    c.Pen().SetColor(clBlack);
    c.Brush().SetColor(m_houseColor);
    c.Brush().SetStyle(m_houseStyle);
    {
        std::optional<TSteelBrush> steel;
        if (m_steelLook) steel.emplace(c);
        c.FillRect({0, 0, Width(), Height()});
    }
    c.Brush().SetStyle(bsSolid);
    c.Pen().SetWidth(1);
    c.SetFont(*Font());
    static constexpr std::array<TOuterEdges, 3> edges = {TOuterEdges::All, TOuterEdges::TopBottom,
                                                         TOuterEdges::LeftRight};
    PaintHousing(c, Width() - 1, Height() - 1, edges[m_panelType]);
}

void TqPanelMeter::PaintHousing(TCanvas& c, int W, int H, TOuterEdges edges) const {
    const TGeometry g(W, H);
    PaintOuterBevel(c, W, H, edges);
    PaintFaceBevel(c, g);
    if (m_showAll) PaintHub(c, g);
    PaintFace(c, g);
    if (m_showAll) PaintBaseLines(c, g);
    PaintScale(c, g);
}

// Light on the outer top and left edges, dark on the bottom and right ones; the edge housings
// keep one pair of them.
void TqPanelMeter::PaintOuterBevel(TCanvas& c, int W, int H, TOuterEdges edges) const {
    const bool horizontal = edges != TOuterEdges::LeftRight;
    const bool vertical = edges != TOuterEdges::TopBottom;
    c.Pen().SetColor(m_shadowColor);
    if (horizontal) {
        c.MoveTo(0, H);
        c.LineTo(W + 1, H);
    }
    if (vertical) {
        c.MoveTo(W, 0);
        c.LineTo(W, H + 1);
    }
    c.Pen().SetColor(m_highColor);
    if (horizontal) {
        c.MoveTo(1, 1);
        c.LineTo(W, 1);
    }
    if (vertical) {
        c.MoveTo(1, 1);
        c.LineTo(1, H);
    }
}

// The face opening: dark on its left and top, light on its right and bottom.
void TqPanelMeter::PaintFaceBevel(TCanvas& c, const TGeometry& g) const {
    const int left = g.wx - 1, top = g.hy - 1, right = g.W - g.wx + 1, bottom = g.base - g.hy + 1;
    c.Pen().SetColor(m_shadowColor);
    const std::array<TPoint, 3> dark = {{{left, bottom - 1}, {left, top}, {right, top}}};
    c.Polyline(dark);
    c.Pen().SetColor(m_highColor);
    const std::array<TPoint, 3> light = {{{right, top}, {right, bottom}, {left - 1, bottom}}};
    c.Polyline(light);
}

void TqPanelMeter::PaintHub(TCanvas& c, const TGeometry& g) const {
    c.Pen().SetColor(clBlack);
    c.Brush().SetColor(m_hand);
    c.Ellipse(g.cx - g.wx + 2, g.base + 2, g.cx + g.wx - 2, g.base + 2 * g.hy - 2);
}

void TqPanelMeter::PaintFace(TCanvas& c, const TGeometry& g) const {
    const TRect face{g.wx + 1, g.hy + 1, g.W - g.wx, g.base - g.hy};
    c.Brush().SetColor(m_faceColor);
    c.FillRect(face);
    c.Brush().SetStyle(bsClear);
    TRect text{face.left + 2, face.top + 2, face.right - 2, face.bottom - 2};
    c.DrawText(Caption(), text, DT_CENTER | DT_BOTTOM | DT_SINGLELINE);
    c.Brush().SetStyle(bsSolid);
}

void TqPanelMeter::PaintBaseLines(TCanvas& c, const TGeometry& g) const {
    const int y = g.base + g.hy;
    c.Pen().SetColor(m_highColor);
    c.MoveTo(g.cx - g.wx + 5, y);
    c.LineTo(g.cx + g.wx - 5, y);
    c.Pen().SetColor(m_shadowColor);
    c.MoveTo(g.cx - g.wx + 5, y - 1);
    c.LineTo(g.cx + g.wx - 5, y - 1);
}

TColor TqPanelMeter::ColorOf(std::int64_t value) const {
    return m_useAlert && value >= m_alert ? m_alertColor : m_normalColor;
}

// Drawn value by value, every value at the same percent lands on the same stroke and tick:
// each percent is drawn once, the band in its last value's colour, the tick in the colour of
// its last value divisible by StepPerTick (a StepPerTick of 0 draws no ticks).
void TqPanelMeter::PaintScale(TCanvas& c, const TGeometry& g) const {
    const std::int64_t step = m_stepPerTick < 0 ? -std::int64_t{m_stepPerTick} : m_stepPerTick;
    const bool ticks = m_ticks && step != 0;
    ForEachScaleGroup(Min(), Max(), [&](std::int64_t p, std::int64_t first, std::int64_t last) {
        const TPoint s = g.ScalePoint(p);
        if (ticks) {
            const std::int64_t marked = LastMultipleAtOrBelow(last, step);
            if (marked >= first) {
                c.SetPixel(s.x, s.y - (m_scaleWidth + 1), ColorOf(marked));
                c.SetPixel(s.x, s.y - (m_scaleWidth + 2), ColorOf(marked));
            }
        }
        c.Pen().SetColor(ColorOf(last));
        c.MoveTo(s.x, s.y + 2);
        c.LineTo(s.x, s.y - m_scaleWidth);
    });
}

// The line's end pixel, at the pivot, is not drawn.
void TqPanelMeter::PaintNeedle(TCanvas& c, const TGeometry& g) const {
    const TPoint tip = g.ScalePoint(ScalePercent(m_value, Min(), Max()));
    c.Pen().SetColor(m_hand);
    c.MoveTo(tip.x, tip.y);
    c.LineTo(g.cx, g.base - g.hy);
}

} // namespace qv
