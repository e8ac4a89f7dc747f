#include "switches/TqxSingleOnOff.h"

#include "switches/SwitchPictures.h"

#include <algorithm>
#include <array>

namespace qv {

namespace {
constexpr int MinSide = 8; // a smaller picture leaves the lever out

// The parts of the toggle in a square of side `s`: the hexagon nut, the round bushing in it
// with its hole, and the lever from the centre up (or down) to the tip.
struct TToggle {
    std::array<TPoint, 6> nut;
    TRect bushing, hole, tip;
    std::array<TPoint, 4> lever;
};

// A hexagon with flat top and bottom, filling `r`'s width.
std::array<TPoint, 6> HexagonIn(const TRect& r) {
    const int quarter = r.Width() / 4, middle = r.top + r.Height() / 2;
    return {TPoint{r.left, middle},
            TPoint{r.left + quarter, r.top},
            TPoint{r.right - 1 - quarter, r.top},
            TPoint{r.right - 1, middle},
            TPoint{r.right - 1 - quarter, r.bottom - 1},
            TPoint{r.left + quarter, r.bottom - 1}};
}

TToggle ToggleIn(const TRect& square, bool up) {
    const int s = square.Width();
    const int cx = square.left + s / 2, cy = square.top + s / 2;
    const int tipRadius = std::max(2, s / 8);
    const int baseHalf = std::max(1, s / 10), endHalf = std::max(1, tipRadius * 2 / 3);
    TToggle t;
    t.nut = HexagonIn(CentredIn(square, s * 3 / 4, s * 3 / 5));
    t.bushing = CentredIn(square, s * 2 / 5, s * 2 / 5);
    t.hole = CentredIn(square, s / 4, s / 4);
    const int tipY = up ? square.top + tipRadius : square.bottom - 1 - tipRadius;
    t.tip = {cx - tipRadius, tipY - tipRadius, cx + tipRadius + 1, tipY + tipRadius + 1};
    t.lever = {TPoint{cx - baseHalf, cy}, TPoint{cx + baseHalf, cy}, TPoint{cx + endHalf, tipY},
               TPoint{cx - endHalf, tipY}};
    return t;
}
} // namespace

const TClassInfo& TqxSingleOnOff::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqxSingleOnOff> b("TqxSingleOnOff", &TqxCustomOnOff::StaticClassInfo());
        PublishGlyphAlign(b);
        return b.Build();
    }();
    return info;
}

TqxSingleOnOff::TqxSingleOnOff(TComponent* AOwner) : TqxCustomOnOff(AOwner) {
    FollowGeometry();
}

void TqxSingleOnOff::PaintSwitch(TCanvas& canvas, TLook look) {
    const TOnOffLayout layout = PictureLayout();
    const TRect square = SquareIn(layout.picture, 1);
    if (square.Width() >= MinSide) {
        const bool on = look == TLook::On || (look == TLook::Disabled && SwitchOn());
        const TToggle toggle = ToggleIn(square, on);
        canvas.Pen().SetWidth(1);
        if (look == TLook::Disabled) {
            OutlineDisc(canvas, toggle.bushing, ShadowColor());
            canvas.Polygon(toggle.nut);
            canvas.Brush().SetStyle(bsSolid);
            canvas.Brush().SetColor(BackColor());
            canvas.Polygon(toggle.lever);
            OutlineDisc(canvas, toggle.tip, ShadowColor());
        } else {
            canvas.Pen().SetColor(ShadowColor());
            canvas.Brush().SetStyle(bsSolid);
            canvas.Brush().SetColor(clSilver);
            canvas.Polygon(toggle.nut);
            PaintBevelledDisc(canvas, toggle.bushing, false, BevelColors());
            PaintDisc(canvas, toggle.hole, clBlack, clBlack);
            if (Pressed()) {
                // Level: the lever points at the viewer, only its tip shows.
                PaintDisc(canvas, Shrunk(toggle.hole, -1), LampColor(on), clBlack);
            } else {
                canvas.Pen().SetColor(clBlack);
                canvas.Brush().SetColor(clSilver);
                canvas.Polygon(toggle.lever);
                PaintDisc(canvas, toggle.tip, LampColor(on), clBlack);
            }
        }
    }
    PaintText(layout.text, canvas);
}

} // namespace qv
