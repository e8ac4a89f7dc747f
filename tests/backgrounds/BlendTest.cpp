// The gradient and the blend paints: band colours and positions, the centre frames, bad band
// counts, and PassMouseOn.

#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/core/SysUtils.h"
#include "support/PixelEvidence.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class Blend : public ::testing::Test {
protected:
    void SetUp() override {
        InitializePackage();
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 300, 300);
        form->Show();
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    TqBlendPaint* NewBlend(int w, int h, TColor from, TColor to, int bands, gradType type) {
        auto* b = new TqBlendPaint(form);
        b->SetParent(form);
        b->SetBounds(0, 0, w, h);
        b->SetColor(from);
        b->SetEndColor(to);
        b->SetBands(bands);
        b->SetFillType(type);
        return b;
    }
    TColor At(TControl& c, int x, int y) {
        Application().ProcessMessages();
        TBitmap shot;
        c.PaintTo(shot);
        return shot.Canvas().Pixel(x, y);
    }
    TForm* form{nullptr};
};

// The straight gradient as defined: N + 1 bands, each filled whole, later ones on top.
TPixelBuffer ReferenceStraight(int w, int h, TColor from, TColor to, int N, bool vertical) {
    TBitmap b(w, h);
    const TGradientColors colors = GradientColors(from, to);
    for (int i = 0; i <= N; ++i) {
        b.Canvas().Brush().SetColor(BandColor(colors, i, N));
        const int extent = vertical ? h : w;
        const int a = MulDiv(i, extent, N + 1), e = MulDiv(i + 1, extent, N + 1);
        b.Canvas().FillRect(vertical ? TRect{0, a, w, e} : TRect{a, 0, e, h});
    }
    return b.Pixels();
}

} // namespace

TEST_F(Blend, OneBandGivesTwoStripesAndTheMiddleOfTwoRoundsUp) {
    auto* b = NewBlend(8, 10, RGB(255, 0, 0), RGB(0, 0, 255), 1, gVert);
    EXPECT_EQ(At(*b, 3, 4), RGB(255, 0, 0));
    EXPECT_EQ(At(*b, 3, 5), RGB(0, 0, 255));
    b->SetColor(0);
    b->SetEndColor(RGB(255, 255, 255));
    b->SetBands(2);
    b->SetHeight(9);
    EXPECT_EQ(At(*b, 0, 4), RGB(128, 128, 128));
}

TEST_F(Blend, BandIOfRedToBlueHasRed255MinusI) {
    auto* b = NewBlend(4, 256, RGB(255, 0, 0), RGB(0, 0, 255), 255, gVert);
    for (int i : {0, 1, 100, 127, 128, 254, 255})
        EXPECT_EQ(At(*b, 1, i), RGB(255 - i, 0, i)) << i;
}

TEST_F(Blend, ZeroBandsGiveStartMinusOneAndSystemColoursKeepTheirRawBytes) {
    auto* b = NewBlend(10, 10, RGB(0, 10, 20), 0, 0, gHorz);
    EXPECT_EQ(At(*b, 5, 5), RGB(255, 9, 19));
    b->SetColor(clBtnFace);
    b->SetBands(1);
    EXPECT_EQ(At(*b, 0, 0), RGB(15, 0, 0));
}

TEST_F(Blend, CentreFramesOf100By40) {
    auto* b = NewBlend(100, 40, RGB(0, 0, 0), RGB(200, 0, 0), 255, gCenter);
    const TGradientColors colors = GradientColors(0, RGB(200, 0, 0));
    EXPECT_EQ(At(*b, 0, 0), BandColor(colors, 0, 20));
    EXPECT_EQ(At(*b, 1, 20), BandColor(colors, 0, 20)); // sx = 2: the first frame is 2 wide
    EXPECT_EQ(At(*b, 2, 20), BandColor(colors, 1, 20));
    EXPECT_EQ(At(*b, 50, 1), BandColor(colors, 1, 20)); // sy = 1
    EXPECT_EQ(At(*b, 50, 19), BandColor(colors, 19, 20));
    EXPECT_EQ(At(*b, 50, 20), BandColor(colors, 19, 20)); // the centre fill is 20 x 0
}

TEST_F(Blend, CentreWithNoFrameToDivideByAbandonsThePaint) {
    auto* b = NewBlend(1, 40, RGB(0, 0, 0), RGB(200, 0, 0), 255, gCenter);
    int paints = 0;
    b->OnPaint = [&](TObject*) { ++paints; };
    EXPECT_NO_THROW(At(*b, 0, 0));
    b->SetWidth(2);
    b->SetBands(0);
    EXPECT_NO_THROW(At(*b, 0, 0));
    EXPECT_EQ(paints, 0);
    b->SetBands(-1); // negative: nothing painted, but the paint completes
    At(*b, 0, 0);
    EXPECT_GT(paints, 0);
}

TEST_F(Blend, MoreBandsThanPixelsFillEachRowAsTheBandsWould) {
    for (auto [bands, vertical] :
         {std::pair{300, true}, std::pair{1000, false}, std::pair{77, true}}) {
        const int w = 40, h = 50;
        const TColor from = RGB(10, 250, 3), to = RGB(240, 7, 199);
        auto* b = NewBlend(w, h, from, to, bands, vertical ? gVert : gHorz);
        Application().ProcessMessages();
        TBitmap shot;
        b->PaintTo(shot);
        const TPixelBuffer expected = ReferenceStraight(w, h, from, to, bands, vertical);
        EXPECT_EQ(test::CountDifferentPixels(shot.Pixels(), expected), 0)
            << test::WritePixelEvidence(std::string(QV_TEST_OUT) + "/backgrounds",
                                        "bands-" + std::to_string(bands), shot.Pixels(), expected);
        delete b;
    }
    // INT_MAX bands: N + 1 does not wrap, and rows are filled, not 2^31 bands.
    auto* huge = NewBlend(40, 50, RGB(10, 250, 3), RGB(240, 7, 199), INT_MAX, gVert);
    // Row 0 shows the last band starting on it: i = 21474836 (i x 50 / 2^31 < 0.5), whose
    // colour is start + round(i x d / INT_MAX) = start + round(0.01 x d).
    EXPECT_EQ(At(*huge, 0, 0), RGB(10 + 2, 250 - 2, 3 + 2));
}

TEST_F(Blend, PassMouseOnLetsClicksReachTheControlBeneath) {
    auto* button = new TqColorBtn(form);
    button->SetParent(form);
    button->SetBounds(10, 10, 60, 30);
    auto* blend = new TqNWBlendPaint(form);
    blend->SetParent(form);
    blend->SetBounds(10, 10, 60, 30);
    int buttonClicks = 0, blendClicks = 0;
    button->OnClick = [&](TObject*) { ++buttonClicks; };
    blend->OnClick = [&](TObject*) { ++blendClicks; };
    auto click = [&] {
        auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
        headless.MouseDown(form->NativeWindow(), {30, 20});
        headless.MouseUp(form->NativeWindow(), {30, 20});
        Application().ProcessMessages();
    };
    click();
    EXPECT_EQ(blendClicks, 1);
    EXPECT_EQ(buttonClicks, 0);
    blend->SetPassMouseOn(true);
    click();
    EXPECT_EQ(blendClicks, 1);
    EXPECT_EQ(buttonClicks, 1);
}
