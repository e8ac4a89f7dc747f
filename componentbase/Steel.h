#pragma once
// The shared steel look: an 8 x 8 texture, silver $C0C0C0 with white $FFFFFF where x and y are
// both odd, tiled from the canvas origin. Unit Std2 creates the texture in its initialization
// and frees it in its finalization; components only read it.

#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"

namespace qv {

// The steel texture, or null outside the unit's lifetime.
const TBitmap* TSteel();

// Fills `rect` of `canvas` with the steel texture and leaves the canvas's brush as it was.
void PaintSteel(TCanvas& canvas, const TRect& rect);

// The steel texture as the canvas's brush for as long as it lives, for figures other than a
// rectangle (a steel disc); the brush goes back to no bitmap at the end of the scope.
class TSteelBrush {
public:
    explicit TSteelBrush(TCanvas& canvas);
    ~TSteelBrush();
    TSteelBrush(const TSteelBrush&) = delete;
    TSteelBrush& operator=(const TSteelBrush&) = delete;

private:
    TCanvas& m_canvas;
};

// Creates and frees the texture; called by unit Std2's initialization and finalization.
void CreateSteelTexture();
void FreeSteelTexture();

} // namespace qv
