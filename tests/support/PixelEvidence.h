#pragma once
// Evidence for failing pixel tests: the actual and expected pictures and their difference,
// written as PNG files into the build folder so that a fault can be seen at once.

#include "platform/graphics/PixelBuffer.h"

#include <string>

namespace qv::test {

// Writes <dir>/<name>-actual.png, -expected.png and -diff.png (pixels that differ in red, the
// rest faded) and returns "<dir>/<name>-{actual,expected,diff}.png" for the message.
std::string WritePixelEvidence(const std::string& dir, const std::string& name,
                               const TPixelBuffer& actual, const TPixelBuffer& expected);

// Counts the pixels in which two pictures differ; a size mismatch counts every pixel of the
// larger one.
long CountDifferentPixels(const TPixelBuffer& actual, const TPixelBuffer& expected);

} // namespace qv::test
