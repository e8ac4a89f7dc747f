// The shared paint frame and cached face: what lies under a picture, the design-time
// outline, OnPaint after the copy, a kept bitmap that starts every paint with fresh tools (and
// keeps its pixels under a background the paint covers itself),
// huge controls, and faces drawn once per look.

#include "componentbase/PaintFrame.h"
#include "componentbase/CachedFace.h"
#include "componentbase/Steel.h"

#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/controls/WinControl.h"

#include <gtest/gtest.h>

#include <functional>

using namespace qv;

namespace {

constexpr TColor kRed = 0x0000FF, kBlue = 0xFF0000, kBlack = 0, kSilver = 0xC0C0C0,
                 kWhite = 0xFFFFFF, kFuchsia = 0xFF00FF;

// A component painting through the frame: `draw` runs on the off-screen canvas.
class TFramed : public TGraphicControl {
public:
    TFramed(TComponent* owner, TPaintFrame::TOutline outline)
        : TGraphicControl(owner), frame(outline) {
        SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
    }
    TPaintFrame frame;
    TFrameBackground background = TFrameBackground::Flat(kBlue);
    std::function<void(TCanvas&)> draw = [](TCanvas&) {};
    TNotifyEvent OnPaint;

protected:
    void Paint() override { frame.Paint(*this, Canvas(), background, draw, OnPaint); }
};

class PaintFrame : public ::testing::Test {
protected:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        CreateSteelTexture();
        form = std::make_unique<TForm>(nullptr);
        form->SetBounds(0, 0, 200, 120);
        form->SetColor(kFuchsia);
        form->Show();
    }
    void TearDown() override {
        form.reset();
        FreeSteelTexture();
    }
    TFramed* Framed(TPaintFrame::TOutline outline = TPaintFrame::TOutline::None) {
        auto* c = new TFramed(form.get(), outline);
        c->SetParent(form.get());
        c->SetBounds(10, 10, 40, 30);
        return c;
    }
    TColor PixelOf(const TControl& c, int x, int y) {
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Canvas().Pixel(c.Left() + x, c.Top() + y);
    }
    std::unique_ptr<TForm> form;
};

} // namespace

TEST_F(PaintFrame, BackgroundIsFlatParentColourOrSteelTiledFromTheControlsOrigin) {
    TFramed* c = Framed();
    EXPECT_EQ(PixelOf(*c, 20, 15), kBlue);
    c->background = TFrameBackground::ParentOrSteel(*c, false);
    EXPECT_EQ(PixelOf(*c, 20, 15), kFuchsia);
    c->background = TFrameBackground::ParentOrSteel(*c, true);
    EXPECT_EQ(PixelOf(*c, 0, 0), kSilver);
    EXPECT_EQ(PixelOf(*c, 1, 1), kWhite);
    EXPECT_EQ(PixelOf(*c, 2, 1), kSilver);
    EXPECT_EQ(PixelOf(*c, 9, 9), kWhite);
}

// A background painted over fills and copies nothing (the first paint's pixels stay where the
// second draws none) but leaves the brush as the background would.
TEST_F(PaintFrame, APaintedOverBackgroundKeepsThePixelsAndSetsTheBrush) {
    TFramed* c = Framed();
    c->draw = [](TCanvas& canvas) { canvas.SetPixel(3, 2, kRed); };
    c->Repaint();
    for (const TFrameBackground& under : {TFrameBackground::Flat(kSilver),
                                          TFrameBackground::Steel(), TFrameBackground::Beneath()}) {
        TColor brush = kBlack;
        c->background = under.PaintedOver(true);
        c->draw = [&](TCanvas& canvas) { brush = canvas.Brush().Color(); };
        c->Repaint();
        EXPECT_EQ(PixelOf(*c, 20, 15), kBlue);
        EXPECT_EQ(PixelOf(*c, 3, 2), kRed);
        EXPECT_EQ(brush, under.kind == TFrameBackground::TKind::Flat ? kSilver : kWhite);
    }
}

TEST_F(PaintFrame, EveryPaintStartsWithFreshToolsOnTheKeptBitmap) {
    TFramed* c = Framed();
    int paints = 0;
    c->draw = [&](TCanvas& canvas) {
        // The first paint leaves a red wide pen and a clear brush behind.
        if (paints++ == 0) {
            canvas.Pen().SetColor(kRed);
            canvas.Pen().SetWidth(5);
            canvas.Brush().SetStyle(bsClear);
            canvas.MoveTo(30, 20);
            return;
        }
        canvas.Brush().SetColor(kWhite);
        canvas.Rectangle(0, 0, 10, 10); // default pen: black, one pixel; the brush fills
    };
    c->Repaint();
    const TBitmap* kept = &c->frame.Picture();
    c->Repaint();
    EXPECT_EQ(&c->frame.Picture(), kept);
    EXPECT_EQ(PixelOf(*c, 0, 0), kBlack);
    EXPECT_EQ(PixelOf(*c, 1, 1), kWhite);
    EXPECT_EQ(PixelOf(*c, 10, 1), kBlue);
    c->SetBounds(10, 10, 60, 20); // a new size: a new picture of that size
    c->Repaint();
    EXPECT_EQ(c->frame.Picture().Width(), 60);
    EXPECT_EQ(c->frame.Picture().Height(), 20);
}

TEST_F(PaintFrame, DesignOutlineOnlyWhileDesigningAndOnlyWhenAskedFor) {
    TFramed* plain = Framed();
    TFramed* outlined = Framed(TPaintFrame::TOutline::WhileDesigning);
    outlined->SetLeft(100);
    EXPECT_EQ(PixelOf(*outlined, 0, 0), kBlue); // not designing
    plain->SetDesigning(true);
    outlined->SetDesigning(true);
    plain->Invalidate();
    outlined->Invalidate();
    EXPECT_EQ(PixelOf(*plain, 0, 0), kBlue);
    // A dashed black rectangle round the picture: dashes and gaps along each edge.
    int black = 0, gaps = 0;
    for (int x = 0; x < 40; ++x)
        (PixelOf(*outlined, x, 0) == kBlack ? black : gaps)++;
    EXPECT_GT(black, 10);
    EXPECT_GT(gaps, 5);
    EXPECT_EQ(PixelOf(*outlined, 20, 15), kBlue); // no fill
    EXPECT_EQ(PixelOf(*outlined, 0, 0), kBlack);  // each edge starts with a dash
    EXPECT_EQ(PixelOf(*outlined, 39, 29), kBlack);
}

TEST_F(PaintFrame, OnPaintFollowsTheCopyWithTheComponentAsSender) {
    TFramed* c = Framed();
    TObject* sender = nullptr;
    TColor seen = kBlack;
    c->OnPaint = [&](TObject* s) {
        sender = s;
        seen = c->Canvas().Pixel(5, 5); // the picture is on the control's canvas already
    };
    c->Repaint();
    EXPECT_EQ(sender, c);
    EXPECT_EQ(seen, kBlue);
}

TEST_F(PaintFrame, AHugeControlPaintsWhatShowsWithoutABitmapOfItsSize) {
    TFramed* c = Framed();
    c->SetBounds(-1000, 5, 200000, 3000); // 600 million pixels, far beyond any bitmap
    c->draw = [](TCanvas& canvas) {
        canvas.Brush().SetColor(kRed);
        canvas.FillRect({1000, 0, 1010, 10}); // at the form's left edge
    };
    TBitmap shot;
    ASSERT_NO_THROW(form->Screenshot(shot));
    EXPECT_EQ(shot.Canvas().Pixel(0, 5), kRed);
    EXPECT_EQ(shot.Canvas().Pixel(9, 14), kRed);
    EXPECT_EQ(shot.Canvas().Pixel(10, 5), kBlue);
    EXPECT_EQ(shot.Canvas().Pixel(199, 100), kBlue);
    EXPECT_LE(c->frame.Picture().Width(), 200000 - 1000);
}

TEST(CachedFace, DrawsOncePerLookAndAgainAfterInvalidate) {
    struct TLook {
        int size;
        TColor color;
        bool operator==(const TLook&) const = default;
    };
    TCachedFace<TLook> face;
    int draws = 0;
    const auto draw = [&](TCanvas& c) {
        ++draws;
        c.FillRect({0, 0, 4, 4}); // a fresh canvas's brush: white
    };
    const TBitmap* first = &face.Picture({4, kRed}, 4, 4, draw);
    face.Picture({4, kRed}, 4, 4, draw);
    EXPECT_EQ(draws, 1);
    EXPECT_EQ(&face.Picture({4, kBlue}, 4, 4, draw), first); // one bitmap, drawn again
    EXPECT_EQ(draws, 2);
    face.Invalidate();
    TBitmap& again = face.Picture({4, kBlue}, 4, 4, draw);
    EXPECT_EQ(draws, 3);
    EXPECT_EQ(again.Canvas().Pixel(3, 3), kWhite);
}
