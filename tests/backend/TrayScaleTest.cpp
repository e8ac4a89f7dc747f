// The tray icon's picture scaled to the host's size: area averages blended onto the ground.

#include "platform/backend/TrayShell.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(TrayScale, AreaAveragesBlendOntoTheGround) {
    TPixelBuffer icon(4, 4, 0xFF0000FF); // opaque blue
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 2; ++x)
            icon.At(x, y) = 0xFFFF0000; // opaque red quarter
    icon.At(3, 3) = 0x00000000;         // transparent corner
    const TPixelBuffer half = ScaleTrayIcon(icon, {2, 2}, 0xFFFFFF);
    EXPECT_EQ(half.At(0, 0), 0xFF0000u);
    EXPECT_EQ(half.At(1, 0), 0x0000FFu);
    // Three blue pixels and one transparent: blue at three quarters over white.
    EXPECT_EQ(half.At(1, 1), 0x4040FFu); // coverage 765 / 4 = 191: white at 64

    const TPixelBuffer doubled = ScaleTrayIcon(icon, {8, 8}, 0);
    EXPECT_EQ(doubled.At(0, 0), 0xFF0000u);
    EXPECT_EQ(doubled.At(7, 7), 0u); // the transparent corner shows the ground
}

TEST(TrayScale, EmptyAndHugePicturesGiveTheHostsSize) {
    EXPECT_EQ(ScaleTrayIcon({}, {24, 24}, 0x123456).At(5, 5), 0x123456u);
    const TPixelBuffer huge(2000, 2000, 0xFF00FF00);
    const TPixelBuffer scaled = ScaleTrayIcon(huge, {24, 24}, 0);
    EXPECT_EQ(scaled.Width(), 24);
    EXPECT_EQ(scaled.At(23, 23), 0x00FF00u);
    EXPECT_TRUE(ScaleTrayIcon(huge, {0, 0}, 0).IsEmpty());
}

TEST(TrayScale, WithAlphaTheCoverageStaysAndTheColourIsPremultiplied) {
    TPixelBuffer icon(4, 4, 0xFF0000FF);
    icon.At(3, 3) = 0x00000000;
    icon.At(0, 0) = 0x80FF0000; // half-covered red
    const TPixelBuffer half = ScaleTrayIconArgb(icon, {2, 2});
    EXPECT_EQ(half.At(1, 1), 0xBF0000BFu); // three of four blue: coverage 191
    EXPECT_EQ(half.At(1, 0), 0xFF0000FFu);
    const TPixelBuffer same = ScaleTrayIconArgb(icon, {4, 4});
    EXPECT_EQ(same.At(0, 0), 0x80800000u);
    EXPECT_EQ(same.At(3, 3), 0u); // transparent stays transparent
    EXPECT_EQ(ScaleTrayIconArgb({}, {24, 24}).At(5, 5), 0u);
}
