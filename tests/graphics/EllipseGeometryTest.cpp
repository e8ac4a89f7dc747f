// Large quadrants keep only every 256th point and walk the rest again from there; they must
// give exactly what a quadrant holding every point gives, for any run and any window.

#include "platform/graphics/EllipseGeometry.h"

#include <gtest/gtest.h>

#include <random>

using namespace qv;

namespace {

std::vector<TPoint> PointsOf(const TEllipseQuadrant& q, int first, int last) {
    std::vector<TPoint> scratch;
    const auto points = q.Points(first, last, scratch);
    return {points.begin(), points.end()};
}

} // namespace

TEST(EllipseGeometry, QuadrantsWalkedAgainMatchQuadrantsKeptWhole) {
    std::mt19937 random(11);
    const TSize boxes[] = {{3, 2000}, {2000, 3}, {1201, 999}, {2600, 2601}, {5, 7}};
    for (const TSize box : boxes) {
        const TEllipseQuadrant whole(box.cx, box.cy, 1 << 20);
        const TEllipseQuadrant walked(box.cx, box.cy, 0);
        const int count = whole.Count();
        ASSERT_EQ(walked.Count(), count) << box.cx << "x" << box.cy;
        ASSERT_EQ(PointsOf(walked, 0, count), PointsOf(whole, 0, count)) << box.cx << "x" << box.cy;
        for (int i = 0; i < 20; ++i) {
            const int first = std::uniform_int_distribution<int>(0, count - 1)(random);
            const int last = std::uniform_int_distribution<int>(first + 1, count)(random);
            EXPECT_EQ(PointsOf(walked, first, last), PointsOf(whole, first, last))
                << first << ".." << last;
            // The hull encloses the run.
            const TRect hull = walked.Hull(first, last);
            for (const TPoint p : PointsOf(whole, first, last))
                EXPECT_TRUE(hull.Contains(p)) << p.x << "," << p.y;
            // Directions reached along the walk: the first point at or past y/x = slope.
            const int slope = std::uniform_int_distribution<int>(0, 40)(random);
            const auto reached = [&](TPoint p) {
                return 10LL * (p.y - box.cy / 2) >=
                       static_cast<long long>(slope) * (p.x - box.cx / 2);
            };
            EXPECT_EQ(walked.FirstReaching(reached), whole.FirstReaching(reached)) << slope;
        }
        // The outline of all four mirror images, thinned to a window across its edge.
        const TRect keep{box.cx - 40, box.cy / 2, box.cx + 10, box.cy / 2 + 300};
        const auto outline = [&](const TEllipseQuadrant& q) {
            TOutlineThinner thinner(keep);
            thinner.AddQuadrant(q, 0, count, false, {0, 1, 0, 1});
            thinner.AddQuadrant(q, 0, count, true, {box.cx - 1, -1, 0, 1});
            thinner.AddQuadrant(q, 0, count, false, {box.cx - 1, -1, box.cy - 1, -1});
            thinner.AddQuadrant(q, 0, count, true, {0, 1, box.cy - 1, -1});
            return thinner.Finish();
        };
        const TThinOutline a = outline(walked);
        const TThinOutline b = outline(whole);
        EXPECT_EQ(a.points, b.points);
        EXPECT_EQ(a.hiddenSteps, b.hiddenSteps);
    }
}

TEST(EllipseGeometry, ThinnedStretchesKeepTheirEndsAndCountTheirSteps) {
    // A line of points running from inside the window out past its right side and back.
    TOutlineThinner thinner({0, 0, 10, 10});
    for (int x = 5; x < 30; ++x)
        thinner.Add({x, 5});
    for (int x = 30; x >= 5; --x)
        thinner.Add({x, 6});
    const TThinOutline out = thinner.Finish();
    // Kept: the points inside, and the stretch beyond the right side by its two ends, (10, 5)
    // and (10, 6).
    std::vector<TPoint> expected;
    for (int x = 5; x <= 10; ++x)
        expected.push_back({x, 5});
    for (int x = 10; x >= 5; --x)
        expected.push_back({x, 6});
    EXPECT_EQ(out.points, expected);
    // The segment between them stands in for 19 steps out, a diagonal one and 20 back.
    ASSERT_GE(out.hiddenSteps.size(), 6u);
    for (std::size_t i = 0; i < out.hiddenSteps.size(); ++i) {
        EXPECT_EQ(out.hiddenSteps[i], i == 5 ? 40 : 0) << i;
    }
}
