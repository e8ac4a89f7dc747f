#include "switches/TqxPushOnOff.h"

#include "switches/SwitchPictures.h"

#include <algorithm>

namespace qv {

namespace {
constexpr int MinSide = 8; // a smaller picture leaves the key out

// The indicator window: half the face wide, a third high, in its upper part.
TRect IndicatorIn(const TRect& face) {
    const int width = std::max(3, face.Width() / 2), height = std::max(4, face.Height() / 3);
    TRect window = CentredIn(face, width, height);
    OffsetRect(window, 0, face.top + std::max(1, face.Height() / 5) - window.top);
    return window;
}
} // namespace

const TClassInfo& TqxPushOnOff::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqxPushOnOff> b("TqxPushOnOff", &TqxCustomOnOff::StaticClassInfo());
        PublishGlyphAlign(b);
        return b.Build();
    }();
    return info;
}

TqxPushOnOff::TqxPushOnOff(TComponent* AOwner) : TqxCustomOnOff(AOwner) {
    FollowGeometry();
}

void TqxPushOnOff::GetOnReg(HRGN& region) {
    region = CreateRectRgn(0, 0, Width(), Height());
}

void TqxPushOnOff::GetOffReg(HRGN& region) {
    region = CreateRectRgn(0, 0, Width(), Height());
}

// The key is at most twice as wide as high.
void TqxPushOnOff::PaintSwitch(TCanvas& canvas, TLook look) {
    const TOnOffLayout layout = PictureLayout();
    const TRect area = Shrunk(layout.picture, 1);
    const TRect key = CentredIn(area, std::min(area.Width(), 2 * area.Height()), area.Height());
    if (key.Width() >= MinSide && key.Height() >= MinSide) {
        if (look == TLook::Disabled) {
            OutlineRect(canvas, key, ShadowColor());
            OutlineRect(canvas, IndicatorIn(Shrunk(key, 2)), ShadowColor());
        } else {
            const bool on = look == TLook::On;
            const int depth = Pressed() ? 2 : on ? 1 : 0;
            TRect face = PaintButtonFace(canvas, key, depth > 0, clBtnFace, BevelColors(), clBlack);
            OffsetRect(face, depth, depth);
            TRect window = IndicatorIn(face);
            PaintBevel(canvas, window, TBevelKind::Lowered, 1, BevelColors());
            canvas.Brush().SetStyle(bsSolid);
            canvas.Brush().SetColor(LampColor(on));
            canvas.FillRect(window);
        }
    }
    PaintText(layout.text, canvas);
}

} // namespace qv
