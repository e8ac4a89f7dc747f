#include "instruments/TqxSpectrum.h"

#include "platform/controls/ControlProperties.h"

#include <algorithm>

namespace qv {

namespace {
// Rows further off than this are outside any surface.
constexpr std::int64_t kFarRow = std::int64_t{1} << 30;

bool ValidIndex(int index) {
    return index >= 0 && index < TqxSpectrum::ChannelCount;
}
} // namespace

const TTypeInfo& SpectrumTopType() {
    static const TTypeInfo info = TTypeInfo::Integer("SpectrumTop", 2, 10);
    return info;
}

const TTypeInfo& SpectrumNumberType() {
    static const TTypeInfo info = TTypeInfo::Integer("SpectrumNumber", 1, 100);
    return info;
}

const TClassInfo& TqxSpectrum::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqxSpectrum> b("TqxSpectrum", &TGraphicControl::StaticClassInfo());
        b.Property("UseSep", &TqxSpectrum::UseSep, &TqxSpectrum::SetSplit)
            .Default(Defaults::UseSep);
        b.Property("UseLed", &TqxSpectrum::UseLed, &TqxSpectrum::SetLed).Default(Defaults::UseLed);
        b.Property("BarColor", ColorType(), &TqxSpectrum::BarColor, &TqxSpectrum::SetBarColor)
            .Default(Defaults::BarColor);
        b.Property("BarOffColor", ColorType(), &TqxSpectrum::BarOffColor, &TqxSpectrum::SetBarOff)
            .Default(Defaults::BarOffColor);
        b.Property("TopColor", ColorType(), &TqxSpectrum::TopColor, &TqxSpectrum::SetTopColor)
            .Default(Defaults::TopColor);
        b.Property("TopSize", SpectrumTopType(), &TqxSpectrum::TopSize, &TqxSpectrum::SetTop)
            .Default(Defaults::TopSize);
        b.Property("NumberOfChannels", SpectrumNumberType(), &TqxSpectrum::NumberOfChannels,
                   &TqxSpectrum::SetNum)
            .Default(Defaults::NumberOfChannels);
        b.Property("FaceColor", ColorType(), &TqxSpectrum::FaceColor, &TqxSpectrum::SetFaceColor)
            .Default(Defaults::FaceColor);
        b.Property("Min", &TqxSpectrum::Min, &TqxSpectrum::SetMin).Default(Defaults::Min);
        b.Property("Max", &TqxSpectrum::Max, &TqxSpectrum::SetMax).Default(Defaults::Max);
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Width);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Height);
        PublishControlProperties(b, {"Align", "PopupMenu", "DragCursor", "DragMode",
                                     "ParentShowHint", "ShowHint", "Visible"});
        b.Event("OnPaint", &TqxSpectrum::OnPaint);
        b.Event("OnMouseEnter", &TqxSpectrum::OnMouseEnter);
        b.Event("OnMouseLeave", &TqxSpectrum::OnMouseLeave);
        PublishControlProperties(b, {"OnDragDrop", "OnDragOver", "OnEndDrag", "OnMouseDown",
                                     "OnMouseMove", "OnMouseUp", "OnClick", "OnDblClick"});
        return b.Build();
    }();
    return info;
}

TqxSpectrum::TqxSpectrum(TComponent* AOwner) : TEnterLeaveEvents<TGraphicControl>(AOwner) {
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
    SetBounds(Left(), Top(), Defaults::Width, Defaults::Height);
}

// Settings.

void TqxSpectrum::SetSplit(bool value) {
    m_useSep = value;
    Invalidate();
}

void TqxSpectrum::SetLed(bool value) {
    m_useLed = value;
    Invalidate();
}

void TqxSpectrum::SetBarColor(TColor value) {
    m_barColor = value;
    Invalidate();
}

void TqxSpectrum::SetBarOff(TColor value) {
    m_barOffColor = value;
    Invalidate();
}

void TqxSpectrum::SetTopColor(TColor value) {
    m_topColor = value;
    Invalidate();
}

void TqxSpectrum::SetTop(int value) {
    m_topSize = std::clamp(value, static_cast<int>(SpectrumTopType().minValue),
                           static_cast<int>(SpectrumTopType().maxValue));
    Invalidate();
}

void TqxSpectrum::SetNum(int value) {
    value = std::clamp(value, static_cast<int>(SpectrumNumberType().minValue),
                       static_cast<int>(SpectrumNumberType().maxValue));
    if (value == m_numberOfChannels) return;
    m_numberOfChannels = value;
    Invalidate();
}

void TqxSpectrum::SetFaceColor(TColor value) {
    m_faceColor = value;
    Invalidate();
}

void TqxSpectrum::SetMin(int value) {
    m_range.SetMin(value, IsLoading());
    if (!IsLoading()) LimitChannels();
    Invalidate();
}

void TqxSpectrum::SetMax(int value) {
    m_range.SetMax(value, IsLoading());
    if (!IsLoading()) LimitChannels();
    Invalidate();
}

// Channels.

void TqxSpectrum::LimitChannels() {
    for (int i = 0; i < ChannelCount; ++i)
        SetChannel(i, m_channels[static_cast<std::size_t>(i)]);
}

void TqxSpectrum::SetChannel(int index, int value) {
    if (!ValidIndex(index)) return;
    m_channels[static_cast<std::size_t>(index)] = m_range.Clamp(value);
    Invalidate();
}

int TqxSpectrum::GetChannel(int index) const {
    return ValidIndex(index) ? m_channels[static_cast<std::size_t>(index)] : 0;
}

void TqxSpectrum::SetAllChannel(const int* data) {
    if (!data) return;
    std::copy(data, data + ChannelCount, m_channels.begin());
    Invalidate();
}

// Size and loading.

void TqxSpectrum::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    TEnterLeaveEvents<TGraphicControl>::SetBounds(ALeft, ATop, std::max(AWidth, MinWidth),
                                                  std::max(AHeight, MinHeight));
}

// Min and Max were stored as read; they settle here and limit the channels, without events.
void TqxSpectrum::Loaded() {
    TEnterLeaveEvents<TGraphicControl>::Loaded();
    m_range.Loaded();
    for (int& channel : m_channels)
        channel = m_range.Clamp(channel);
}

// Painting.

// A rectangle whose pen and brush are both `color`: inside its normal form that is exactly the
// fill of [left, right) x [top, bottom), which takes the canvas's span fill.
static void SolidRectangle(TCanvas& canvas, int left, int top, int right, int bottom,
                           TColor color) {
    canvas.Brush().SetColor(color);
    if (left < right && top < bottom) {
        canvas.FillRect({left, top, right, bottom});
        return;
    }
    canvas.Pen().SetColor(color);
    canvas.Rectangle(left, top, right, bottom);
}

// Bar i spans x1 = i * W div n .. x2 = (i + 1) * W div n (less 1 with UseSep) and rises to
// y = H - p * H div 100: the truncated products of bw = W / n and uh = H / 100, exact. Each
// one-pixel line, which leaves out its last point, is drawn as the one-pixel span it covers.
void TqxSpectrum::DrawBars(TCanvas& canvas) {
    const std::int64_t width = Width();
    const int height = Height();
    const int n = m_numberOfChannels;
    for (int i = 0; i < n; ++i) {
        const std::int64_t p =
            IsDesigning() ? 100 - i : GetPercent(m_channels[static_cast<std::size_t>(i)]);
        const int x1 = static_cast<int>(i * width / n);
        const int x2 = static_cast<int>((i + 1) * width / n) - (m_useSep ? 1 : 0);
        const __int128 lift = static_cast<__int128>(p) * height / 100;
        const int y = static_cast<int>(std::clamp<__int128>(height - lift, -kFarRow, kFarRow));
        SolidRectangle(canvas, x1, y, x2, height, m_barColor);
        canvas.Brush().SetColor(m_faceColor);
        canvas.FillRect({x2, 0, x2 + 1, height}); // the separator, (x2, 0) to (x2, H)
        SolidRectangle(canvas, x1, y, x2, y + m_topSize, m_topColor);
    }
}

// Scan lines (0, y) to (W, y) on the odd rows.
void TqxSpectrum::DrawScanLines(TCanvas& canvas) const {
    canvas.Brush().SetColor(m_faceColor);
    for (int y = 1; y <= Height(); y += 2)
        canvas.FillRect({0, y, Width(), y + 1});
}

void TqxSpectrum::Paint() {
    const TColor background = m_useLed ? m_barOffColor : m_faceColor;
    m_frame.Paint(
        *this, Canvas(), TFrameBackground::Flat(background),
        [&](TCanvas& canvas) {
            canvas.Pen().SetColor(background);
            canvas.Pen().SetWidth(1);
            DrawBars(canvas);
            if (m_useLed) DrawScanLines(canvas);
        },
        OnPaint);
}

} // namespace qv
