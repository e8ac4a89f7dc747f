// Canvas speed: the same scenes drawn in the same run by our canvas, by a plain integer
// rasterizer written here (PlainRaster.h: no drawing rules beyond the obvious ones, the floor
// a canvas with the classic pixel rules is measured against), by Qt 5's raster paint engine
// (QImage Format_RGB32 + QPainter, antialiasing off) and by cairo (image surface RGB24,
// CAIRO_ANTIALIAS_NONE), beside a plain memset (memcpy for the block copy) of the scene's area.
// Every side draws the same primitives with the same geometry and colours; the pixels differ
// only where the rasterizers round differently.
//
//   bench_canvas                the usual Google Benchmark table
//   bench_canvas --ratio        the table, then one line per scene (the fastest repetition when
//                               --benchmark_repetitions is given):
//     "<scene>: ours <ns> ns, plain <ns> ns, qt <ns> ns, cairo <ns> ns, ratio-plain <ours/plain>,
//      ratio-qt <ours/qt>, floor <ns> ns" (plain "-" for text, which it does not draw)
//   bench_canvas --pictures DIR  writes each scene as ours, plain and Qt draw it,
//                               DIR/<scene>-<side>.png, so that anyone can see they match

#include "bench/PlainRaster.h"
#include "bench/RatioReporter.h"
#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"
#include "platform/graphics/ImageIO.h"

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPoint>
#include <QPolygon>
#include <QString>
#include <benchmark/benchmark.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using qv::TColor;
using qv::TPoint;
using qv::TRect;

namespace {

// ---- scene geometry, shared by all sides ------------------------------------------------

struct TRgb {
    int r, g, b;
};

TColor ToColor(TRgb c) {
    return TColor(static_cast<std::uint32_t>(c.r | (c.g << 8) | (c.b << 16)));
}
QColor ToQColor(TRgb c) {
    return QColor(c.r, c.g, c.b);
}
void CairoColor(cairo_t* cr, TRgb c) {
    cairo_set_source_rgb(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0);
}

constexpr TRgb Black{0, 0, 0};
constexpr TRgb Face{192, 192, 192};
constexpr TRgb Grid{128, 128, 128};

// A line from `from` to `to` (the last point not drawn, as a canvas LineTo).
struct TLine {
    TPoint from, to;
};

// Angles in degrees, counter-clockwise from three o'clock.
struct TWedge {
    int startDeg, spanDeg;
    TRgb color;
};

struct TInstrument {
    static constexpr int Size = 120;
    static constexpr TPoint Centre{60, 60};
    std::vector<TLine> ticks;        // 60 one-pixel lines from the centre
    std::vector<TRect> ellipses;     // 10 stacked boxes, outlined and filled
    std::vector<TRgb> ellipseColors; // one per box
    TRect pieBox{20, 20, 100, 100};
    std::vector<TWedge> wedges; // 4 pie wedges
    TLine needle;               // 3 pixels wide

    TInstrument() {
        for (int i = 0; i < 60; ++i) {
            const double a = i * 6.0 * M_PI / 180.0;
            ticks.push_back({Centre,
                             {Centre.x + static_cast<int>(std::lround(56 * std::cos(a))),
                              Centre.y - static_cast<int>(std::lround(56 * std::sin(a)))}});
        }
        for (int i = 0; i < 10; ++i) {
            ellipses.push_back({2 + 4 * i, 2 + 4 * i, 118 - 4 * i, 118 - 4 * i});
            ellipseColors.push_back({255 - 12 * i, 200 - 8 * i, 120 + 10 * i});
        }
        wedges = {{0, 45, {255, 0, 0}},
                  {45, 45, {255, 255, 0}},
                  {90, 60, {0, 192, 0}},
                  {150, 60, {0, 0, 255}}};
        const double a = 130.0 * M_PI / 180.0;
        needle = {Centre,
                  {Centre.x + static_cast<int>(std::lround(50 * std::cos(a))),
                   Centre.y - static_cast<int>(std::lround(50 * std::sin(a)))}};
    }
    // The point on the ellipse of `pieBox` in the direction `deg` (canvas Pie radials).
    TPoint Radial(int deg) const {
        const double a = deg * M_PI / 180.0;
        return {Centre.x + static_cast<int>(std::lround(100 * std::cos(a))),
                Centre.y - static_cast<int>(std::lround(100 * std::sin(a)))};
    }
};

struct TStripChart {
    static constexpr int Width = 1000;
    static constexpr int Height = 100;
    std::vector<TLine> grid; // 90 vertical and 10 horizontal lines
    std::vector<TPoint> traceA, traceB;

    TStripChart() {
        for (int i = 0; i < 90; ++i)
            grid.push_back({{5 + 11 * i, 0}, {5 + 11 * i, Height}});
        for (int i = 0; i < 10; ++i)
            grid.push_back({{0, 5 + 10 * i}, {Width, 5 + 10 * i}});
        std::uint32_t seed = 12345;
        const auto noise = [&seed] {
            seed = seed * 1103515245u + 12345u;
            return static_cast<int>((seed >> 16) % 7) - 3;
        };
        for (int x = 0; x < Width; ++x) {
            traceA.push_back(
                {x, 50 + static_cast<int>(std::lround(40 * std::sin(x / 37.0))) + noise()});
            traceB.push_back(
                {x, 50 + static_cast<int>(std::lround(30 * std::cos(x / 23.0))) + noise()});
        }
    }
};

struct TBands {
    static constexpr int Width = 400;
    static constexpr int Height = 300;
    static TRect Band(int i) { return {0, i * Height / 255, Width, (i + 1) * Height / 255}; }
    static TRgb Color(int i) { return {i / 2, i / 3, i}; }
};

struct TTextScene {
    static constexpr int Width = 400;
    static constexpr int Height = 300;
    static constexpr int PixelHeight = 11; // 8 points at 96 pixels per inch
    std::vector<std::string> lines;
    TTextScene() {
        for (int i = 0; i < 20; ++i)
            lines.push_back("Channel " + std::to_string(i + 1) + ": " +
                            std::to_string(230 - 7 * i) + ".5 V, limit 250 V");
    }
    static TPoint Origin(int i) { return {8, 4 + 14 * i}; }
};

const TInstrument& Instrument() {
    static const TInstrument scene;
    return scene;
}
const TStripChart& Chart() {
    static const TStripChart scene;
    return scene;
}
const TTextScene& TextScene() {
    static const TTextScene scene;
    return scene;
}

// A source picture for the block copies: a pattern of distinct pixels.
std::uint32_t SourcePixel(int x, int y) {
    return static_cast<std::uint32_t>((x * 2654435761u) ^ (y * 40503u)) & 0x00FFFFFFu;
}

// ---- our canvas -------------------------------------------------------------------------

void OurLines(qv::TCanvas& c, const std::vector<TLine>& lines) {
    for (const TLine& l : lines) {
        c.MoveTo(l.from.x, l.from.y);
        c.LineTo(l.to.x, l.to.y);
    }
}

void DrawOursInstrument(qv::TCanvas& c) {
    const TInstrument& s = Instrument();
    c.Brush().SetColor(ToColor(Face));
    c.FillRect({0, 0, TInstrument::Size, TInstrument::Size});
    c.Pen().SetWidth(1);
    c.Pen().SetColor(ToColor(Black));
    for (std::size_t i = 0; i < s.ellipses.size(); ++i) {
        c.Brush().SetColor(ToColor(s.ellipseColors[i]));
        c.Ellipse(s.ellipses[i]);
    }
    for (const TWedge& w : s.wedges) {
        const TPoint a = s.Radial(w.startDeg);
        const TPoint b = s.Radial(w.startDeg + w.spanDeg);
        c.Brush().SetColor(ToColor(w.color));
        c.Pie(s.pieBox.left, s.pieBox.top, s.pieBox.right, s.pieBox.bottom, a.x, a.y, b.x, b.y);
    }
    OurLines(c, s.ticks);
    c.Pen().SetWidth(3);
    OurLines(c, {s.needle});
}

void DrawOursStripChart(qv::TCanvas& c) {
    const TStripChart& s = Chart();
    c.Pen().SetColor(ToColor(Grid));
    OurLines(c, s.grid);
    c.Pen().SetColor(TColor(0x0000FF));
    c.Polyline(s.traceA);
    c.Pen().SetColor(TColor(0x008000));
    c.Polyline(s.traceB);
}

// Runs `draw` on a bitmap of the scene's size for as long as the benchmark asks.
template <class Draw> void OursScene(benchmark::State& state, int width, int height, Draw draw) {
    qv::TBitmap bitmap(width, height);
    for (auto _ : state) {
        draw(bitmap.Canvas());
        benchmark::DoNotOptimize(bitmap.Pixels().Row(0));
    }
}

void OursInstrument(benchmark::State& state) {
    OursScene(state, TInstrument::Size, TInstrument::Size, DrawOursInstrument);
}

void OursStripChart(benchmark::State& state) {
    OursScene(state, TStripChart::Width, TStripChart::Height, DrawOursStripChart);
}

void OursBands(benchmark::State& state) {
    qv::TBitmap bitmap(TBands::Width, TBands::Height);
    qv::TCanvas& c = bitmap.Canvas();
    for (auto _ : state) {
        for (int i = 0; i < 255; ++i) {
            c.Brush().SetColor(ToColor(TBands::Color(i)));
            c.FillRect(TBands::Band(i));
        }
        benchmark::DoNotOptimize(bitmap.Pixels().Row(0));
    }
}

// The two bitmaps of our block copy, which its memcpy floor copies too: the same memory for
// both, so that where the system happened to place a buffer (which moves a copy of this size
// by half between runs) does not enter the ratio.
struct TBlockCopyPixels {
    qv::TBitmap source{TBands::Width, TBands::Height};
    qv::TBitmap target{TBands::Width, TBands::Height};
    TBlockCopyPixels() {
        for (int y = 0; y < TBands::Height; ++y)
            for (int x = 0; x < TBands::Width; ++x)
                source.Pixels().At(x, y) = SourcePixel(x, y);
    }
};

TBlockCopyPixels& BlockCopyPixels() {
    static TBlockCopyPixels pixels;
    return pixels;
}

void OursBlockCopy(benchmark::State& state) {
    TBlockCopyPixels& pixels = BlockCopyPixels();
    qv::TCanvas& c = pixels.target.Canvas();
    for (auto _ : state) {
        c.Draw(0, 0, pixels.source);
        benchmark::DoNotOptimize(pixels.target.Pixels().Row(0));
    }
    if (pixels.target.Pixels() != pixels.source.Pixels())
        state.SkipWithError("the copy differs from its source");
}

void OursText(benchmark::State& state) {
    const TTextScene& s = TextScene();
    qv::TBitmap bitmap(TTextScene::Width, TTextScene::Height);
    qv::TCanvas& c = bitmap.Canvas();
    c.Font().SetName("DejaVu Sans");
    c.Font().SetHeight(-TTextScene::PixelHeight);
    c.Font().SetQuality(qv::fqNonAntialiased);
    c.Font().SetColor(ToColor(Black));
    c.Brush().SetStyle(qv::bsClear);
    for (auto _ : state) {
        for (std::size_t i = 0; i < s.lines.size(); ++i) {
            const TPoint p = s.Origin(static_cast<int>(i));
            c.TextOut(p.x, p.y, s.lines[i]);
        }
        benchmark::DoNotOptimize(bitmap.Pixels().Row(0));
    }
}

// ---- the plain peer ------------------------------------------------------------------------

std::uint32_t Pixel(TRgb c) {
    return static_cast<std::uint32_t>(c.b | (c.g << 8) | (c.r << 16));
}

void PlainLines(qv::bench::TPlainRaster& r, const std::vector<TLine>& lines, std::uint32_t color) {
    for (const TLine& l : lines)
        r.Line(l.from.x, l.from.y, l.to.x, l.to.y, color);
}

std::vector<int> Flatten(const std::vector<TPoint>& points) {
    std::vector<int> xy;
    for (const TPoint& p : points) {
        xy.push_back(p.x);
        xy.push_back(p.y);
    }
    return xy;
}

void DrawPlainInstrument(qv::bench::TPlainRaster& r) {
    const TInstrument& s = Instrument();
    r.FillRect(0, 0, TInstrument::Size, TInstrument::Size, Pixel(Face));
    for (std::size_t i = 0; i < s.ellipses.size(); ++i) {
        const TRect& e = s.ellipses[i];
        r.Ellipse(e.left, e.top, e.right, e.bottom, Pixel(s.ellipseColors[i]), Pixel(Black));
    }
    for (const TWedge& w : s.wedges) {
        const TPoint a = s.Radial(w.startDeg);
        const TPoint b = s.Radial(w.startDeg + w.spanDeg);
        r.Pie(s.pieBox.left, s.pieBox.top, s.pieBox.right, s.pieBox.bottom, a.x, a.y, b.x, b.y,
              Pixel(w.color), Pixel(Black));
    }
    PlainLines(r, s.ticks, Pixel(Black));
    r.WideLine(s.needle.from.x, s.needle.from.y, s.needle.to.x, s.needle.to.y, 3, Pixel(Black));
}

void DrawPlainStripChart(qv::bench::TPlainRaster& r) {
    static const std::vector<int> traceA = Flatten(Chart().traceA);
    static const std::vector<int> traceB = Flatten(Chart().traceB);
    PlainLines(r, Chart().grid, Pixel(Grid));
    r.Polyline(traceA.data(), static_cast<int>(traceA.size() / 2), Pixel({255, 0, 0}));
    r.Polyline(traceB.data(), static_cast<int>(traceB.size() / 2), Pixel({0, 128, 0}));
}

void DrawPlainBands(qv::bench::TPlainRaster& r) {
    for (int i = 0; i < 255; ++i) {
        const TRect b = TBands::Band(i);
        r.FillRect(b.left, b.top, b.right, b.bottom, Pixel(TBands::Color(i)));
    }
}

template <class Draw> void PlainScene(benchmark::State& state, int width, int height, Draw draw) {
    qv::bench::TPlainRaster raster(width, height);
    for (auto _ : state) {
        draw(raster);
        benchmark::DoNotOptimize(raster.Pixels());
    }
}

void PlainInstrument(benchmark::State& state) {
    PlainScene(state, TInstrument::Size, TInstrument::Size, DrawPlainInstrument);
}

void PlainStripChart(benchmark::State& state) {
    PlainScene(state, TStripChart::Width, TStripChart::Height, DrawPlainStripChart);
}

void PlainBands(benchmark::State& state) {
    PlainScene(state, TBands::Width, TBands::Height, DrawPlainBands);
}

// A block copy is a copy of rows.
void PlainBlockCopy(benchmark::State& state) {
    qv::bench::TPlainRaster source(TBands::Width, TBands::Height);
    for (int y = 0; y < TBands::Height; ++y)
        for (int x = 0; x < TBands::Width; ++x)
            source.Row(y)[x] = SourcePixel(x, y);
    qv::bench::TPlainRaster raster(TBands::Width, TBands::Height);
    for (auto _ : state) {
        for (int y = 0; y < TBands::Height; ++y)
            std::copy_n(source.Row(y), TBands::Width, raster.Row(y));
        benchmark::DoNotOptimize(raster.Pixels());
    }
}

// ---- Qt ---------------------------------------------------------------------------------

QPoint Q(TPoint p) {
    return {p.x, p.y};
}

// A canvas line leaves out its last point; QPainter draws it. Both sides draw the same
// segment: the cost of one pixel more is not what is compared.
void QtLines(QPainter& p, const std::vector<TLine>& lines) {
    for (const TLine& l : lines)
        p.drawLine(Q(l.from), Q(l.to));
}

QPolygon QtPolyline(const std::vector<TPoint>& points) {
    QPolygon polygon;
    for (const TPoint& pt : points)
        polygon << Q(pt);
    return polygon;
}

// One-pixel lines use Qt's cosmetic pen (width 0), the pen its raster engine draws with its
// fast line stroker; wider pens are ordinary pens of that width.
QPen QtPen(TRgb color, int width) {
    QPen pen(ToQColor(color));
    pen.setWidth(width == 1 ? 0 : width);
    return pen;
}

void DrawQtInstrument(QPainter& p) {
    const TInstrument& s = Instrument();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.fillRect(0, 0, TInstrument::Size, TInstrument::Size, ToQColor(Face));
    p.setPen(QtPen(Black, 1));
    for (std::size_t i = 0; i < s.ellipses.size(); ++i) {
        const TRect& r = s.ellipses[i];
        p.setBrush(ToQColor(s.ellipseColors[i]));
        p.drawEllipse(r.left, r.top, r.Width() - 1, r.Height() - 1);
    }
    for (const TWedge& w : s.wedges) {
        p.setBrush(ToQColor(w.color));
        p.drawPie(s.pieBox.left, s.pieBox.top, s.pieBox.Width() - 1, s.pieBox.Height() - 1,
                  w.startDeg * 16, w.spanDeg * 16);
    }
    QtLines(p, s.ticks);
    p.setPen(QtPen(Black, 3));
    QtLines(p, {s.needle});
}

void DrawQtStripChart(QPainter& p) {
    static const QPolygon traceA = QtPolyline(Chart().traceA);
    static const QPolygon traceB = QtPolyline(Chart().traceB);
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setPen(QtPen(Grid, 1));
    QtLines(p, Chart().grid);
    p.setPen(QtPen({255, 0, 0}, 1));
    p.drawPolyline(traceA);
    p.setPen(QtPen({0, 128, 0}, 1));
    p.drawPolyline(traceB);
}

template <class Draw> void QtScene(benchmark::State& state, int width, int height, Draw draw) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (auto _ : state) {
        QPainter p(&image);
        draw(p);
        p.end();
        benchmark::DoNotOptimize(image.constBits());
    }
}

void QtInstrument(benchmark::State& state) {
    QtScene(state, TInstrument::Size, TInstrument::Size, DrawQtInstrument);
}

void QtStripChart(benchmark::State& state) {
    QtScene(state, TStripChart::Width, TStripChart::Height, DrawQtStripChart);
}

void QtBands(benchmark::State& state) {
    QImage image(TBands::Width, TBands::Height, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter p(&image);
        for (int i = 0; i < 255; ++i) {
            const TRect r = TBands::Band(i);
            p.fillRect(r.left, r.top, r.Width(), r.Height(), ToQColor(TBands::Color(i)));
        }
        p.end();
        benchmark::DoNotOptimize(image.constBits());
    }
}

void QtBlockCopy(benchmark::State& state) {
    QImage source(TBands::Width, TBands::Height, QImage::Format_RGB32);
    for (int y = 0; y < TBands::Height; ++y)
        for (int x = 0; x < TBands::Width; ++x)
            source.setPixel(x, y, 0xFF000000u | SourcePixel(x, y));
    QImage image(TBands::Width, TBands::Height, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter p(&image);
        p.drawImage(0, 0, source);
        p.end();
        benchmark::DoNotOptimize(image.constBits());
    }
    if (image != source) state.SkipWithError("the copy differs from its source");
}

void QtText(benchmark::State& state) {
    const TTextScene& s = TextScene();
    QImage image(TTextScene::Width, TTextScene::Height, QImage::Format_RGB32);
    image.fill(Qt::white);
    QFont font("DejaVu Sans");
    font.setPixelSize(TTextScene::PixelHeight);
    font.setStyleStrategy(QFont::NoAntialias);
    const int ascent = QFontMetrics(font).ascent();
    std::vector<QString> lines;
    for (const std::string& line : s.lines)
        lines.push_back(QString::fromStdString(line));
    for (auto _ : state) {
        QPainter p(&image);
        p.setFont(font);
        p.setPen(Qt::black);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const TPoint o = s.Origin(static_cast<int>(i));
            p.drawText(o.x, o.y + ascent, lines[i]);
        }
        p.end();
        benchmark::DoNotOptimize(image.constBits());
    }
}

// ---- cairo ------------------------------------------------------------------------------

struct TCairoSurface {
    std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface;
    TCairoSurface(int width, int height)
        : surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height),
                  &cairo_surface_destroy) {}
    cairo_surface_t* get() const { return surface.get(); }
};

// One drawing pass: a fresh context with antialiasing off, as a paint handler would create.
struct TCairoContext {
    std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context;
    explicit TCairoContext(const TCairoSurface& s)
        : context(cairo_create(s.get()), &cairo_destroy) {
        cairo_set_antialias(get(), CAIRO_ANTIALIAS_NONE);
    }
    cairo_t* get() const { return context.get(); }
};

// Pixel centres, so that one-pixel strokes cover whole pixels.
void CairoLines(cairo_t* cr, const std::vector<TLine>& lines) {
    for (const TLine& l : lines) {
        cairo_move_to(cr, l.from.x + 0.5, l.from.y + 0.5);
        cairo_line_to(cr, l.to.x + 0.5, l.to.y + 0.5);
        cairo_stroke(cr);
    }
}

void CairoEllipsePath(cairo_t* cr, const TRect& r) {
    cairo_save(cr);
    cairo_translate(cr, (r.left + r.right) / 2.0, (r.top + r.bottom) / 2.0);
    cairo_scale(cr, (r.Width() - 1) / 2.0, (r.Height() - 1) / 2.0);
    cairo_new_sub_path(cr);
    cairo_arc(cr, 0, 0, 1, 0, 2 * M_PI);
    cairo_close_path(cr);
    cairo_restore(cr);
}

void CairoInstrument(benchmark::State& state) {
    const TInstrument& s = Instrument();
    TCairoSurface surface(TInstrument::Size, TInstrument::Size);
    for (auto _ : state) {
        TCairoContext ctx(surface);
        cairo_t* cr = ctx.get();
        CairoColor(cr, Face);
        cairo_rectangle(cr, 0, 0, TInstrument::Size, TInstrument::Size);
        cairo_fill(cr);
        cairo_set_line_width(cr, 1);
        for (std::size_t i = 0; i < s.ellipses.size(); ++i) {
            CairoEllipsePath(cr, s.ellipses[i]);
            CairoColor(cr, s.ellipseColors[i]);
            cairo_fill_preserve(cr);
            CairoColor(cr, Black);
            cairo_stroke(cr);
        }
        const double cx = (s.pieBox.left + s.pieBox.right) / 2.0;
        const double cy = (s.pieBox.top + s.pieBox.bottom) / 2.0;
        const double radius = (s.pieBox.Width() - 1) / 2.0;
        for (const TWedge& w : s.wedges) {
            cairo_move_to(cr, cx, cy);
            cairo_arc_negative(cr, cx, cy, radius, -w.startDeg * M_PI / 180.0,
                               -(w.startDeg + w.spanDeg) * M_PI / 180.0);
            cairo_close_path(cr);
            CairoColor(cr, w.color);
            cairo_fill_preserve(cr);
            CairoColor(cr, Black);
            cairo_stroke(cr);
        }
        CairoLines(cr, s.ticks);
        cairo_set_line_width(cr, 3);
        CairoLines(cr, {s.needle});
        benchmark::DoNotOptimize(cairo_image_surface_get_data(surface.get()));
    }
}

void CairoPolyline(cairo_t* cr, const std::vector<TPoint>& points) {
    cairo_move_to(cr, points.front().x + 0.5, points.front().y + 0.5);
    for (std::size_t i = 1; i < points.size(); ++i)
        cairo_line_to(cr, points[i].x + 0.5, points[i].y + 0.5);
    cairo_stroke(cr);
}

void CairoStripChart(benchmark::State& state) {
    const TStripChart& s = Chart();
    TCairoSurface surface(TStripChart::Width, TStripChart::Height);
    for (auto _ : state) {
        TCairoContext ctx(surface);
        cairo_t* cr = ctx.get();
        cairo_set_line_width(cr, 1);
        CairoColor(cr, Grid);
        CairoLines(cr, s.grid);
        CairoColor(cr, {255, 0, 0});
        CairoPolyline(cr, s.traceA);
        CairoColor(cr, {0, 128, 0});
        CairoPolyline(cr, s.traceB);
        benchmark::DoNotOptimize(cairo_image_surface_get_data(surface.get()));
    }
}

void CairoBands(benchmark::State& state) {
    TCairoSurface surface(TBands::Width, TBands::Height);
    for (auto _ : state) {
        TCairoContext ctx(surface);
        cairo_t* cr = ctx.get();
        for (int i = 0; i < 255; ++i) {
            const TRect r = TBands::Band(i);
            CairoColor(cr, TBands::Color(i));
            cairo_rectangle(cr, r.left, r.top, r.Width(), r.Height());
            cairo_fill(cr);
        }
        benchmark::DoNotOptimize(cairo_image_surface_get_data(surface.get()));
    }
}

void CairoBlockCopy(benchmark::State& state) {
    TCairoSurface source(TBands::Width, TBands::Height);
    cairo_surface_flush(source.get());
    unsigned char* data = cairo_image_surface_get_data(source.get());
    const int stride = cairo_image_surface_get_stride(source.get());
    for (int y = 0; y < TBands::Height; ++y)
        for (int x = 0; x < TBands::Width; ++x) {
            const std::uint32_t pixel = SourcePixel(x, y);
            std::memcpy(data + y * stride + 4 * x, &pixel, sizeof pixel);
        }
    cairo_surface_mark_dirty(source.get());
    TCairoSurface surface(TBands::Width, TBands::Height);
    for (auto _ : state) {
        TCairoContext ctx(surface);
        cairo_t* cr = ctx.get();
        cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
        cairo_set_source_surface(cr, source.get(), 0, 0);
        cairo_paint(cr);
        benchmark::DoNotOptimize(cairo_image_surface_get_data(surface.get()));
    }
}

void CairoText(benchmark::State& state) {
    const TTextScene& s = TextScene();
    TCairoSurface surface(TTextScene::Width, TTextScene::Height);
    std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)> options(
        cairo_font_options_create(), &cairo_font_options_destroy);
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_NONE);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_FULL);
    for (auto _ : state) {
        TCairoContext ctx(surface);
        cairo_t* cr = ctx.get();
        cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                               CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(cr, TTextScene::PixelHeight);
        cairo_set_font_options(cr, options.get());
        CairoColor(cr, Black);
        for (std::size_t i = 0; i < s.lines.size(); ++i) {
            const TPoint o = s.Origin(static_cast<int>(i));
            // Text is placed by its baseline: about 0.8 em below the top of the cell.
            cairo_move_to(cr, o.x, o.y + 9);
            cairo_show_text(cr, s.lines[i].c_str());
        }
        benchmark::DoNotOptimize(cairo_image_surface_get_data(surface.get()));
    }
}

// ---- floors -----------------------------------------------------------------------------

void FloorMemset(benchmark::State& state, int width, int height) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * height);
    unsigned char value = 0;
    for (auto _ : state) {
        std::memset(pixels.data(), ++value, pixels.size() * sizeof(std::uint32_t));
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
    }
}

void FloorBlockCopy(benchmark::State& state) {
    TBlockCopyPixels& pixels = BlockCopyPixels();
    qv::bench::MemcpyFloor(state, pixels.source.Pixels().Row(0), pixels.target.Pixels().Row(0),
                           std::size_t{TBands::Width} * TBands::Height);
}

// ---- scenes and the ratio lines ---------------------------------------------------------

struct TScene {
    std::string name;
    void (*ours)(benchmark::State&);
    void (*plain)(benchmark::State&); // null: the plain peer does not draw this scene
    void (*qt)(benchmark::State&);
    void (*cairo)(benchmark::State&);
    std::function<void(benchmark::State&)> floor;
};

std::vector<TScene> Scenes() {
    const auto memsetOf = [](int w, int h) {
        return [w, h](benchmark::State& s) { FloorMemset(s, w, h); };
    };
    return {
        {"instrument 120x120", OursInstrument, PlainInstrument, QtInstrument, CairoInstrument,
         memsetOf(TInstrument::Size, TInstrument::Size)},
        {"strip chart 1000x100", OursStripChart, PlainStripChart, QtStripChart, CairoStripChart,
         memsetOf(TStripChart::Width, TStripChart::Height)},
        {"gradient bands 400x300", OursBands, PlainBands, QtBands, CairoBands,
         memsetOf(TBands::Width, TBands::Height)},
        {"block copy 400x300", OursBlockCopy, PlainBlockCopy, QtBlockCopy, CairoBlockCopy,
         FloorBlockCopy},
        {"text 20 strings", OursText, nullptr, QtText, CairoText,
         memsetOf(TTextScene::Width, TTextScene::Height)},
    };
}

// A wide-pen curve against its floor: the same ellipse with a one-pixel pen, plus a fill of
// exactly the pixels the wide outline covers (found by drawing it once on white).
struct TWideCurve {
    static constexpr int Size = 68;
    static constexpr int PenWidth = 4;
    static void Draw(qv::TCanvas& c, int penWidth) {
        c.Pen().SetWidth(penWidth);
        c.Pen().SetColor(qv::TColor(0x2040C0));
        c.Brush().SetStyle(qv::bsClear);
        c.Ellipse(2, 2, Size - 2, Size - 2);
    }
    struct TRun {
        int y, left, count;
    };
    static std::vector<TRun> CoveredRuns() {
        qv::TBitmap bitmap(Size, Size);
        bitmap.Canvas().Brush().SetColor(qv::clWhite);
        bitmap.Canvas().FillRect({0, 0, Size, Size});
        Draw(bitmap.Canvas(), PenWidth);
        std::vector<TRun> runs;
        for (int y = 0; y < Size; ++y)
            for (int x = 0; x < Size;) {
                const auto covered = [&](int at) {
                    return (bitmap.Pixels().At(at, y) & 0xFFFFFF) != 0xFFFFFF;
                };
                if (!covered(x)) {
                    ++x;
                    continue;
                }
                const int left = x;
                while (x < Size && covered(x))
                    ++x;
                runs.push_back({y, left, x - left});
            }
        return runs;
    }
};

void OursWideCurve(benchmark::State& state, int penWidth) {
    qv::TBitmap bitmap(TWideCurve::Size, TWideCurve::Size);
    for (auto _ : state) {
        TWideCurve::Draw(bitmap.Canvas(), penWidth);
        benchmark::DoNotOptimize(bitmap.Pixels().Row(0));
    }
}

void CoveredAreaFill(benchmark::State& state) {
    qv::TPixelBuffer pixels(TWideCurve::Size, TWideCurve::Size);
    const std::vector<TWideCurve::TRun> runs = TWideCurve::CoveredRuns();
    for (auto _ : state) {
        for (const TWideCurve::TRun& r : runs)
            qv::FillPixels(pixels.Row(r.y) + r.left, r.count, 0x2040C0);
        benchmark::DoNotOptimize(pixels.Row(0));
    }
}

// Writes DIR/<scene>-ours.png, -plain.png and -qt.png for the scenes the plain peer draws.
void WritePictures(const std::string& dir) {
    const auto save = [&](const std::string& name, const qv::TPixelBuffer& pixels) {
        qv::WriteFileBytes(dir + "/" + name + ".png", qv::EncodePng(pixels, false));
    };
    const auto plainPixels = [](const qv::bench::TPlainRaster& r) {
        qv::TPixelBuffer pixels(r.Width(), r.Height());
        for (int y = 0; y < r.Height(); ++y)
            std::copy_n(r.Pixels() + static_cast<std::size_t>(y) * r.Width(), r.Width(),
                        pixels.Row(y));
        return pixels;
    };
    const auto one = [&](const std::string& name, int width, int height, auto ours, auto plain,
                         auto qt) {
        qv::TBitmap bitmap(width, height);
        ours(bitmap.Canvas());
        save(name + "-ours", bitmap.Pixels());
        qv::bench::TPlainRaster raster(width, height);
        plain(raster);
        save(name + "-plain", plainPixels(raster));
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        qt(painter);
        painter.end();
        image.save(QString::fromStdString(dir + "/" + name + "-qt.png"));
    };
    one("instrument", TInstrument::Size, TInstrument::Size, DrawOursInstrument, DrawPlainInstrument,
        DrawQtInstrument);
    one("strip-chart", TStripChart::Width, TStripChart::Height, DrawOursStripChart,
        DrawPlainStripChart, DrawQtStripChart);
}

// Removes "--pictures DIR" from the arguments and returns DIR (empty when not given).
std::string TakePicturesFolder(int& argc, char** argv) {
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], "--pictures") == 0) {
            std::string dir = argv[i + 1];
            for (int j = i; j + 2 < argc; ++j)
                argv[j] = argv[j + 2];
            argc -= 2;
            return dir;
        }
    return {};
}

} // namespace

int main(int argc, char** argv) {
    const bool ratio = qv::bench::TakeRatioFlag(argc, argv);
    const std::string picturesDir = TakePicturesFolder(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    // Qt draws text only with a GUI application; the offscreen platform needs no display.
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    int qtArgc = 1;
    char qtName[] = "bench_canvas";
    char* qtArgv[] = {qtName, nullptr};
    QGuiApplication app(qtArgc, qtArgv);
    if (!picturesDir.empty()) {
        WritePictures(picturesDir);
        return 0;
    }

    const std::vector<TScene> scenes = Scenes();
    for (const TScene& s : scenes) {
        benchmark::RegisterBenchmark(("ours/" + s.name).c_str(), s.ours);
        if (s.plain) benchmark::RegisterBenchmark(("plain/" + s.name).c_str(), s.plain);
        benchmark::RegisterBenchmark(("qt/" + s.name).c_str(), s.qt);
        benchmark::RegisterBenchmark(("cairo/" + s.name).c_str(), s.cairo);
        benchmark::RegisterBenchmark(("floor/" + s.name).c_str(), s.floor);
    }
    benchmark::RegisterBenchmark("wide/ellipse", OursWideCurve, TWideCurve::PenWidth);
    benchmark::RegisterBenchmark("thin/ellipse", OursWideCurve, 1);
    benchmark::RegisterBenchmark("covered/ellipse", CoveredAreaFill);
    qv::bench::TRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (!ratio) return 0;
    for (const TScene& s : scenes) {
        const auto time = [&](const char* side) {
            const auto it = reporter.times.find(std::string(side) + "/" + s.name);
            return it == reporter.times.end() ? -1.0 : it->second;
        };
        const double ours = time("ours"), plain = time("plain"), qt = time("qt"),
                     cairo = time("cairo"), floor = time("floor");
        if (ours < 0 || qt < 0 || cairo < 0 || floor < 0) continue;
        char plainText[32] = "-";
        char plainRatio[32] = "-";
        if (plain > 0) {
            std::snprintf(plainText, sizeof plainText, "%.0f", plain);
            std::snprintf(plainRatio, sizeof plainRatio, "%.3f", ours / plain);
        }
        std::printf("%s: ours %.0f ns, plain %s ns, qt %.0f ns, cairo %.0f ns, ratio-plain %s, "
                    "ratio-qt %.3f, floor %.0f ns\n",
                    s.name.c_str(), ours, plainText, qt, cairo, plainRatio, ours / qt, floor);
    }
    const auto time = [&](const char* name) {
        const auto it = reporter.times.find(name);
        return it == reporter.times.end() ? -1.0 : it->second;
    };
    const double wide = time("wide/ellipse"), thin = time("thin/ellipse"),
                 covered = time("covered/ellipse");
    if (wide > 0 && thin > 0 && covered > 0)
        std::printf("wide-pen ellipse %dx%d pen %d: ours %.0f ns, thin outline %.0f ns, covered "
                    "area %.0f ns, ratio %.3f\n",
                    TWideCurve::Size, TWideCurve::Size, TWideCurve::PenWidth, wide, thin, covered,
                    wide / (thin + covered));
    return 0;
}
