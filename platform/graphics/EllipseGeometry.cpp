#include "EllipseGeometry.h"

#include <cstdint>
#include <cstdlib>

namespace qv {

namespace {

// Error terms of the midpoint walk; a and b are the box extents minus one. The terms grow
// with the cube of the box size, so they are kept in 128 bits to stay exact for any int box.
struct TEllipseWalk {
    using Wide = __int128;
    Wide asq, bsq, dx, dy, err;

    TEllipseWalk(int width, int height) {
        const Wide a = width - 1;
        const Wide b = height - 1;
        asq = 8 * a * a;
        bsq = 8 * b * b;
        dx = 4 * b * b * (1 - a);
        dy = 4 * a * a * (1 + (b % 2));
        err = dx + dy + a * a * (b % 2);
    }

    // One step: reports whether x and/or y moved.
    void Step(bool& stepX, bool& stepY) {
        const Wide e2 = 2 * err;
        stepX = e2 >= dx;
        if (stepX) {
            dx += bsq;
            err += dx;
        }
        stepY = e2 <= dy;
        if (stepY) {
            dy += asq;
            err += dy;
        }
    }
};

} // namespace

std::vector<TPoint> EllipseQuadrant(int width, int height) {
    std::vector<TPoint> points;
    // Boxes turned inside out by an inside-frame pen still run the walk (the outline then
    // degenerates into a short run of points); the step limit keeps every input finite.
    if (width == 0 || height == 0) return points;
    TEllipseWalk walk(width, height);
    TPoint p{width - 1, height / 2};
    // Each step moves x or y (or both), so a proper box ends within width + height steps.
    const int limit = 4 * (std::abs(width) + std::abs(height)) + 8;
    for (int i = 0; p.x >= width / 2 && i < limit; ++i) {
        points.push_back(p);
        bool stepX = false, stepY = false;
        walk.Step(stepX, stepY);
        if (stepX) --p.x;
        if (stepY) ++p.y;
    }
    return points;
}

std::vector<int> RoundRectRowInsets(int width, int height) {
    std::vector<int> inset(static_cast<std::size_t>(height), 0);
    std::vector<bool> written(static_cast<std::size_t>(height), false);
    TEllipseWalk walk(width, height);
    int x = 0;
    int y = height / 2;
    written[static_cast<std::size_t>(y)] = true;
    const int limit = width + height + 2;
    for (int i = 0; x <= width / 2 && i < limit; ++i) {
        bool stepX = false, stepY = false;
        walk.Step(stepX, stepY);
        if (stepX) ++x;
        if (stepY) {
            ++y;
            if (y >= height) break;
            inset[static_cast<std::size_t>(y)] = x;
            written[static_cast<std::size_t>(y)] = true;
        }
    }
    // Rows the walk never reached (very narrow, tall ellipses) take the last inset written.
    for (int i = height / 2 + 1; i < height; ++i)
        if (!written[static_cast<std::size_t>(i)])
            inset[static_cast<std::size_t>(i)] = inset[static_cast<std::size_t>(i - 1)];
    const int last = height - 1;
    for (int i = 0; i < height / 2; ++i)
        inset[static_cast<std::size_t>(i)] = inset[static_cast<std::size_t>(last - i)];
    return inset;
}

} // namespace qv
