// Dial points for fractions of a turn: exact at multiples of 30 degrees, both origins, both
// ways of making a pixel, and the percent groups of a scale.

#include "componentbase/TurnPoint.h"
#include "componentbase/Scale.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

using namespace qv;

TEST(TurnPoint, MultiplesOfThirtyDegreesAreExact) {
    // Straight up from 3 o'clock: the real cosine would be -1.8e-16 and truncate to 49.
    EXPECT_EQ(
        TurnPoint(50, 50, 45, 45, 3, 4, TAngleOrigin::ThreeOClock, TPixelRounding::TruncateSum),
        (TPoint{50, 5}));
    // 60 degrees: cos is one half, so 44 * 0.5 truncates to 22, not 21.
    EXPECT_EQ(
        TurnPoint(50, 50, 44, 44, 1, 6, TAngleOrigin::ThreeOClock, TPixelRounding::TruncateSum),
        (TPoint{72, 88}));
    const TTurnDirection left = TurnDirection(180, 360, TAngleOrigin::ThreeOClock);
    EXPECT_EQ(left.x, -1.0L);
    EXPECT_EQ(left.y, 0.0L);
}

TEST(TurnPoint, NumeratorsOutsideOneTurnWrapAndTheOriginsDiffer) {
    const TTurnDirection a = TurnDirection(-1, 12, TAngleOrigin::Top);
    const TTurnDirection b = TurnDirection(11, 12, TAngleOrigin::Top);
    EXPECT_EQ(a.x, b.x);
    EXPECT_EQ(a.y, b.y);
    EXPECT_EQ(a.x, -0.5L); // 30 degrees left of the top
    const TTurnDirection right = TurnDirection(1, 4, TAngleOrigin::Top);
    EXPECT_EQ(right.x, 1.0L);
    EXPECT_EQ(right.y, 0.0L);
    const TTurnDirection down = TurnDirection(1, 4, TAngleOrigin::ThreeOClock);
    EXPECT_EQ(down.x, 0.0L);
    EXPECT_EQ(down.y, 1.0L);
}

TEST(TurnPoint, RoundingRoundsTheOffsetAndTruncationTheSum) {
    // Offset -2.5 at 180 degrees from 3 o'clock: Round(-2.5) = -2 (to even), Trunc(10 - 2.5) = 7.
    EXPECT_EQ(
        TurnPoint(10, 10, 2.5L, 2.5L, 1, 2, TAngleOrigin::ThreeOClock, TPixelRounding::RoundOffset)
            .x,
        8);
    EXPECT_EQ(
        TurnPoint(10, 10, 2.5L, 2.5L, 1, 2, TAngleOrigin::ThreeOClock, TPixelRounding::TruncateSum)
            .x,
        7);
}

TEST(ScaleGroups, EveryPercentOnceWithItsFirstAndLastValue) {
    std::vector<std::int64_t> percents, firsts, lasts;
    const auto record = [&](std::int64_t p, std::int64_t first, std::int64_t last) {
        percents.push_back(p);
        firsts.push_back(first);
        lasts.push_back(last);
    };
    ForEachScaleGroup(0, 3, record); // 0 %, 33 %, 66 %, 100 %
    EXPECT_EQ(percents, (std::vector<std::int64_t>{0, 33, 66, 100}));
    EXPECT_EQ(firsts, (std::vector<std::int64_t>{0, 1, 2, 3}));
    EXPECT_EQ(lasts, firsts);

    percents.clear();
    firsts.clear();
    lasts.clear();
    ForEachScaleGroup(INT_MIN, INT_MAX, record);
    ASSERT_EQ(percents.size(), 101u);
    EXPECT_EQ(firsts.front(), INT_MIN);
    EXPECT_EQ(lasts.back(), INT_MAX);
    for (std::size_t i = 1; i < firsts.size(); ++i)
        EXPECT_EQ(firsts[i], lasts[i - 1] + 1);

    percents.clear();
    ForEachScaleGroup(7, 7, record);
    EXPECT_EQ(percents, (std::vector<std::int64_t>{0}));
    percents.clear();
    ForEachScaleGroup(8, 7, record);
    EXPECT_TRUE(percents.empty());
    EXPECT_EQ(LastMultipleAtOrBelow(-7, 5), -10);
    EXPECT_EQ(LastMultipleAtOrBelow(10, 5), 10);
}
