#include "instruments/TqScope.h"

#include "platform/controls/ControlProperties.h"

#include <algorithm>
#include <cstdlib>

namespace qv {

namespace {
// Rows further off than this are outside any surface; two of them are less than 2^31 apart, so
// the canvas's line arithmetic takes any segment between them.
constexpr std::int64_t kFarRow = std::int64_t{1} << 29;

// n * num / den rounded half to even, for n, num >= 0 and den > 0.
std::int64_t RoundedQuotient(std::int64_t n, std::int64_t num, std::int64_t den) {
    const std::int64_t product = n * num;
    const std::int64_t q = product / den;
    const std::int64_t twice = 2 * (product % den);
    if (twice > den || (twice == den && q % 2 != 0)) return q + 1;
    return q;
}
} // namespace

const TClassInfo& TqScope::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqScope> b("TqScope", &TGraphicControl::StaticClassInfo());
        b.Property("AutoPush", &TqScope::AutoPush, &TqScope::SetPush).Default(Defaults::AutoPush);
        b.Property("Min", &TqScope::Min, &TqScope::SetMin).Default(Defaults::Min);
        b.Property("Max", &TqScope::Max, &TqScope::SetMax).Default(Defaults::Max);
        b.Property("GridXstep", &TqScope::GridXstep, &TqScope::SetStepX)
            .Default(Defaults::GridXstep);
        b.Property("GridYstep", &TqScope::GridYstep, &TqScope::SetStepY)
            .Default(Defaults::GridYstep);
        b.Property("ShowGrid", &TqScope::ShowGrid, &TqScope::Setgrid).Default(Defaults::ShowGrid);
        b.Property("GridColor", ColorType(), &TqScope::GridColor, &TqScope::SetgridColor)
            .Default(Defaults::GridColor);
        b.Property("Beam1Color", ColorType(), &TqScope::Beam1Color, &TqScope::SetBeam1Color)
            .Default(Defaults::Beam1Color);
        b.Property("Beam2Color", ColorType(), &TqScope::Beam2Color, &TqScope::SetBeam2Color)
            .Default(Defaults::Beam2Color);
        b.Property("ShowBeam1", &TqScope::ShowBeam1, &TqScope::SetUse1)
            .Default(Defaults::ShowBeam1);
        b.Property("ShowBeam2", &TqScope::ShowBeam2, &TqScope::SetUse2)
            .Default(Defaults::ShowBeam2);
        b.Property("Channel1", &TqScope::Channel1, &TqScope::SetIn1).Default(Defaults::Channel);
        b.Property("Channel2", &TqScope::Channel2, &TqScope::SetIn2).Default(Defaults::Channel);
        b.Property("Ajust1", &TqScope::Ajust1, &TqScope::SetAjust1).Default(Defaults::Ajust);
        b.Property("Ajust2", &TqScope::Ajust2, &TqScope::SetAjust2).Default(Defaults::Ajust);
        b.Property("FaceColor", ColorType(), &TqScope::FaceColor, &TqScope::SetFaceColor)
            .Default(Defaults::FaceColor);
        PublishControlProperties(b, {"Align", "PopupMenu", "OnDragDrop", "OnDragOver", "OnEndDrag",
                                     "OnMouseDown", "OnMouseMove", "OnMouseUp", "DragCursor",
                                     "DragMode", "ParentShowHint", "ShowHint", "Visible", "OnClick",
                                     "OnDblClick"});
        b.Event("OnPaint", &TqScope::OnPaint);
        b.Event("OnBeforePush", &TqScope::OnBeforePush);
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Width);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Height);
        b.Event("OnMouseEnter", &TqScope::OnMouseEnter);
        b.Event("OnMouseLeave", &TqScope::OnMouseLeave);
        return b.Build();
    }();
    return info;
}

TqScope::TqScope(TComponent* AOwner) : TEnterLeaveEvents<TGraphicControl>(AOwner) {
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
    SetBounds(Left(), Top(), Defaults::Width, Defaults::Height);
}

// Limits and settings.

void TqScope::SetMin(int value) {
    m_range.SetMin(value, IsLoading());
    Invalidate();
}

void TqScope::SetMax(int value) {
    m_range.SetMax(value, IsLoading());
    Invalidate();
}

// While a form is read the width may still be to come, so the step is limited in Loaded.
void TqScope::SetStepX(int value) {
    if (!IsLoading()) value = std::clamp(value, 0, Width());
    if (value == m_gridXstep) return;
    m_gridXstep = value;
    Invalidate();
}

void TqScope::SetStepY(int value) {
    m_gridYstep = value;
    Invalidate();
}

void TqScope::Setgrid(bool value) {
    m_showGrid = value;
    Invalidate();
}

void TqScope::SetgridColor(TColor value) {
    m_gridColor = value;
    Invalidate();
}

void TqScope::SetBeam1Color(TColor value) {
    m_beamColor[0] = value;
    Invalidate();
}

void TqScope::SetBeam2Color(TColor value) {
    m_beamColor[1] = value;
    Invalidate();
}

void TqScope::SetUse1(bool value) {
    m_showBeam[0] = value;
    Invalidate();
}

void TqScope::SetUse2(bool value) {
    m_showBeam[1] = value;
    Invalidate();
}

void TqScope::SetFaceColor(TColor value) {
    m_faceColor = value;
    Invalidate();
}

void TqScope::SetIn1(int value) {
    m_channel[0] = value;
    if (m_autoPush && !IsLoading()) Push();
}

void TqScope::SetIn2(int value) {
    m_channel[1] = value;
    if (m_autoPush && !IsLoading()) Push();
}

void TqScope::SetAjust1(int value) {
    SetAjust(0, value);
}

void TqScope::SetAjust2(int value) {
    SetAjust(1, value);
}

void TqScope::SetAjust(int channel, int value) {
    if (value == m_ajust[channel]) return;
    m_ajust[channel] = value;
    Refresh();
}

// Samples.

void TqScope::Push() {
    bool doPush = true;
    if (OnBeforePush) OnBeforePush(this, doPush);
    if (!doPush) return;
    m_newest = (m_newest + SampleCount - 1) % SampleCount;
    for (int c = 0; c < 2; ++c)
        m_samples[c][m_newest] = m_channel[c];
    Refresh();
}

int TqScope::Sample(int channel, int index) const {
    return m_samples[channel - 1][(m_newest + index) % SampleCount];
}

void TqScope::SetAllChannel(int channel, const int* data) {
    if (!data) return;
    for (int i = 0; i < SampleCount - 1; ++i)
        m_samples[channel][(m_newest + i) % SampleCount] = data[i];
    Invalidate();
}

// Size and loading.

void TqScope::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    TEnterLeaveEvents<TGraphicControl>::SetBounds(
        ALeft, ATop, std::clamp(AWidth, MinWidth, MaxWidth), std::max(AHeight, MinHeight));
}

// Min, Max and the grid step were stored as read; they settle here, without events.
void TqScope::Loaded() {
    TEnterLeaveEvents<TGraphicControl>::Loaded();
    m_range.Loaded();
    m_gridXstep = std::clamp(m_gridXstep, 0, Width());
}

// Painting.

int TqScope::TraceY(int channel, int sample) const {
    const std::int64_t height = Height();
    const std::int64_t range = std::max<std::int64_t>(std::int64_t{Max()} - Min(), 1);
    const std::int64_t n = std::int64_t{sample} + m_ajust[channel] - Min();
    // n * 100 / range * (height / 100), truncated: exact as n * height / range. The product
    // fits in 64 bits unless n is beyond 2^32 (a sample and an offset both near the limits).
    constexpr std::int64_t wide = std::int64_t{1} << 32;
    std::int64_t scaled;
    if (n > -wide && n < wide)
        scaled = n * height / range;
    else
        scaled = static_cast<std::int64_t>(
            std::clamp<__int128>(static_cast<__int128>(n) * height / range, -kFarRow, kFarRow));
    return static_cast<int>(
        std::clamp(height - std::clamp(scaled, -kFarRow, kFarRow) - 1, -kFarRow, kFarRow));
}

// Vertical lines at Rt - x for the x in 1 .. Rt - 1 divisible by GridXstep (counted from the
// right edge, so they stay with the newest sample); horizontal lines at the values Min + 1 ..
// Max - 1 divisible by GridYstep, one per row: the values at percent p are the ones at or above
// Min + ceil(p * range / 100), and the row of p is B - Round(p * B / 100).
void TqScope::CollectGrid() {
    const int right = Width();
    const int bottom = Height();
    m_gridColumns.clear();
    m_gridRows.clear();
    if (m_gridXstep != 0) {
        const int step = std::abs(m_gridXstep);
        for (int x = step; x <= right - 1; x += step)
            m_gridColumns.push_back(right - x);
    }
    if (m_gridYstep == 0) return;
    const std::int64_t min = Min();
    const std::int64_t range = std::int64_t{Max()} - min;
    if (range < 2) return;
    const std::int64_t step = m_gridYstep < 0 ? -std::int64_t{m_gridYstep} : m_gridYstep;
    const auto firstAt = [&](std::int64_t p) { return min + (p * range + 99) / 100; };
    for (std::int64_t p = 0; p < 100; ++p) {
        const std::int64_t from = std::max(firstAt(p), min + 1);
        const std::int64_t to = std::min(firstAt(p + 1) - 1, min + range - 1);
        if (from > to || FirstMultipleAtOrAbove(from, step) > to) continue;
        m_gridRows.push_back(bottom - static_cast<int>(RoundedQuotient(p, bottom, 100)));
    }
}

// Each one-pixel line leaves out its last point: the vertical ones cover rows T .. B - 2, the
// horizontal ones columns L .. Rt - 2. Drawn as the spans they cover.
void TqScope::DrawGrid(TCanvas& canvas) const {
    canvas.Brush().SetColor(m_gridColor);
    const int right = Width();
    const int bottom = Height();
    for (int x : m_gridColumns)
        canvas.FillRect({x, 0, x + 1, bottom - 1});
    for (int y : m_gridRows)
        canvas.FillRect({0, y, right - 1, y + 1});
}

// The same pixels, written into the picture row by row.
void TqScope::DrawGridInto(TPixelBuffer& pixels) const {
    const std::uint32_t grid = ColorToPixel(ColorToDrawRGB(ColorToRGB(m_gridColor)));
    const int width = pixels.Width();
    const int rows = std::min(Height() - 1, pixels.Height());
    for (int y = 0; y < rows; ++y) {
        std::uint32_t* row = pixels.Row(y);
        for (int x : m_gridColumns)
            if (x < width) row[x] = grid;
    }
    const int span = std::min(Width() - 1, width);
    for (int y : m_gridRows)
        if (y >= 0 && y < pixels.Height() && span > 0) FillPixels(pixels.Row(y), span, grid);
}

// MoveTo(Rt, y(s0)), then LineTo(Rt - (i + 1), y(s_i)) for i = 0 .. Rt: one polyline.
void TqScope::DrawBeam(TCanvas& canvas, int channel) {
    const int right = Width();
    m_trace.resize(static_cast<std::size_t>(right) + 2);
    m_trace[0] = {right, TraceY(channel, Sample(channel + 1, 0))};
    for (int i = 0; i <= right; ++i)
        m_trace[static_cast<std::size_t>(i) + 1] = {right - (i + 1),
                                                    TraceY(channel, Sample(channel + 1, i))};
    canvas.Pen().SetColor(m_beamColor[channel]);
    canvas.Polyline(m_trace);
}

void TqScope::Paint() {
    m_frame.Paint(
        *this, Canvas(), TFrameBackground::Flat(m_faceColor),
        [&](TCanvas& canvas) {
            canvas.Pen().SetWidth(1);
            if (m_showGrid) {
                CollectGrid();
                TPixelBuffer* pixels = canvas.Handle()->Target();
                if (pixels == &m_frame.Picture().Pixels())
                    DrawGridInto(*pixels);
                else
                    DrawGrid(canvas);
            }
            for (int c = 0; c < 2; ++c)
                if (m_showBeam[c]) DrawBeam(canvas, c);
        },
        OnPaint);
}

} // namespace qv
