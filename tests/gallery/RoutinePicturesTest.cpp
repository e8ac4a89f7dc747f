// The bitmap routines' before and after pictures: one file per routine, the sample on the
// left and a changed picture on the right.

#include "RoutinePictures.h"

#include "platform/graphics/Canvas.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace qv;
using namespace qv::gallery;

namespace {

int Differing(const TPixelBuffer& a, const TPixelBuffer& b) {
    int count = 0;
    for (int y = 0; y < a.Height(); ++y)
        for (int x = 0; x < a.Width(); ++x)
            count += a.At(x, y) != b.At(x, y);
    return count;
}

} // namespace

TEST(RoutinePictures, EachRoutineShowsTheSampleBesideWhatItMadeOfIt) {
    const std::string dir = std::string(QV_TEST_OUT) + "/routine-pictures";
    std::filesystem::remove_all(dir);
    const std::vector<TRoutinePicture> written = WriteRoutinePictures(dir);
    ASSERT_EQ(written.size(), 12u);
    TBitmap sample;
    PaintRoutineSample(sample);
    const int w = sample.Width(), h = sample.Height();
    for (const TRoutinePicture& routine : written) {
        TBitmap pair;
        pair.LoadFromFile(dir + "/" + routine.name + ".png");
        ASSERT_EQ(pair.Height(), h) << routine.name;
        ASSERT_GT(pair.Width(), 2 * w) << routine.name;
        TBitmap left(w, h), right(w, h);
        left.Canvas().CopyRect({0, 0, w, h}, pair.Canvas(), {0, 0, w, h});
        right.Canvas().CopyRect({0, 0, w, h}, pair.Canvas(),
                                {pair.Width() - w, 0, pair.Width(), h});
        EXPECT_EQ(Differing(left.Pixels(), sample.Pixels()), 0) << routine.name;
        EXPECT_GT(Differing(right.Pixels(), sample.Pixels()), 0) << routine.name;
    }
}
