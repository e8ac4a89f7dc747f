#pragma once
// Before and after pictures of the bitmap routines of unit Qanimate: one sample picture, and
// per routine that picture (left) beside what the routine makes of it (right).

#include "platform/graphics/Bitmap.h"

#include <string>
#include <vector>

namespace qv::gallery {

struct TRoutinePicture {
    std::string name;  // file name without the extension, "routine-DarkenBMP"
    std::string title; // how it was called, "DarkenBMP(50%)"
};

// The sample every routine starts from: a gradient with a magenta disc, a grey bar and text.
void PaintRoutineSample(TBitmap& sample);

// Writes DIR/<name>.png for every routine and returns them in order.
std::vector<TRoutinePicture> WriteRoutinePictures(const std::string& dir);

} // namespace qv::gallery
