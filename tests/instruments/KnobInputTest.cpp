// The knobs' mapping of points to values, their events, geometry and keys.
#include "KnobFixture.h"

#include "platform/controls/Messages.h"

#include <climits>
#include <set>
#include <string>
#include <vector>

using namespace qv;

namespace {

// Every event of a knob, in order, as "OnChange", "OnMinimum2", ...
struct TEventLog {
    std::vector<std::string> events;
    void Watch(TqKnob& knob) {
        const auto record = [this](const char* name) {
            return [this, name](TObject*) { events.emplace_back(name); };
        };
        knob.OnChange = record("OnChange");
        knob.OnMinimum = record("OnMinimum");
        knob.OnMaximum = record("OnMaximum");
        knob.OnEnter = record("OnEnter");
        knob.OnKeyDown = [this](TObject*, unsigned&, TShiftState) {
            events.emplace_back("OnKeyDown");
        };
        if (auto* dbl = dynamic_cast<TqDblKnob*>(&knob)) {
            dbl->OnMinimum2 = record("OnMinimum2");
            dbl->OnMaximum2 = record("OnMaximum2");
        }
        if (auto* trip = dynamic_cast<TqTripKnob*>(&knob)) {
            trip->OnMinimum3 = record("OnMinimum3");
            trip->OnMaximum3 = record("OnMaximum3");
        }
    }
    std::vector<std::string> Take() { return std::exchange(events, {}); }
};

using Events = std::vector<std::string>;

class Knob : public KnobTest {};

} // namespace

// Straight up is the middle, straight down and the dead zone's part up to 329 degrees give Max,
// the centre gives 81 %, and from 330 degrees on the dead zone gives Min.
TEST_F(Knob, PointsMapOntoTheSweepWithTheDeadZoneSplitAt330) {
    auto* knob = Place<TqKnob>(10, 10); // 57 x 57, centre (28, 28)
    EXPECT_EQ(knob->Where(28, 10), 50);
    EXPECT_EQ(knob->Where(28, 50), 100);
    EXPECT_EQ(knob->Where(28, 28), 81);
    EXPECT_EQ(knob->Where(27, 42), 100); // 329 degrees from the minimum end
    EXPECT_EQ(knob->Where(26, 50), 0);   // 330
    EXPECT_EQ(knob->Where(33, 35), 100); // 289: 99.7 % rounds to 100
    EXPECT_EQ(knob->Where(10, 18), 29);  // 84 degrees: 29 %, exactly 29 of 0..100, not 28
    knob->SetScaledMin(-50);
    knob->SetScaledMax(50);
    EXPECT_EQ(knob->Where(28, 10), 0);
    EXPECT_EQ(knob->Where(26, 50), -50);
}

TEST_F(Knob, ARangeOf1000TurnsInStepsOf10ByMouseAndReachesEveryValueByKeys) {
    auto* knob = Place<TqKnob>(10, 10);
    knob->SetScaledMax(1000);
    std::set<int> byMouse;
    for (int x = 0; x < 57; ++x)
        for (int y = 0; y < 57; ++y)
            byMouse.insert(knob->Where(x, y));
    EXPECT_EQ(byMouse.size(), 101u);
    for (int v : byMouse)
        EXPECT_EQ(v % 10, 0) << v;

    knob->SetFocus();
    for (int expected = 1; expected <= 1000; ++expected) {
        Key(VK_UP);
        ASSERT_EQ(knob->Value(), expected);
    }
}

TEST_F(Knob, TheFullIntegerRangeMapsAndStepsWithoutOverflow) {
    auto* knob = Place<TqKnob>(10, 10);
    knob->SetScaledMin(INT_MIN);
    knob->SetScaledMax(INT_MAX);
    EXPECT_EQ(knob->Where(26, 50), INT_MIN);
    EXPECT_EQ(knob->Where(28, 50), INT_MAX);
    EXPECT_EQ(knob->Where(28, 10), -1); // INT_MIN + 4294967295 * 50 / 100
    knob->SetFocus();
    Key(VK_PRIOR);
    EXPECT_EQ(knob->Value(), 429496729); // 0 + 4294967295 div 10
    Key(VK_END);
    Key(VK_UP);
    EXPECT_EQ(knob->Value(), INT_MAX);
}

TEST_F(Knob, ValueEventsAreTestedOnTheArgumentAndRaisedEveryTime) {
    auto* knob = Place<TqKnob>(10, 10);
    TEventLog log;
    log.Watch(*knob);
    knob->SetKnobValue(0);
    knob->SetKnobValue(0);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMinimum", "OnChange", "OnMinimum"}));
    knob->SetKnobValue(-5);
    EXPECT_EQ(knob->Value(), 0);
    EXPECT_EQ(log.Take(), Events{"OnChange"});
    knob->SetKnobValue(250);
    EXPECT_EQ(knob->Value(), 100);
    EXPECT_EQ(log.Take(), Events{"OnChange"});
}

TEST_F(Knob, TheFirstPressFocusesBeforeItTurnsAndKeysNeverRaiseOnKeyDown) {
    auto* knob = Place<TqKnob>(10, 10);
    TEventLog log;
    log.Watch(*knob);
    Click(*knob, 28, 10);
    EXPECT_EQ(knob->Value(), 50);
    // The press and the release each apply the position.
    EXPECT_EQ(log.Take(), (Events{"OnEnter", "OnChange", "OnChange"}));
    Key(VK_LEFT);
    Key('A');
    EXPECT_EQ(knob->Value(), 49);
    EXPECT_EQ(log.Take(), Events{"OnChange"});
}

TEST_F(Knob, ARightPressFocusesAndTurnsButOnlyTheLeftButtonDrags) {
    auto* knob = Place<TqKnob>(10, 10);
    Press(*knob, 28, 10, TMouseButton::Right);
    EXPECT_TRUE(knob->Focused());
    EXPECT_EQ(knob->Value(), 50);
    Headless().MouseMove(form->NativeWindow(), {10 + 28, 10 + 50}, isRight);
    Pump();
    EXPECT_EQ(knob->Value(), 50);
    Release(*knob, 28, 50, TMouseButton::Right);

    Press(*knob, 28, 10);
    Headless().MouseMove(form->NativeWindow(), {10 + 28, 10 + 50}, isLeft);
    Pump();
    EXPECT_EQ(knob->Value(), 100);
    // Dragging goes on beyond the knob's bounds.
    Headless().MouseMove(form->NativeWindow(), {10 - 100, 10 + 28}, isLeft);
    Pump();
    EXPECT_EQ(knob->Value(), 19); // straight left: 55 degrees from the minimum end
    Release(*knob, 28, 10);
    EXPECT_EQ(knob->Value(), 50);
    Headless().MouseMove(form->NativeWindow(), {10 + 28, 10 + 50}, isLeft);
    Pump();
    EXPECT_EQ(knob->Value(), 50); // released: no longer dragging
}

TEST_F(Knob, StaysSquareWithinItsLimitsFollowingTheSideThatChanged) {
    auto* knob = Place<TqKnob>(10, 10);
    knob->SetheightWidth(200);
    EXPECT_EQ(knob->Width(), 120);
    EXPECT_EQ(knob->Height(), 120);
    knob->SetBounds(10, 10, 120, 80);
    EXPECT_EQ(knob->Width(), 80);
    EXPECT_EQ(knob->Height(), 80);
    for (int side : {-5, 0}) {
        knob->SetheightWidth(side);
        EXPECT_EQ(knob->Width(), 45);
    }
    knob->SetheightWidth(10000);
    EXPECT_EQ(knob->Height(), 120);
}

TEST_F(Knob, AnswersTheMouseOnlyOnceItsBoundsAreSetWhileParented) {
    auto* knob = new TqKnob(form);
    knob->SetBounds(10, 10, 57, 57);
    knob->SetParent(form);
    Click(*knob, 28, 10);
    EXPECT_TRUE(knob->Focused());
    EXPECT_EQ(knob->Value(), 0);
    knob->SetBounds(10, 10, 57, 57);
    Click(*knob, 28, 10);
    EXPECT_EQ(knob->Value(), 50);
}

TEST_F(Knob, APressOnTheTickRingOrACornerOnlyFocuses) {
    auto* knob = Place<TqKnob>(10, 10);
    TEventLog log;
    log.Watch(*knob);
    Click(*knob, 28, 4); // between the face (inset 8) and the edge
    Click(*knob, 1, 1);
    EXPECT_TRUE(knob->Focused());
    EXPECT_EQ(log.Take(), Events{"OnEnter"});
}

TEST_F(Knob, PageKeysLandOnTheEndsAndSmallRangesStepByOne) {
    auto* knob = Place<TqKnob>(10, 10);
    knob->SetFocus();
    knob->SetKnobValue(90);
    TEventLog log;
    log.Watch(*knob);
    Key(VK_PRIOR); // 90 + 10 is not below Max: Max itself
    EXPECT_EQ(knob->Value(), 100);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMaximum"}));
    Key(VK_UP); // at Max: nothing
    EXPECT_TRUE(log.Take().empty());
    Key(VK_NEXT);
    EXPECT_EQ(knob->Value(), 90);
    Key(VK_HOME);
    EXPECT_EQ(knob->Value(), 0);

    knob->SetScaledMax(5); // (5 - 0) div 10 = 0: the page step is 1
    for (int expected = 1; expected <= 5; ++expected) {
        Key(VK_PRIOR);
        EXPECT_EQ(knob->Value(), expected);
    }
}

TEST_F(Knob, ShiftAndCtrlChooseTheRingOfConcentricKnobs) {
    auto* dbl = Place<TqDblKnob>(10, 10);
    auto* trip = Place<TqTripKnob>(100, 10);
    dbl->SetFocus();
    Key(VK_UP, isCtrl); // no third ring: Value
    Key(VK_UP, isShift);
    Key(VK_UP, isShift);
    EXPECT_EQ(dbl->Value(), 1);
    EXPECT_EQ(dbl->Value2(), 2);

    trip->SetFocus();
    Key(VK_UP, isCtrl);
    Key(VK_UP, isShift);
    Key(VK_RIGHT);
    EXPECT_EQ(trip->Value(), 1);
    EXPECT_EQ(trip->Value2(), 1);
    EXPECT_EQ(trip->Value3(), 1);
}

TEST_F(Knob, EveryKeyOnATripleKnobPassesTheChosenValueToItsSetter) {
    auto* trip = Place<TqTripKnob>(10, 10);
    trip->SetFocus();
    trip->SetKnobValue(5);
    trip->SetKnobValue3(7);
    TEventLog log;
    log.Watch(*trip);
    Headless().KeyDown(form->NativeWindow(), 'Q');
    Pump();
    EXPECT_EQ(log.Take(), Events{"OnChange"});
    Headless().KeyDown(form->NativeWindow(), VK_CONTROL, isCtrl);
    Pump();
    EXPECT_EQ(log.Take(), Events{"OnChange"});
    Headless().KeyDown(form->NativeWindow(), VK_HOME, isCtrl);
    Pump();
    EXPECT_EQ(trip->Value3(), 0);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMinimum3"}));
    EXPECT_EQ(trip->Value(), 5);
}

TEST_F(Knob, ChangingTheRangeReappliesEveryRingsValue) {
    auto* dbl = Place<TqDblKnob>(10, 10);
    dbl->SetKnobValue2(10);
    TEventLog log;
    log.Watch(*dbl);
    dbl->SetScaledMin(20);
    EXPECT_EQ(dbl->Value(), 20);
    EXPECT_EQ(dbl->Value2(), 20);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnChange"})); // both arguments lay below 20
    dbl->SetScaledMax(10); // not below Min: Max becomes 20 as well
    EXPECT_EQ(dbl->Max(), 20);
    EXPECT_EQ(log.Take(), (Events{"OnChange", "OnMinimum", "OnMaximum", "OnChange", "OnMinimum2",
                                  "OnMaximum2"}));
}

// On a triple knob of 75 the rings' faces are 8, 17 and 26 pixels inside the bounds: the
// innermost ring that holds the press turns.
TEST_F(Knob, APressTurnsOnlyTheInnermostRingUnderIt) {
    auto* trip = Place<TqTripKnob>(10, 10); // centre (37, 37)
    Click(*trip, 37, 30);                   // innermost face: 26..49
    EXPECT_EQ(trip->Value3(), 50);
    EXPECT_EQ(trip->Value2(), 0);
    EXPECT_EQ(trip->Value(), 0);
    Click(*trip, 37, 20); // middle ring: 17..58
    EXPECT_EQ(trip->Value2(), 50);
    Click(*trip, 37, 10); // outer ring
    EXPECT_EQ(trip->Value(), 50);
    EXPECT_EQ(trip->Value3(), 50);
    Headless().MouseMove(form->NativeWindow(), {10 + 37, 10 + 60}, isLeft);
    Pump();
    EXPECT_EQ(trip->Value(), 50); // released: the drag has ended
}

TEST_F(Knob, AutoFocusTakesTheFocusBeforeOnMouseEnter) {
    auto* knob = Place<TqKnob>(10, 10);
    auto* plain = Place<TqKnob>(100, 10);
    knob->SetAutoFocus(true);
    bool focusedOnEnter = false;
    knob->OnMouseEnter = [&](TObject*) { focusedOnEnter = knob->Focused(); };
    Headless().MouseMove(form->NativeWindow(), {100 + 28, 10 + 28});
    Pump();
    EXPECT_FALSE(plain->Focused());
    Headless().MouseMove(form->NativeWindow(), {10 + 28, 10 + 28});
    Pump();
    EXPECT_TRUE(focusedOnEnter);
}

// SetFocus raises on a hidden form: a press there turns the knob without focusing it.
TEST_F(Knob, APressWhereTheKnobCannotTakeTheFocusStillTurnsIt) {
    auto* knob = Place<TqKnob>(10, 10);
    form->Hide();
    knob->Perform(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(28, 10));
    EXPECT_EQ(knob->Value(), 50);
    EXPECT_FALSE(knob->Focused());
}
