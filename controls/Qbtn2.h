#pragma once
// Unit Qbtn2: the spin buttons, and the 12 x 12 glyphs the font combo box shows before a font's
// name: a TrueType font, a device font and a raster font. The glyphs exist while the unit is
// loaded.

#include "controls/TqxCenterSpinBtn.h"
#include "controls/TqxSpinBtn.h"
#include "platform/graphics/Bitmap.h"

namespace qv {

const TBitmap* TqxTTBitmap();
const TBitmap* TqxDevBitmap();
const TBitmap* TqxRasterBitmap();

void Qbtn2Initialization();
void Qbtn2Finalization();

} // namespace qv
