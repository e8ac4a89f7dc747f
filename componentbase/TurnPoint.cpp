#include "componentbase/TurnPoint.h"

#include "platform/core/SysUtils.h"

#include <array>
#include <cmath>
#include <numbers>

namespace qv {

namespace {
constexpr long double HalfRoot3 = 0.866025403784438646763723170752936183L;

// cos and sin of k * 30 degrees, k = 0..11, exact where the value is rational.
struct TCosSin {
    long double cos, sin;
};
constexpr std::array<TCosSin, 12> ThirtyDegreeSteps = {{
    {1, 0},
    {HalfRoot3, 0.5L},
    {0.5L, HalfRoot3},
    {0, 1},
    {-0.5L, HalfRoot3},
    {-HalfRoot3, 0.5L},
    {-1, 0},
    {-HalfRoot3, -0.5L},
    {-0.5L, -HalfRoot3},
    {0, -1},
    {0.5L, -HalfRoot3},
    {HalfRoot3, -0.5L},
}};

TCosSin CosSinOfTurn(std::int64_t numerator, std::int64_t denominator) {
    std::int64_t n = numerator % denominator;
    if (n < 0) n += denominator;
    if ((n * 12) % denominator == 0)
        return ThirtyDegreeSteps[static_cast<std::size_t>(n * 12 / denominator)];
    // Elsewhere the cosine and sine are irrational, so r cos and r sin never fall on a whole
    // or half pixel, where truncation or rounding could tip: double precision is enough.
    const double angle =
        static_cast<double>(n) / static_cast<double>(denominator) * 2 * std::numbers::pi;
    return {std::cos(angle), std::sin(angle)};
}

int ToPixel(int centre, long double offset, TPixelRounding rounding) {
    if (rounding == TPixelRounding::RoundOffset) return centre + static_cast<int>(Round(offset));
    return static_cast<int>(std::trunc(centre + offset));
}
} // namespace

TTurnDirection TurnDirection(std::int64_t numerator, std::int64_t denominator,
                             TAngleOrigin origin) {
    const TCosSin cs = CosSinOfTurn(numerator, denominator);
    if (origin == TAngleOrigin::Top) return {cs.sin, -cs.cos};
    return {cs.cos, cs.sin};
}

TPoint TurnPoint(int cx, int cy, long double rx, long double ry, std::int64_t numerator,
                 std::int64_t denominator, TAngleOrigin origin, TPixelRounding rounding) {
    const TTurnDirection d = TurnDirection(numerator, denominator, origin);
    return {ToPixel(cx, d.x * rx, rounding), ToPixel(cy, d.y * ry, rounding)};
}

} // namespace qv
