#pragma once
// Unit Std2: the shared 8 x 8 steel texture and the steel painting routine, the thread timer
// TqxTimer, the multimedia timer TqxMMTimer and Delay.

#include "timing/TqxMMTimer.h"
#include "timing/TqxTimer.h"

#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"

namespace qv {

// The steel texture: silver $C0C0C0 with white $FFFFFF where x and y are both odd. It exists
// between the unit's initialization and finalization; components only read it.
const TBitmap* TSteel();

// Fills `rect` of `canvas` with the steel texture, tiled from the canvas origin, and leaves
// the canvas's brush as it was.
void PaintSteel(TCanvas& canvas, const TRect& rect);

void Std2Initialization();
void Std2Finalization();

} // namespace qv
