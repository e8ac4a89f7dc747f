#include "componentbase/Steel.h"

#include <memory>

namespace qv {

namespace {

// The texture, shared read-only by every component while unit Std2 is loaded.
std::unique_ptr<TBitmap> g_steel;

std::unique_ptr<TBitmap> MakeSteel() {
    auto steel = std::make_unique<TBitmap>();
    steel->SetWidth(8);
    steel->SetHeight(8);
    steel->Canvas().Brush().SetColor(static_cast<TColor>(0xC0C0C0));
    steel->Canvas().FillRect({0, 0, 8, 8});
    for (int x = 0; x < 8; ++x)
        for (int y = 0; y < 8; ++y)
            if (x % 2 == 1 && y % 2 == 1)
                steel->Canvas().SetPixel(x, y, static_cast<TColor>(0xFFFFFF));
    return steel;
}

} // namespace

const TBitmap* TSteel() {
    return g_steel.get();
}

TSteelBrush::TSteelBrush(TCanvas& canvas) : m_canvas(canvas) {
    m_canvas.Brush().SetBitmap(g_steel.get());
}

TSteelBrush::~TSteelBrush() {
    m_canvas.Brush().SetBitmap(nullptr);
}

void PaintSteel(TCanvas& canvas, const TRect& rect) {
    if (!g_steel) return;
    const TSteelBrush steel(canvas);
    canvas.FillRect(rect);
}

void CreateSteelTexture() {
    g_steel = MakeSteel();
}

void FreeSteelTexture() {
    g_steel.reset();
}

} // namespace qv
