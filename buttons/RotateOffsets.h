#pragma once
// The offsets BMPRotate reads from: for the destination offset (i, j) from the centre, the
// source offset at the same rounded distance and at an angle Angle degrees larger.

namespace qv {

struct TRotateOffset {
    int ox;
    int oy;
};

// theta = pi/2 + a for i = 0, else arctan(j / i) + a (a = Angle in radians); d = the distance
// rounded; ox = round(cos(theta) d), oy = round(sin(theta) d), halves to even.
TRotateOffset RotateOffset(int i, int j, int Angle);

// Up to this half-side, RotateOffset of a quarter turn k is (i, j) turned k times by
// (x, y) -> (-y, x) for every (i, j); the test of BMPRotate checks it for every pair, and
// BMPRotate copies whole rows for quarter turns only up to it.
constexpr int kExactQuarterTurnRadius = 2047;

} // namespace qv
