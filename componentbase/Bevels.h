#pragma once
// Bevel and button-face painters on top of Frame3D, so that buttons, switches, spin buttons,
// gauges and splitters draw their edges one way. Every painter takes the rectangle in the
// classic exclusive form (right and bottom outside) and shrinks it to what lies inside the
// edge, ready for the face or the content.

#include "platform/graphics/Canvas.h"

namespace qv {

enum class TBevelKind {
    Raised, // highlight above and left, shadow below and right
    Lowered // shadow above and left, highlight below and right
};

struct TBevelColors {
    TColor highlight{clBtnHighlight};
    TColor shadow{clBtnShadow};
};

// Draws `width` lines of bevel round `rect` and shrinks `rect` by `width` on every side.
// A width of 0 or less draws nothing.
void PaintBevel(TCanvas& canvas, TRect& rect, TBevelKind kind, int width,
                const TBevelColors& colors = {});

// A push-button face in the classic two-ring look, filled with `face`:
//   up:      highlight and frame colour outside, face colour and shadow inside;
//   pressed: frame colour and highlight outside, shadow and face colour inside.
// Returns the rectangle inside the rings; content of a pressed face is drawn one pixel
// right and down by the caller, as the classic buttons do.
TRect PaintButtonFace(TCanvas& canvas, TRect rect, bool pressed, TColor face = clBtnFace,
                      const TBevelColors& colors = {}, TColor frame = clWindowFrame);

// The dotted focus rectangle drawn by XOR, `inset` pixels inside `rect`; drawing it twice
// restores the pixels. Nothing is drawn when the inset rectangle is empty.
void PaintFocusRect(TCanvas& canvas, const TRect& rect, int inset = 0);

} // namespace qv
