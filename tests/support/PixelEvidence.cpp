#include "PixelEvidence.h"

#include "platform/graphics/GdiReplay.h"
#include "platform/graphics/ImageIO.h"

#include <filesystem>

namespace qv::test {

std::string WritePixelEvidence(const std::string& dir, const std::string& name,
                               const TPixelBuffer& actual, const TPixelBuffer& expected) {
    std::filesystem::create_directories(dir);
    const std::string base = dir + "/" + name;
    WriteFileBytes(base + "-actual.png", EncodePng(actual, false));
    WriteFileBytes(base + "-expected.png", EncodePng(expected, false));
    WriteFileBytes(base + "-diff.png", EncodePng(DiffImage(actual, expected), false));
    return base + "-{actual,expected,diff}.png";
}

long CountDifferentPixels(const TPixelBuffer& actual, const TPixelBuffer& expected) {
    if (actual.Width() != expected.Width() || actual.Height() != expected.Height())
        return static_cast<long>(
            std::max(actual.Width() * actual.Height(), expected.Width() * expected.Height()));
    long count = 0;
    for (int y = 0; y < actual.Height(); ++y)
        for (int x = 0; x < actual.Width(); ++x)
            if ((actual.At(x, y) ^ expected.At(x, y)) & 0xFFFFFF) ++count;
    return count;
}

} // namespace qv::test
