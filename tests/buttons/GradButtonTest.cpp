// The gradient button: its face against the defined band loops (straight and centre, up and
// pressed), the plain face of equal colours, its own paint event, the band colours following
// the parent's colour, and its published order.

#include "ButtonFixture.h"

#include "buttons/Qanimate.h"
#include "platform/core/SysUtils.h"

using namespace qv;

namespace {

constexpr TColor kStart = RGB(250, 20, 90), kEnd = RGB(10, 200, 30);

// The face as the defined loops paint it on a W x H button cleared to `start`, moved by p.
TPixelBuffer ExpectedFace(int W, int H, gradType type, int N, TColor start, TColor end, int p) {
    TBitmap b(W, H);
    TCanvas& c = b.Canvas();
    c.Brush().SetColor(start);
    c.FillRect({0, 0, W, H});
    const TGradientColors colors = GradientColors(start, end);
    const int R = W - 1, B = H - 1;
    auto fill = [&](TColor color, TRect r) {
        c.Brush().SetColor(color);
        c.FillRect(r);
    };
    if (type != gCenter) {
        for (int i = 0; i <= N; ++i) {
            const int extent = type == gVert ? B : R;
            const int a = MulDiv(i, extent, N + 1), e = MulDiv(i + 1, extent, N + 1);
            fill(BandColor(colors, i, N), type == gVert ? TRect{p, a + p, p + R, e + p}
                                                        : TRect{a + p, p, e + p, p + B});
        }
        return b.Pixels();
    }
    TRect r{p + 1, p + 1, W + p - 1, H + p - 1};
    const int n = std::min({N, R / 2, B / 2});
    const int sx = std::max(R / 2 / n, 1), sy = std::max(B / 2 / n, 1);
    for (int i = 0; i <= n; ++i) {
        const TColor color = BandColor(colors, i, n);
        if (i == n) {
            fill(color, r);
            break;
        }
        fill(color, {r.left, r.top, r.right, r.top + sy});
        fill(color, {r.left, r.top, r.left + sx, r.bottom});
        fill(color, {r.left, r.bottom - sy, r.right, r.bottom});
        fill(color, {r.right - sx, r.top, r.right, r.bottom});
        r = {r.left + sx, r.top + sy, r.right - sx, r.bottom - sy};
    }
    return b.Pixels();
}

// Blanks the bevel's two rings and the focus rectangle's lines, which the face lies under.
TPixelBuffer FaceOnly(TPixelBuffer p) {
    const int W = p.Width(), H = p.Height();
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x)
            if (x < 2 || y < 2 || x >= W - 2 || y >= H - 2 || x == 3 || y == 3 || x == W - 4 ||
                y == H - 4)
                p.At(x, y) = 0;
    return p;
}

TqGradBtn* NewGradBtn(TForm* form, int W, int H, gradType type, int bands) {
    auto* b = new TqGradBtn(form);
    b->SetParent(form);
    b->SetBounds(10, 10, W, H);
    b->SetColor(kStart);
    b->SetEndColor(kEnd);
    b->SetFillType(type);
    b->SetBands(bands);
    return b;
}

} // namespace

TEST_F(ButtonTest, GradientFaceFollowsTheBandLoopsUpAndPressed) {
    struct TCase {
        int W, H;
        gradType type;
        int bands;
    };
    for (const TCase& t : {TCase{41, 21, gVert, 1}, TCase{41, 21, gVert, 75},
                           TCase{57, 30, gHorz, 9}, TCase{40, 31, gHorz, 200},
                           TCase{60, 25, gCenter, 75}, TCase{33, 40, gCenter, 3}}) {
        auto* b = NewGradBtn(form, t.W, t.H, t.type, t.bands);
        const std::string name = std::to_string(t.W) + "x" + std::to_string(t.H) + "-" +
                                 std::to_string(t.type) + "-" + std::to_string(t.bands);
        EXPECT_TRUE(SamePixels(FaceOnly(Picture(*b)),
                               FaceOnly(ExpectedFace(t.W, t.H, t.type, t.bands, kStart, kEnd, 0)),
                               "grad-up-" + name));
        MouseDown({12, 12});
        ASSERT_TRUE(b->Down());
        EXPECT_TRUE(SamePixels(FaceOnly(Picture(*b)),
                               FaceOnly(ExpectedFace(t.W, t.H, t.type, t.bands, kStart, kEnd, 1)),
                               "grad-down-" + name));
        MouseUp({12, 12});
        delete b;
    }
}

// Bands 1 over a 21-pixel face: rows 0-9 and 10-19; row 20 keeps the cleared Color. The
// default EndColor is a system colour, whose raw bytes (15, 0, 0) end the gradient.
TEST_F(ButtonTest, GradientOfOneBandOn21RowsAndTheRawBytesOfTheDefaultEnd) {
    auto* b = new TqGradBtn(form);
    b->SetParent(form);
    b->SetBounds(10, 10, 30, 21);
    b->SetColor(kStart);
    b->SetBands(1);
    b->SetFlat(true);
    b->SetEnabled(false); // no bevel, no focus rectangle
    const TPixelBuffer p = Picture(*b);
    for (int y = 0; y < 21; ++y)
        EXPECT_EQ(p.At(15, y), ColorToPixel(y < 10 ? kStart : y < 20 ? RGB(15, 0, 0) : kStart))
            << y;
    EXPECT_EQ(p.At(29, 5), ColorToPixel(kStart)); // the last column lies outside R
}

TEST_F(ButtonTest, GradientOfEqualColoursIsAPlainFaceAndZeroCentreFramesAbandonThePaint) {
    auto* b = NewGradBtn(form, 40, 20, gCenter, 75);
    b->SetFlat(true);
    b->SetEnabled(false);
    b->SetEndColor(kStart);
    EXPECT_TRUE(SamePixels(Picture(*b), TPixelBuffer(40, 20, ColorToPixel(kStart)), "grad-plain"));

    int paints = 0;
    b->OnPaint = [&](TObject*) { ++paints; };
    b->SetEndColor(kEnd);
    b->SetBands(0);
    EXPECT_NO_THROW(Picture(*b));
    EXPECT_EQ(paints, 0);
    b->SetBands(1);
    Picture(*b);
    EXPECT_GT(paints, 0);
}

TEST_F(ButtonTest, GradientButtonFiresOnlyItsOwnPaintEvent) {
    auto* b = NewGradBtn(form, 40, 20, gVert, 5);
    int own = 0, inherited = 0;
    b->OnPaint = [&](TObject* sender) {
        EXPECT_EQ(sender, b);
        ++own;
    };
    static_cast<TqColorBtn*>(b)->OnPaint = [&](TObject*) { ++inherited; };
    Picture(*b);
    EXPECT_GT(own, 0);
    EXPECT_EQ(inherited, 0);
}

// Band 0 is the start colour: with ParentColor the gradient starts at the form's colour and
// follows it when it changes.
TEST_F(ButtonTest, GradientFollowsTheParentsColour) {
    auto* b = new TqGradBtn(form);
    b->SetParent(form);
    b->SetBounds(10, 10, 40, 30);
    ASSERT_TRUE(b->ParentColor());
    b->SetEndColor(kEnd);
    b->SetBands(1);
    EXPECT_EQ(Picture(*b).At(20, 2), ColorToPixel(kFormColor));
    form->SetColor(RGB(0, 0, 200));
    ASSERT_EQ(b->Color(), RGB(0, 0, 200));
    EXPECT_EQ(Picture(*b).At(20, 2), ColorToPixel(RGB(0, 0, 200)));
}

TEST_F(ButtonTest, GradientButtonPublishesItsOwnPropertiesLast) {
    const auto props = TqGradBtn::StaticClassInfo().Properties();
    ASSERT_GE(props.size(), 5u);
    std::vector<std::string> last;
    for (auto it = props.end() - 5; it != props.end(); ++it)
        last.push_back((*it)->name);
    EXPECT_EQ(last, (std::vector<std::string>{"Color", "FillType", "EndColor", "Bands", "OnPaint"}));
    TqGradBtn b(nullptr);
    EXPECT_EQ(b.FillType(), gVert);
    EXPECT_EQ(b.EndColor(), clBtnFace);
    EXPECT_EQ(b.Bands(), 75);
}
