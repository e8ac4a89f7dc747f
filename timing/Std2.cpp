#include "timing/Std2.h"

#include "utility/UnitGuard.h"

#include <memory>

namespace qv {

namespace {
// The texture and its unit counter: created by the first initialization, freed by the
// finalization that balances it.
std::unique_ptr<TBitmap> g_steel;
TUnitGuard g_std2Unit;

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

void PaintSteel(TCanvas& canvas, const TRect& rect) {
    if (!g_steel) return;
    canvas.Brush().SetBitmap(g_steel.get());
    canvas.FillRect(rect);
    canvas.Brush().SetBitmap(nullptr);
}

void Std2Initialization() {
    if (g_std2Unit.Enter()) g_steel = MakeSteel();
}

void Std2Finalization() {
    if (g_std2Unit.Leave()) g_steel.reset();
}

} // namespace qv
