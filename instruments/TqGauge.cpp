#include "instruments/TqGauge.h"

#include "componentbase/Bevels.h"
#include "componentbase/Scale.h"
#include "platform/controls/ControlProperties.h"
#include "platform/core/SysUtils.h"

#include <algorithm>

namespace qv {

namespace {
// Coordinates further off than this are outside any surface; two of them are less than 2^31
// apart, so the bevel lines between them stay within the canvas's arithmetic.
constexpr std::int64_t kFar = std::int64_t{1} << 29;

int Far(std::int64_t value) {
    return static_cast<int>(std::clamp(value, -kFar, kFar));
}

int SaturatedSum(int a, int b) {
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{a} + b, INT32_MIN, INT32_MAX));
}

// Frame3D of `width` rings: rings beyond the larger side of the surface lie wholly outside it,
// so at most that many are drawn and the rest only shrink the rectangle.
void FrameRings(TCanvas& canvas, TRect& rect, TColor top, TColor bottom, int width, int side) {
    const int drawn = std::min(width, side + 1);
    Frame3D(canvas, rect, top, bottom, drawn);
    if (width <= drawn) return;
    const std::int64_t rest = width - drawn;
    rect = {Far(rect.left + rest), Far(rect.top + rest), Far(rect.right - rest),
            Far(rect.bottom - rest)};
}

TBevelColors BevelColorsOf(TBevelCut cut) {
    if (cut == bvLowered) return {clBtnShadow, clBtnHighlight};
    return {clBtnHighlight, clBtnShadow};
}
} // namespace

const TClassInfo& TqGauge::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqGauge> b("TqGauge", &TGraphicControl::StaticClassInfo());
        b.Object("Glyph", &TqGauge::Glyph);
        b.Property("Percent", &TqGauge::GetPercent, &TqGauge::SetPercent).NotStored();
        PublishControlProperties(b, {"Font"});
        b.Property("DrawOnlyWhenPCTChange", &TqGauge::DrawOnlyWhenPCTChange,
                   &TqGauge::SetDrawOnlyWhenPCTChange)
            .Default(Defaults::DrawOnlyWhenPCTChange);
        PublishControlProperties(b, {"ParentFont", "Color", "ParentColor", "ShowHint", "Height"});
        b.Default(Defaults::Height);
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Width);
        b.Property("CaptionStyle", &TqGauge::CaptionStyle, &TqGauge::SetCaptionStyle)
            .Default(Defaults::CaptionStyle);
        b.Property("BarColor", ColorType(), &TqGauge::BarColor, &TqGauge::SetBarColor)
            .Default(Defaults::BarColor);
        PublishControlProperties(b, {"Caption"});
        b.Property("BevelInner", &TqGauge::BevelInner, &TqGauge::SetBevelInner)
            .Default(Defaults::BevelInner);
        b.Property("BevelOuter", &TqGauge::BevelOuter, &TqGauge::SetBevelOuter)
            .Default(Defaults::BevelOuter);
        b.Property("BevelWidth", &TqGauge::BevelWidth, &TqGauge::SetBevelWidth)
            .Default(Defaults::BevelWidth);
        b.Property("Min", &TqGauge::Min, &TqGauge::SetMin).Default(Defaults::Min);
        b.Property("Max", &TqGauge::Max, &TqGauge::SetMax).Default(Defaults::Max);
        b.Property("Value", &TqGauge::Value, &TqGauge::SetValue).Default(Defaults::Value);
        b.Property("Margin", &TqGauge::Margin, &TqGauge::SetMargin).Default(Defaults::Margin);
        b.Property("SpaceBetweenLed", &TqGauge::SpaceBetweenLed, &TqGauge::SetLedThick)
            .Default(Defaults::SpaceBetweenLed);
        b.Property("NumberOfLed", &TqGauge::NumberOfLed, &TqGauge::SetledSpace)
            .Default(Defaults::NumberOfLed);
        b.Property("FrameWidth", &TqGauge::FrameWidth, &TqGauge::SetfWidth)
            .Default(Defaults::FrameWidth);
        PublishControlProperties(b, {"Visible", "DragCursor", "DragMode", "OnDragDrop",
                                     "OnDragOver", "OnEndDrag", "OnMouseDown", "OnMouseMove",
                                     "OnMouseUp", "OnClick", "OnDblClick"});
        b.Event("OnMinimum", &TqGauge::OnMinimum);
        b.Event("OnMaximum", &TqGauge::OnMaximum);
        b.Event("OnPaint", &TqGauge::OnPaint);
        b.Event("OnMouseEnter", &TqGauge::OnMouseEnter);
        b.Event("OnMouseLeave", &TqGauge::OnMouseLeave);
        return b.Build();
    }();
    return info;
}

TqGauge::TqGauge(TComponent* AOwner) : TEnterLeaveEvents<TGraphicControl>(AOwner) {
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
    SetColor(Defaults::Color);
    SetParentColor(true);
    SetBounds(Left(), Top(), Defaults::Width, Defaults::Height);
    m_glyph->OnChange = [this](TObject*) {
        m_glyphDirty = true;
        Invalidate();
    };
}

// Range and value.

std::uint8_t TqGauge::GetPercent() const {
    return static_cast<std::uint8_t>(
        std::clamp<std::int64_t>(ScalePercent(m_value, m_min, m_max), 0, 100));
}

void TqGauge::SetPercent(std::uint8_t value) {
    const std::int64_t p = std::min<std::int64_t>(value, 100);
    SetValue(static_cast<int>((std::int64_t{m_max} - m_min) * p / 100 + m_min));
}

void TqGauge::SetMin(int value) {
    m_min = value;
    SetMax(m_max);
}

// While a form is read Max is stored as read; Loaded sets it again.
void TqGauge::SetMax(int value) {
    m_max = value > m_min || IsLoading() ? value : SaturatedSum(m_min, 1);
    Refresh();
}

void TqGauge::SetValue(int value) {
    if (IsLoading()) {
        m_value = value;
        return;
    }
    if (value == m_value) return;
    const bool onPercent = m_drawOnlyWhenPCTChange || IsDesigning();
    const std::uint8_t oldPercent = GetPercent();
    m_value = value < m_min ? m_min : std::min(value, m_max);
    if (m_value == m_min)
        CallMinimum();
    else if (m_value == m_max)
        CallMaximum();
    if (!onPercent || GetPercent() != oldPercent) Refresh();
}

void TqGauge::AddValue(int delta) {
    SetValue(SaturatedSum(m_value, delta));
}

void TqGauge::CallMinimum() {
    if (OnMinimum) OnMinimum(this);
}

void TqGauge::CallMaximum() {
    if (OnMaximum) OnMaximum(this);
}

// Min, Max and Value were stored as read; Max settles here, without events. Value stays as it
// was written, in or out of the range, as the range setters leave it.
void TqGauge::Loaded() {
    TEnterLeaveEvents<TGraphicControl>::Loaded();
    if (m_max <= m_min) m_max = SaturatedSum(m_min, 1);
}

// Look.

void TqGauge::SetCaptionStyle(gaCaptionStyle value) {
    m_captionStyle = value;
    Refresh();
}

void TqGauge::SetBarColor(TColor value) {
    m_barColor = value;
    Refresh();
}

void TqGauge::SetBevelInner(TBevelCut value) {
    m_bevelInner = value;
    Refresh();
}

void TqGauge::SetBevelOuter(TBevelCut value) {
    m_bevelOuter = value;
    Refresh();
}

void TqGauge::SetBevelWidth(int value) {
    m_bevelWidth = value;
    Refresh();
}

void TqGauge::SetMargin(std::uint8_t value) {
    m_margin = value;
    Refresh();
}

void TqGauge::SetLedThick(std::uint8_t value) {
    m_spaceBetweenLed = value;
    Refresh();
}

void TqGauge::SetledSpace(int value) {
    m_numberOfLed = value;
    Refresh();
}

void TqGauge::SetfWidth(std::uint8_t value) {
    m_frameWidth = value;
    Refresh();
}

// Deferred, so that a caption whose format does not fit is reported by the loop's handler.
void TqGauge::CMTextChanged(TMessage& Message) {
    TEnterLeaveEvents<TGraphicControl>::CMTextChanged(Message);
    Invalidate();
}

// The glyph stretched to the control's size. Only the part a surface can show is kept: the
// copy is cut at the size of the canvas the gauge paints on, with the same pixels.
void TqGauge::DoTheBitmap() {
    int width = Width(), height = Height();
    if (const TPixelBuffer* surface = Canvas().Handle()->Target()) {
        width = std::min(width, surface->Width());
        height = std::min(height, surface->Height());
    }
    m_sized.SetSize(std::max(width, 0), std::max(height, 0));
    m_sized.Canvas().StretchDraw({0, 0, Width(), Height()}, *m_glyph);
    m_sizedFor = {Width(), Height()};
    m_glyphDirty = false;
}

std::string TqGauge::CaptionText() const {
    const std::int64_t percent = GetPercent();
    const std::int64_t value = m_value;
    switch (m_captionStyle) {
    case gaTotalBar:
        return Format(Caption(), {value});
    case gaTotPct:
        return Format(Caption(), {value, percent});
    case gaPctTot:
        return Format(Caption(), {percent, value});
    case gaPctBar:
        break;
    }
    return Format(Caption(), {percent});
}

// Painting.

TRect TqGauge::InnerRect() const {
    std::int64_t edge = m_margin + std::int64_t{m_frameWidth};
    if (m_bevelOuter != bvNone) edge += m_bevelWidth;
    if (m_bevelInner != bvNone) edge += m_bevelWidth;
    return {Far(edge), Far(edge), Far(Width() - edge), Far(Height() - edge)};
}

int TqGauge::FillEdge(const TRect& inner) const {
    const std::int64_t range = std::max<std::int64_t>(std::int64_t{m_max} - m_min, 1);
    const __int128 filled = static_cast<__int128>(std::int64_t{m_value} - m_min) *
                            (std::int64_t{inner.right} - inner.left) / range;
    const __int128 fill = inner.left + filled;
    return static_cast<int>(std::clamp<__int128>(fill, inner.left, inner.right));
}

void TqGauge::DrawFrame(TCanvas& canvas, TRect& rect) const {
    const int side = std::max(Width(), Height());
    const int width = std::max(m_bevelWidth, 0);
    if (m_bevelOuter != bvNone) {
        const TBevelColors c = BevelColorsOf(m_bevelOuter);
        FrameRings(canvas, rect, c.highlight, c.shadow, width, side);
    }
    FrameRings(canvas, rect, Color(), Color(), m_margin, side);
    if (m_bevelInner != bvNone) {
        const TBevelColors c = BevelColorsOf(m_bevelInner);
        FrameRings(canvas, rect, c.highlight, c.shadow, width, side);
    }
    TRect frame = InnerRect();
    InflateRect(frame, m_frameWidth, m_frameWidth);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(Color());
    for (int i = 0; i < m_frameWidth; ++i) {
        canvas.FrameRect(frame);
        InflateRect(frame, -1, -1);
    }
}

// A lit part: BarColor, or the same place of the stretched glyph.
void TqGauge::DrawFill(TCanvas& canvas, const TRect& part) {
    if (m_glyph->Empty()) {
        canvas.Brush().SetColor(m_barColor);
        canvas.FillRect(part);
    } else {
        canvas.CopyRect(part, m_sized.Canvas(), part);
    }
}

void TqGauge::DrawSolid(TCanvas& canvas, const TRect& inner, int fill) {
    DrawFill(canvas, {inner.left, inner.top, fill, inner.bottom});
    canvas.Brush().SetColor(Color());
    canvas.FillRect({fill, inner.top, inner.right, inner.bottom});
}

// Whole blocks of b pixels every p pixels, lit as soon as the fill passes their left edge. The
// inner rectangle is filled with Color first, so that no pixel keeps what was there before.
void TqGauge::DrawLeds(TCanvas& canvas, const TRect& inner, int fill) {
    canvas.Brush().SetColor(Color());
    canvas.FillRect(inner);
    const std::int64_t n = m_numberOfLed;
    const std::int64_t span = std::int64_t{inner.right} - inner.left;
    const std::int64_t block = std::max<std::int64_t>((span - m_spaceBetweenLed * (n - 1)) / n, 1);
    const std::int64_t pitch = span / n;
    std::int64_t x = inner.left;
    while (x < fill && x + block <= inner.right) {
        DrawFill(canvas, {Far(x), inner.top, Far(x + block), inner.bottom});
        if (x + pitch <= inner.right) x += m_spaceBetweenLed;
        x += block;
    }
}

// Centred in the inner rectangle (at its corner when it does not fit). Without a glyph it is
// drawn twice, each time opaque in its own box: Color on BarColor over the filled part and
// BarColor on Color over the rest.
void TqGauge::DrawCaption(TCanvas& canvas, const TRect& inner, int fill, const std::string& text) {
    canvas.SetFont(*Font());
    const TSize size = canvas.TextExtent(text);
    const int innerWidth = inner.right - inner.left;
    const int innerHeight = inner.bottom - inner.top;
    const int left = inner.left + (size.cx < innerWidth ? (innerWidth - size.cx) / 2 : 0);
    const int top = inner.top + (size.cy < innerHeight ? (innerHeight - size.cy) / 2 : 0);
    TRect box{left, top, Far(std::int64_t{left} + size.cx), Far(std::int64_t{top} + size.cy)};
    IntersectRect(box, box, inner);
    if (!m_glyph->Empty()) {
        canvas.Brush().SetStyle(bsClear);
        canvas.Font().SetColor(m_barColor);
        canvas.TextRect(box, left, top, text);
        canvas.Brush().SetStyle(bsSolid);
        return;
    }
    const int cut = std::clamp(fill, box.left, box.right);
    canvas.Brush().SetColor(m_barColor);
    canvas.Font().SetColor(Color());
    canvas.TextRect({box.left, box.top, cut, box.bottom}, left, top, text);
    canvas.Brush().SetColor(Color());
    canvas.Font().SetColor(m_barColor);
    canvas.TextRect({cut, box.top, box.right, box.bottom}, left, top, text);
}

void TqGauge::Paint() {
    TCanvas& canvas = Canvas();
    if (!m_glyph->Empty() &&
        (m_glyphDirty || m_sizedFor.cx != Width() || m_sizedFor.cy != Height()))
        DoTheBitmap();
    const std::string text = Caption().empty() ? std::string() : CaptionText();
    TRect rect{0, 0, Width(), Height()};
    DrawFrame(canvas, rect);
    const TRect inner = InnerRect();
    if (inner.right > inner.left && inner.bottom > inner.top) {
        const int fill = FillEdge(inner);
        canvas.Brush().SetStyle(bsSolid);
        if (m_numberOfLed > 0)
            DrawLeds(canvas, inner, fill);
        else
            DrawSolid(canvas, inner, fill);
        if (!text.empty()) DrawCaption(canvas, inner, fill, text);
    }
    if (OnPaint) OnPaint(this);
}

} // namespace qv
