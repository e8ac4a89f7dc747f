// The block-transfer corpus replayed through TCanvas (every case pixel for pixel), and blits
// with hostile extents and positions: they stay inside their buffers and cost what the
// visible destination costs.

#include "platform/graphics/Canvas.h"
#include "platform/graphics/GdiReplay.h"
#include "support/PixelEvidence.h"

#include "platform/core/Exceptions.h"

#include <gtest/gtest.h>

#include <climits>

using namespace qv;

namespace {

const std::string CorpusDir = std::string(QV_TEST_DATA) + "/gdi-reference-blit";
const std::string OutDir = std::string(QV_TEST_OUT) + "/gdi-reference-blit";

// A source whose every pixel differs from its neighbours and from the destination's grey.
TPixelBuffer Numbered(int width, int height) {
    TPixelBuffer pixels(width, height, 0);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pixels.At(x, y) = static_cast<std::uint32_t>(0x010000 * (x + 1) + 0x000100 * (y + 1));
    return pixels;
}

constexpr std::uint32_t Grey = 0x777777;

} // namespace

TEST(BlitReference, CorpusMatchesPixelForPixel) {
    std::vector<std::string> evidence;
    const auto results = RunReplay(
        CorpusDir, [&](const TReplayCase& c, const TPixelBuffer& a, const TPixelBuffer& e) {
            evidence.push_back(test::WritePixelEvidence(OutDir, c.name, a, e));
        });
    ASSERT_EQ(results.size(), 400u);
    for (const auto& r : results)
        EXPECT_EQ(r.mismatches, 0) << r.name << ": " << (r.mismatches < 0 ? r.error : "differs");
    for (const auto& file : evidence)
        ADD_FAILURE() << "pictures written: " << file;
}

TEST(BlitReference, BadOperationsNameTheCaseAndTheLine) {
    const auto messageOf = [](const std::string& text) -> std::string {
        try {
            for (const auto& c : ParseReplayCases(text))
                RenderReplayCase(c);
        } catch (const EConvertError& e) {
            return e.what();
        }
        return "accepted";
    };
    const std::string unknown =
        messageOf("case blt_7 4 4 FFFFFF\nsource 2 2 mono 1\n\nfrobnicate 1 2\nend\n");
    EXPECT_NE(unknown.find("line 4"), std::string::npos) << unknown;
    EXPECT_NE(unknown.find("blt_7"), std::string::npos) << unknown;
    EXPECT_NE(unknown.find("frobnicate"), std::string::npos) << unknown;
    const std::string shortBlit = messageOf("case s_1 4 4 FFFFFF\nstretchblt 0 0 2 2 0 0 1\nend\n");
    EXPECT_NE(shortBlit.find("line 2 (case s_1)"), std::string::npos) << shortBlit;
    const std::string badRop = messageOf("case r_1 4 4 FFFFFF\npatblt 0 0 2 2 PATNOTHING\nend\n");
    EXPECT_NE(badRop.find("line 2 (case r_1)"), std::string::npos) << badRop;
    EXPECT_NE(badRop.find("PATNOTHING"), std::string::npos) << badRop;
    EXPECT_NE(messageOf("case m_1 4 4 FFFFFF\nstretchmode sideways\nend\n").find("sideways"),
              std::string::npos);
}

TEST(Blit, DegenerateExtentsAndFarRectanglesDrawNothing) {
    const TPixelBuffer source = Numbered(6, 5);
    const TPixelBuffer empty;
    TPixelBuffer target(8, 8, Grey);
    TDeviceContext dc(&target);
    constexpr int far = 1000000;
    for (std::uint32_t rop : {SRCCOPY, SRCINVERT, 0x00B80000u}) {
        for (int mode : {BLACKONWHITE, WHITEONBLACK, COLORONCOLOR}) {
            dc.SetStretchBltMode(mode);
            // Zero extents on either side.
            dc.BitBlt(0, 0, 0, 5, &source, 0, 0, rop);
            dc.BitBlt(0, 0, 5, 0, &source, 0, 0, rop);
            dc.StretchBlt(0, 0, 8, 8, &source, 0, 0, 0, 5, rop);
            dc.StretchBlt(0, 0, 8, 8, &source, 0, 0, 5, 0, rop);
            // A 0x0 source, and sources wholly outside theirs, however they are stretched.
            dc.StretchBlt(0, 0, 8, 8, &empty, 0, 0, 4, 4, rop);
            dc.StretchBlt(0, 0, 8, 8, &source, far, -far, 3, 3, rop);
            dc.StretchBlt(0, 0, 8, 8, &source, -far, 0, -3, 300, rop);
            dc.StretchBlt(7, 7, -8, -8, &source, 6, 5, 3, 3, rop);
            dc.BitBlt(0, 0, 8, 8, &source, -far, -far, rop);
            // Destinations far off the target, mirrored or not.
            dc.BitBlt(far, far, 4, 4, &source, 0, 0, rop);
            dc.StretchBlt(-far, 0, -3, 8, &source, 0, 0, 6, 5, rop);
            dc.StretchBlt(0, far, 8, -far + 20, &source, 0, 0, 6, 5, rop);
            dc.TransparentBlt(-far, -far, 4, 4, source, 0, 0, 6, 5, 0);
            dc.TransparentBlt(0, 0, 8, 8, source, far, far, 6, 5, 0);
            dc.TransparentBlt(0, 0, -8, 8, source, 0, 0, 6, 5, 0);
            dc.TransparentBlt(0, 0, 8, 8, empty, 0, 0, 6, 5, 0);
            dc.PatBlt(far, -far, 5, 5, PATINVERT);
            dc.PatBlt(0, 0, 0, -far, DSTINVERT);
        }
    }
    EXPECT_EQ(target, TPixelBuffer(8, 8, Grey));
}

TEST(Blit, NegativeExtentsMirrorEitherSide) {
    const TPixelBuffer source = Numbered(4, 1);
    TPixelBuffer target(6, 1, Grey);
    TDeviceContext dc(&target);
    // The destination runs leftwards from x = 4: x 1..4 take source pixels 0..3.
    dc.StretchBlt(4, 0, -4, 1, &source, 0, 0, 4, 1, SRCCOPY);
    for (int d = 0; d < 4; ++d)
        EXPECT_EQ(target.At(4 - d, 0), source.At(d, 0)) << d;
    EXPECT_EQ(target.At(0, 0), Grey);
    EXPECT_EQ(target.At(5, 0), Grey);
    // The source runs leftwards from x = 3; the same picture.
    TPixelBuffer again(6, 1, Grey);
    TDeviceContext(&again).StretchBlt(1, 0, 4, 1, &source, 3, 0, -4, 1, SRCCOPY);
    EXPECT_EQ(again, target);
    // Both negative: they cancel.
    TPixelBuffer straight(6, 1, Grey);
    TDeviceContext(&straight).StretchBlt(4, 0, -4, 1, &source, 3, 0, -4, 1, SRCCOPY);
    for (int x = 1; x <= 4; ++x)
        EXPECT_EQ(straight.At(x, 0), source.At(x - 1, 0)) << x;
}

TEST(Blit, HugeBlitsCostWhatTheVisibleDestinationCosts) {
    // Each of these covers about 4 * 10^18 destination pixels; done pixel by pixel they would
    // never end.
    const TPixelBuffer source = Numbered(16, 16);
    constexpr int far = 1000000000;
    {
        // Unstretched: only the part over the source is drawn, with a ROP and without.
        for (std::uint32_t rop : {SRCCOPY, SRCPAINT}) {
            TPixelBuffer target(32, 32, 0);
            TDeviceContext dc(&target);
            dc.BitBlt(-far, -far, 2 * far, 2 * far, &source, -far - 5, -far - 7, rop);
            EXPECT_EQ(target.At(5, 7), source.At(0, 0));
            EXPECT_EQ(target.At(20, 22), source.At(15, 15));
            EXPECT_EQ(target.At(21, 22), 0u);
            EXPECT_EQ(target.At(4, 7), 0u);
        }
    }
    {
        // Grown 2^31 - 1 times: the visible corner shows source pixel (0, 0) everywhere.
        TPixelBuffer target(32, 32, 0);
        TDeviceContext dc(&target);
        dc.StretchBlt(0, 0, INT_MAX, INT_MAX, &source, 0, 0, 16, 16, SRCINVERT);
        EXPECT_EQ(target.At(31, 31), source.At(0, 0));
        // Mirrored: the right end of the destination is far away.
        dc.StretchBlt(31, 31, INT_MIN, INT_MIN, &source, 0, 0, 16, 16, SRCCOPY);
        EXPECT_EQ(target.At(0, 0), source.At(0, 0));
    }
    {
        // Shrunk from a source rectangle 2 * 10^9 wide: each destination pixel collects
        // 10^8 source pixels, of which only those inside the bitmap are read.
        TPixelBuffer target(20, 20, Grey);
        TDeviceContext dc(&target);
        dc.SetStretchBltMode(WHITEONBLACK);
        dc.StretchBlt(0, 0, 20, 20, &source, -far, -far, 2 * far, 2 * far, SRCCOPY);
        std::uint32_t all = 0;
        for (std::uint32_t p : source.Pixels())
            all |= p;
        EXPECT_EQ(target.At(10, 10), all); // the one pixel whose run holds the whole bitmap
        EXPECT_EQ(target.At(9, 10), Grey);
        EXPECT_EQ(target.At(10, 11), Grey);
    }
}
