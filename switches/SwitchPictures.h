#pragma once
// Drawing pieces the switch pictures share: fitting a shape into the picture's rectangle and
// the bevelled disc of a bezel or nut. Everything stays inside the rectangle it is given.

#include "componentbase/Bevels.h"
#include "platform/graphics/Canvas.h"

namespace qv {

// A rectangle of `width` x `height` (each at most the area's) centred in `area`.
TRect CentredIn(const TRect& area, int width, int height);

// The largest square inside `area` less `margin` on every side, centred; empty when nothing
// is left.
TRect SquareIn(const TRect& area, int margin);

// `rect` shrunk by `inset` on every side (empty, never negative, when it would vanish).
TRect Shrunk(const TRect& rect, int inset);

// A disc lit from the upper left: its rim is `colors.highlight` above and left and
// `colors.shadow` below and right (swapped when `sunken`), a raised or pressed round edge.
void PaintBevelledDisc(TCanvas& canvas, const TRect& rect, bool sunken, const TBevelColors& colors);

// A filled disc with a one-pixel outline.
void PaintDisc(TCanvas& canvas, const TRect& rect, TColor fill, TColor outline);

// The flat look of a disabled picture: an outline in `color` with nothing filled.
void OutlineRect(TCanvas& canvas, const TRect& rect, TColor color);
void OutlineDisc(TCanvas& canvas, const TRect& rect, TColor color);

} // namespace qv
