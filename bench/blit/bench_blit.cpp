// BitBlt of a 400 x 300 bitmap onto another with each named raster operation (and three
// unnamed ones: DSPDxax, which BrushCopy uses, DPSxx, a sum of its inputs bit by bit, and
// DSna, a function of source and destination with a product term), under a solid brush, and
// two of them under a hatched brush, which differs from pixel to pixel; beside a memcpy of
// the same pixels, the floor of any operation that writes every pixel.
//
//   bench_blit           the usual Google Benchmark table
//   bench_blit --ratio   the table, then "<name>: <ns> ns" lines (the fastest repetition when
//                        --benchmark_repetitions is given) and "<name> per memcpy: <ratio>"

#include "bench/RatioReporter.h"
#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"
#include "platform/graphics/DeviceContext.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace qv;

namespace {

constexpr int kWidth = 400, kHeight = 300;

const std::vector<std::pair<std::string, std::uint32_t>>& Operations() {
    static const std::vector<std::pair<std::string, std::uint32_t>> operations = {
        {"SRCCOPY", SRCCOPY},
        {"SRCPAINT", SRCPAINT},
        {"SRCAND", SRCAND},
        {"SRCINVERT", SRCINVERT},
        {"SRCERASE", SRCERASE},
        {"NOTSRCCOPY", NOTSRCCOPY},
        {"NOTSRCERASE", NOTSRCERASE},
        {"MERGECOPY", MERGECOPY},
        {"MERGEPAINT", MERGEPAINT},
        {"PATCOPY", PATCOPY},
        {"PATPAINT", PATPAINT},
        {"PATINVERT", PATINVERT},
        {"DSTINVERT", DSTINVERT},
        {"BLACKNESS", BLACKNESS},
        {"WHITENESS", WHITENESS},
        {"DSPDxax", 0x00E20746},
        {"DPSxx", 0x00960169},
        {"DSna", 0x00220326},
        {"MERGECOPY hatched", MERGECOPY},
        {"DPSxx hatched", 0x00960169}};
    return operations;
}

void Randomize(TBitmap& bitmap, unsigned seed) {
    bitmap.SetSize(kWidth, kHeight);
    std::mt19937 random(seed);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            bitmap.Pixels().At(x, y) = random() & 0xFFFFFF;
}

// The bitmaps every operation and the memcpy work on: the same memory for all, so that where
// the system happened to place a buffer (which moves a copy of this size by half) does not
// enter the ratios. The destination keeps changing under the operations that read it; its
// pixels do not change the work any operation does.
struct TPixels {
    TBitmap source, dest;
    TPixels() {
        Randomize(source, 1);
        Randomize(dest, 2);
        dest.Canvas().Brush().SetColor(TColor(0x336699));
    }
};

void Blit(benchmark::State& state, TPixels& pixels, std::uint32_t rop, bool hatched) {
    pixels.dest.Canvas().Brush().SetStyle(hatched ? bsDiagCross : bsSolid);
    HDC to = pixels.dest.Canvas().Handle();
    HDC from = pixels.source.Canvas().Handle();
    for (auto _ : state) {
        BitBlt(to, 0, 0, kWidth, kHeight, from, 0, 0, rop);
        benchmark::DoNotOptimize(pixels.dest.Pixels().Row(0));
        benchmark::ClobberMemory();
    }
}

void Memcpy(benchmark::State& state, TPixels& pixels) {
    qv::bench::MemcpyFloor(state, pixels.source.Pixels().Row(0), pixels.dest.Pixels().Row(0),
                           std::size_t{kWidth} * kHeight);
}

} // namespace

int main(int argc, char** argv) {
    const bool ratio = qv::bench::TakeRatioFlag(argc, argv);
    TPixels pixels;
    benchmark::RegisterBenchmark("memcpy", [&pixels](benchmark::State& s) { Memcpy(s, pixels); });
    for (const auto& [name, rop] : Operations())
        benchmark::RegisterBenchmark(name.c_str(),
                                     [&pixels, rop = rop, hatched = name.ends_with(" hatched")](
                                         benchmark::State& s) { Blit(s, pixels, rop, hatched); });
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
    std::printf("memcpy: %.0f ns\n", floor);
    for (const auto& [name, rop] : Operations()) {
        const double ours = time(name);
        if (ours < 0) continue;
        std::printf("%s: %.0f ns\n", name.c_str(), ours);
        if (floor > 0) std::printf("%s per memcpy: %.2f\n", name.c_str(), ours / floor);
    }
    return 0;
}
