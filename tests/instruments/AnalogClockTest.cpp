// The analog clock on a fixed clock: hands, dial marks, numerals, ticks and freeing it while
// its timer runs.
#include "KnobFixture.h"

#include "instruments/Qpanel2.h"
#include "platform/core/DateTime.h"
#include "platform/system/Thread.h"

#include <atomic>
#include <chrono>
#include <thread>

using namespace qv;

namespace {
constexpr TColor kLime = 0x00FF00, kGreen = 0x008000, kRed = 0x0000FF, kMagenta = 0xFF00FF;

TClockSource At(int hour, int minute, int second) {
    return [=] { return EncodeDate(2024, 5, 6) + EncodeTime(hour, minute, second, 0); };
}

// The default clock of 100: centre (50, 50), hour hand 32, minute and second hands 45.
class AnalogClock : public KnobTest {
protected:
    TqxAnalogClock* Clock() { return Place<TqxAnalogClock>(10, 10); }
};
} // namespace

TEST_F(AnalogClock, HandsPointAtTheTimeAndTheSecondHandLeavesOutItsEnd) {
    TScopedClock clock(At(9, 0, 30));
    auto* c = Clock();
    EXPECT_EQ(c->ShownHour(), 9);
    EXPECT_EQ(PixelOf(*c, 18, 50), kLime);  // hour tip, straight left
    EXPECT_EQ(PixelOf(*c, 30, 50), kGreen); // inside the hour kite
    EXPECT_EQ(PixelOf(*c, 50, 5), kLime);   // minute tip, straight up
    EXPECT_EQ(PixelOf(*c, 50, 94), kRed);   // second hand, straight down
    EXPECT_NE(PixelOf(*c, 50, 95), kRed);
    // htHand1 puts the shoulders 32 div 3 = 10 pixels out, 18 degrees off the axis: (40, 53).
    EXPECT_EQ(PixelOf(*c, 40, 53), kLime);
    c->SetHHT(htNeedle);
    EXPECT_NE(PixelOf(*c, 40, 53), kLime);
    EXPECT_EQ(PixelOf(*c, 30, 50), kLime); // the needle is one outlined line
    c->SetSek(false);
    EXPECT_NE(PixelOf(*c, 50, 94), kRed);
}

TEST_F(AnalogClock, HourMarksLandExactlyAtTwelveAndAtThirtyDegrees) {
    TScopedClock clock(At(3, 0, 15));
    auto* c = Clock();
    c->SetHHand(0);
    c->SetMHand(0);
    c->SetSHand(0);
    // Mark 60 (twelve o'clock): r = 95 div 2 - 2 = 45, (Trunc(50 + 0) - 1, 4); the box from
    // x - 1 to x + 3 (exclusive), so its left column is 48, not 47.
    EXPECT_EQ(PixelOf(*c, 48, 3), kMagenta);
    EXPECT_EQ(PixelOf(*c, 51, 6), kMagenta);
    EXPECT_NE(PixelOf(*c, 47, 3), kMagenta);
    // With OffSetDots 3, r = 44 and mark 5 (30 degrees) lies at y Trunc(50 + 22) - 1 = 71.
    c->SetMoveTal(3);
    EXPECT_EQ(PixelOf(*c, 86, 70), kMagenta);
    EXPECT_NE(PixelOf(*c, 86, 69), kMagenta);
    // Use3D: the light copy up and left, the dark one down and right, then the mark.
    c->SetUse3D(true);
    c->SetHigh(kLime);
    c->SetShadow(kRed);
    EXPECT_EQ(PixelOf(*c, 85, 69), kLime);
    EXPECT_EQ(PixelOf(*c, 90, 74), kRed);
    EXPECT_EQ(PixelOf(*c, 86, 70), kMagenta);
    c->SetRaised(false);
    EXPECT_EQ(PixelOf(*c, 85, 69), kRed);
}

TEST_F(AnalogClock, NumStyle4ShowsOnlyTheQuarterNumerals) {
    for (int n = 1; n <= 12; ++n) {
        const bool quarter = n % 3 == 0;
        EXPECT_EQ(std::string(ClockNumeral(n, true, true)).empty(), !quarter) << n;
    }
    EXPECT_STREQ(ClockNumeral(3, true, true), "III");
    EXPECT_STREQ(ClockNumeral(6, true, true), "VI");
    EXPECT_STREQ(ClockNumeral(9, true, true), "IX");
    EXPECT_STREQ(ClockNumeral(12, true, true), "XII");
    EXPECT_STREQ(ClockNumeral(4, true, false), "IV");
    EXPECT_STREQ(ClockNumeral(12, false, false), "12");

    TScopedClock clock(At(3, 0, 15));
    auto* all = Clock();
    auto* four = Place<TqxAnalogClock>(150, 10);
    for (auto* c : {all, four})
        c->SetClockStyle(csRoman);
    four->SetNumS(true);
    EXPECT_TRUE(ComparePictures(*all, *four, false, "clock-roman-four"));
    all->SetFont3D(true);
    EXPECT_TRUE(ComparePictures(*all, *four, false, "clock-roman-3d"));
}

TEST_F(AnalogClock, OffsetTimeShiftsAcrossMidnightAndHourZeroEqualsTwelve) {
    TScopedClock midnight(At(0, 30, 20));
    auto* c = Clock();
    int changes = 0;
    c->OnTimeChange = [&](TObject*) { ++changes; };
    // A change of OffSetTime forgets the last second seen (0): second 20 counts as new.
    c->SetOffSetTime(-90);
    EXPECT_EQ(c->ShownHour(), 11);
    EXPECT_EQ(c->ShownMinute(), 0);
    EXPECT_EQ(changes, 1);
    c->SetOffSetTime(-30);
    EXPECT_EQ(c->ShownHour(), 0);
    {
        TScopedClock noon(At(12, 0, 20));
        auto* twelve = Place<TqxAnalogClock>(150, 10);
        EXPECT_EQ(twelve->ShownHour(), 12);
        EXPECT_TRUE(ComparePictures(*c, *twelve, true, "clock-0-vs-12"));
    }
    c->SetOffSetTime(5000);
    EXPECT_EQ(c->OffSetTime(), 1440);
}

TEST_F(AnalogClock, ATickWithinTheSameMinuteChangesNothingWithoutSeconds) {
    std::atomic<int> second{10};
    TScopedClock clock([&] { return EncodeDate(2024, 5, 6) + EncodeTime(8, 20, second, 0); });
    auto* c = Clock();
    c->SetSek(false);
    int changes = 0;
    c->OnTimeChange = [&](TObject*) { ++changes; };
    // Created at 08:20:10 with the last minute seen 20.
    second = 40;
    EXPECT_FALSE(c->IsNew());
    EXPECT_EQ(changes, 0);
    c->SetSek(true);
    EXPECT_TRUE(c->IsNew());
    EXPECT_EQ(c->ShownSecond(), 40);
    EXPECT_EQ(changes, 1);
}

TEST_F(AnalogClock, ItIsAlwaysSquare) {
    auto* c = Clock();
    c->SetHeight(50);
    EXPECT_EQ(c->Height(), 100);
    c->SetWidth(80);
    EXPECT_EQ(c->Height(), 80);
    EXPECT_EQ(c->ClockTimer()->Interval(), 1000u);
}

TEST_F(AnalogClock, FreeingTheClockWhileItsTimerTicksIsClean) {
    std::atomic<int> seconds{0};
    TScopedClock clock(
        [&] { return EncodeDate(2024, 5, 6) + EncodeTime(8, 0, ++seconds % 60, 0); });
    auto* c = Clock();
    std::atomic<int> ticks{0};
    c->OnTimeChange = [&](TObject*) { ++ticks; };
    c->ClockTimer()->SetInterval(1);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (ticks < 3 && std::chrono::steady_clock::now() < end) {
        CheckSynchronize();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_GE(ticks, 3);
    delete c;           // the worker is between ticks or waiting to hand one over
    CheckSynchronize(); // nothing of the freed clock may run now
    Pump();
}

// The dial under the hands is kept between paints: the numerals' font and a face bitmap must
// still reach it. The bitmap's white is transparent and it shows only inside the dial.
TEST_F(AnalogClock, FontAndFaceBitmapReachTheKeptDial) {
    TScopedClock clock(At(3, 0, 15));
    auto* a = Clock();
    auto* b = Place<TqxAnalogClock>(150, 10);
    for (auto* c : {a, b})
        c->SetClockStyle(csNumber);
    EXPECT_TRUE(ComparePictures(*a, *b, true, "clock-same"));
    a->Font()->SetColor(kRed);
    EXPECT_TRUE(ComparePictures(*a, *b, false, "clock-font"));

    TBitmap face;
    face.SetSize(2, 2);
    face.Canvas().Brush().SetColor(TColor(0xFFFFFF));
    face.Canvas().FillRect({0, 0, 2, 2});
    face.Canvas().SetPixel(0, 0, kMagenta);
    b->SetBitmap(face);
    EXPECT_EQ(PixelOf(*b, 20, 40), kMagenta);  // inside the dial, an even pixel of the tiling
    EXPECT_EQ(PixelOf(*b, 21, 40), TColor(0)); // white shows the black face beneath
    EXPECT_NE(PixelOf(*b, 0, 0), kMagenta);    // outside the dial
}

TEST_F(AnalogClock, ExtremeHandsBevelsAndBitmapsPaint) {
    TScopedClock clock(At(3, 0, 15));
    auto* c = Clock();
    c->SetBevel(-5);
    c->SetInner(bvSpace);
    c->SetHHand(65535);
    c->SetmHandWidth(65535);
    c->SethHandWidth(65535);
    c->SetCHDot(65535);
    c->SetDotSize(50);
    EXPECT_EQ(c->DotSize(), 10);
    c->SetMoveNum(-1);
    EXPECT_EQ(c->OffSetNumbers(), 0);
    TBitmap strip;
    strip.SetSize(1, 5000);
    c->SetBitmap(strip);
    EXPECT_EQ(PixelOf(*c, 20, 80), kGreen); // the hour hub covers the whole clock
}
