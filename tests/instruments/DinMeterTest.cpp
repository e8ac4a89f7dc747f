// The DIN meter: its range rules, labels and needle pixels.
#include "KnobFixture.h"

#include "instruments/Qpanel2.h"

#include <climits>

using namespace qv;

namespace {
constexpr TColor kRed = 0x0000FF;

// The default meter of 100: c = 80, the pivot at (79, 79), the needle 72 long.
class DinMeter : public KnobTest {
protected:
    TqxDinMeter* Meter() { return Place<TqxDinMeter>(10, 10); }
};
} // namespace

TEST_F(DinMeter, MaxAlwaysExceedsMinAndValueStaysInside) {
    auto* m = Meter();
    m->SetMax(0);
    EXPECT_EQ(m->Max(), 1);
    m->SetValue(5);
    EXPECT_EQ(m->Value(), 1);
    m->SetMin(10);
    EXPECT_EQ(m->Max(), 11);
    EXPECT_EQ(m->Value(), 10);
    // Min + 1 does not exist: Max stays equal to Min.
    m->SetMin(INT_MAX);
    EXPECT_EQ(m->Max(), INT_MAX);
    EXPECT_EQ(m->GetPercent(), 0);
    m->SetMin(INT_MIN);
    m->SetMax(INT_MAX);
    m->SetValue(INT_MAX);
    EXPECT_EQ(m->GetPercent(), 100);
}

TEST_F(DinMeter, TheNeedlePointsLeftAtMinUpAtMaxAndDiagonallyHalfWay) {
    auto* m = Meter();
    EXPECT_EQ(PixelOf(*m, 79, 79), kRed);
    EXPECT_EQ(PixelOf(*m, 30, 79), kRed);
    EXPECT_NE(PixelOf(*m, 30, 78), kRed);
    m->SetValue(50); // to (28, 28)
    EXPECT_EQ(PixelOf(*m, 50, 50), kRed);
    EXPECT_EQ(PixelOf(*m, 29, 29), kRed);
    EXPECT_NE(PixelOf(*m, 30, 79), kRed);
    m->SetValue(100); // straight up the column x = 79, not one to the left
    EXPECT_EQ(PixelOf(*m, 79, 30), kRed);
    EXPECT_EQ(PixelOf(*m, 79, 8), kRed);
    EXPECT_NE(PixelOf(*m, 78, 30), kRed);
}

TEST_F(DinMeter, ScaleTypesChooseTheLongLabelledMarks) {
    auto* m = Meter();
    for (int i = 0; i <= 10; ++i)
        EXPECT_EQ(m->IsLongMark(i), i == 0 || i == 5 || i == 10) << i;
    EXPECT_EQ(m->MarkLabel(0), "0");
    EXPECT_EQ(m->MarkLabel(5), "50");
    EXPECT_EQ(m->MarkLabel(10), "100");
    m->SetDigitsAfterPoint(2);
    EXPECT_EQ(m->MarkLabel(3), "30.00");
    m->SetDigitsAfterPoint(9);
    EXPECT_EQ(m->DigitsAfterPoint(), 5);
    m->SetScaleType(st6);
    EXPECT_TRUE(m->IsLongMark(4));
    EXPECT_FALSE(m->IsLongMark(5));
    m->SetScaleType(st0);
    EXPECT_FALSE(m->IsLongMark(0));

    auto* labelled = Place<TqxDinMeter>(150, 10);
    EXPECT_TRUE(ComparePictures(*m, *labelled, false, "din-st0-vs-st3"));
    labelled->SetScaleType(st0); // no labels: the decimals no longer show
    EXPECT_TRUE(ComparePictures(*m, *labelled, true, "din-st0-same"));
}

TEST_F(DinMeter, TheHeightFollowsTheWidthAndSubrangesClamp) {
    auto* m = Meter();
    m->SetHeight(40);
    EXPECT_EQ(m->Height(), 100);
    m->SetWidth(150);
    EXPECT_EQ(m->Height(), 150);
    m->SetFrameWidth(1);
    EXPECT_EQ(m->FrameWidth(), 4);
    m->SetOffSetDots(99);
    EXPECT_EQ(m->OffSetDots(), 50);
}

TEST_F(DinMeter, AThinTallFaceBitmapIsDrawnClippedToTheFace) {
    auto* m = Meter();
    TBitmap strip;
    strip.SetSize(1, 5000);
    strip.Canvas().Brush().SetColor(kRed);
    strip.Canvas().FillRect({0, 0, 1, 5000});
    m->SetFaceBitmap(strip);
    m->SetValue(100);
    EXPECT_EQ(PixelOf(*m, 6, 50), kRed);               // the face's first column
    EXPECT_NE(PixelOf(*m, 6, 96), kRed);               // below the face
    EXPECT_NE(PixelOf(*m, 7, 50), PixelOf(*m, 6, 50)); // one column wide
}
