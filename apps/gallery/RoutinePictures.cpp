#include "RoutinePictures.h"

#include "buttons/Qanimate.h"
#include "componentbase/Gradient.h"

#include <filesystem>
#include <functional>

namespace qv::gallery {

namespace {

constexpr int kWidth = 80, kHeight = 60, kGap = 8;
constexpr TColor kKey = 0xFF00FF; // the disc: the key of TransparentBlt and ReplaceColor

struct TRoutine {
    const char* name;
    const char* title;
    // Changes `picture`, which starts as the sample.
    std::function<void(TBitmap& picture)> apply;
};

// A copy of the sample turned by `angle` into a white bitmap of its size.
void Rotated(TBitmap& picture, int angle) {
    TBitmap turned(kWidth, kHeight);
    BMPRotate(picture, turned, angle);
    picture.Assign(turned);
}

// The sample drawn with its disc left out over a chequered ground.
void OverChequers(TBitmap& picture) {
    TBitmap ground(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            ground.Canvas().SetPixel(x, y, (x / 6 + y / 6) % 2 ? clSilver : clWhite);
    TransparentBlt(ground.Canvas(), picture, 0, 0, kKey);
    picture.Assign(ground);
}

const std::vector<TRoutine>& Routines() {
    static const std::vector<TRoutine> routines = {
        {"DarkenBMP", "DarkenBMP(50%)", [](TBitmap& b) { DarkenBMP(b, 50, false, 0); }},
        {"LightenBMP", "LightenBMP(50%)", [](TBitmap& b) { LightenBMP(b, 50, false, 0); }},
        {"GreyBMP", "GreyBMP", [](TBitmap& b) { GreyBMP(b, false, 0); }},
        {"RasterBMP-25", "RasterBMP(black, Rast25)", [](TBitmap& b) { RasterBMP(b, 0, Rast25); }},
        {"RasterBMP-50", "RasterBMP(black, Rast50)", [](TBitmap& b) { RasterBMP(b, 0, Rast50); }},
        {"RasterBMP-75", "RasterBMP(black, Rast75)", [](TBitmap& b) { RasterBMP(b, 0, Rast75); }},
        {"BMPRotate-30", "BMPRotate(30) into white", [](TBitmap& b) { Rotated(b, 30); }},
        {"BMPRotate-90", "BMPRotate(90) into white", [](TBitmap& b) { Rotated(b, 90); }},
        {"FlipBMP", "FlipBMP", [](TBitmap& b) { FlipBMP(b); }},
        {"MirrorBMP", "MirrorBMP", [](TBitmap& b) { MirrorBMP(b); }},
        {"ReplaceColor", "ReplaceColor(magenta, yellow)",
         [](TBitmap& b) { ReplaceColor(b, kKey, clYellow); }},
        {"TransparentBlt", "TransparentBlt(magenta) over chequers", OverChequers},
    };
    return routines;
}

} // namespace

void PaintRoutineSample(TBitmap& sample) {
    sample.SetSize(kWidth, kHeight);
    TCanvas& c = sample.Canvas();
    PaintGradient(c, gHorz, GradientColors(RGB(30, 90, 200), RGB(250, 200, 40)), 40,
                  TGradientLayout::Control(kWidth, kHeight));
    c.Brush().SetColor(kKey);
    c.Pen().SetColor(kKey);
    c.Ellipse(8, 8, 40, 40);
    c.Brush().SetColor(RGB(128, 128, 128));
    c.FillRect({48, 10, 72, 22});
    c.Brush().SetStyle(bsClear);
    c.Font().SetColor(clBlack);
    c.TextOut(46, 34, "Ag");
}

std::vector<TRoutinePicture> WriteRoutinePictures(const std::string& dir) {
    std::filesystem::create_directories(dir);
    TBitmap sample;
    PaintRoutineSample(sample);
    std::vector<TRoutinePicture> written;
    for (const TRoutine& routine : Routines()) {
        TBitmap after;
        after.Assign(sample);
        routine.apply(after);
        TBitmap pair(2 * kWidth + kGap, kHeight);
        pair.Canvas().Draw(0, 0, sample);
        pair.Canvas().Draw(kWidth + kGap, 0, after);
        const std::string name = std::string("routine-") + routine.name;
        pair.SaveToFile((std::filesystem::path(dir) / (name + ".png")).string());
        written.push_back({name, routine.title});
    }
    return written;
}

} // namespace qv::gallery
