#pragma once
// BMPRotate written plainly with the canvas's pixel calls: the reference the routine's fast
// paths are proved against, and the naive peer the bitmap benchmark measures it beside.

#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"
#include "platform/graphics/Color.h"

#include <algorithm>
#include <cmath>

namespace qv::test {

// The top byte of the colours the routines write: palette-relative, drawn as their RGB.
inline constexpr TColor kPaletteFlag = 0x02000000;

inline void RotateByPixelCalls(TBitmap& source, TBitmap& dest, int angle) {
    const double a = angle * 0.017453292519943295;
    const int sx = source.Width() / 2, sy = source.Height() / 2;
    const int dx = dest.Width() / 2, dy = dest.Height() / 2;
    const int R = std::max(dest.Width(), dest.Height()) / 2 - 1;
    auto copy = [&](int fx, int fy, int tx, int ty) {
        const TColor p = source.Canvas().Pixel(fx, fy);
        if (p != MakeColor(0xFFFFFFFF))
            dest.Canvas().SetPixel(tx, ty, ColorToRGB(p) | kPaletteFlag);
    };
    for (int i = 0; i <= R; ++i)
        for (int j = 0; j <= R; ++j) {
            const double theta = i == 0 ? M_PI / 2 + a : std::atan(double(j) / i) + a;
            const double d = std::nearbyint(std::sqrt(double(i * i + j * j)));
            const int ox = int(std::nearbyint(std::cos(theta) * d));
            const int oy = int(std::nearbyint(std::sin(theta) * d));
            copy(sx + ox, sy + oy, dx + i, dy + j);
            copy(sx - ox, sy - oy, dx - i, dy - j);
            copy(sx + oy, sy - ox, dx + j, dy - i);
            copy(sx - oy, sy + ox, dx - j, dy + i);
        }
}

} // namespace qv::test
