#include "instruments/TqxDinMeter.h"

#include "componentbase/Bevels.h"
#include "componentbase/Scale.h"
#include "componentbase/TurnPoint.h"
#include "platform/controls/ControlProperties.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

namespace qv {

namespace {
constexpr int kMarks = 10;         // marks 0..10, 9 degrees apart
constexpr int kCaption1Margin = 4; // Caption1 ends this far above and left of the pivot

int Clamped(int value, const TTypeInfo& type) {
    return std::clamp(value, static_cast<int>(type.minValue), static_cast<int>(type.maxValue));
}

// The pixel at radius r and numerator / denominator of a turn about (cx, cy), truncated and
// moved one pixel up and left.
TPoint DinPoint(int cx, int cy, long double r, std::int64_t numerator, std::int64_t denominator) {
    const TPoint p = TurnPoint(cx, cy, r, r, numerator, denominator, TAngleOrigin::ThreeOClock,
                               TPixelRounding::TruncateSum);
    return {p.x - 1, p.y - 1};
}
} // namespace

const TTypeInfo& QxDecNumType() {
    static const TTypeInfo info = TTypeInfo::Integer("qxDecNum", 0, 5);
    return info;
}
const TTypeInfo& QxFrameWidthType() {
    static const TTypeInfo info = TTypeInfo::Integer("qxFrameWidth", 4, 25);
    return info;
}

const TClassInfo& TqxDinMeter::StaticClassInfo() {
    static const TClassInfo info = [] {
        using M = TqxDinMeter;
        TClassBuilder<M> b("TqxDinMeter", &TGraphicControl::StaticClassInfo());
        b.Property("DrawScale", &M::DrawScale, &M::SetDrawScale).Default(Defaults::DrawScale);
        b.Property("SteelLook", &M::SteelLook, &M::SetSteelLook).Default(Defaults::SteelLook);
        b.Property("NeedleColor", ColorType(), &M::NeedleColor, &M::SetNeedleColor)
            .Default(Defaults::NeedleColor);
        b.Property("NeedleLength", &M::NeedleLength, &M::SetNeedleLength)
            .Default(Defaults::NeedleLength);
        b.Property("DigitsAfterPoint", QxDecNumType(), &M::DigitsAfterPoint,
                   &M::SetDigitsAfterPoint)
            .Default(Defaults::DigitsAfterPoint);
        b.Property("ScaleType", &M::ScaleType, &M::SetScaleType).Default(Defaults::ScaleType);
        b.Property("ScaleColor", ColorType(), &M::ScaleColor, &M::SetScaleColor)
            .Default(Defaults::ScaleColor);
        b.Property("OffSetNumbers", QxOffSetNumberType(), &M::OffSetNumbers, &M::SetOffSetNumbers)
            .Default(Defaults::OffSetNumbers);
        b.Property("OffSetDots", QxOffSetDotType(), &M::OffSetDots, &M::SetOffSetDots)
            .Default(Defaults::OffSetDots);
        b.Property("DotLength", QxOffSetDotType(), &M::DotLength, &M::SetDotLength)
            .Default(Defaults::DotLength);
        b.Property("Min", &M::Min, &M::SetMin).Default(Defaults::Min);
        b.Property("Max", &M::Max, &M::SetMax).Default(Defaults::Max);
        b.Property("Value", &M::Value, &M::SetValue).Default(Defaults::Value);
        b.Property("ShadowColor", ColorType(), &M::ShadowColor, &M::SetShadowColor)
            .Default(Defaults::ShadowColor);
        b.Property("HighLightColor", ColorType(), &M::HighLightColor, &M::SetHighLightColor)
            .Default(Defaults::HighLightColor);
        PublishControlProperties(b, {"Color"});
        b.Property("FrameColor", ColorType(), &M::FrameColor, &M::SetFrameColor)
            .Default(Defaults::FrameColor);
        b.Property("FrameWidth", QxFrameWidthType(), &M::FrameWidth, &M::SetFrameWidth)
            .Default(Defaults::FrameWidth);
        b.Object("FaceBitmap", &M::FaceBitmap).Stored([](const M& m) {
            return !m.FaceBitmap()->Empty();
        });
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Size);
        b.Property("Caption2X", &M::Caption2X, &M::SetCaption2X).Default(Defaults::Caption2X);
        b.Property("Caption2Y", &M::Caption2Y, &M::SetCaption2Y).Default(Defaults::Caption2Y);
        b.Property("Caption2", &M::Caption2, &M::SetCaption2);
        b.Property("Caption1", &M::Caption1, &M::SetCaption1);
        b.Object("Caption1Font", &M::Caption1Font);
        b.Object("Caption2Font", &M::Caption2Font);
        PublishControlProperties(b, {"DragMode", "DragCursor", "Cursor", "Font", "Hint", "Left"});
        // The constructor sets Color: it does not follow the parent.
        b.Property("ParentColor", &M::ParentColor, &M::SetParentColor).Default(false);
        PublishControlProperties(
            b, {"ParentFont", "ParentShowHint", "PopupMenu", "ShowHint", "Top", "Visible"});
        b.Event("OnMouseEnter", &M::OnMouseEnter);
        b.Event("OnMouseLeave", &M::OnMouseLeave);
        b.Event("OnPaint", &M::OnPaint);
        PublishControlProperties(b,
                                 {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDrag",
                                  "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDrag"});
        return b.Build();
    }();
    return info;
}

TqxDinMeter::TqxDinMeter(TComponent* AOwner)
    : TEnterLeaveEvents<TGraphicControl>(AOwner), m_faceBitmap(std::make_unique<TBitmap>()),
      m_caption1Font(std::make_unique<TFont>()), m_caption2Font(std::make_unique<TFont>()) {
    SetOpaqueStyle(*this, true);
    SetColor(Defaults::Color);
    const auto repaint = [this](TObject*) {
        m_dial.Invalidate();
        Invalidate();
    };
    m_faceBitmap->OnChange = repaint;
    m_caption1Font->OnChange = repaint;
    m_caption2Font->OnChange = repaint;
    SetBounds(Left(), Top(), Defaults::Size, Defaults::Size);
}

TqxDinMeter::~TqxDinMeter() {
    // The owned objects go before the control: no change of theirs reaches it any more.
    m_faceBitmap->OnChange = nullptr;
    m_caption1Font->OnChange = nullptr;
    m_caption2Font->OnChange = nullptr;
}

// Range and value.

void TqxDinMeter::SetMin(int value) {
    m_min = value;
    if (!IsLoading()) SetMax(m_max);
}

int TqxDinMeter::MaxAboveMin(int value) const {
    if (value > m_min) return value;
    // Min + 1 would overflow: Max stays equal to the largest Integer.
    return m_min == std::numeric_limits<int>::max() ? m_min : m_min + 1;
}

void TqxDinMeter::SetMax(int value) {
    if (IsLoading()) {
        m_max = value;
        return;
    }
    m_max = MaxAboveMin(value);
    SetValue(m_value);
}

void TqxDinMeter::SetValue(int value) {
    m_value = IsLoading() ? value : std::clamp(value, m_min, m_max);
    Invalidate();
}

// Min, Max and Value were stored as read; they settle as SetMin would have settled them.
void TqxDinMeter::Loaded() {
    TEnterLeaveEvents<TGraphicControl>::Loaded();
    m_max = MaxAboveMin(m_max);
    m_value = std::clamp(m_value, m_min, m_max);
}

int TqxDinMeter::GetPercent() const {
    return static_cast<int>(ScalePercent(m_value, m_min, m_max));
}

// The other properties.

namespace {
template <class T> void Store(TControl& control, T& member, T value) {
    member = value;
    control.Invalidate();
}
} // namespace

void TqxDinMeter::SetDrawScale(bool value) {
    Store(*this, m_drawScale, value);
}
void TqxDinMeter::SetSteelLook(bool value) {
    Store(*this, m_steelLook, value);
}
void TqxDinMeter::SetNeedleColor(TColor value) {
    Store(*this, m_needleColor, value);
}
void TqxDinMeter::SetNeedleLength(std::uint16_t value) {
    Store(*this, m_needleLength, value);
}
void TqxDinMeter::SetDigitsAfterPoint(int value) {
    Store(*this, m_digits, Clamped(value, QxDecNumType()));
}
void TqxDinMeter::SetScaleType(qxScaleType value) {
    Store(*this, m_scaleType, value);
}
void TqxDinMeter::SetScaleColor(TColor value) {
    Store(*this, m_scaleColor, value);
}
void TqxDinMeter::SetOffSetNumbers(int value) {
    Store(*this, m_offSetNumbers, Clamped(value, QxOffSetNumberType()));
}
void TqxDinMeter::SetOffSetDots(int value) {
    Store(*this, m_offSetDots, Clamped(value, QxOffSetDotType()));
}
void TqxDinMeter::SetDotLength(int value) {
    Store(*this, m_dotLength, Clamped(value, QxOffSetDotType()));
}
void TqxDinMeter::SetShadowColor(TColor value) {
    Store(*this, m_shadowColor, value);
}
void TqxDinMeter::SetHighLightColor(TColor value) {
    Store(*this, m_highLightColor, value);
}
void TqxDinMeter::SetFrameColor(TColor value) {
    Store(*this, m_frameColor, value);
}
void TqxDinMeter::SetFrameWidth(int value) {
    Store(*this, m_frameWidth, Clamped(value, QxFrameWidthType()));
}
void TqxDinMeter::SetFaceBitmap(const TBitmap& value) {
    m_faceBitmap->Assign(value);
    m_dial.Invalidate();
    Invalidate();
}

void TqxDinMeter::CMFontChanged(TMessage&) {
    m_dial.Invalidate();
    Invalidate();
}
void TqxDinMeter::SetCaption2X(std::uint16_t value) {
    Store(*this, m_caption2X, value);
}
void TqxDinMeter::SetCaption2Y(std::uint16_t value) {
    Store(*this, m_caption2Y, value);
}
void TqxDinMeter::SetCaption1(const std::string& value) {
    Store(*this, m_caption1, value);
}
void TqxDinMeter::SetCaption2(const std::string& value) {
    Store(*this, m_caption2, value);
}

void TqxDinMeter::SetBounds(int ALeft, int ATop, int AWidth, int) {
    TEnterLeaveEvents<TGraphicControl>::SetBounds(ALeft, ATop, AWidth, AWidth);
}

// The scale.

bool TqxDinMeter::IsLongMark(int i) const {
    switch (m_scaleType) {
    case st0:
        return false;
    case st2:
        return i == 0 || i == kMarks;
    case st3:
        return i == 0 || i == kMarks / 2 || i == kMarks;
    case st6:
        return i % 2 == 0;
    case st11:
        return true;
    }
    return false;
}

std::string TqxDinMeter::MarkLabel(int i) const {
    const long double step = (static_cast<long double>(m_max) - m_min) / kMarks;
    const long double value = m_min + i * step;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*Lf", m_digits, value);
    return text.data();
}

// Painting.

TRect TqxDinMeter::FaceRect() const {
    return {m_frameWidth, m_frameWidth, Width() - m_frameWidth, Height() - m_frameWidth};
}

namespace {
// Larger meters are drawn straight into the picture on every paint instead of being kept.
constexpr long long kMaxCachedPixels = 1LL << 22;
} // namespace

TqxDinMeter::TDialLook TqxDinMeter::DialLook() const {
    return {Width(),      m_drawScale,     m_steelLook,      m_digits,    m_scaleType,
            m_scaleColor, m_offSetNumbers, m_offSetDots,     m_dotLength, m_min,
            m_max,        m_shadowColor,   m_highLightColor, Color(),     m_frameColor,
            m_frameWidth, m_caption2X,     m_caption2Y,      m_caption1,  m_caption2};
}

// All but the needle is kept between paints while its look holds; the needle comes last.
void TqxDinMeter::Paint() {
    const TFrameBackground background = TFrameBackground::FlatOrSteel(m_frameColor, m_steelLook);
    const bool cached = static_cast<long long>(Width()) * Height() <= kMaxCachedPixels;
    TCanvas& c = m_frame.Begin(*this, Canvas(), background.PaintedOver(cached));
    if (cached)
        c.Draw(0, 0, m_dial.Picture(DialLook(), Width(), Height(), [&](TCanvas& dial) {
            FillBackground(dial, {0, 0, Width(), Height()}, background);
            PaintDial(dial);
        }));
    else
        PaintDial(c);
    PaintNeedle(c);
    m_frame.End(*this, Canvas(), OnPaint);
}

void TqxDinMeter::PaintDial(TCanvas& c) const {
    PaintFrame(c);
    PaintFaceFill(c);
    PaintCaptions(c);
    if (m_drawScale) PaintFace(c);
}

// The frame's fill is the background; a raised edge round it and a sunken one round the face.
void TqxDinMeter::PaintFrame(TCanvas& c) const {
    const TBevelColors colors{m_highLightColor, m_shadowColor};
    TRect outer{0, 0, Width(), Height()};
    PaintBevel(c, outer, TBevelKind::Raised, 1, colors);
    TRect face = FaceRect();
    face = {face.left - 1, face.top - 1, face.right + 1, face.bottom + 1};
    PaintBevel(c, face, TBevelKind::Lowered, 1, colors);
}

void TqxDinMeter::PaintFaceFill(TCanvas& c) const {
    const TRect face = FaceRect();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(Color());
    c.FillRect(face);
    TBitmap& bitmap = *m_faceBitmap;
    if (bitmap.Empty()) return;
    const int w = std::min(bitmap.Width(), face.right - face.left);
    const int h = std::min(bitmap.Height(), face.bottom - face.top);
    if (w <= 0 || h <= 0) return;
    c.CopyRect({face.left, face.top, face.left + w, face.top + h}, bitmap.Canvas(), {0, 0, w, h});
}

// Caption1 ends just above and left of the pivot, where the unit of such an instrument stands;
// Caption2 stands where Caption2X and Caption2Y put it.
void TqxDinMeter::PaintCaptions(TCanvas& c) const {
    c.Brush().SetStyle(bsClear);
    if (!m_caption1.empty()) {
        c.SetFont(*m_caption1Font);
        const TSize size = c.TextExtent(m_caption1);
        const int pivot = Centre() - 1;
        c.TextOut(pivot - kCaption1Margin - size.cx, pivot - kCaption1Margin - size.cy, m_caption1);
    }
    if (!m_caption2.empty()) {
        c.SetFont(*m_caption2Font);
        c.TextOut(m_caption2X, m_caption2Y, m_caption2);
    }
    c.Brush().SetStyle(bsSolid);
}

// Mark i lies at (i + 20) / 40 of a turn from 3 o'clock: straight left at Min, up at Max.
void TqxDinMeter::PaintFace(TCanvas& c) const {
    const int centre = Centre();
    const int outer = centre - m_offSetDots;
    c.Pen().SetColor(m_scaleColor);
    c.SetFont(*Font());
    c.Brush().SetStyle(bsClear);
    const int th = c.TextHeight("1");
    for (int i = 0; i <= kMarks; ++i) {
        const bool isLong = IsLongMark(i);
        c.Pen().SetWidth(isLong ? 2 : 1);
        const TPoint from = DinPoint(centre, centre, outer, i + 20, 40);
        const TPoint to = DinPoint(centre, centre, outer - m_dotLength, i + 20, 40);
        c.MoveTo(from.x, from.y);
        c.LineTo(to.x, to.y);
        if (!isLong) continue;
        const std::string label = MarkLabel(i);
        const int tw = c.TextWidth(label);
        const TPoint at = DinPoint(centre - tw / 2, centre - th / 2,
                                   centre - m_offSetNumbers - th / 2, i + 20, 40);
        c.TextOut(at.x, at.y, label);
    }
    c.Brush().SetStyle(bsSolid);
    c.Pen().SetWidth(1);
}

// The percent turns the needle by 0.9 degrees: (percent + 200) / 400 of a turn.
void TqxDinMeter::PaintNeedle(TCanvas& c) const {
    const int centre = Centre();
    const TPoint tip = DinPoint(centre, centre, m_needleLength, GetPercent() + 200, 400);
    c.Pen().SetWidth(1);
    c.Pen().SetColor(m_needleColor);
    c.MoveTo(centre - 1, centre - 1);
    c.LineTo(tip.x, tip.y);
}

} // namespace qv
