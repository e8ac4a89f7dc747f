#pragma once
// The digital ellipse that Ellipse, Arc, Pie, Chord, RoundRect and the elliptic regions share:
// an integer midpoint walk (after Alois Zingl's rasterizing algorithm) over one quadrant.

#include "Types.h"

#include <vector>

namespace qv {

// The outline points of one quadrant of the ellipse that fills a width x height box, in box
// coordinates, starting on the horizontal axis at the right (x = width - 1, y = height / 2) and
// walking towards the bottom while x stays in the right half.
std::vector<TPoint> EllipseQuadrant(int width, int height);

// For a round-rect region whose corner ellipse is width x height: how far each of the
// `height` corner rows is inset from the rectangle's sides.
std::vector<int> RoundRectRowInsets(int width, int height);

} // namespace qv
