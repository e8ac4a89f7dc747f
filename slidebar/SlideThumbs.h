#pragma once
// The sixteen thumbs of the slide bar. Each is drawn in the button shades (face, highlight,
// shadow and black) on the key colour, and DoMask turns the key colour into the mask, so that
// the thumb is copied over the groove transparently: hollow thumbs show the groove inside.
//
// Upright forms (tsVertHigh, tsVertLow, tsTop, tsBottom, the hollow Vert forms) are 10 wide,
// 18 high (Low: 12, pointed: 16); their Horz, tsLeft and tsRight twins are the same pictures
// turned over the diagonal (so the highlight stays above and left); square and round thumbs
// are 12 x 12.

#include "platform/core/TypeInfo.h"
#include "platform/graphics/Bitmap.h"

namespace qv {

enum TThumbStyle {
    tsHorzHigh,
    tsVertHigh,
    tsHorzLow,
    tsVertLow,
    tsSquare,
    tsSquarehollow,
    tsLeft,
    tsRight,
    tsBottom,
    tsRound,
    tsHorzRound,
    tsSquarehollowHorz,
    tsSquarehollowVert,
    tsSquarehollowHLine,
    tsSquarehollowVLine,
    tsTop
};
QV_ENUM_TYPE(TThumbStyle, "tsHorzHigh", "tsVertHigh", "tsHorzLow", "tsVertLow", "tsSquare",
             "tsSquarehollow", "tsLeft", "tsRight", "tsBottom", "tsRound", "tsHorzRound",
             "tsSquarehollowHorz", "tsSquarehollowVert", "tsSquarehollowHLine",
             "tsSquarehollowVLine", "tsTop")

// The colour the thumb builders leave where the groove shows through.
constexpr TColor ThumbKeyColor = 0x00FF00FF;

// Draws the thumb of `style` into `thumb` (resized to the thumb) on the key colour.
void BuildThumb(TThumbStyle style, TBitmap& thumb);

// Makes `mask` the thumb's mask (white where `thumb` holds the key colour, black elsewhere) and
// blackens those pixels of `thumb`, ready for TCanvas::MaskedDraw.
void DoMask(TBitmap& thumb, TBitmap& mask);

} // namespace qv
