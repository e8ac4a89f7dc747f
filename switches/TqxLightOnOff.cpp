#include "switches/TqxLightOnOff.h"

#include "switches/SwitchPictures.h"

#include <algorithm>

namespace qv {

namespace {
constexpr int MinSide = 6; // a smaller picture leaves the lamp out
} // namespace

const TClassInfo& TqxLightOnOff::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqxLightOnOff> b("TqxLightOnOff", &TqxCustomOnOff::StaticClassInfo());
        PublishGlyphAlign(b);
        return b.Build();
    }();
    return info;
}

TqxLightOnOff::TqxLightOnOff(TComponent* AOwner) : TqxCustomOnOff(AOwner) {
    FollowGeometry();
}

void TqxLightOnOff::GetOnReg(HRGN& region) {
    region = CreateRectRgn(0, 0, Width(), Height());
}

void TqxLightOnOff::GetOffReg(HRGN& region) {
    region = CreateRectRgn(0, 0, Width(), Height());
}

void TqxLightOnOff::PaintSwitch(TCanvas& canvas, TLook look) {
    const TOnOffLayout layout = PictureLayout();
    const TRect bezel = SquareIn(layout.picture, 1);
    if (bezel.Width() >= MinSide) {
        const int rim = std::max(2, bezel.Width() / 7);
        if (look == TLook::Disabled) {
            OutlineDisc(canvas, bezel, ShadowColor());
            OutlineDisc(canvas, Shrunk(bezel, rim), ShadowColor());
        } else {
            const bool on = look == TLook::On;
            PaintBevelledDisc(canvas, bezel, Pressed(), BevelColors());
            const TRect lens = Shrunk(bezel, Pressed() ? rim + 1 : rim);
            PaintDisc(canvas, lens, LampColor(on), clBlack);
            if (on) {
                // The glint: a small white spot up and left on the lens.
                const int spot = std::max(1, lens.Width() / 4);
                const int at = lens.Width() / 5;
                PaintDisc(
                    canvas,
                    {lens.left + at, lens.top + at, lens.left + at + spot, lens.top + at + spot},
                    clWhite, clWhite);
            }
        }
    }
    PaintText(layout.text, canvas);
}

} // namespace qv
