#pragma once
// Free routines that change a bitmap in place or draw it with one colour left out. They work
// on the bitmap's pixels directly; each gives the pixels that reading and writing them one by
// one through the canvas would give.
//
// Colours written by DarkenBMP, LightenBMP, GreyBMP and BMPRotate are plain RGB. On a
// monochrome bitmap every written colour becomes the nearer of black and white (white when
// R + G + B >= 383), so the bitmap stays black and white.

#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"

#include <cstdint>

namespace qv {

// The density of RasterBMP's dot pattern.
enum TqRast { Rast25, Rast50, Rast75 };

// Inverts the Rast25 and Rast50 patterns of RasterBMP. Nothing in the package sets it; an
// application may. Main thread only, like all painting.
extern bool RasterOfset;

// Percent x 2.55 rounded to the nearest integer, halves to even (50 gives 128, 90 gives 230).
int PercentAmount(std::uint8_t Percent);

// Subtracts PercentAmount(Percent) from every channel of every pixel (not below 0). With
// Transparent, pixels whose colour equals TransColor in all 32 bits are left alone.
void DarkenBMP(TBitmap& Bitmap, std::uint8_t Percent, bool Transparent, TColor TransColor);
// Adds PercentAmount(Percent) to every channel (not above 255); Transparent as DarkenBMP.
void LightenBMP(TBitmap& Bitmap, std::uint8_t Percent, bool Transparent, TColor TransColor);
// Replaces every coloured pixel by the grey of its three channels' mean, rounded to nearest;
// grey pixels and, with Transparent, pixels of TransColor are left alone.
void GreyBMP(TBitmap& Bitmap, bool Transparent, TColor TransColor);
// Paints a regular dot pattern of Color over the bitmap: Rast25 one pixel in four (two seeds
// in every eight pixels of a row, shifted by two from row to row), Rast50 a checkerboard,
// Rast75 each seed and its right and lower neighbours.
void RasterBMP(TBitmap& Bitmap, TColor Color, TqRast Rast);
// Draws Source turned anticlockwise by Angle degrees about its centre into the square of
// half-side max(W, H) div 2 - 1 round Dest's centre; Dest is neither cleared nor resized, and
// destination pixels whose source lies outside Source keep their colour. Source and Dest may
// be the same bitmap (later pixels then read what earlier ones wrote).
void BMPRotate(TBitmap& Source, TBitmap& Dest, int Angle);
// Turns the picture upside down.
void FlipBMP(TBitmap& Bitmap);
// Mirrors the picture left to right.
void MirrorBMP(TBitmap& Bitmap);
// Every pixel of OldColor (as drawn) becomes NewColor.
void ReplaceColor(TBitmap& Bitmap, TColor OldColor, TColor NewColor);
// Draws Bitmap on Canvas at (X, Y), leaving the canvas alone wherever the bitmap has
// TransColor (system colours resolved). The bitmap is not changed.
void TransparentBlt(TCanvas& Canvas, TBitmap& Bitmap, int X, int Y, TColor TransColor);

} // namespace qv
