#pragma once
// Dialog-unit conversions of unit Mystd. A dialog unit is a quarter of the average character
// width and an eighth of the character height of the default font; the conversions truncate
// and work on unsigned 16-bit values like the classic routines.

#include <cstdint>

namespace qv {

struct TDialogBaseUnits {
    std::uint16_t x; // average character width in pixels
    std::uint16_t y; // character height in pixels
};

// The dialog base units of the framework's default font ("MS Sans Serif", height -11),
// measured once: the average width of the letters A-Z and a-z, rounded, and the line height.
TDialogBaseUnits GetDialogBaseUnits();

std::uint16_t DlgUnitsToPixelsX(std::uint16_t units);  // (x * units) div 4
std::uint16_t DlgUnitsToPixelsY(std::uint16_t units);  // (y * units) div 8
std::uint16_t PixelsToDlgUnitsX(std::uint16_t pixels); // (pixels * 4) div x
std::uint16_t PixelsToDlgUnitsY(std::uint16_t pixels); // (pixels * 8) div y

} // namespace qv
