// The scope: where samples and grid lines land, pushes and their veto, the range and size
// limits, wild samples, and form files.
#include "LiveDisplayFixture.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <vector>

using namespace qv;

namespace {

class ScopeTest : public LiveDisplayTest {
protected:
    // A scope on the form with only its first beam (no grid), its samples all 0.
    TqScope* PlainScope() {
        auto* scope = Place<TqScope>();
        scope->Setgrid(false);
        return scope;
    }
    // Pushes `values`, oldest first.
    static void PushAll(TqScope& scope, const std::vector<int>& values) {
        for (int v : values) {
            scope.SetIn1(v);
            scope.Push();
        }
    }
    const TColor beam = TqScope::Defaults::Beam1Color;
    const TColor face = TqScope::Defaults::FaceColor;
    const TColor grid = TqScope::Defaults::GridColor;
};

TEST_F(ScopeTest, SampleIIsDrawnAtTheRightEdgeLessOneLessI) {
    auto* scope = PlainScope();
    // Sample 5 is 50 (row 100 - 50 - 1 = 49), the samples beside it 0 (row 99).
    PushAll(*scope, {50, 0, 0, 0, 0, 0});
    EXPECT_EQ(scope->Sample(1, 5), 50);
    auto shot = Shot(*scope);
    const int right = scope->Width();
    EXPECT_EQ(At(shot, right - 1 - 5, 49), beam);
    EXPECT_EQ(At(shot, right - 1 - 4, 49), face);
    EXPECT_EQ(At(shot, right - 1 - 6, 49), face);
    EXPECT_EQ(CountColor(shot, {0, 49, right, 50}, beam), 1);
    // The newest sample (0) sits in the bottom row at the last column.
    EXPECT_EQ(At(shot, right - 1, 99), beam);
}

TEST_F(ScopeTest, AjustLiftsTheTraceWithoutChangingTheSamples) {
    auto* scope = PlainScope();
    PushAll(*scope, {50, 0}); // sample 1 (x = 120) is 50: row 49, the top of its peak
    auto before = Shot(*scope);
    EXPECT_EQ(At(before, 120, 49), beam);
    EXPECT_EQ(At(before, 120, 48), face);
    scope->SetAjust1(10);
    EXPECT_EQ(scope->Sample(1, 1), 50);
    auto after = Shot(*scope);
    EXPECT_EQ(At(after, 120, 39), beam);
    EXPECT_EQ(At(after, 120, 38), face);
    EXPECT_EQ(At(after, 121, 89), beam);
}

TEST_F(ScopeTest, TheGridCountsFromTheRightAndLeavesOutTheLastRowAndColumn) {
    auto* scope = Place<TqScope>();
    scope->SetUse1(false);
    auto shot = Shot(*scope);
    const int right = scope->Width(); // 122: vertical lines at 112, 102, ..., 2
    for (int x = right - 10; x > 0; x -= 10) {
        EXPECT_EQ(At(shot, x, 0), grid) << x;
        EXPECT_EQ(At(shot, x, 55), grid) << x;
        EXPECT_EQ(At(shot, x, 99), face) << x;
    }
    EXPECT_EQ(At(shot, right - 5, 55), face);
    // Horizontal lines at the values 10 .. 90, rows 90 .. 10, without the last column.
    for (int y = 10; y <= 90; y += 10) {
        EXPECT_EQ(At(shot, 0, y), grid) << y;
        EXPECT_EQ(At(shot, right - 2, y), grid) << y;
        EXPECT_EQ(At(shot, right - 1, y), face) << y;
    }
    EXPECT_EQ(At(shot, 0, 5), face);
    EXPECT_EQ(CountColor(shot, {0, 0, right, 1}, grid), 12);
}

TEST_F(ScopeTest, GridStepsOfZeroOrBelowSkipOrActAsTheirMagnitude) {
    auto* scope = Place<TqScope>();
    scope->SetUse1(false);
    scope->SetStepX(0);
    scope->SetStepY(0);
    auto empty = Shot(*scope);
    EXPECT_EQ(CountColor(empty, {0, 0, scope->Width(), scope->Height()}, grid), 0);
    scope->SetStepX(-1); // limited to 0..Width
    EXPECT_EQ(scope->GridXstep(), 0);
    scope->SetStepY(-10);
    auto rows = Shot(*scope);
    EXPECT_EQ(At(rows, 0, 50), grid);
    // A wide range draws each row once, not once per value.
    scope->SetMin(INT_MIN);
    scope->SetMax(INT_MAX);
    scope->SetStepY(1);
    auto dense = Shot(*scope);
    EXPECT_EQ(CountColor(dense, {0, 0, 1, scope->Height()}, grid), 99);
}

TEST_F(ScopeTest, AVetoedPushChangesNothingAndDoesNotRepaint) {
    auto* scope = PlainScope();
    Pump();
    int paints = 0;
    scope->OnPaint = [&](TObject*) { ++paints; };
    scope->OnBeforePush = [](TObject*, bool& doPush) { doPush = false; };
    scope->SetIn1(70);
    scope->Push();
    Pump();
    EXPECT_EQ(paints, 0);
    EXPECT_EQ(scope->Sample(1, 0), 0);
    scope->OnBeforePush = nullptr;
    scope->Push();
    EXPECT_EQ(paints, 1); // at once, not when the loop comes round
    EXPECT_EQ(scope->Sample(1, 0), 70);
}

TEST_F(ScopeTest, AutoPushPushesOnEachChannelSetterButNotWhileReading) {
    auto* scope = PlainScope();
    int asks = 0;
    scope->OnBeforePush = [&](TObject*, bool&) { ++asks; };
    scope->SetPush(true);
    scope->SetIn1(10);
    scope->SetIn2(20);
    EXPECT_EQ(asks, 2);
    EXPECT_EQ(scope->Sample(1, 1), 10);
    EXPECT_EQ(scope->Sample(2, 1), 0);
    EXPECT_EQ(scope->Sample(1, 0), 10);
    EXPECT_EQ(scope->Sample(2, 0), 20);

    auto root = ReadComponentText("object F: TForm\n  object S: TqScope\n    AutoPush = True\n"
                                  "    Channel1 = 5\n    Channel2 = 6\n  end\nend\n");
    auto* read = dynamic_cast<TqScope*>(root->FindComponent("S"));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->Channel1(), 5);
    EXPECT_EQ(read->Sample(1, 0), 0);
}

TEST_F(ScopeTest, KeepsExactlyTheLast1001SamplesOverAMillionPushes) {
    TqScope scope(nullptr); // not shown: the pushes cost no paint
    for (int i = 1; i <= 1000000; ++i) {
        scope.SetIn1(i);
        scope.SetIn2(-i);
        scope.Push();
    }
    EXPECT_EQ(scope.Sample(1, 0), 1000000);
    EXPECT_EQ(scope.Sample(1, 1000), 1000000 - 1000);
    EXPECT_EQ(scope.Sample(2, 1000), -(1000000 - 1000));
}

TEST_F(ScopeTest, SetAllChannelWritesSamples0To999AndIgnoresNullData) {
    TqScope scope(nullptr);
    for (int i = 0; i < 1001; ++i) {
        scope.SetIn1(-1);
        scope.Push();
    }
    std::vector<int> data(1000);
    for (int i = 0; i < 1000; ++i)
        data[static_cast<std::size_t>(i)] = i;
    scope.SetAllChannel1(data.data());
    EXPECT_EQ(scope.Sample(1, 0), 0);
    EXPECT_EQ(scope.Sample(1, 999), 999);
    EXPECT_EQ(scope.Sample(1, 1000), -1);
    EXPECT_EQ(scope.Sample(2, 999), 0);
    scope.SetAllChannel2(nullptr);
    scope.SetAllChannel1(nullptr);
    EXPECT_EQ(scope.Sample(1, 999), 999);
}

TEST_F(ScopeTest, TheRangeKeepsMinAtMostMaxAndAZeroRangePaints) {
    auto* scope = PlainScope();
    scope->SetMin(150);
    EXPECT_EQ(scope->Min(), 99);
    scope->SetMax(-5);
    EXPECT_EQ(scope->Max(), 100);
    scope->SetMax(99);
    EXPECT_EQ(scope->Max(), 99); // Min = Max is reachable
    PushAll(*scope, {99, 99});
    auto shot = Shot(*scope);
    EXPECT_EQ(At(shot, scope->Width() - 1, scope->Height() - 1), beam);
    // The bounds step back from the ends of the integer range instead of wrapping.
    scope->SetMin(INT_MIN);
    scope->SetMax(INT_MIN);
    scope->SetMin(INT_MAX);
    EXPECT_EQ(scope->Min(), INT_MIN);
}

TEST_F(ScopeTest, SamplesAndAjustAtTheIntegerLimitsPaintClipped) {
    auto* scope = PlainScope();
    scope->SetUse2(true);
    const std::vector<int> high(1000, INT_MAX), low(1000, INT_MIN);
    scope->SetAllChannel1(high.data());
    scope->SetAllChannel2(low.data());
    scope->SetAjust1(INT_MAX); // 2^32 - 2 units above Min: far above the top
    scope->SetAjust2(INT_MIN); // 2^32 units below Min: far below the bottom
    auto shot = Shot(*scope);
    const TRect all{0, 0, scope->Width(), scope->Height()};
    EXPECT_EQ(CountColor(shot, all, beam), 0);
    EXPECT_EQ(CountColor(shot, all, TqScope::Defaults::Beam2Color), 0);
    // One sample back in range draws its peak from the far edge, clipped to the control.
    scope->SetAjust1(0);
    scope->SetIn1(50);
    scope->Push();
    auto peak = Shot(*scope);
    EXPECT_EQ(At(peak, scope->Width() - 1, 49), beam);
    EXPECT_EQ(At(peak, scope->Width() - 1, 0), beam);
    EXPECT_EQ(At(peak, scope->Width() - 2, 0), face);
}

TEST_F(ScopeTest, TheSizeStaysWithinItsLimitsOnEveryPath) {
    auto* scope = Place<TqScope>();
    scope->SetBounds(0, 0, 5, 5);
    EXPECT_EQ(scope->Width(), TqScope::MinWidth);
    EXPECT_EQ(scope->Height(), TqScope::MinHeight);
    scope->SetWidth(5000);
    EXPECT_EQ(scope->Width(), TqScope::MaxWidth);
    scope->SetAlign(alTop); // the form is 1200 wide
    EXPECT_EQ(scope->Width(), TqScope::MaxWidth);
    scope->SetAlign(alLeft);
    EXPECT_GE(scope->Height(), TqScope::MinHeight);
    EXPECT_LE(scope->Width(), TqScope::MaxWidth);
    // At the full width the oldest sample is drawn too.
    scope->SetAlign(alNone);
    scope->SetBounds(0, 0, 1000, 100);
    scope->SetStepX(2000);
    EXPECT_EQ(scope->GridXstep(), 1000);
}

TEST_F(ScopeTest, FormFilesKeepTheRangeTheGridAndTheWildValues) {
    auto root =
        ReadComponentText("object F: TForm\n  object S: TqScope\n    Min = 200\n    Max = 500\n"
                          "    GridXstep = 900\n    GridYstep = -1\n    Channel1 = 2147483647\n"
                          "    Ajust1 = -2147483648\n    Width = 1000\n  end\nend\n");
    auto* scope = dynamic_cast<TqScope*>(root->FindComponent("S"));
    ASSERT_NE(scope, nullptr);
    EXPECT_EQ(scope->Min(), 200);
    EXPECT_EQ(scope->Max(), 500);
    EXPECT_EQ(scope->GridXstep(), 900);
    ExpectRoundTrip(*root);

    auto equal = ReadComponentText(
        "object F: TForm\n  object S: TqScope\n    Min = 7\n    Max = 7\n  end\nend\n");
    auto* flat = dynamic_cast<TqScope*>(equal->FindComponent("S"));
    ASSERT_NE(flat, nullptr);
    EXPECT_EQ(flat->Min(), 7);
    EXPECT_EQ(flat->Max(), 7);
    ExpectRoundTrip(*equal);
}

} // namespace

namespace {

// The drawing step by step with the canvas's lines, value by value as the steps are written:
// face, the grid from the right, then each beam from (Rt, y(s0)) through (Rt - 1 - i, y(s_i)).
// The real-number products are taken exactly (long double would truncate 37 x 20/37 to 19).
void DrawLiterally(TCanvas& c, const TqScope& s) {
    const int rt = s.Width(), b = s.Height();
    const long long min = s.Min(), range = std::max<long long>(1LL * s.Max() - s.Min(), 1);
    c.Brush().SetColor(s.FaceColor());
    c.FillRect({0, 0, rt, b});
    c.Pen().SetColor(s.GridColor());
    if (s.ShowGrid()) {
        for (int x = 1; x <= rt - 1; ++x)
            if (s.GridXstep() != 0 && x % s.GridXstep() == 0) {
                c.MoveTo(rt - x, 0);
                c.LineTo(rt - x, b - 1);
            }
        for (long long v = min + 1; v <= s.Max() - 1; ++v)
            if (s.GridYstep() != 0 && v % s.GridYstep() == 0) {
                const long long q = (v - min) * 100 / range * b; // 100 x p x sy
                const long long whole = q / 100, rest = q % 100;
                const int y =
                    b - static_cast<int>(whole + (rest > 50 || (rest == 50 && whole % 2) ? 1 : 0));
                c.MoveTo(0, y);
                c.LineTo(rt - 1, y);
            }
    }
    const auto beam = [&](int channel, int ajust, TColor color) {
        const auto y = [&](int sample) {
            const long long n = 1LL * sample + ajust - min;
            return b - static_cast<int>(n * b / range) - 1;
        };
        c.Pen().SetColor(color);
        c.MoveTo(rt, y(s.Sample(channel, 0)));
        for (int i = 0; i <= rt; ++i)
            c.LineTo(rt - (i + 1), y(s.Sample(channel, i)));
    };
    if (s.ShowBeam1()) beam(1, s.Ajust1(), s.Beam1Color());
    if (s.ShowBeam2()) beam(2, s.Ajust2(), s.Beam2Color());
}

} // namespace

TEST_F(ScopeTest, PaintsWhatTheStepsDrawOneByOne) {
    auto* scope = Place<TqScope>();
    scope->SetUse2(true);
    unsigned seed = 11;
    const auto next = [&seed] { return seed = seed * 1103515245u + 12345u, (seed >> 8) % 1000u; };
    for (int round = 0; round < 10; ++round) {
        scope->SetBounds(0, 0, 20 + static_cast<int>(next() % 980),
                         35 + static_cast<int>(next() % 200));
        scope->SetMax(static_cast<int>(next()) - 300);
        scope->SetMin(static_cast<int>(next() % 300) - 350);
        scope->SetStepX(static_cast<int>(next() % 40));
        scope->SetStepY(static_cast<int>(next() % 60) - 10);
        scope->SetAjust2(static_cast<int>(next() % 50) - 25);
        for (int i = 0; i < TqScope::SampleCount; ++i) {
            scope->SetIn1(static_cast<int>(next()) - 400);
            scope->SetIn2(static_cast<int>(next() % 200) - 100);
            scope->Push();
        }
        TBitmap painted;
        scope->PaintTo(painted);
        TBitmap expected(scope->Width(), scope->Height());
        DrawLiterally(expected.Canvas(), *scope);
        const long differing = test::CountDifferentPixels(painted.Pixels(), expected.Pixels());
        EXPECT_EQ(differing, 0) << "round " << round << ": "
                                << test::WritePixelEvidence(std::string(QV_TEST_OUT) +
                                                                "/instruments",
                                                            "scope-" + std::to_string(round),
                                                            painted.Pixels(), expected.Pixels());
    }
}
