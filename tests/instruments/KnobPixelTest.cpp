// What the knobs paint, pixel by pixel, at their default sizes.
#include "KnobFixture.h"

#include <functional>
#include <vector>

using namespace qv;

namespace {
constexpr TColor kRed = 0x0000FF, kBlack = 0, kSilver = 0xC0C0C0, kWhite = 0xFFFFFF,
                 kFuchsia = 0xFF00FF, kOlive = 0x008080;

class KnobPixels : public KnobTest {};
} // namespace

// A knob of 57: centre (28, 28), face 8..49, pointer radius 28 - (1 + 8) = 19.
TEST_F(KnobPixels, ThePointerEndsOnePixelShortOfItsRadius) {
    auto* knob = Place<TqKnob>(10, 10);
    knob->SetKnobValue(50);
    EXPECT_EQ(PixelOf(*knob, 28, 10), kRed);
    EXPECT_NE(PixelOf(*knob, 28, 9), kRed);
    EXPECT_EQ(PixelOf(*knob, 28, 27), kRed);
}

// Ticks run from the centre to the edge; the clearing disc (face grown by 3: 5..52) leaves
// their outer pixels, and the line's end pixel is not drawn.
TEST_F(KnobPixels, OnlyTheTicksOuterPixelsShowBetweenTheDiscAndTheEdge) {
    auto* knob = Place<TqKnob>(10, 10);
    EXPECT_EQ(PixelOf(*knob, 28, 2), kBlack);
    EXPECT_EQ(PixelOf(*knob, 28, 4), kBlack);
    EXPECT_EQ(PixelOf(*knob, 28, 0), kFuchsia);
    EXPECT_EQ(PixelOf(*knob, 28, 6), kFuchsia); // the disc, in the background colour
    EXPECT_EQ(PixelOf(*knob, 0, 0), kFuchsia);
    knob->SetTickColor(kRed);
    EXPECT_EQ(PixelOf(*knob, 28, 2), kRed);
    knob->SetStep(-10); // acts as 10
    EXPECT_EQ(PixelOf(*knob, 28, 2), kRed);
    knob->SetStep(0);
    EXPECT_EQ(PixelOf(*knob, 28, 2), kFuchsia);
    knob->SetStep(7); // 49 and 56 lie at 49 % and 56 %: none at the top
    EXPECT_EQ(PixelOf(*knob, 28, 2), kFuchsia);
}

TEST_F(KnobPixels, KnobColoursShadeTheFaceAndTheYellowKeepsItsLightDarkShade) {
    auto* knob = Place<TqKnob>(10, 10);
    knob->SetKnobValue(50);
    knob->SetNoReflex(true);
    EXPECT_EQ(PixelOf(*knob, 20, 30), kSilver);
    knob->SetKnobCol(kcYellow);
    EXPECT_EQ(PixelOf(*knob, 20, 30), kOlive);
    knob->SetNoReflex(false);
    // The dark wedges (upper right, lower left) in the yellow row's dark shade, 192,192,0.
    EXPECT_EQ(PixelOf(*knob, 40, 20), TColor(0x00C0C0));
}

TEST_F(KnobPixels, SteelLookTilesTheCornersAndTheClearingDisc) {
    auto* knob = Place<TqKnob>(10, 10);
    knob->SetSteel(true);
    EXPECT_EQ(PixelOf(*knob, 0, 0), kSilver);
    EXPECT_EQ(PixelOf(*knob, 1, 1), kWhite);
    EXPECT_EQ(PixelOf(*knob, 27, 7), kWhite); // inside the disc, at odd x and y
    EXPECT_EQ(PixelOf(*knob, 28, 6), kSilver);
}

TEST_F(KnobPixels, TheFocusRectangleShowsOnlyWhileFocused) {
    auto* knob = Place<TqKnob>(10, 10);
    auto* other = Place<TqKnob>(100, 10);
    EXPECT_EQ(PixelOf(*knob, 2, 0), kFuchsia);
    knob->SetFocus();
    EXPECT_NE(PixelOf(*knob, 2, 0), kFuchsia);
    other->SetFocus();
    EXPECT_EQ(PixelOf(*knob, 2, 0), kFuchsia);
    EXPECT_NE(PixelOf(*other, 2, 0), kFuchsia);
}

// 400 and 401 of 0..1000 put the pointer at the same angle; only the reflex wedges move.
TEST_F(KnobPixels, TheReflexWedgesMoveWithTheValuesParity) {
    auto* even = Place<TqKnob>(10, 10);
    auto* odd = Place<TqKnob>(100, 10);
    for (TqKnob* knob : {even, odd})
        knob->SetScaledMax(1000);
    even->SetKnobValue(400);
    odd->SetKnobValue(401);
    EXPECT_TRUE(ComparePictures(*even, *odd, false, "knob-reflex-parity"));
    odd->SetKnobValue(402);
    EXPECT_TRUE(ComparePictures(*even, *odd, true, "knob-reflex-even"));
    even->SetNoReflex(true);
    odd->SetNoReflex(true);
    odd->SetKnobValue(401);
    EXPECT_TRUE(ComparePictures(*even, *odd, true, "knob-no-reflex"));
}

TEST_F(KnobPixels, AnEmptyRangePointsAtTheMinimumEndWithoutTicks) {
    auto* empty = Place<TqKnob>(10, 10);
    auto* atMin = Place<TqKnob>(100, 10);
    empty->SetScaledMin(100);
    atMin->SetTicks(false);
    EXPECT_EQ(empty->Max(), 100);
    EXPECT_TRUE(ComparePictures(*empty, *atMin, true, "knob-empty-range"));
}

// At 45 the triple knob's rings are 5 pixels apart: the innermost face is 18..27, 9 pixels.
TEST_F(KnobPixels, TheSmallestTripleKnobHasANinePixelInnermostFace) {
    auto* trip = Place<TqTripKnob>(10, 10);
    trip->SetheightWidth(45);
    trip->SetNoReflex(true);
    trip->SetPoint(kFuchsia);
    trip->SetPoint2(kFuchsia);
    trip->SetPoint3(kFuchsia);
    trip->SetKnobValue3(100); // the innermost pointer off the row checked below
    EXPECT_EQ(PixelOf(*trip, 17, 22), kSilver);
    EXPECT_EQ(PixelOf(*trip, 18, 22), kBlack);
    EXPECT_EQ(PixelOf(*trip, 20, 22), kSilver);
    EXPECT_EQ(PixelOf(*trip, 26, 22), kBlack);
    EXPECT_EQ(PixelOf(*trip, 27, 22), kSilver);
}

TEST_F(KnobPixels, InnerRingsShowTheirOwnPointers) {
    auto* trip = Place<TqTripKnob>(10, 10); // 75: centre 37, rings 9 apart
    trip->SetPoint2(TColor(0x00FF00));
    trip->SetPoint3(TColor(0xFF0000));
    trip->SetKnobValue(50);
    trip->SetKnobValue2(100);
    trip->SetKnobValue3(0);
    // Up to radius 37 - 9 = 28, 19 and 10 from the centre.
    EXPECT_EQ(PixelOf(*trip, 37, 10), kRed);
    EXPECT_NE(PixelOf(*trip, 37, 9), kRed);
    // Value2 at +144 degrees (down and right), visible outside the innermost face that is
    // painted over it; Value3 at -144 degrees (down and left).
    EXPECT_EQ(PixelOf(*trip, 37 + 9, 37 + 12), TColor(0x00FF00));
    EXPECT_NE(PixelOf(*trip, 37 + 6, 37 + 8), TColor(0x00FF00)); // under the innermost face
    EXPECT_EQ(PixelOf(*trip, 37 - 4, 37 + 5), TColor(0xFF0000));
}

// The part under the outer face is kept between paints: after each change of what it depends
// on, a knob must show exactly what a new knob with all the changes so far shows.
TEST_F(KnobPixels, KeptUnderlayShowsWhatAFreshKnobShowsAfterEveryChange) {
    using TChange = std::function<void(TqTripKnob&)>;
    const std::vector<TChange> changes = {
        [](TqTripKnob& k) { k.SetKnobValue(30), k.SetKnobValue2(31); },
        [](TqTripKnob& k) { k.SetheightWidth(90); },
        [](TqTripKnob& k) { k.SetScaledMin(-50); },
        [](TqTripKnob& k) { k.SetScaledMax(50); },
        [](TqTripKnob& k) { k.SetStep(7); },
        [](TqTripKnob& k) { k.SetKnobCol(kcGreen); },
        [](TqTripKnob& k) { k.SetTickColor(kRed); },
        [](TqTripKnob& k) { k.SetColor(kWhite); },
        [](TqTripKnob& k) { k.SetSteel(true); },
        [](TqTripKnob& k) { k.SetTicks(false); },
    };
    auto* reused = Place<TqTripKnob>(10, 10);
    for (std::size_t i = 0; i < changes.size(); ++i) {
        changes[i](*reused);
        reused->Repaint();
        auto* fresh = new TqTripKnob(form); // not painted before it is placed
        for (std::size_t j = 0; j <= i; ++j)
            changes[j](*fresh);
        fresh->SetParent(form);
        fresh->SetLeft(200);
        EXPECT_TRUE(ComparePictures(*reused, *fresh, true, "knob-kept-" + std::to_string(i)));
        delete fresh;
    }
}
