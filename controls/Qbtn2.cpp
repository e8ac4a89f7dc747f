#include "controls/Qbtn2.h"

#include "componentbase/UnitGuard.h"
#include "platform/graphics/Canvas.h"

#include <memory>

namespace qv {

namespace {

// The unit's glyphs and counter.
struct TGlyphs {
    std::unique_ptr<TBitmap> trueType, device, raster;
};
TGlyphs g_glyphs;
TUnitGuard g_qbtn2Unit;

std::unique_ptr<TBitmap> NewGlyph() {
    auto glyph = std::make_unique<TBitmap>(12, 12);
    glyph->Canvas().Brush().SetColor(clWhite);
    glyph->Canvas().FillRect({0, 0, 12, 12});
    return glyph;
}

// Two overlapping T letters.
std::unique_ptr<TBitmap> MakeTrueTypeGlyph() {
    auto glyph = NewGlyph();
    TCanvas& c = glyph->Canvas();
    c.Pen().SetColor(clGray);
    c.MoveTo(1, 1), c.LineTo(8, 1), c.MoveTo(4, 1), c.LineTo(4, 9);
    c.Pen().SetColor(clBlack);
    c.MoveTo(4, 4), c.LineTo(11, 4), c.MoveTo(7, 4), c.LineTo(7, 12);
    return glyph;
}

// A small printer.
std::unique_ptr<TBitmap> MakeDeviceGlyph() {
    auto glyph = NewGlyph();
    TCanvas& c = glyph->Canvas();
    c.Pen().SetColor(clBlack);
    c.Brush().SetColor(clSilver);
    c.Rectangle(1, 5, 11, 10);
    c.Brush().SetColor(clWhite);
    c.Rectangle(3, 1, 9, 6);
    return glyph;
}

// A dotted letter for bitmap fonts.
std::unique_ptr<TBitmap> MakeRasterGlyph() {
    auto glyph = NewGlyph();
    TCanvas& c = glyph->Canvas();
    for (int y = 1; y < 11; y += 2) {
        c.SetPixel(3, y, clBlack);
        c.SetPixel(8, y, clBlack);
    }
    for (int x = 3; x <= 8; x += 1)
        c.SetPixel(x, 5, clBlack);
    return glyph;
}

} // namespace

const TBitmap* TqxTTBitmap() {
    return g_glyphs.trueType.get();
}
const TBitmap* TqxDevBitmap() {
    return g_glyphs.device.get();
}
const TBitmap* TqxRasterBitmap() {
    return g_glyphs.raster.get();
}

void Qbtn2Initialization() {
    if (!g_qbtn2Unit.Enter()) return;
    g_glyphs.trueType = MakeTrueTypeGlyph();
    g_glyphs.device = MakeDeviceGlyph();
    g_glyphs.raster = MakeRasterGlyph();
}

void Qbtn2Finalization() {
    if (g_qbtn2Unit.Leave()) g_glyphs = TGlyphs{};
}

} // namespace qv
