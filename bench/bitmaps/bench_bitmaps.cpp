// The bitmap routines of unit Qanimate on a 1024 x 768 bitmap, each beside the same routine
// written naively here (one canvas read and write per pixel, as the routines are defined) and
// beside a memcpy of the bitmap's pixels, the floor of any routine that touches every pixel.
//
//   bench_bitmaps           the usual Google Benchmark table
//   bench_bitmaps --ratio   the table, then "<name>: <value>" lines (the fastest repetition
//                           when --benchmark_repetitions is given):
//     "memcpy: <us> us", "<routine>: <us> us", "<routine> naive: <us> us",
//     "<routine> per memcpy: <ratio>"

#include "bench/RatioReporter.h"
#include "buttons/Qanimate.h"
#include "tests/support/RotateByPixelCalls.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

using namespace qv;

namespace {

constexpr int kWidth = 1024, kHeight = 768;
using test::kPaletteFlag;

void Randomize(TBitmap& b) {
    b.SetSize(kWidth, kHeight);
    std::mt19937 random(42);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            b.Pixels().At(x, y) = random() & 0xFFFFFF;
}

// ---- the naive routines: one canvas read and write per pixel -----------------------------

int NaiveAmount(int percent) {
    return static_cast<int>(std::nearbyint(std::min(percent, 100) * 255 / 100.0));
}

void NaiveShift(TBitmap& b, int delta) {
    TCanvas& c = b.Canvas();
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y) {
            const TColor p = ColorToRGB(c.Pixel(x, y));
            auto channel = [&](int v) { return std::clamp(v + delta, 0, 255); };
            c.SetPixel(x, y,
                       RGB(channel(GetRValue(p)), channel(GetGValue(p)), channel(GetBValue(p))) |
                           kPaletteFlag);
        }
}

void NaiveGrey(TBitmap& b) {
    TCanvas& c = b.Canvas();
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y) {
            const TColor p = c.Pixel(x, y);
            const int r = GetRValue(p), g = GetGValue(p), bl = GetBValue(p);
            if (r == g && g == bl) continue;
            const int grey = static_cast<int>(std::nearbyint((r + g + bl) / 3.0));
            c.SetPixel(x, y, RGB(grey, grey, grey) | kPaletteFlag);
        }
}

void NaiveRaster(TBitmap& b, TColor color) {
    TCanvas& c = b.Canvas();
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y)
            if ((x + y) % 2 == 1) c.SetPixel(x, y, color);
}

// Through a copy, as a flip onto itself by pixel calls needs one.
void NaiveFlip(TBitmap& b, TBitmap& copy, bool mirror) {
    copy.Assign(b);
    TCanvas& from = copy.Canvas();
    TCanvas& to = b.Canvas();
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y)
            to.SetPixel(x, y,
                        mirror ? from.Pixel(b.Width() - 1 - x, y)
                               : from.Pixel(x, b.Height() - 1 - y));
}

void NaiveReplace(TBitmap& b, TColor oldColor, TColor newColor) {
    TCanvas& c = b.Canvas();
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y)
            if (c.Pixel(x, y) == oldColor) c.SetPixel(x, y, newColor);
}

void NaiveTransparentBlt(TCanvas& canvas, TBitmap& b, TColor trans) {
    TCanvas& from = b.Canvas();
    for (int x = 0; x < b.Width(); ++x)
        for (int y = 0; y < b.Height(); ++y) {
            const TColor p = from.Pixel(x, y);
            if (p != trans) canvas.SetPixel(x, y, p);
        }
}

// ---- the benchmarks -----------------------------------------------------------------------

// Runs `body` on a fresh random 1024 x 768 bitmap (and a second one as a destination).
void Run(benchmark::State& state, const std::function<void(TBitmap&, TBitmap&)>& body) {
    TBitmap bitmap, other;
    Randomize(bitmap);
    Randomize(other);
    for (auto _ : state) {
        body(bitmap, other);
        benchmark::DoNotOptimize(bitmap.Pixels().Row(0));
    }
}

void Register(const std::string& name, std::function<void(TBitmap&, TBitmap&)> ours,
              std::function<void(TBitmap&, TBitmap&)> naive) {
    benchmark::RegisterBenchmark(name.c_str(), [ours](benchmark::State& s) {
        Run(s, ours);
    })->Unit(benchmark::kMicrosecond);
    if (naive)
        benchmark::RegisterBenchmark((name + " naive").c_str(), [naive](benchmark::State& s) {
            Run(s, naive);
        })->Unit(benchmark::kMicrosecond);
}

const std::vector<std::string>& RoutineNames() {
    static const std::vector<std::string> names = {
        "DarkenBMP",    "LightenBMP", "GreyBMP",   "RasterBMP",    "BMPRotate 90",  "BMPRotate 180",
        "BMPRotate 45", "FlipBMP",    "MirrorBMP", "ReplaceColor", "TransparentBlt"};
    return names;
}

void RegisterAll() {
    benchmark::RegisterBenchmark("memcpy", [](benchmark::State& s) {
        Run(s, [](TBitmap& b, TBitmap& other) {
            std::memcpy(other.Pixels().Row(0), b.Pixels().Row(0),
                        std::size_t{kWidth} * kHeight * 4);
        });
    })->Unit(benchmark::kMicrosecond);
    Register(
        "DarkenBMP", [](TBitmap& b, TBitmap&) { DarkenBMP(b, 30, false, 0); },
        [](TBitmap& b, TBitmap&) { NaiveShift(b, -NaiveAmount(30)); });
    Register(
        "LightenBMP", [](TBitmap& b, TBitmap&) { LightenBMP(b, 30, false, 0); },
        [](TBitmap& b, TBitmap&) { NaiveShift(b, NaiveAmount(30)); });
    // Each run greys a fresh copy: a grey bitmap would be skipped pixel by pixel.
    Register(
        "GreyBMP", [](TBitmap& b, TBitmap& o) { o.Assign(b), GreyBMP(o, false, 0); },
        [](TBitmap& b, TBitmap& o) { o.Assign(b), NaiveGrey(o); });
    Register(
        "RasterBMP", [](TBitmap& b, TBitmap&) { RasterBMP(b, clRed, Rast50); },
        [](TBitmap& b, TBitmap&) { NaiveRaster(b, clRed); });
    for (int angle : {90, 180, 45})
        Register(
            "BMPRotate " + std::to_string(angle),
            [angle](TBitmap& b, TBitmap& o) { BMPRotate(b, o, angle); },
            [angle](TBitmap& b, TBitmap& o) { test::RotateByPixelCalls(b, o, angle); });
    Register(
        "FlipBMP", [](TBitmap& b, TBitmap&) { FlipBMP(b); },
        [](TBitmap& b, TBitmap& o) { NaiveFlip(b, o, false); });
    Register(
        "MirrorBMP", [](TBitmap& b, TBitmap&) { MirrorBMP(b); },
        [](TBitmap& b, TBitmap& o) { NaiveFlip(b, o, true); });
    // Swapping two colours back and forth keeps the work the same on every run.
    Register(
        "ReplaceColor",
        [](TBitmap& b, TBitmap&) {
            ReplaceColor(b, PixelToColor(b.Pixels().At(0, 0)), PixelToColor(b.Pixels().At(1, 0)));
        },
        [](TBitmap& b, TBitmap&) {
            NaiveReplace(b, PixelToColor(b.Pixels().At(0, 0)), PixelToColor(b.Pixels().At(1, 0)));
        });
    Register(
        "TransparentBlt",
        [](TBitmap& b, TBitmap& o) {
            TransparentBlt(o.Canvas(), b, 0, 0, PixelToColor(b.Pixels().At(0, 0)));
        },
        [](TBitmap& b, TBitmap& o) {
            NaiveTransparentBlt(o.Canvas(), b, PixelToColor(b.Pixels().At(0, 0)));
        });
}

} // namespace

int main(int argc, char** argv) {
    const bool ratio = qv::bench::TakeRatioFlag(argc, argv);
    RegisterAll();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    qv::bench::TRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    if (!ratio) return 0;
    const auto time = [&](const std::string& name) {
        const auto it = reporter.times.find(name);
        return it == reporter.times.end() ? -1.0 : it->second;
    };
    const double floor = time("memcpy");
    std::printf("memcpy: %.0f us\n", floor);
    for (const std::string& name : RoutineNames()) {
        const double ours = time(name);
        if (ours < 0) continue;
        std::printf("%s: %.0f us\n", name.c_str(), ours);
        if (const double naive = time(name + " naive"); naive >= 0)
            std::printf("%s naive: %.0f us\n", name.c_str(), naive);
        if (floor > 0) std::printf("%s per memcpy: %.2f\n", name.c_str(), ours / floor);
    }
    return 0;
}
