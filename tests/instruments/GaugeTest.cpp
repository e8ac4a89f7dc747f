// The gauge: value, percent and range rules with their events, LED blocks and the inverted
// caption in pixels, a bad caption format reported by the loop, wild settings, form files.
#include "LiveDisplayFixture.h"

#include "platform/core/Exceptions.h"

#include <climits>
#include <string>
#include <vector>

using namespace qv;

namespace {

using D = TqGauge::Defaults;

class GaugeTest : public LiveDisplayTest {
protected:
    // A gauge whose inner rectangle is (2, 2, 102, 28): 100 pixels wide.
    TqGauge* Wide() {
        auto* g = Place<TqGauge>();
        g->SetParentColor(false);
        g->SetColor(TColor(0x404040));
        g->SetBounds(0, 0, 104, 30);
        return g;
    }
    const TColor back = TColor(0x404040);
};

TEST_F(GaugeTest, SetValueClampsAndRaisesTheBoundEventBeforeThePaint) {
    auto* g = Place<TqGauge>();
    std::vector<std::string> log;
    g->OnMinimum = [&](TObject*) { log.push_back("min"); };
    g->OnMaximum = [&](TObject*) { log.push_back("max"); };
    g->OnPaint = [&](TObject*) { log.push_back("paint"); };
    g->SetValue(500);
    EXPECT_EQ(g->Value(), 100);
    EXPECT_EQ(log, (std::vector<std::string>{"max", "paint"}));
    log.clear();
    g->SetValue(100); // equal: nothing
    EXPECT_TRUE(log.empty());
    g->SetValue(0);
    g->SetValue(-5); // differs from 0, clamps to it: OnMinimum again
    EXPECT_EQ(log, (std::vector<std::string>{"min", "paint", "min", "paint"}));
    g->AddValue(30);
    EXPECT_EQ(g->Value(), 30);
}

TEST_F(GaugeTest, DrawOnlyWhenPCTChangeRepaintsWhenTheWholePercentChanges) {
    auto* g = Place<TqGauge>();
    g->SetMax(1000);
    g->SetDrawOnlyWhenPCTChange(true);
    Pump();
    int paints = 0;
    g->OnPaint = [&](TObject*) { ++paints; };
    for (int v = 1; v <= 1000; ++v)
        g->SetValue(v);
    EXPECT_EQ(paints, 100);
}

TEST_F(GaugeTest, PercentIsExactAndReadWithinZeroToHundred) {
    TqGauge g(nullptr);
    g.SetPercent(29);
    EXPECT_EQ(g.Value(), 29);
    EXPECT_EQ(g.GetPercent(), 29);
    g.SetPercent(255);
    EXPECT_EQ(g.Value(), 100);
    g.SetMax(37);
    g.SetPercent(20); // 37 x 20 / 100 = 7.4
    EXPECT_EQ(g.Value(), 7);
    // The range setters leave Value alone: outside the range it reads as 0 or 100 %.
    g.SetValue(30);
    g.SetMin(60);
    EXPECT_EQ(g.Value(), 30);
    EXPECT_EQ(g.Max(), 61);
    EXPECT_EQ(g.GetPercent(), 0);
    g.SetMin(0);
    g.SetMax(10);
    EXPECT_EQ(g.GetPercent(), 100);
    g.SetMin(10);
    g.SetMax(5);
    EXPECT_EQ(g.Max(), 11);
    g.SetMin(INT_MAX); // Min + 1 saturates
    EXPECT_EQ(g.Max(), INT_MAX);
    EXPECT_EQ(g.GetPercent(), 0);
}

TEST_F(GaugeTest, LedBlocksLightWholeBlocksOverAClearedInside) {
    auto* g = Wide();
    g->SetBarColor(TColor(0x0000FF));
    g->SetledSpace(10);
    g->SetValue(35); // fill = 37: blocks at 2, 12, 22 and 32 are lit
    auto shot = Shot(*g);
    for (int left : {2, 12, 22, 32}) {
        EXPECT_EQ(At(shot, left, 15), TColor(0x0000FF)) << left;
        EXPECT_EQ(At(shot, left + 8, 15), TColor(0x0000FF)) << left;
        EXPECT_EQ(At(shot, left + 9, 15), back) << left; // the gap
    }
    EXPECT_EQ(At(shot, 42, 15), back);
    EXPECT_EQ(CountColor(shot, {2, 2, 102, 28}, TColor(0x0000FF)), 4 * 9 * 26);
    EXPECT_EQ(At(shot, 1, 15), back);                       // margin
    EXPECT_EQ(At(shot, 0, 15), ColorToRGB(clBtnHighlight)); // raised bevel
    EXPECT_EQ(At(shot, 103, 15), ColorToRGB(clBtnShadow));
    // A pitch shorter than block plus gap leaves no stale pixels: the inside is cleared first.
    g->SetValue(100);
    g->SetLedThick(7); // 3 blocks of 28 with pitch 33
    g->SetledSpace(3);
    g->SetValue(0);
    auto cleared = Shot(*g);
    EXPECT_EQ(CountColor(cleared, {2, 2, 102, 28}, TColor(0x0000FF)), 0);
}

TEST_F(GaugeTest, TheCaptionReadsInvertedWhereTheBarHasPassed) {
    auto* g = Wide();
    g->SetBounds(0, 0, 204, 40);
    g->Font()->SetSize(16);
    g->SetBarColor(TColor(0x0000FF));
    g->SetCaption("%d%%");
    g->SetValue(50); // fill at x = 102, the middle of the caption
    EXPECT_EQ(g->CaptionText(), "50%");
    auto shot = Shot(*g);
    const TRect inner = g->InnerRect();
    const int mid = (inner.left + inner.right) / 2;
    const TRect lit{inner.left, inner.top, mid, inner.bottom};
    const TRect unlit{mid, inner.top, inner.right, inner.bottom};
    EXPECT_GT(CountColor(shot, lit, back), 0);               // text in Color on the bar
    EXPECT_GT(CountColor(shot, unlit, TColor(0x0000FF)), 0); // text in BarColor beside it
    // Away from the caption's box the halves are plain.
    EXPECT_EQ(CountColor(shot, {inner.left, inner.top, inner.left + 20, inner.bottom}, back), 0);
    EXPECT_EQ(CountColor(shot, {inner.right - 20, inner.top, inner.right, inner.bottom},
                         TColor(0x0000FF)),
              0);
    g->SetCaptionStyle(gaTotPct);
    g->SetCaption("%d of %d%%");
    EXPECT_EQ(g->CaptionText(), "50 of 50%");
    g->SetCaptionStyle(gaPctTot);
    g->SetMax(200);
    EXPECT_EQ(g->CaptionText(), "25 of 50%");
}

TEST_F(GaugeTest, ACaptionOverLedGapsLeavesTheGapsOutsideItsBox) {
    auto* g = Wide();
    g->SetBounds(0, 0, 304, 30);
    g->SetledSpace(30);
    g->SetCaption("%d%%");
    g->SetValue(100);
    auto shot = Shot(*g);
    // The first gap (x = 11) lies left of the centred caption.
    EXPECT_EQ(At(shot, 2 + 9, 15), back);
}

TEST_F(GaugeTest, TheLoopReportsABadFormatAndGoesOn) {
    auto* g = Place<TqGauge>();
    std::vector<std::string> errors;
    Application().OnException = [&](TObject*, const std::exception& e) {
        errors.push_back(e.what());
    };
    g->SetCaption("%s");
    EXPECT_THROW(g->CaptionText(), EConvertError);
    g->Invalidate();
    Pump();
    EXPECT_EQ(errors.size(), 1u);
    // Later messages are handled as usual.
    int paints = 0;
    g->OnPaint = [&](TObject*) { ++paints; };
    g->SetCaption("%d%%");
    Pump();
    EXPECT_EQ(paints, 1);
    Application().OnException = nullptr;

    // Without a handler the message goes to stderr.
    g->SetCaption("%s");
    ::testing::internal::CaptureStderr();
    g->Invalidate();
    Pump();
    const std::string reported = ::testing::internal::GetCapturedStderr();
    EXPECT_FALSE(reported.empty());
}

TEST_F(GaugeTest, TheGlyphIsStretchedToTheControlAndFillsTheBar) {
    auto* g = Wide();
    TBitmap glyph;
    glyph.SetSize(2, 1);
    glyph.Canvas().SetPixel(0, 0, TColor(0x00FF00));
    glyph.Canvas().SetPixel(1, 0, TColor(0xFF0000));
    g->SetBitmap(glyph);
    g->SetValue(100);
    auto shot = Shot(*g);
    EXPECT_EQ(At(shot, 10, 15), TColor(0x00FF00));
    EXPECT_EQ(At(shot, 90, 15), TColor(0xFF0000));
    g->SetBounds(0, 0, 204, 30); // the copy is stretched again
    auto wider = Shot(*g);
    EXPECT_EQ(At(wider, 90, 15), TColor(0x00FF00));
    EXPECT_EQ(At(wider, 190, 15), TColor(0xFF0000));
    // Far wider than any bitmap may be: only the part the form shows is stretched.
    g->SetBounds(0, 0, 1 << 30, 30);
    auto huge = Shot(*g);
    EXPECT_EQ(At(huge, 10, 15), TColor(0x00FF00));
}

TEST_F(GaugeTest, WildSettingsPaintInsideTheControl) {
    auto* g = Wide();
    int paints = 0;
    g->OnPaint = [&](TObject*) { ++paints; };
    g->SetMargin(255); // wider than the control: no inside at all
    g->SetValue(50);
    g->SetledSpace(-1);
    g->SetBevelWidth(INT_MAX);
    g->SetBevelInner(bvLowered);
    EXPECT_NO_THROW(Shot(*g));
    g->SetMargin(1);
    g->SetBevelWidth(1);
    g->SetBevelInner(bvNone);
    g->SetledSpace(INT_MAX); // one-pixel blocks
    auto thin = Shot(*g);
    EXPECT_EQ(At(thin, 2, 15), ColorToRGB(D::BarColor));
    // A value outside the range after SetMin paints nothing outside the inner rectangle.
    g->SetledSpace(0);
    g->SetValue(100);
    g->SetMin(-1000000);
    g->SetMax(-999999);
    auto over = Shot(*g);
    EXPECT_EQ(CountColor(over, {2, 2, 102, 28}, D::BarColor), 100 * 26);
    EXPECT_EQ(At(over, 102, 15), back); // the margin right of the inner rectangle
    EXPECT_GT(paints, 0);
}

TEST_F(GaugeTest, FormFilesKeepValuesOutsideTheRangeAndTheSaturatedMax) {
    auto root = ReadComponentText(
        "object F: TForm\n  object G: TqGauge\n    Caption = '%d%%'\n    Min = 60\n"
        "    Max = 61\n    Value = 30\n    NumberOfLed = -1\n  end\n"
        "  object H: TqGauge\n    Min = 2147483647\n    Max = 2147483647\n  end\nend\n");
    auto* g = dynamic_cast<TqGauge*>(root->FindComponent("G"));
    auto* h = dynamic_cast<TqGauge*>(root->FindComponent("H"));
    ASSERT_TRUE(g && h);
    EXPECT_EQ(g->Value(), 30);
    EXPECT_EQ(h->Min(), INT_MAX);
    EXPECT_EQ(h->Max(), INT_MAX);
    ExpectRoundTrip(*root);
}

} // namespace
