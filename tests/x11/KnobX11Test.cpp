// Knobs in a real X window: XTest presses, drags and keys turn them, and every turn reaches the
// screen. The mapping and the key table themselves are tested headless (tests/instruments).

// GoogleTest comes before Xlib, whose macros (None, Bool) clash with its names.
#include <gtest/gtest.h>

#include "instruments/Qpanel.h"
#include "package/PackageScope.h"

#include "X11Fixture.h"

#include <X11/keysym.h>

#include <memory>

using namespace qv;
using qv::test::TX11Fixture;

namespace {

class KnobInX11 : public TX11Fixture {
protected:
    void SetUp() override {
        TX11Fixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        m_form = std::make_unique<TForm>(nullptr);
        m_form->SetBounds(40, 40, 240, 120);
        m_form->SetCaption("Knobs");
        m_knob = Place<TqKnob>(10);
        m_triple = Place<TqTripKnob>(100);
        ShowAndSettle(*m_form);
    }
    void TearDown() override {
        m_form.reset();
        TX11Fixture::TearDown();
    }
    template <class Knob> Knob* Place(int left) {
        auto* knob = new Knob(m_form.get());
        knob->SetParent(m_form.get()); // the hit region is built while parented
        knob->SetBounds(left, 10, knob->Width(), knob->Height());
        return knob;
    }
    // Pumps until the value is reached and the screen shows the form's frame.
    bool Shows(const TqKnob& knob, int value) {
        return PumpUntil([&] {
            m_x11->Sync();
            return knob.Value() == value && Capture(*m_form) == m_form->FrameBuffer();
        });
    }

    TPackageScope m_package;
    std::unique_ptr<TForm> m_form;
    TqKnob* m_knob{nullptr};
    TqTripKnob* m_triple{nullptr};
};

} // namespace

TEST_F(KnobInX11, APressTurnsAndFocusesADragFollowsAndTheScreenShowsIt) {
    const TPixelBuffer before = Capture(*m_form);
    FakeMotion(OnScreen(*m_knob, {28, 10})); // straight up: the middle of the range
    FakeButton(1, true);
    ASSERT_TRUE(Shows(*m_knob, 50));
    EXPECT_TRUE(m_knob->Focused());
    EXPECT_NE(Capture(*m_form), before);

    FakeMotion(OnScreen(*m_knob, {10, 18})); // 84 degrees from the minimum end: 29 %
    ASSERT_TRUE(Shows(*m_knob, 29));
    FakeButton(1, false);
    FakeMotion(OnScreen(*m_knob, {28, 50})); // released: moving no longer turns it
    PumpUntil([] { return false; }, 100);
    EXPECT_EQ(m_knob->Value(), 29);
}

TEST_F(KnobInX11, KeysTurnTheFocusedKnob) {
    FakeClick(OnScreen(*m_knob, {28, 10}));
    ASSERT_TRUE(Shows(*m_knob, 50));
    FakeKey(XK_Up);
    ASSERT_TRUE(Shows(*m_knob, 51));
    FakeKey(XK_Page_Up);
    ASSERT_TRUE(Shows(*m_knob, 61));
    FakeKey(XK_End);
    ASSERT_TRUE(Shows(*m_knob, 100));
    FakeKey(XK_Home);
    EXPECT_TRUE(Shows(*m_knob, 0));
}

TEST_F(KnobInX11, ModifierKeysChooseTheRingOfATripleKnob) {
    FakeClick(OnScreen(*m_triple, {37, 12})); // the outer ring, straight up
    ASSERT_TRUE(Shows(*m_triple, 50));
    FakeKeyEvent(XK_Shift_L, true);
    FakeKey(XK_Up);
    FakeKeyEvent(XK_Shift_L, false);
    ASSERT_TRUE(PumpUntil([&] { return m_triple->Value2() == 1; }));
    FakeKeyEvent(XK_Control_L, true);
    FakeKey(XK_End);
    FakeKeyEvent(XK_Control_L, false);
    ASSERT_TRUE(PumpUntil([&] { return m_triple->Value3() == 100; }));
    EXPECT_EQ(m_triple->Value(), 50);
    EXPECT_EQ(m_triple->Value2(), 1);
}
