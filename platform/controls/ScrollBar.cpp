#include "ScrollBar.h"

#include <algorithm>

namespace qv {

namespace {
constexpr int MinThumbLength = 8;
} // namespace

void DrawButtonFace(TCanvas& canvas, TRect& rect, bool pushed) {
    if (pushed) {
        canvas.Brush().SetColor(clBtnShadow);
        canvas.FrameRect(rect);
        InflateRect(rect, -1, -1);
    } else {
        Frame3D(canvas, rect, cl3DLight, cl3DDkShadow, 1);
        Frame3D(canvas, rect, clBtnHighlight, clBtnShadow, 1);
    }
    canvas.Brush().SetColor(clBtnFace);
    canvas.FillRect(rect);
}

void DrawArrowGlyph(TCanvas& canvas, const TRect& rect, bool up, bool pushed, bool enabled) {
    const int shift = pushed ? 1 : 0;
    const int x = (rect.left + rect.right) / 2 - 3 + shift;
    const int y = (rect.top + rect.bottom) / 2 - 2 + shift;
    canvas.Pen().SetColor(enabled ? clBtnText : clGrayText);
    for (int row = 0; row < 4; ++row) {
        const int line = y + (up ? 3 - row : row);
        canvas.MoveTo(x + row, line);
        canvas.LineTo(x + 7 - row, line);
    }
}

TVScrollBar::TVScrollBar(const TRect& bounds, int rows, int visible, int position)
    : m_bounds(bounds), m_rows(std::max(rows, 1)),
      m_visible(std::clamp(visible, 1, std::max(rows, 1))), m_position(position),
      m_max(std::max(rows - visible, 0)) {
    m_position = std::clamp(m_position, 0, m_max);
}

// Buttons are square unless the bar is too short for two; then they share its height.
TRect TVScrollBar::UpButton() const {
    const int size = std::min(ScrollBarSize, m_bounds.Height() / 2);
    return {m_bounds.left, m_bounds.top, m_bounds.right, m_bounds.top + size};
}

TRect TVScrollBar::DownButton() const {
    const int size = std::min(ScrollBarSize, m_bounds.Height() / 2);
    return {m_bounds.left, m_bounds.bottom - size, m_bounds.right, m_bounds.bottom};
}

TRect TVScrollBar::Track() const {
    return {m_bounds.left, UpButton().bottom, m_bounds.right, DownButton().top};
}

TRect TVScrollBar::Thumb() const {
    const TRect track = Track();
    const int length = std::max(track.Height() * m_visible / m_rows, MinThumbLength);
    if (m_max == 0 || length > track.Height()) return {};
    const int top = track.top + (track.Height() - length) * m_position / m_max;
    return {track.left, top, track.right, top + length};
}

int TVScrollBar::PositionForThumbTop(int thumbTop) const {
    const TRect track = Track();
    const int travel = track.Height() - Thumb().Height();
    if (travel <= 0) return m_position;
    const int offset = std::clamp(thumbTop - track.top, 0, travel);
    return (offset * m_max + travel / 2) / travel;
}

TVScrollBar::TPart TVScrollBar::PartAt(TPoint p) const {
    if (!m_bounds.Contains(p)) return TPart::None;
    if (UpButton().Contains(p)) return TPart::LineUp;
    if (DownButton().Contains(p)) return TPart::LineDown;
    const TRect thumb = Thumb();
    if (thumb.IsEmpty()) return TPart::None;
    if (thumb.Contains(p)) return TPart::Thumb;
    return p.y < thumb.top ? TPart::PageUp : TPart::PageDown;
}

// The track is a checkerboard of highlight and face pixels.
void TVScrollBar::Paint(TCanvas& canvas, TPart pushed) const {
    const TRect track = Track();
    canvas.Brush().SetColor(clBtnFace);
    canvas.FillRect(track);
    const TColor light = ColorToRGB(clBtnHighlight);
    for (int y = track.top; y < track.bottom; ++y)
        for (int x = track.left + ((track.left + y) & 1); x < track.right; x += 2)
            canvas.SetPixel(x, y, light);
    for (const bool up : {true, false}) {
        const bool down = pushed == (up ? TPart::LineUp : TPart::LineDown);
        TRect button = up ? UpButton() : DownButton();
        const TRect whole = button;
        DrawButtonFace(canvas, button, down);
        DrawArrowGlyph(canvas, whole, up, down, m_max > 0);
    }
    if (TRect thumb = Thumb(); !thumb.IsEmpty()) DrawButtonFace(canvas, thumb, false);
}

} // namespace qv
