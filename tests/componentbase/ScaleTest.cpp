// The shared range arithmetic of the scaled instruments: percent, scale walk, loading rule and
// the keyboard's targets, including the ends of the integer range.
#include "componentbase/Scale.h"
#include "componentbase/KeySteps.h"
#include "platform/controls/Messages.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <set>
#include <vector>

using namespace qv;

namespace {

// The percents a walk over every integer of the range visits, as the scale is defined.
std::vector<std::int64_t> PercentsOfEveryValue(int min, int max, int step) {
    std::set<std::int64_t> percents;
    for (std::int64_t i = min; i <= max; ++i)
        if (i % step == 0) percents.insert(ScalePercent(i, min, max));
    return {percents.begin(), percents.end()};
}

std::vector<std::int64_t> WalkedPercents(std::int64_t min, std::int64_t max, std::int64_t step) {
    std::vector<std::int64_t> visited;
    ForEachScalePercent(min, max, step, [&](std::int64_t p) { visited.push_back(p); });
    return visited;
}

} // namespace

TEST(Scale, PercentCountsAZeroRangeAsOneAndSpansTheFullIntegerRange) {
    EXPECT_EQ(ScalePercent(29, 0, 100), 29);
    EXPECT_EQ(ScalePercent(7, 7, 7), 0);
    EXPECT_EQ(ScalePercent(INT_MAX, INT_MIN, INT_MAX), 100);
    EXPECT_EQ(ScalePercent(0, INT_MIN, INT_MAX), 50);
    EXPECT_EQ(ScalePercent(-1, INT_MIN, INT_MAX), 49);
}

TEST(Scale, TheWalkVisitsTheSamePercentsAsEveryValueWould) {
    struct TCase {
        int min, max, step;
    };
    for (const TCase& c : {TCase{0, 100, 10}, TCase{0, 3, 1}, TCase{-37, 250, 7},
                           TCase{-1000, -20, 3}, TCase{5, 9, 10}, TCase{0, 1000, 1},
                           TCase{-3, 3, 2}, TCase{1, 333, 111}, TCase{0, 99, 97}}) {
        SCOPED_TRACE(std::to_string(c.min) + ".." + std::to_string(c.max) + " step " +
                     std::to_string(c.step));
        EXPECT_EQ(WalkedPercents(c.min, c.max, c.step), PercentsOfEveryValue(c.min, c.max, c.step));
        EXPECT_EQ(WalkedPercents(c.min, c.max, -c.step),
                  PercentsOfEveryValue(c.min, c.max, c.step));
    }
}

TEST(Scale, TheWalkOverTheFullRangeVisitsAtMost101PointsAndNoneWithoutAScale) {
    EXPECT_EQ(WalkedPercents(INT_MIN, INT_MAX, 1).size(), 101u);
    // Multiples of 2^31 in the full range: INT_MIN, 0 and nothing else.
    EXPECT_EQ(WalkedPercents(INT_MIN, INT_MAX, INT_MIN), (std::vector<std::int64_t>{0, 50}));
    EXPECT_TRUE(WalkedPercents(0, 100, 0).empty());
    EXPECT_TRUE(WalkedPercents(5, 5, 1).empty());
}

TEST(Scale, ALoadingRangeKeepsWhatAFormReadsAndSettlesInLoaded) {
    TLoadingRange range(0, 100);
    range.SetMin(200, true);
    range.SetMax(300, true);
    range.Loaded();
    EXPECT_EQ(range.Min(), 200);
    EXPECT_EQ(range.Max(), 300);

    range.SetMin(400, false); // outside loading Min stops at Max
    EXPECT_EQ(range.Min(), 300);
    range.SetMax(100, false);
    EXPECT_EQ(range.Max(), 300);

    TLoadingRange crossed(0, 100);
    crossed.SetMax(-5, true);
    crossed.SetMin(10, true);
    crossed.Loaded();
    EXPECT_EQ(crossed.Min(), 10);
    EXPECT_EQ(crossed.Max(), 10);
}

TEST(KeySteps, PageKeysLandOnTheEndsAndArrowsStopThere) {
    EXPECT_EQ(StepKeyTarget(VK_PRIOR, 90, 0, 100), 100); // 90 + 10 is not below Max
    EXPECT_EQ(StepKeyTarget(VK_PRIOR, 89, 0, 100), 99);
    EXPECT_EQ(StepKeyTarget(VK_NEXT, 10, 0, 100), 0);
    EXPECT_EQ(StepKeyTarget(VK_NEXT, 11, 0, 100), 1);
    EXPECT_EQ(StepKeyTarget(VK_PRIOR, 2, 0, 5), 3); // a page is at least 1
    EXPECT_EQ(StepKeyTarget(VK_HOME, 50, -7, 100), -7);
    EXPECT_EQ(StepKeyTarget(VK_END, 50, -7, 100), 100);
    EXPECT_EQ(StepKeyTarget(VK_LEFT, 50, 0, 100), 49);
    EXPECT_EQ(StepKeyTarget(VK_DOWN, 0, 0, 100), std::nullopt);
    EXPECT_EQ(StepKeyTarget(VK_RIGHT, 100, 0, 100), std::nullopt);
    EXPECT_EQ(StepKeyTarget(VK_UP, 99, 0, 100), 100);
    EXPECT_EQ(StepKeyTarget('A', 50, 0, 100), std::nullopt);
}

TEST(KeySteps, TheFullIntegerRangeStepsWithoutOverflow) {
    EXPECT_EQ(PageStep(INT_MIN, INT_MAX), 429496729);
    EXPECT_EQ(StepKeyTarget(VK_PRIOR, INT_MAX - 5, INT_MIN, INT_MAX), INT_MAX);
    EXPECT_EQ(StepKeyTarget(VK_NEXT, INT_MIN + 5, INT_MIN, INT_MAX), INT_MIN);
    EXPECT_EQ(StepKeyTarget(VK_PRIOR, 0, INT_MIN, INT_MAX), 429496729);
}
