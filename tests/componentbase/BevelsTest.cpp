// Bevel and button-face painters: which colour goes where, how far the rectangle shrinks, and
// that the focus rectangle undoes itself.

#include "componentbase/Bevels.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

constexpr TColor kFace = 0x808000, kLight = 0xFFFFFF, kDark = 0x404040, kFrame = 0x000001,
                 kBack = 0x00FF00;
const TBevelColors kColors{kLight, kDark};

struct TPicture {
    TBitmap bitmap{20, 12};
    TPicture() {
        bitmap.Canvas().Brush().SetColor(kBack);
        bitmap.Canvas().FillRect({0, 0, 20, 12});
    }
    TColor At(int x, int y) { return bitmap.Canvas().Pixel(x, y); }
};

} // namespace

TEST(Bevels, RaisedIsLightAboveAndLeftLoweredTheOppositeAndTheRectangleShrinks) {
    TPicture raised;
    TRect r{0, 0, 20, 12};
    PaintBevel(raised.bitmap.Canvas(), r, TBevelKind::Raised, 2, kColors);
    EXPECT_EQ(r, (TRect{2, 2, 18, 10}));
    EXPECT_EQ(raised.At(0, 0), kLight);
    EXPECT_EQ(raised.At(1, 5), kLight);
    EXPECT_EQ(raised.At(19, 5), kDark);
    EXPECT_EQ(raised.At(5, 10), kDark);
    EXPECT_EQ(raised.At(0, 11), kDark); // the corners off the light edge belong to the dark one
    EXPECT_EQ(raised.At(19, 0), kDark);
    EXPECT_EQ(raised.At(2, 2), kBack);

    TPicture lowered;
    r = {0, 0, 20, 12};
    PaintBevel(lowered.bitmap.Canvas(), r, TBevelKind::Lowered, 1, kColors);
    EXPECT_EQ(r, (TRect{1, 1, 19, 11}));
    EXPECT_EQ(lowered.At(0, 0), kDark);
    EXPECT_EQ(lowered.At(19, 11), kLight);

    TPicture none;
    r = {0, 0, 20, 12};
    PaintBevel(none.bitmap.Canvas(), r, TBevelKind::Raised, 0, kColors);
    PaintBevel(none.bitmap.Canvas(), r, TBevelKind::Raised, -3, kColors);
    EXPECT_EQ(r, (TRect{0, 0, 20, 12}));
    EXPECT_EQ(none.At(0, 0), kBack);
}

TEST(Bevels, ButtonFaceRingsInvertWhenPressedAndTheFaceIsFilled) {
    TPicture up;
    const TRect inside =
        PaintButtonFace(up.bitmap.Canvas(), {0, 0, 20, 12}, false, kFace, kColors, kFrame);
    EXPECT_EQ(inside, (TRect{2, 2, 18, 10}));
    EXPECT_EQ(up.At(0, 0), kLight);   // outer ring: light above
    EXPECT_EQ(up.At(19, 11), kFrame); // and the frame colour below
    EXPECT_EQ(up.At(1, 1), kFace);    // inner ring: face above
    EXPECT_EQ(up.At(18, 10), kDark);  // and shadow below
    EXPECT_EQ(up.At(10, 6), kFace);

    TPicture pressed;
    PaintButtonFace(pressed.bitmap.Canvas(), {0, 0, 20, 12}, true, kFace, kColors, kFrame);
    EXPECT_EQ(pressed.At(0, 0), kFrame);
    EXPECT_EQ(pressed.At(19, 11), kLight);
    EXPECT_EQ(pressed.At(1, 1), kDark);
    EXPECT_EQ(pressed.At(18, 10), kFace);
}

TEST(Bevels, FocusRectangleDrawnTwiceRestoresThePixelsAndAnEmptyInsetDrawsNothing) {
    TPicture p;
    PaintFocusRect(p.bitmap.Canvas(), {0, 0, 20, 12}, 3);
    EXPECT_NE(p.At(3, 3), kBack);
    EXPECT_EQ(p.At(2, 2), kBack);
    EXPECT_EQ(p.At(10, 6), kBack);
    PaintFocusRect(p.bitmap.Canvas(), {0, 0, 20, 12}, 3);
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 20; ++x)
            ASSERT_EQ(p.At(x, y), kBack) << x << "," << y;
    PaintFocusRect(p.bitmap.Canvas(), {0, 0, 20, 12}, 6);
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 20; ++x)
            ASSERT_EQ(p.At(x, y), kBack) << x << "," << y;
}
