#include "instruments/TqxSpectrum.h"

#include "platform/controls/ControlProperties.h"

#include <algorithm>

namespace qv {

namespace {
// Rows further off than this are outside any surface.
constexpr std::int64_t kFarRow = std::int64_t{1} << 29;

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
// y = H - p * H div 100: the truncated products of bw = W / n and uh = H / 100, exact.
void TqxSpectrum::BarGeometry(int i, int& x1, int& x2, int& y) const {
    const std::int64_t width = Width();
    const std::int64_t height = Height();
    const int n = m_numberOfChannels;
    const std::int64_t p =
        IsDesigning() ? 100 - i : GetPercent(m_channels[static_cast<std::size_t>(i)]);
    x1 = static_cast<int>(i * width / n);
    x2 = static_cast<int>((i + 1) * width / n) - (m_useSep ? 1 : 0);
    const __int128 lift = static_cast<__int128>(p) * height / 100;
    y = static_cast<int>(std::clamp<__int128>(height - lift, -kFarRow, kFarRow));
}

// Per bar: the bar, the separator (x2, 0) to (x2, H) and the cap. Each one-pixel line, which
// leaves out its last point, is drawn as the one-pixel span it covers.
void TqxSpectrum::DrawBars(TCanvas& canvas) {
    const int height = Height();
    for (int i = 0; i < m_numberOfChannels; ++i) {
        int x1, x2, y;
        BarGeometry(i, x1, x2, y);
        SolidRectangle(canvas, x1, y, x2, height, m_barColor);
        canvas.Brush().SetColor(m_faceColor);
        canvas.FillRect({x2, 0, x2 + 1, height});
        SolidRectangle(canvas, x1, y, x2, y + m_topSize, m_topColor);
    }
}

// Scan lines (0, y) to (W, y) on the odd rows.
void TqxSpectrum::DrawScanLines(TCanvas& canvas) const {
    canvas.Brush().SetColor(m_faceColor);
    for (int y = 1; y <= Height(); y += 2)
        canvas.FillRect({0, y, Width(), y + 1});
}

// The steps of DrawBars in order, each as the pixels it covers within the picture: a rectangle
// of one colour covers its normal form (nothing when that is empty).
void TqxSpectrum::CollectSteps(const TPixelBuffer& pixels) {
    const TRect surface = pixels.Bounds();
    const auto add = [&](const TRect& r, TColor color) {
        const TRect piece = Intersect(Ordered(r), surface);
        if (piece.IsEmpty()) return;
        m_steps.push_back({piece.left, piece.top, piece.right, piece.bottom,
                           ColorToPixel(ColorToDrawRGB(ColorToRGB(color)))});
    };
    m_steps.clear();
    for (int i = 0; i < m_numberOfChannels; ++i) {
        int x1, x2, y;
        BarGeometry(i, x1, x2, y);
        add({x1, y, x2, Height()}, m_barColor);
        add({x2, 0, x2 + 1, Height()}, m_faceColor);
        add({x1, y, x2, y + m_topSize}, m_topColor);
    }
}

std::uint32_t TqxSpectrum::ColumnPixel(int column, int row, std::uint32_t background) const {
    const std::vector<int>& steps = m_columnSteps[static_cast<std::size_t>(column)];
    for (auto it = steps.rbegin(); it != steps.rend(); ++it) {
        const TBarStep& s = m_steps[static_cast<std::size_t>(*it)];
        if (row >= s.top && row < s.bottom) return s.pixel;
    }
    return background;
}

void TqxSpectrum::DrawInto(TPixelBuffer& pixels, TColor backgroundColor) {
    const int width = pixels.Width();
    const int height = pixels.Height();
    if (width <= 0 || height <= 0) return;
    const std::uint32_t background = ColorToPixel(ColorToDrawRGB(ColorToRGB(backgroundColor)));
    const std::uint32_t face = ColorToPixel(ColorToDrawRGB(ColorToRGB(m_faceColor)));
    CollectSteps(pixels);
    m_columnSteps.resize(static_cast<std::size_t>(width));
    for (auto& column : m_columnSteps)
        column.clear();
    m_rowChanges.resize(static_cast<std::size_t>(height));
    for (auto& row : m_rowChanges)
        row.clear();
    for (std::size_t k = 0; k < m_steps.size(); ++k) {
        const TBarStep& s = m_steps[k];
        for (int x = s.left; x < s.right; ++x) {
            m_columnSteps[static_cast<std::size_t>(x)].push_back(static_cast<int>(k));
            if (s.top > 0) m_rowChanges[static_cast<std::size_t>(s.top)].push_back(x);
            if (s.bottom < height) m_rowChanges[static_cast<std::size_t>(s.bottom)].push_back(x);
        }
    }
    m_row.resize(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x)
        m_row[static_cast<std::size_t>(x)] = ColumnPixel(x, 0, background);
    for (int y = 0; y < height; ++y) {
        for (int x : m_rowChanges[static_cast<std::size_t>(y)])
            m_row[static_cast<std::size_t>(x)] = ColumnPixel(x, y, background);
        if (m_useLed && y % 2 == 1)
            FillPixels(pixels.Row(y), width, face);
        else
            std::copy(m_row.begin(), m_row.end(), pixels.Row(y));
    }
}

void TqxSpectrum::Paint() {
    const TColor background = m_useLed ? m_barOffColor : m_faceColor;
    m_frame.Paint(
        *this, Canvas(), TFrameBackground::Flat(background),
        [&](TCanvas& canvas) {
            TPixelBuffer* pixels = canvas.Handle()->Target();
            if (pixels == &m_frame.Picture().Pixels()) {
                DrawInto(*pixels, background);
                return;
            }
            canvas.Pen().SetWidth(1);
            DrawBars(canvas);
            if (m_useLed) DrawScanLines(canvas);
        },
        OnPaint);
}

} // namespace qv
