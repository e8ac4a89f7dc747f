#pragma once
// Points, sizes and rectangles in device pixels. A rectangle's right and bottom edges are
// exclusive, as everywhere in the drawing layer.

#include <algorithm>
#include <cstdint>

namespace qv {

struct TPoint {
    int x{0};
    int y{0};
    constexpr bool operator==(const TPoint&) const = default;
};

struct TSize {
    int cx{0};
    int cy{0};
    constexpr bool operator==(const TSize&) const = default;
};

struct TRect {
    int left{0};
    int top{0};
    int right{0};
    int bottom{0};

    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    // True when the rectangle holds no pixel (zero or inverted extent).
    constexpr bool IsEmpty() const { return right <= left || bottom <= top; }
    constexpr TPoint TopLeft() const { return {left, top}; }
    constexpr TPoint BottomRight() const { return {right, bottom}; }
    constexpr bool Contains(TPoint p) const {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
    constexpr bool operator==(const TRect&) const = default;
};

constexpr TPoint Point(int x, int y) {
    return {x, y};
}
constexpr TRect Rect(int left, int top, int right, int bottom) {
    return {left, top, right, bottom};
}
constexpr TRect Bounds(int left, int top, int width, int height) {
    return {left, top, left + width, top + height};
}

// The overlap of two rectangles; empty (all zero) when they do not overlap.
constexpr TRect Intersect(const TRect& a, const TRect& b) {
    TRect r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
    return r.IsEmpty() ? TRect{} : r;
}

// Swaps the coordinates of an inverted rectangle so that left <= right and top <= bottom.
constexpr TRect Ordered(const TRect& r) {
    return {std::min(r.left, r.right), std::min(r.top, r.bottom), std::max(r.left, r.right),
            std::max(r.top, r.bottom)};
}

inline bool PtInRect(const TRect& r, TPoint p) {
    return r.Contains(p);
}
inline bool IntersectRect(TRect& dest, const TRect& a, const TRect& b) {
    dest = Intersect(a, b);
    return !dest.IsEmpty();
}
inline void OffsetRect(TRect& r, int dx, int dy) {
    r.left += dx;
    r.right += dx;
    r.top += dy;
    r.bottom += dy;
}
inline void InflateRect(TRect& r, int dx, int dy) {
    r.left -= dx;
    r.right += dx;
    r.top -= dy;
    r.bottom += dy;
}

} // namespace qv
