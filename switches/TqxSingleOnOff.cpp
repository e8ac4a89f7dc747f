#include "switches/TqxSingleOnOff.h"

#include "switches/SwitchPictures.h"

#include <algorithm>
#include <array>

namespace qv {

namespace {
constexpr int MinSide = 8; // a smaller picture leaves the lever out

// The parts of the toggle in a square of side `s`: the nut, its hole, and the lever from the
// centre up (or down) to the tip.
struct TToggle {
    TRect nut, hole, tip;
    std::array<TPoint, 4> lever;
};

TToggle ToggleIn(const TRect& square, bool up) {
    const int s = square.Width();
    const int cx = square.left + s / 2, cy = square.top + s / 2;
    const int tipRadius = std::max(2, s / 8);
    const int baseHalf = std::max(1, s / 10), endHalf = std::max(1, tipRadius * 2 / 3);
    TToggle t;
    t.nut = CentredIn(square, s * 3 / 5, s * 3 / 5);
    t.hole = CentredIn(square, s * 3 / 10, s * 3 / 10);
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
            OutlineDisc(canvas, toggle.nut, ShadowColor());
            canvas.Brush().SetStyle(bsSolid);
            canvas.Brush().SetColor(BackColor());
            canvas.Polygon(toggle.lever);
            OutlineDisc(canvas, toggle.tip, ShadowColor());
        } else {
            PaintBevelledDisc(canvas, toggle.nut, false, BevelColors());
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
