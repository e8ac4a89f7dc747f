#include "DialogUnits.h"

#include "platform/graphics/Canvas.h"

#include <algorithm>

namespace qv {

namespace {

// The classic routines compute in 32 bits and keep the low 16 bits of the quotient. A base
// unit of 0 (a font that measured nothing) is taken as 1 so that nothing divides by zero.
std::uint16_t Scale(std::uint32_t value, std::uint32_t multiplier, std::uint32_t divisor) {
    return static_cast<std::uint16_t>(value * multiplier / std::max<std::uint32_t>(divisor, 1));
}

} // namespace

// From the framework's default font, as the classic system derives them: the average width
// of the 52 letters (rounded) and the font's line height; measured once.
TDialogBaseUnits GetDialogBaseUnits() {
    static const TDialogBaseUnits units = [] {
        TBitmap scratch(1, 1);
        TCanvas& canvas = scratch.Canvas();
        canvas.Font().Assign(TFont());
        const TSize letters =
            canvas.TextExtent("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
        const int x = (letters.cx / 26 + 1) / 2;
        return TDialogBaseUnits{static_cast<std::uint16_t>(std::max(x, 1)),
                                static_cast<std::uint16_t>(std::max(letters.cy, 1))};
    }();
    return units;
}

std::uint16_t DlgUnitsToPixelsX(std::uint16_t units) {
    return Scale(units, GetDialogBaseUnits().x, 4);
}

std::uint16_t DlgUnitsToPixelsY(std::uint16_t units) {
    return Scale(units, GetDialogBaseUnits().y, 8);
}

std::uint16_t PixelsToDlgUnitsX(std::uint16_t pixels) {
    return Scale(pixels, 4, GetDialogBaseUnits().x);
}

std::uint16_t PixelsToDlgUnitsY(std::uint16_t pixels) {
    return Scale(pixels, 8, GetDialogBaseUnits().y);
}

} // namespace qv
