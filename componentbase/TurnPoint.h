#pragma once
// Points on a dial for angles given as a fraction of a whole turn, numerator / denominator:
// (percent + 310) / 360, ((hour + 9) * 60 + minute) / 720, i / 60. The direction is exact
// where the angle is a multiple of 30 degrees (cos 90 degrees is 0, cos 60 degrees is 0.5), so
// that a needle pointing straight up or left truncates to the pixel it should, which the real
// cosine (cos 1.5 pi = -1.8e-16) would move one pixel off.

#include "platform/graphics/Types.h"

#include <cstdint>

namespace qv {

// Where a dial's angle 0 lies; both turn clockwise on the screen (y downwards).
enum class TAngleOrigin {
    Top,        // 0 points straight up: x = sin, y = -cos
    ThreeOClock // 0 points right: x = cos, y = sin
};

// How a dial point becomes a pixel.
enum class TPixelRounding {
    RoundOffset, // centre + Round(offset), banker's rounding of the offset alone
    TruncateSum  // Trunc(centre + offset), towards zero
};

struct TTurnDirection {
    long double x; // the offset along x for radius 1
    long double y; // the offset along y for radius 1
};

// The unit direction of numerator / denominator of a turn (denominator > 0; any numerator,
// taken modulo the denominator).
TTurnDirection TurnDirection(std::int64_t numerator, std::int64_t denominator, TAngleOrigin origin);

// The point at radii (rx, ry) about (cx, cy) for numerator / denominator of a turn.
TPoint TurnPoint(int cx, int cy, long double rx, long double ry, std::int64_t numerator,
                 std::int64_t denominator, TAngleOrigin origin, TPixelRounding rounding);

} // namespace qv
