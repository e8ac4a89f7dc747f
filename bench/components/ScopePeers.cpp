#include "ScopePeers.h"

#include "bench/PlainRaster.h"

#include "instruments/Qpanel.h"
#include "platform/controls/Form.h"

#ifdef QV_BENCH_QT
#include <QImage>
#include <QPainter>
#include <QPolygon>
#endif

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace qv::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWidth = 1000;
constexpr int kHeight = 100;
constexpr int kSamples = TqScope::SampleCount;

// The samples of both beams, newest first, and the scope's default range and grid.
struct TScopeScene {
    std::vector<int> beam1, beam2;
    int min{TqScope::Defaults::Min}, max{TqScope::Defaults::Max};
    int stepX{TqScope::Defaults::GridXstep}, stepY{TqScope::Defaults::GridYstep};
    TScopeScene() {
        for (int i = 0; i < kSamples; ++i) {
            beam1.push_back(50 + static_cast<int>(std::lround(40 * std::sin(i / 37.0))));
            beam2.push_back(20 + (i * 7919) % 23);
        }
    }
    // The row the scope draws a sample at.
    int Row(int sample) const {
        const std::int64_t range = std::max<std::int64_t>(std::int64_t{max} - min, 1);
        return static_cast<int>(kHeight - (std::int64_t{sample} - min) * kHeight / range - 1);
    }
    // The grid rows of the values min + 1 .. max - 1 divisible by stepY.
    std::vector<int> GridRows() const {
        std::vector<int> rows;
        for (int v = min + 1; v < max; ++v)
            if (v % stepY == 0)
                rows.push_back(kHeight - static_cast<int>(std::lround(
                                             (v - min) * 100 / (max - min) * kHeight / 100.0)));
        return rows;
    }
    // The trace's polyline: (W, row(s0)), then (W - 1 - i, row(s_i)) for i = 0 .. W.
    std::vector<std::pair<int, int>> Trace(const std::vector<int>& beam) const {
        std::vector<std::pair<int, int>> points{{kWidth, Row(beam[0])}};
        for (int i = 0; i <= kWidth; ++i)
            points.push_back({kWidth - 1 - i, Row(beam[static_cast<std::size_t>(i)])});
        return points;
    }
};

// The fastest of five repetitions of the mean time of `draw` over enough iterations.
double BestNs(const std::function<void()>& draw) {
    int iterations = 1;
    for (;;) {
        const auto start = Clock::now();
        for (int i = 0; i < iterations; ++i)
            draw();
        if (Clock::now() - start > std::chrono::milliseconds(100)) break;
        iterations *= 2;
    }
    double best = 1e300;
    for (int rep = 0; rep < 5; ++rep) {
        const auto start = Clock::now();
        for (int i = 0; i < iterations; ++i)
            draw();
        const std::chrono::duration<double, std::nano> spent = Clock::now() - start;
        best = std::min(best, spent.count() / iterations);
    }
    return best;
}

void DrawPlain(TPlainRaster& raster, const TScopeScene& scene) {
    raster.FillRect(0, 0, kWidth, kHeight, 0x000000);
    for (int x = scene.stepX; x < kWidth; x += scene.stepX)
        raster.Line(kWidth - x, 0, kWidth - x, kHeight - 1, 0x008000);
    for (int y : scene.GridRows())
        raster.Line(0, y, kWidth - 1, y, 0x008000);
    const auto trace = [&](const std::vector<int>& beam, std::uint32_t color) {
        const auto points = scene.Trace(beam);
        for (std::size_t i = 1; i < points.size(); ++i)
            raster.Line(points[i - 1].first, points[i - 1].second, points[i].first,
                        points[i].second, color);
    };
    trace(scene.beam1, 0x00FF00);
    trace(scene.beam2, 0xFFFF00);
}

double OursNs(const TScopeScene& scene) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 1200, 300);
    form.Show();
    auto* scope = new TqScope(&form);
    scope->SetParent(&form);
    scope->SetBounds(0, 0, kWidth, kHeight);
    scope->SetUse2(true);
    scope->SetAllChannel1(scene.beam1.data());
    scope->SetAllChannel2(scene.beam2.data());
    form.PaintPending();
    return BestNs([&] {
        scope->Invalidate();
        form.PaintPending();
    });
}

#ifdef QV_BENCH_QT
double QtNs(const TScopeScene& scene) {
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    const auto polygon = [&](const std::vector<int>& beam) {
        QPolygon p;
        for (const auto& [x, y] : scene.Trace(beam))
            p << QPoint(x, y);
        return p;
    };
    const QPolygon trace1 = polygon(scene.beam1), trace2 = polygon(scene.beam2);
    const std::vector<int> rows = scene.GridRows();
    return BestNs([&] {
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing, false);
        p.fillRect(0, 0, kWidth, kHeight, QColor(0, 0, 0));
        p.setPen(QPen(QColor(0, 128, 0), 1));
        for (int x = scene.stepX; x < kWidth; x += scene.stepX)
            p.drawLine(kWidth - x, 0, kWidth - x, kHeight - 2);
        for (int y : rows)
            p.drawLine(0, y, kWidth - 2, y);
        p.setPen(QPen(QColor(0, 255, 0), 1));
        p.drawPolyline(trace1);
        p.setPen(QPen(QColor(255, 255, 0), 1));
        p.drawPolyline(trace2);
        p.end();
    });
}
#endif

} // namespace

void ReportScopePeers() {
    const TScopeScene scene;
    const double ours = OursNs(scene);
    TPlainRaster raster(kWidth, kHeight);
    const double plain = BestNs([&] {
        DrawPlain(raster, scene);
        benchmark::DoNotOptimize(raster.Pixels());
    });
    double qt = 0;
#ifdef QV_BENCH_QT
    qt = QtNs(scene);
#endif
    std::printf("scope 1000x100: ours %.0f ns, plain %.0f ns, qt %.0f ns, ratio-plain %.2f, "
                "ratio-qt %.2f\n",
                ours, plain, qt, ours / plain, qt > 0 ? ours / qt : 0.0);
}

} // namespace qv::bench
