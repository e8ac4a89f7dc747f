// The spectrum: bar geometry, caps, separators and scan lines, the design staircase, channel
// limits and rejected indices, wild values, and form files.
#include "LiveDisplayFixture.h"

#include <algorithm>
#include <climits>
#include <vector>

using namespace qv;

namespace {

class SpectrumTest : public LiveDisplayTest {
protected:
    using D = TqxSpectrum::Defaults;
    // A spectrum of `n` bars without the LED look, every channel at `value`.
    TqxSpectrum* Flat(int n, int value) {
        auto* s = Place<TqxSpectrum>();
        s->SetLed(false);
        s->SetNum(n);
        for (int i = 0; i < TqxSpectrum::ChannelCount; ++i)
            s->SetChannel(i, value);
        return s;
    }
};

TEST_F(SpectrumTest, FourBarsOn100PixelsWithSeparators) {
    auto* s = Flat(4, 50); // bars rise to row 50, caps on rows 50 and 51
    auto shot = Shot(*s);
    for (int x2 : {24, 49, 74, 99}) {
        EXPECT_EQ(At(shot, x2, 80), D::FaceColor) << x2; // separator
        EXPECT_EQ(At(shot, x2 - 1, 80), D::BarColor) << x2;
        EXPECT_EQ(At(shot, x2, 50), D::FaceColor) << x2; // the cap stops before x2
    }
    for (int x1 : {0, 25, 50, 75}) {
        EXPECT_EQ(At(shot, x1, 49), D::FaceColor) << x1;
        EXPECT_EQ(At(shot, x1, 50), D::TopColor) << x1;
        EXPECT_EQ(At(shot, x1, 51), D::TopColor) << x1;
        EXPECT_EQ(At(shot, x1, 52), D::BarColor) << x1;
        EXPECT_EQ(At(shot, x1, 99), D::BarColor) << x1;
    }
    // Without UseSep each separator falls on the next bar's first column, which covers it.
    s->SetSplit(false);
    auto joined = Shot(*s);
    EXPECT_EQ(CountColor(joined, {0, 80, 100, 81}, D::BarColor), 100);
}

TEST_F(SpectrumTest, LedLookCutsOddRowsOverAnUnlitBackground) {
    auto* s = Flat(4, 50);
    s->SetLed(true);
    s->SetTop(3);
    auto shot = Shot(*s);
    EXPECT_EQ(At(shot, 10, 20), D::BarOffColor);
    EXPECT_EQ(At(shot, 10, 21), D::FaceColor);
    EXPECT_EQ(At(shot, 10, 50), D::TopColor);
    EXPECT_EQ(At(shot, 10, 51), D::FaceColor); // scan line over the cap
    EXPECT_EQ(At(shot, 10, 52), D::TopColor);
    EXPECT_EQ(At(shot, 10, 53), D::FaceColor);
    EXPECT_EQ(At(shot, 10, 54), D::BarColor);
    EXPECT_EQ(At(shot, 10, 99), D::FaceColor);
    EXPECT_EQ(CountColor(shot, {0, 99, 100, 100}, D::FaceColor), 100);
}

TEST_F(SpectrumTest, AtDesignTimeBarIShows100LessI) {
    auto* s = Flat(20, 0); // 5 pixels a bar
    s->SetDesigning(true);
    s->Invalidate();
    auto shot = Shot(*s);
    for (int i : {0, 5, 10, 19}) {
        const int x = i * 5;
        const int y = 100 - (100 - i);
        EXPECT_EQ(At(shot, x, y), D::TopColor) << i;
        if (y > 0) {
            EXPECT_EQ(At(shot, x, y - 1), D::FaceColor) << i;
        }
    }
}

TEST_F(SpectrumTest, ChannelsAreLimitedExceptThroughSetAllChannel) {
    TqxSpectrum s(nullptr);
    s.SetChannel(0, 250);
    EXPECT_EQ(s.GetChannel(0), 100);
    s.SetChannel(1, -5);
    EXPECT_EQ(s.GetChannel(1), 0);
    for (int bad : {-1, 100, 255}) {
        s.SetChannel(bad, 50);
        EXPECT_EQ(s.GetChannel(bad), 0) << bad;
    }
    for (int i = 2; i < TqxSpectrum::ChannelCount; ++i)
        EXPECT_EQ(s.GetChannel(i), 0) << i;

    std::vector<int> wild(TqxSpectrum::ChannelCount, INT_MAX);
    wild[1] = INT_MIN;
    s.SetAllChannel(wild.data());
    EXPECT_EQ(s.GetChannel(0), INT_MAX);
    EXPECT_EQ(s.GetChannel(1), INT_MIN);
    s.SetAllChannel(nullptr);
    EXPECT_EQ(s.GetChannel(1), INT_MIN);

    // SetMin(200) above Max 100 gives 99 and lifts every channel to it.
    s.SetMin(200);
    EXPECT_EQ(s.Min(), 99);
    EXPECT_EQ(s.GetChannel(1), 99);
    EXPECT_EQ(s.GetChannel(0), 100);
    s.SetMax(99);
    EXPECT_EQ(s.Max(), 99); // Min = Max
    EXPECT_EQ(s.GetChannel(0), 99);
    EXPECT_EQ(s.GetPercent(99), 0);
}

TEST_F(SpectrumTest, WildValuesAndAZeroRangePaintInsideTheControl) {
    auto* s = Flat(100, 0);
    s->SetNum(100);
    std::vector<int> wild(TqxSpectrum::ChannelCount);
    for (int i = 0; i < TqxSpectrum::ChannelCount; ++i)
        wild[static_cast<std::size_t>(i)] = i % 2 ? INT_MAX : INT_MIN;
    s->SetAllChannel(wild.data());
    int paints = 0;
    s->OnPaint = [&](TObject*) { ++paints; };
    auto shot = Shot(*s);
    EXPECT_GE(paints, 1);
    // An odd bar (far above the top) is lit from top to bottom; an even one (far below) not.
    EXPECT_EQ(At(shot, 1 * 1, 50), D::FaceColor); // 1-pixel bars: x2 = x1 with UseSep
    s->SetSplit(false);
    auto joined = Shot(*s);
    EXPECT_EQ(At(joined, 1, 50), D::BarColor);
    EXPECT_EQ(At(joined, 0, 50), D::FaceColor);
    s->SetMin(100);
    EXPECT_EQ(s->Min(), 100);
    EXPECT_NO_THROW(Shot(*s));
}

TEST_F(SpectrumTest, SizeAndSubrangesAreLimited) {
    auto* s = Place<TqxSpectrum>();
    s->SetBounds(0, 0, 3, 3);
    EXPECT_EQ(s->Width(), TqxSpectrum::MinWidth);
    EXPECT_EQ(s->Height(), TqxSpectrum::MinHeight);
    s->SetNum(255);
    EXPECT_EQ(s->NumberOfChannels(), 100);
    s->SetNum(0);
    EXPECT_EQ(s->NumberOfChannels(), 1);
    s->SetTop(1);
    EXPECT_EQ(s->TopSize(), 2);
    s->SetTop(11);
    EXPECT_EQ(s->TopSize(), 10);
}

TEST_F(SpectrumTest, FormFilesReadTheRangeAsWritten) {
    auto root = ReadComponentText("object F: TForm\n  object S: TqxSpectrum\n    TopSize = 4\n"
                                  "    NumberOfChannels = 100\n    Min = 200\n    Max = 500\n"
                                  "  end\nend\n");
    auto* s = dynamic_cast<TqxSpectrum*>(root->FindComponent("S"));
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->Min(), 200);
    EXPECT_EQ(s->Max(), 500);
    EXPECT_EQ(s->GetChannel(0), 200); // lifted into the range once read
    ExpectRoundTrip(*root);
}

} // namespace

namespace {

// The drawing step by step with the canvas's own figures: background, then per bar the bar,
// the separator line and the cap, then the scan lines.
void DrawLiterally(TCanvas& c, const TqxSpectrum& s) {
    const int w = s.Width(), h = s.Height(), n = s.NumberOfChannels();
    const TColor back = s.UseLed() ? s.BarOffColor() : s.FaceColor();
    c.Pen().SetColor(back);
    c.Brush().SetColor(back);
    c.Rectangle(0, 0, w, h);
    for (int i = 0; i < n; ++i) {
        const long long p = s.GetPercent(s.GetChannel(i));
        const int x1 = static_cast<int>(1LL * i * w / n);
        const int x2 = static_cast<int>(1LL * (i + 1) * w / n) - (s.UseSep() ? 1 : 0);
        const int y = static_cast<int>(std::clamp<long long>(h - p * h / 100, -(1 << 29), 1 << 29));
        c.Pen().SetColor(s.BarColor());
        c.Brush().SetColor(s.BarColor());
        c.Rectangle(x1, y, x2, h);
        c.Pen().SetColor(s.FaceColor());
        c.MoveTo(x2, 0);
        c.LineTo(x2, h);
        c.Pen().SetColor(s.TopColor());
        c.Brush().SetColor(s.TopColor());
        c.Rectangle(x1, y, x2, y + s.TopSize());
    }
    if (!s.UseLed()) return;
    c.Pen().SetColor(s.FaceColor());
    for (int y = 1; y <= h; y += 2) {
        c.MoveTo(0, y);
        c.LineTo(w, y);
    }
}

} // namespace

TEST_F(SpectrumTest, PaintsWhatTheStepsDrawOneByOne) {
    auto* s = Place<TqxSpectrum>();
    unsigned seed = 7;
    const auto next = [&seed] { return seed = seed * 1103515245u + 12345u, (seed >> 8) % 1000u; };
    for (int round = 0; round < 12; ++round) {
        s->SetBounds(0, 0, 20 + static_cast<int>(next() % 400),
                     35 + static_cast<int>(next() % 300));
        s->SetNum(1 + static_cast<int>(next() % 100));
        s->SetLed(round % 2 == 0);
        s->SetSplit(round % 3 != 0);
        s->SetTop(2 + static_cast<int>(next() % 9));
        std::vector<int> values(TqxSpectrum::ChannelCount);
        for (int& v : values)
            v = static_cast<int>(next()) - 400; // below Min, in the range and above Max
        if (round == 11) values[3] = INT_MIN, values[4] = INT_MAX;
        s->SetAllChannel(values.data());
        TBitmap painted;
        s->PaintTo(painted);
        TBitmap expected(s->Width(), s->Height());
        DrawLiterally(expected.Canvas(), *s);
        const long differing = test::CountDifferentPixels(painted.Pixels(), expected.Pixels());
        EXPECT_EQ(differing, 0) << "round " << round << ": "
                                << test::WritePixelEvidence(std::string(QV_TEST_OUT) +
                                                                "/instruments",
                                                            "spectrum-" + std::to_string(round),
                                                            painted.Pixels(), expected.Pixels());
    }
}
