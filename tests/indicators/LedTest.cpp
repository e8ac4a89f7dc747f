#include "IndicatorFixture.h"

#include "indicators/Qled.h"
#include "platform/core/ClassRegistry.h"
#include "platform/streaming/Reader.h"

using namespace qv;

namespace {
constexpr TColor kRed = 0x0000FF, kMaroon = 0x000080, kBlack = 0, kSilver = 0xC0C0C0,
                 kGrey = 0x808080, kWhite = 0xFFFFFF, kFuchsia = 0xFF00FF;

class Led : public IndicatorTest {
protected:
    TqLed* NewLed(int width, int height, LedStyleType style) {
        auto* led = new TqLed(form);
        led->SetParent(form);
        led->SetBounds(10, 10, width, height);
        led->SetLedStyle(style);
        return led;
    }
};
} // namespace

TEST_F(Led, DefaultsAndPublishedEnabledIsTheLampState) {
    auto* led = new TqLed(form);
    EXPECT_EQ(led->Width(), 17);
    EXPECT_EQ(led->Height(), 17);
    EXPECT_FALSE(led->LedOn());
    EXPECT_TRUE(led->ControlStyle().Contains(csOpaque));
    int changes = 0;
    led->OnChange = [&](TObject*) { ++changes; };
    SetPropText(*led, "Enabled", "True");
    EXPECT_TRUE(led->LedOn());
    EXPECT_TRUE(led->TControl::Enabled()); // the control stays enabled either way
    led->writeLedOn(true);                 // no change: no event
    EXPECT_EQ(changes, 1);
}

TEST_F(Led, SquareStyleCoversTheWholeControlWithItsBevelsAtTwoSizes) {
    TqLed* small = NewLed(17, 17, lstSquare);
    small->writeLedOn(true);
    EXPECT_EQ(PixelOf(*small, 0, 0), kBlack); // outer frame, s = 1
    EXPECT_EQ(PixelOf(*small, 16, 8), kBlack);
    EXPECT_EQ(PixelOf(*small, 2, 8), kBlack);  // inner frame at 3s - 1
    EXPECT_EQ(PixelOf(*small, 1, 8), kSilver); // light bevel
    EXPECT_EQ(PixelOf(*small, 15, 8), kGrey);  // dark bevel
    EXPECT_EQ(PixelOf(*small, 8, 8), kRed);    // the lamp
    EXPECT_EQ(PixelOf(*small, 4, 4), kWhite);  // light patch
    EXPECT_EQ(PixelOf(*small, 7, 4), kSilver);
    EXPECT_EQ(PixelOf(*small, 12, 13), kGrey); // patch given with reversed corners

    TqLed* big = NewLed(40, 25, lstSquare); // s = 2 (only the width counts)
    big->SetLeft(100);
    EXPECT_EQ(PixelOf(*big, 1, 1), kBlack);
    EXPECT_EQ(PixelOf(*big, 0, 0), kBlack);   // a two-pixel pen centred on (s - 1, s - 1)
    EXPECT_EQ(PixelOf(*big, 2, 12), kSilver); // light bevel at 2s - 1
    EXPECT_EQ(PixelOf(*big, 5, 12), kBlack);  // inner frame: 3s - 1 = 5
    EXPECT_EQ(PixelOf(*big, 8, 8), kWhite);   // light patch (4s, 4s)-(6s, 5s)
    EXPECT_EQ(PixelOf(*big, 20, 12), kMaroon);
}

TEST_F(Led, RoundStylesKeepTheParentColourInTheCornersAndLightTheCentre) {
    TqLed* round = NewLed(17, 17, lstRound);
    EXPECT_EQ(PixelOf(*round, 0, 0), kFuchsia); // the parent's colour
    EXPECT_EQ(PixelOf(*round, 8, 0), kBlack);   // outline, width 1
    EXPECT_EQ(PixelOf(*round, 8, 8), kMaroon);  // dark lamp
    round->writeLedOn(true);
    EXPECT_EQ(PixelOf(*round, 8, 8), kRed);

    TqLed* simple = NewLed(34, 34, lstSimpleRound); // s = 2: an outline two pixels wide
    simple->SetLeft(100);
    EXPECT_EQ(PixelOf(*simple, 17, 0), kBlack);
    EXPECT_EQ(PixelOf(*simple, 17, 2), kMaroon); // wide pens are centred on the thin outline
    EXPECT_EQ(PixelOf(*simple, 17, 17), kMaroon);
    EXPECT_EQ(PixelOf(*simple, 0, 0), kFuchsia);

    round->SetSteelLook(true);
    EXPECT_EQ(PixelOf(*round, 1, 1), kWhite); // steel in the corner
    EXPECT_EQ(PixelOf(*round, 0, 0), kSilver);
}

TEST_F(Led, UserColoursAreAskedOnEveryPaint) {
    TqLed* led = NewLed(17, 17, lstRound);
    led->SetLEDColor(lctUser);
    EXPECT_EQ(PixelOf(*led, 8, 8), kMaroon); // no events: the table's colours
    int asked = 0;
    led->OnGetOnColor = [&](TObject*, TColor& c) {
        ++asked;
        EXPECT_EQ(c, kRed);
        c = 0x00FFFF;
    };
    EXPECT_EQ(PixelOf(*led, 8, 8), kMaroon); // dark: the on-event is not asked
    EXPECT_EQ(asked, 0);
    led->writeLedOn(true);
    EXPECT_EQ(PixelOf(*led, 8, 8), TColor(0x00FFFF));
    const int before = asked;
    led->SetLEDColor(lctUser); // the same value still repaints, and asks again
    EXPECT_EQ(asked, before + 1);
}

TEST_F(Led, PulseLightsForAWhileAndBlinkTogglesOnTheFakeClock) {
    TqLed* led = NewLed(17, 17, lstRound);
    int changes = 0;
    led->OnChange = [&](TObject*) { ++changes; };
    led->Pulse(3);
    TTimer* timer = led->LedTimer();
    ASSERT_NE(timer, nullptr);
    EXPECT_TRUE(led->LedOn());
    led->Pulse(4); // reuses the timer; the new interval replaces the old
    EXPECT_EQ(led->LedTimer(), timer);
    EXPECT_EQ(timer->Interval(), 400u);
    Headless().AdvanceClock(399);
    Pump();
    EXPECT_TRUE(led->LedOn());
    Headless().AdvanceClock(1);
    Pump();
    EXPECT_FALSE(led->LedOn());
    EXPECT_EQ(led->LedTimer(), nullptr);

    led->SetBlink(true);
    led->Pulse(2); // ignored while blinking
    EXPECT_FALSE(led->LedOn());
    changes = 0;
    for (int i = 0; i < 4; ++i) {
        Headless().AdvanceClock(500);
        Pump();
    }
    EXPECT_EQ(changes, 4);
    EXPECT_FALSE(led->LedOn());
    led->SetBlink(false);
    EXPECT_EQ(led->LedTimer(), nullptr);
}

TEST_F(Led, BlinkThenIntervalFromAFormDoesNotBlinkInTheDesigner) {
    RegisterClass(TqLed::StaticClassInfo());
    RegisterClass(TForm::StaticClassInfo());
    const char* text =
        "object F: TForm\n object L: TqLed\n  Blink = True\n  BlinkInterval = 300\n end\nend\n";
    auto designed = ReadComponentText(text, {true, nullptr});
    auto* designLed = dynamic_cast<TqLed*>(designed->FindComponent("L"));
    ASSERT_NE(designLed, nullptr);
    EXPECT_TRUE(designLed->Blink());
    EXPECT_EQ(designLed->LedTimer(), nullptr);

    auto running = ReadComponentText(text);
    auto* led = dynamic_cast<TqLed*>(running->FindComponent("L"));
    ASSERT_NE(led->LedTimer(), nullptr);
    EXPECT_EQ(led->LedTimer()->Interval(), 300u);
}

// The LED keeps its off-screen picture between paints: after any sequence of changes it must
// show exactly what a new LED with the final settings shows.
TEST_F(Led, KeptPictureShowsWhatAFreshLampShowsAfterEveryChange) {
    TqLed* reused = NewLed(17, 17, lstRound);
    struct TState {
        LedStyleType style;
        LedColorType color;
        bool on, steel;
        int size;
    };
    const TState states[] = {{lstSquare, lctBlue, true, false, 17},
                             {lstRound, lctyellow, false, true, 34},
                             {lstSimpleRound, lctGreen, true, true, 17},
                             {lstSquare, lctWhite, false, false, 51}};
    int step = 0;
    for (const TState& s : states) {
        const auto apply = [&](TqLed& led) {
            led.SetBounds(led.Left(), 10, s.size, s.size);
            led.SetLedStyle(s.style);
            led.SetLEDColor(s.color);
            led.writeLedOn(s.on);
            led.SetSteelLook(s.steel);
        };
        apply(*reused);
        reused->Repaint(); // the kept picture painted once more with these settings
        TqLed* fresh = NewLed(17, 17, lstRound);
        fresh->SetLeft(150);
        apply(*fresh);
        EXPECT_TRUE(SamePicture(*reused, *fresh, "led-kept-" + std::to_string(step++)));
        delete fresh;
    }
}
