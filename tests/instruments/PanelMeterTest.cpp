// The panel meter: its events per call, and the pixels of needle, band, tick and hub.
#include "KnobFixture.h"

#include <climits>
#include <string>
#include <vector>

using namespace qv;

namespace {
constexpr TColor kGreen = 0x008000, kBlack = 0, kRed = 0x0000FF, kWhite = 0xFFFFFF,
                 kBlue = 0xFF0000;

// The default 105 x 97 meter draws in 104 x 96: wx 9, hy 8, the pivot at (52, 64) and the
// scale point of percent p at (52 + Round(52 sin(p + 310)), 64 - Round(48 cos(p + 310))).
class PanelMeter : public KnobTest {
protected:
    TqPanelMeter* Meter() { return Place<TqPanelMeter>(10, 10); }
};
} // namespace

TEST_F(PanelMeter, EachCallRaisesItsCrossingThenChangeThenPaint) {
    auto* m = Meter();
    std::vector<std::string> log;
    m->OnAlert = [&](TObject*) { log.push_back("alert"); };
    m->OnNotAlert = [&](TObject*) { log.push_back("not-alert"); };
    m->OnChange = [&](TObject*) { log.push_back("change"); };
    m->OnPaint = [&](TObject*) { log.push_back("paint"); };
    const std::vector<std::vector<std::string>> expected = {
        {"change", "paint"},              // 70
        {"alert", "change", "paint"},     // 80
        {"change", "paint"},              // 90
        {"not-alert", "change", "paint"}, // 60
    };
    const int values[] = {70, 80, 90, 60};
    for (int i = 0; i < 4; ++i) {
        log.clear();
        m->SetValue(values[i]);
        EXPECT_EQ(log, expected[static_cast<std::size_t>(i)]) << values[i];
    }
    // The same value again still raises OnChange; UseAlert off raises no crossing.
    log.clear();
    m->SetUseAlert(false);
    m->SetValue(95);
    EXPECT_EQ(log, (std::vector<std::string>{"change", "paint"}));
    // Min and Max go through SetValue: their OnChange comes with them.
    log.clear();
    m->SetScaledMax(50);
    EXPECT_EQ(m->Value(), 50);
    EXPECT_EQ(log.front(), "change");
}

TEST_F(PanelMeter, AlertIsClampedButTheAlertStateWaitsForTheNextValue) {
    auto* m = Meter();
    int alerts = 0;
    m->OnAlert = [&](TObject*) { ++alerts; };
    m->SetAlert(500);
    EXPECT_EQ(m->Alert(), 100);
    m->SetAlert(-5);
    EXPECT_EQ(m->Alert(), 0);
    EXPECT_FALSE(m->InAlert());
    EXPECT_EQ(alerts, 0);
    m->SetValue(0);
    EXPECT_TRUE(m->InAlert());
    EXPECT_EQ(alerts, 1);
}

TEST_F(PanelMeter, TheNeedleRunsFromTheScalePointToThePivotLeavingOutItsEnd) {
    auto* m = Meter();
    m->SetValue(50); // straight up: (52, 16)
    EXPECT_EQ(PixelOf(*m, 52, 16), kGreen);
    EXPECT_EQ(PixelOf(*m, 52, 40), kGreen);
    EXPECT_EQ(PixelOf(*m, 52, 63), kGreen);
    EXPECT_NE(PixelOf(*m, 52, 64), kGreen);
    m->SetValue(0); // 50 degrees left of top: (52 - 40, 64 - 31)
    EXPECT_EQ(PixelOf(*m, 12, 33), kGreen);
    EXPECT_NE(PixelOf(*m, 52, 40), kGreen);
    m->SetValue(100); // 50 degrees right of top
    EXPECT_EQ(PixelOf(*m, 92, 33), kGreen);
    EXPECT_NE(PixelOf(*m, 12, 33), kGreen);
}

TEST_F(PanelMeter, TheBandChangesColourAtAlertAndFollowsUseAlert) {
    auto* m = Meter();
    m->SetValue(50);
    // Percent 74 lies at x 73 and 75 at x 74; both band strokes cover y 21.
    EXPECT_EQ(PixelOf(*m, 73, 21), kBlack);
    EXPECT_EQ(PixelOf(*m, 74, 21), kRed);
    m->SetAlertColor(kBlue);
    EXPECT_EQ(PixelOf(*m, 74, 21), kBlue);
    m->SetUseAlert(false);
    EXPECT_EQ(PixelOf(*m, 74, 21), kBlack);
}

TEST_F(PanelMeter, ATickSitsAboveTheBandAndTheHubBelowTheFace) {
    auto* m = Meter();
    m->SetValue(0);
    // Value 50 (a multiple of 10) at (52, 16): the band reaches y 15, the tick y 13 and 12.
    EXPECT_EQ(PixelOf(*m, 52, 15), kBlack);
    EXPECT_EQ(PixelOf(*m, 52, 14), kWhite);
    EXPECT_EQ(PixelOf(*m, 52, 13), kBlack);
    EXPECT_EQ(PixelOf(*m, 52, 12), kBlack);
    EXPECT_EQ(PixelOf(*m, 52, 11), kWhite);
    m->SetStep(7); // 49 and 56 lie at other percents
    EXPECT_EQ(PixelOf(*m, 52, 13), kWhite);
    m->SetStep(0); // no ticks, no division
    EXPECT_EQ(PixelOf(*m, 52, 13), kWhite);
    // The hub spans x 45..59, y 74..86; the base lines cross it at y 79 and 80.
    EXPECT_EQ(PixelOf(*m, 52, 76), kGreen);
    m->SetHighColor(kBlue);
    EXPECT_EQ(PixelOf(*m, 52, 80), kBlue);
    m->SetShowAll(false);
    EXPECT_NE(PixelOf(*m, 52, 76), kGreen);
}

TEST_F(PanelMeter, SteelAndEdgeHousingsChangeOnlyTheHousing) {
    auto* m = Meter();
    m->SetHighColor(kBlue);
    EXPECT_EQ(PixelOf(*m, 1, 40), kBlue); // the outer left edge
    EXPECT_EQ(PixelOf(*m, 40, 1), kBlue); // the outer top edge
    m->SetPanelType(qpEdgeHorz);
    EXPECT_NE(PixelOf(*m, 1, 40), kBlue);
    EXPECT_EQ(PixelOf(*m, 40, 1), kBlue);
    m->SetPanelType(qpEdgeVert);
    EXPECT_EQ(PixelOf(*m, 1, 40), kBlue);
    EXPECT_NE(PixelOf(*m, 40, 1), kBlue);
    m->SetSteelLook(true);
    EXPECT_EQ(m->HighColor(), kWhite);
    EXPECT_EQ(m->ShadowColor(), TColor(0x808080));
    m->SetHighColor(kBlue); // stored, but the next paint forces white again
    PixelOf(*m, 0, 0);
    EXPECT_EQ(m->HighColor(), kWhite);
}

TEST_F(PanelMeter, DegenerateAndFullRangesClampAndPaint) {
    auto* m = Meter();
    m->SetScaledMin(200); // above Max: Min stays at most Max
    EXPECT_EQ(m->Min(), 100);
    EXPECT_EQ(m->Value(), 100);
    // Min = Max: the needle sits at the Min end.
    EXPECT_EQ(PixelOf(*m, 12, 33), kGreen);

    m->SetScaledMin(INT_MIN);
    m->SetScaledMax(INT_MAX);
    m->SetStep(-1);
    m->SetValue(INT_MIN);
    EXPECT_EQ(m->Value(), INT_MIN);
    EXPECT_EQ(PixelOf(*m, 12, 33), kGreen);
    m->SetValue(INT_MAX);
    EXPECT_EQ(PixelOf(*m, 92, 33), kGreen);
    m->SetStep(0);
    m->SetScaledMin(INT_MAX);
    EXPECT_EQ(m->Min(), INT_MAX);
    EXPECT_EQ(PixelOf(*m, 12, 33), kGreen);
}

TEST_F(PanelMeter, ScaleWidthIsClampedToItsSubrange) {
    auto* m = Meter();
    m->SetScaleWidth(9);
    EXPECT_EQ(m->ScaleWidth(), 5);
    m->SetScaleWidth(-1);
    EXPECT_EQ(m->ScaleWidth(), 0);
}

// The dial under the needle is kept between paints: a new font or caption must still show.
TEST_F(PanelMeter, FontAndCaptionChangesReachTheKeptDial) {
    auto* m = Meter();
    auto* same = Place<TqPanelMeter>(150, 10);
    for (auto* meter : {m, same})
        meter->SetCaption("Load");
    EXPECT_TRUE(ComparePictures(*m, *same, true, "meter-same"));
    m->Font()->SetColor(kRed);
    EXPECT_TRUE(ComparePictures(*m, *same, false, "meter-font"));
    same->Font()->SetColor(kRed);
    same->SetCaption("Lead");
    EXPECT_TRUE(ComparePictures(*m, *same, false, "meter-caption"));
}
