// Pixel buffers that own their pixels and views of pixels that live elsewhere: drawing
// through a view lands in the viewed memory and nowhere else, copies always own; the row
// loops of the raster operations in each vector width.

#include "platform/graphics/Canvas.h"
#include "platform/graphics/PixelRows.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

using namespace qv;

namespace {

constexpr std::uint32_t white = 0x00FFFFFF;
constexpr std::uint32_t red = 0x00FF0000;

int CountOf(const TPixelBuffer& b, std::uint32_t pixel) {
    int n = 0;
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            if (b.At(x, y) == pixel) ++n;
    return n;
}

} // namespace

TEST(PixelBuffer, DrawingThroughASubViewChangesOnlyThatPart) {
    TPixelBuffer frame(20, 10, white);
    TPixelBuffer view = frame.SubView(Bounds(5, 2, 8, 4));
    ASSERT_TRUE(view.IsView());
    EXPECT_EQ(view.Stride(), 20);
    EXPECT_EQ(view.Bounds(), Rect(0, 0, 8, 4));

    TCanvas canvas(&view);
    canvas.Brush().SetColor(clRed);
    canvas.FillRect(Rect(-10, -10, 100, 100)); // clipped to the view, not to the frame
    EXPECT_EQ(CountOf(frame, red), 8 * 4);
    for (int y = 0; y < frame.Height(); ++y)
        for (int x = 0; x < frame.Width(); ++x)
            EXPECT_EQ(frame.At(x, y), Bounds(5, 2, 8, 4).Contains({x, y}) ? red : white)
                << x << "," << y;
}

TEST(PixelBuffer, FillOfAViewKeepsToItsRows) {
    std::vector<std::uint32_t> memory(6 * 3, white);
    TPixelBuffer view = TPixelBuffer::View(memory.data() + 1, 4, 3, 6);
    view.Fill(red);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 6; ++x)
            EXPECT_EQ(memory[y * 6 + x], x >= 1 && x < 5 ? red : white) << x << "," << y;
}

TEST(PixelBuffer, CopiesOfAViewOwnTheirPixels) {
    TPixelBuffer frame(6, 4, white);
    frame.At(2, 1) = red;
    const TPixelBuffer view = frame.SubView(Bounds(1, 1, 3, 2));
    TPixelBuffer copy = view;
    EXPECT_FALSE(copy.IsView());
    EXPECT_EQ(copy.Stride(), 3);
    EXPECT_EQ(copy, view);
    EXPECT_EQ(copy.At(1, 0), red);
    frame.At(2, 1) = white; // the copy does not follow the viewed memory
    EXPECT_EQ(copy.At(1, 0), red);
    EXPECT_NE(copy, view);

    TPixelBuffer assigned(1, 1);
    assigned = view;
    EXPECT_FALSE(assigned.IsView());
    EXPECT_EQ(assigned, view);
}

TEST(PixelBuffer, MovingAViewKeepsTheViewAndResizingMakesItOwn) {
    TPixelBuffer frame(6, 4, white);
    TPixelBuffer view = frame.SubView(Bounds(2, 0, 4, 4));
    TPixelBuffer moved = std::move(view);
    EXPECT_TRUE(moved.IsView());
    moved.At(0, 0) = red;
    EXPECT_EQ(frame.At(2, 0), red);

    moved.Resize(4, 4); // same size: still a view
    EXPECT_TRUE(moved.IsView());
    moved.Resize(5, 4, 0);
    EXPECT_FALSE(moved.IsView());
    EXPECT_EQ(moved.At(0, 0), red); // the overlapping part is kept
    EXPECT_EQ(moved.At(4, 3), 0u);
    moved.At(1, 0) = red;
    EXPECT_EQ(frame.At(3, 0), white); // and no longer written through
}

TEST(PixelBuffer, CopyPixelsBetweenPlacedBuffers) {
    TPixelBuffer from(4, 4, red);
    TPixelBuffer to(10, 10, white);
    // `from` sits at (3, 5) of a shared space, `to` at (0, 0); copy the part (4, 6)-(6, 8).
    CopyPixels(from, {3, 5}, to, {0, 0}, Rect(4, 6, 6, 8));
    EXPECT_EQ(CountOf(to, red), 4);
    EXPECT_EQ(to.At(4, 6), red);
    EXPECT_EQ(to.At(5, 7), red);
    EXPECT_EQ(to.At(6, 7), white);
}

// Every vector width the processor runs computes what the pixel-by-pixel loop computes: the
// widest one is what the blits take here, the narrower ones are what other processors take.
// Rows of odd lengths leave tails after the vectors; the pattern is one pixel or a row.
TEST(PixelBuffer, RowLoopsOfEveryVectorWidthMatchThePixelLoop) {
    using namespace pixel_rows;
    std::mt19937 random(5);
    const auto pixels = [&](std::size_t n) {
        std::vector<std::uint32_t> v(n);
        for (std::uint32_t& p : v)
            p = static_cast<std::uint32_t>(random());
        return v;
    };
    const std::vector<std::uint32_t> src = pixels(77), under = pixels(77), start = pixels(77);
    // A mix of all three inputs with constants, as the operations under a solid brush run.
    const std::uint32_t a = 0x00F0F0F0, b = 0x0F0F0F0F;
    const auto op = [a, b](auto& r, const auto& p, const auto& s, const auto& d) {
        r = a ^ (s & b) ^ (d & p) ^ (s & d & ~p);
    };
    using TRowLoop = void (*)(std::uint32_t*, const std::uint32_t*, const TPatternRow&, int,
                              const decltype(op)&);
    std::vector<std::pair<const char*, TRowLoop>> loops = {
        {"sse2", &MixRowSse2<0x00FFFFFFu, TPatternRow, decltype(op)>}};
    if (__builtin_cpu_supports("avx2"))
        loops.emplace_back("avx2", &MixRowAvx2<0x00FFFFFFu, TPatternRow, decltype(op)>);
    if (__builtin_cpu_supports("avx512f"))
        loops.emplace_back("avx512", &MixRowAvx512<0x00FFFFFFu, TPatternRow, decltype(op)>);
    for (const int count : {0, 1, 7, 15, 16, 17, 33, 77})
        for (const auto& [name, loop] : loops) {
            std::vector<std::uint32_t> expected = start, actual = start;
            for (int i = 0; i < count; ++i) {
                std::uint32_t r;
                op(r, under[i], src[i], expected[i]);
                expected[i] = r & 0x00FFFFFFu;
            }
            loop(actual.data(), src.data(), TPatternRow{under.data()}, count, op);
            EXPECT_EQ(actual, expected) << name << " count " << count;
        }
}
