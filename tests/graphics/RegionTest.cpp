// Regions: construction rules, combination and point tests.

#include "platform/graphics/Region.h"

#include <gtest/gtest.h>

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
