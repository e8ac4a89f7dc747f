// Regions: construction rules, combination and point tests.

#include "platform/graphics/Region.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using namespace qv;

TEST(Region, RectanglesInEitherCornerOrderAreEqualAndZeroExtentIsEmpty) {
    auto a = CreateRectRgn(2, 3, 10, 8);
    auto b = CreateRectRgn(10, 8, 2, 3);
    EXPECT_TRUE(EqualRgn(a, b));
    EXPECT_TRUE(PtInRegion(a, 2, 3));
    EXPECT_FALSE(PtInRegion(a, 10, 3));
    EXPECT_FALSE(PtInRegion(a, 2, 8));
    TRect box;
    EXPECT_EQ(GetRgnBox(CreateRectRgn(5, 5, 5, 9), box), NULLREGION);
}

TEST(Region, UnionOfRectanglesInOnePassEqualsCombiningThemOneByOne) {
    // Overlapping, touching, nested, disjoint, reversed and empty rectangles.
    const std::vector<TRect> rects = {{0, 0, 10, 10},  {5, 5, 20, 8},   {10, 0, 12, 3},
                                      {2, 2, 4, 4},    {30, 1, 25, 9},  {7, 7, 7, 30},
                                      {0, 10, 10, 12}, {40, 40, 41, 41}};
    TRegion combined;
    for (const TRect& r : rects)
        combined = combined.Combine(TRegion::FromRect(r), RGN_OR);
    EXPECT_TRUE(TRegion::FromRects(rects) == combined);
    EXPECT_TRUE(TRegion::FromRects({}).IsEmpty());
}

TEST(Region, CombineModes) {
    auto a = CreateRectRgn(0, 0, 10, 10);
    auto b = CreateRectRgn(5, 5, 15, 15);
    auto out = CreateRectRgn(0, 0, 0, 0);
    EXPECT_EQ(CombineRgn(out, a, b, RGN_AND), SIMPLEREGION);
    EXPECT_TRUE(PtInRegion(out, 7, 7));
    EXPECT_FALSE(PtInRegion(out, 2, 2));
    EXPECT_EQ(CombineRgn(out, a, b, RGN_OR), COMPLEXREGION);
    EXPECT_TRUE(PtInRegion(out, 2, 2) && PtInRegion(out, 12, 12) && !PtInRegion(out, 12, 2));
    CombineRgn(out, a, b, RGN_XOR);
    EXPECT_FALSE(PtInRegion(out, 7, 7));
    EXPECT_TRUE(PtInRegion(out, 12, 12));
    CombineRgn(out, a, b, RGN_DIFF);
    EXPECT_TRUE(PtInRegion(out, 2, 2));
    EXPECT_FALSE(PtInRegion(out, 7, 7) || PtInRegion(out, 12, 12));
    // XOR with itself empties; OR of touching halves is one rectangle again.
    CombineRgn(out, a, a, RGN_XOR);
    EXPECT_EQ(out->Type(), NULLREGION);
    auto left = CreateRectRgn(0, 0, 5, 10);
    auto right = CreateRectRgn(5, 0, 10, 10);
    CombineRgn(out, left, right, RGN_OR);
    EXPECT_TRUE(EqualRgn(out, a));
}

TEST(Region, EllipseExcludesLastColumnAndRowAndIsSymmetric) {
    auto e = CreateEllipticRgn(0, 0, 11, 11);
    TRect box;
    GetRgnBox(e, box);
    EXPECT_EQ(box, Rect(0, 0, 10, 10));
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x) {
            EXPECT_EQ(PtInRegion(e, x, y), PtInRegion(e, 9 - x, y)) << x << "," << y;
            EXPECT_EQ(PtInRegion(e, x, y), PtInRegion(e, x, 9 - y)) << x << "," << y;
        }
    EXPECT_TRUE(PtInRegion(e, 5, 5));
    EXPECT_FALSE(PtInRegion(e, 0, 0));
}

TEST(Region, PolygonFillModesDifferOnlyWhereEdgesWindTwice) {
    // A pentagram: the centre is enclosed twice.
    const TPoint star[] = {{50, 0}, {80, 95}, {0, 35}, {100, 35}, {20, 95}};
    auto alternate = CreatePolygonRgn(star, 5, ALTERNATE);
    auto winding = CreatePolygonRgn(star, 5, WINDING);
    EXPECT_FALSE(PtInRegion(alternate, 50, 50));
    EXPECT_TRUE(PtInRegion(winding, 50, 50));
    EXPECT_TRUE(PtInRegion(alternate, 50, 20));
    EXPECT_TRUE(PtInRegion(winding, 50, 20));
    auto diff = CreateRectRgn(0, 0, 0, 0);
    CombineRgn(diff, alternate, winding, RGN_DIFF);
    EXPECT_EQ(diff->Type(), NULLREGION) << "alternate must lie inside winding";
}

TEST(Region, OffsetMovesAndDeleteReleases) {
    auto r = CreateRoundRectRgn(0, 0, 20, 20, 6, 6);
    EXPECT_FALSE(PtInRegion(r, 0, 0));
    OffsetRgn(r, 100, 50);
    EXPECT_TRUE(PtInRegion(r, 110, 60));
    EXPECT_TRUE(DeleteObject(r));
    EXPECT_FALSE(PtInRegion(r, 110, 60));
    EXPECT_FALSE(DeleteObject(r));
}

TEST(Region, HugePolygonCoordinatesStayBounded) {
    const TPoint tri[] = {{-1000000, -1000000}, {1000000, 0}, {0, 1000000}};
    const TRect window{0, 0, 64, 64};
    const TRegion r = TRegion::FromPolygon(tri, ALTERNATE, &window);
    EXPECT_TRUE(r.Contains(10, 10));
    EXPECT_LE(r.Bands().size(), 64u);
}

namespace {

// The classic crossing of a row by an edge from `a` (upper) to `b`: rounded up going right,
// down going left, measured from the upper end.
int CrossingAt(TPoint a, TPoint b, int y) {
    const long long k = y - a.y, dx = b.x - a.x, dy = b.y - a.y;
    return static_cast<int>(dx >= 0 ? a.x + (k * dx + dy - 1) / dy : a.x - (k * -dx) / dy);
}

// Every row as the sorted crossings of the edges covering it (top row in, bottom row out),
// taken in pairs.
TRegion RowsByCrossings(const std::vector<TPoint>& pts) {
    int top = pts[0].y, bottom = pts[0].y;
    for (const TPoint& p : pts)
        top = std::min(top, p.y), bottom = std::max(bottom, p.y);
    TRegion::Builder rows;
    for (int y = top; y < bottom; ++y) {
        std::vector<int> xs;
        for (std::size_t i = 0; i < pts.size(); ++i) {
            TPoint a = pts[i], b = pts[(i + 1) % pts.size()];
            if (a.y > b.y) std::swap(a, b);
            if (a.y <= y && y < b.y) xs.push_back(CrossingAt(a, b, y));
        }
        std::sort(xs.begin(), xs.end());
        for (std::size_t i = 0; i + 1 < xs.size(); i += 2)
            rows.AddSpan(y, xs[i], xs[i + 1]);
    }
    return rows.Finish();
}

} // namespace

// Outlines that run down once and up once (convex ones, and ones whose two sides cross)
// cover, in either fill mode, exactly the spans between the two crossings of each row.
TEST(Region, PolygonsRunningDownOnceAndUpOnceFillBetweenTheirTwoSides) {
    std::uint32_t seed = 12345;
    const auto next = [&](int range) {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<int>((seed >> 8) % static_cast<std::uint32_t>(range));
    };
    for (int round = 0; round < 500; ++round) {
        // A left side going down and a right side coming back up, with flat steps.
        std::vector<TPoint> pts;
        int y = next(10);
        const int sides = 1 + next(4);
        for (int i = 0; i < sides; ++i, y += next(12))
            pts.push_back({next(40), y});
        const int turn = y + 1 + next(12);
        pts.push_back({next(40), turn});
        for (int i = 0, up = turn; i < sides; ++i) {
            up -= next(12);
            pts.push_back({next(40) + 10, std::max(up, pts[0].y)});
        }
        const TRegion expected = RowsByCrossings(pts);
        SCOPED_TRACE("round " + std::to_string(round));
        EXPECT_TRUE(TRegion::FromPolygon(pts, ALTERNATE) == expected);
        EXPECT_TRUE(TRegion::FromPolygon(pts, WINDING) == expected);
        const TRect window{0, 5, 30, 20};
        EXPECT_TRUE(TRegion::FromPolygon(pts, ALTERNATE, &window) ==
                    expected.Combine(TRegion::FromRect({-1000, 5, 1000, 20}), RGN_AND));
    }
}
