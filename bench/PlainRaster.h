#pragma once
// The plain peer of the canvas benchmark: an integer rasterizer with no drawing rules beyond
// the obvious ones (spans filled with wmemset, Bresenham lines without their last point,
// ellipses and pies filled row by row, a wide line stamped as squares), no pen styles, no
// raster operations and no clipping beyond the picture. It draws the benchmark's scenes with
// the same geometry and colours as the canvas, so its time is the floor any canvas that
// follows the classic pixel rules is measured against.

#include <cstdint>
#include <vector>

namespace qv::bench {

class TPlainRaster {
public:
    TPlainRaster(int width, int height) : m_width(width), m_height(height), m_pixels(Size()) {}

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    const std::uint32_t* Pixels() const { return m_pixels.data(); }
    std::uint32_t* Row(int y) { return m_pixels.data() + static_cast<std::size_t>(y) * m_width; }

    // [left, right) x [top, bottom), cut to the picture.
    void FillRect(int left, int top, int right, int bottom, std::uint32_t color);
    // From (x0, y0) towards (x1, y1), the last point left out.
    void Line(int x0, int y0, int x1, int y1, std::uint32_t color);
    // The same line with a square pen `width` pixels wide.
    void WideLine(int x0, int y0, int x1, int y1, int width, std::uint32_t color);
    // Through the points in order, each segment without its last point.
    void Polyline(const int* xy, int count, std::uint32_t color);
    // The ellipse in the box [left, right) x [top, bottom), filled, its outline one pixel.
    void Ellipse(int left, int top, int right, int bottom, std::uint32_t fill,
                 std::uint32_t outline);
    // The part of that ellipse between the rays from its centre through (ax, ay) and (bx, by),
    // counter-clockwise from the first (a wedge of at most half a turn), filled, with its two
    // radii and its arc outlined.
    void Pie(int left, int top, int right, int bottom, int ax, int ay, int bx, int by,
             std::uint32_t fill, std::uint32_t outline);

private:
    std::size_t Size() const { return static_cast<std::size_t>(m_width) * m_height; }
    void Plot(int x, int y, std::uint32_t color) {
        if (x >= 0 && y >= 0 && x < m_width && y < m_height) Row(y)[x] = color;
    }
    void Span(int y, int x0, int x1, std::uint32_t color); // [x0, x1]
    struct TEllipseRows;

    int m_width;
    int m_height;
    std::vector<std::uint32_t> m_pixels;
};

} // namespace qv::bench
