#pragma once
// The classic vertical scroll bar as list boxes draw it inside their edge: an arrow button
// at each end, the checkered track and a raised thumb whose length shows the visible share
// of the rows. TVScrollBar is its geometry and picture; the owning control feeds it the
// rows and routes presses to it. Also the push-button look shared with the combo box's
// drop-down button.

#include "platform/graphics/Canvas.h"

namespace qv {

// The width of a vertical scroll bar (and the height of its arrow buttons).
constexpr int ScrollBarSize = 16;

// A raised (or, pushed, a flat shadowed) button face; `rect` shrinks to its inside.
void DrawButtonFace(TCanvas& canvas, TRect& rect, bool pushed);
// The 7-pixel arrow glyph centred in `rect`, one pixel down and right when pushed.
void DrawArrowGlyph(TCanvas& canvas, const TRect& rect, bool up, bool pushed, bool enabled = true);

class TVScrollBar {
public:
    enum class TPart { None, LineUp, LineDown, PageUp, PageDown, Thumb };

    // `rows` in all, `visible` of them shown, from `position` (0 .. rows - visible).
    TVScrollBar(const TRect& bounds, int rows, int visible, int position);

    TRect UpButton() const;
    TRect DownButton() const;
    TRect Thumb() const;
    TPart PartAt(TPoint p) const;
    // The position that puts the thumb's top at `thumbTop`.
    int PositionForThumbTop(int thumbTop) const;
    int MaxPosition() const { return m_max; }

    void Paint(TCanvas& canvas, TPart pushed = TPart::None) const;

private:
    TRect Track() const;

    TRect m_bounds;
    int m_rows;
    int m_visible;
    int m_position;
    int m_max;
};

} // namespace qv
