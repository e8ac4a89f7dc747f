#pragma once
// The colour gradient shared by the blend paints, the form background and the gradient
// button: N + 1 straight bands, or concentric frames towards the centre. Band colours come
// from the raw bytes of the two colours (system colours are not resolved) with MulDiv
// rounding; band 0 is the start colour and band N the end colour.

#include "platform/core/TypeInfo.h"
#include "platform/graphics/Canvas.h"

#include <cstdint>

namespace qv {

// The gradient's direction: vertical stripes (gHorz), horizontal stripes (gVert) or frames
// towards the centre (gCenter).
enum gradType { gHorz, gVert, gCenter };
QV_ENUM_TYPE(gradType, "gHorz", "gVert", "gCenter")

// Start components and signed differences to the end colour, kept as 16-bit integers.
struct TGradientColors {
    std::int16_t r0{0}, g0{0}, b0{0};
    std::int16_t dr{0}, dg{0}, db{0};
};
TGradientColors GradientColors(TColor start, TColor end);

// Band i of `divisor`: each component (MulDiv(i, d, divisor) + start) mod 65536, low byte.
TColor BandColor(const TGradientColors& colors, int i, int divisor);

// Where the gradient goes. Straight bands divide `straight`; the centre frames start from
// `centre`, with n limited by halfWidth and halfHeight; the left and right strips span the
// whole height of the remaining rectangle or only what the top and bottom strips leave.
struct TGradientLayout {
    TRect straight;
    TRect centre;
    int halfWidth{0};
    int halfHeight{0};
    bool fullHeightSides{false};

    // A control's whole W x H area.
    static TGradientLayout Control(int width, int height);
    // A button face: bands over R x B = (W - 1) x (H - 1) moved by `offset` (1 while pressed),
    // frames from the client rectangle moved by `offset` and shrunk by 1, full-height sides.
    static TGradientLayout ButtonFace(int width, int height, int offset);
};

// Paints the gradient with solid brushes. Negative bands paint nothing; 0 bands give one
// band of (start - 1). Returns false when the centre gradient has no frame to divide by
// (fewer than 2 pixels across, or 0 bands): the caller abandons its paint. When the bands
// outnumber the pixels, each row or column is filled once with the band that would end on it.
bool PaintGradient(TCanvas& canvas, gradType type, const TGradientColors& colors, int bands,
                   const TGradientLayout& layout);

} // namespace qv
