#include "switches/TqxDblOnOff.h"

#include "switches/SwitchPictures.h"

#include <algorithm>

namespace qv {

namespace {
constexpr int MinKey = 8; // smaller keys are left out

// The symbol's square inside a key face: three quarters of its shorter side.
TRect SymbolIn(const TRect& face) {
    const int side = std::min(face.Width(), face.Height()) * 3 / 4;
    return CentredIn(face, side, side);
}

// The "I": an upright bar a fifth of the symbol wide.
TRect BarIn(const TRect& symbol) {
    return CentredIn(symbol, std::max(2, symbol.Width() / 5), symbol.Height());
}
} // namespace

const TClassInfo& TqxDblOnOff::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqxDblOnOff> b("TqxDblOnOff", &TqxCustomOnOff::StaticClassInfo());
        PublishGlyphAlign(b);
        return b.Build();
    }();
    return info;
}

TqxDblOnOff::TqxDblOnOff(TComponent* AOwner) : TqxCustomOnOff(AOwner) {
    FollowGeometry();
}

// Two square keys inside a one-pixel frame, centred in the picture.
TqxDblOnOff::TKeys TqxDblOnOff::KeyRects() const {
    const TRect area = Shrunk(PictureLayout().picture, 1);
    const bool sideBySide = area.Width() > area.Height();
    const int along = sideBySide ? area.Width() : area.Height();
    const int across = sideBySide ? area.Height() : area.Width();
    const int key = std::max(0, std::min(across, along / 2) - 2);
    TKeys keys;
    keys.frame =
        sideBySide ? CentredIn(area, 2 * key + 2, key + 2) : CentredIn(area, key + 2, 2 * key + 2);
    const TRect inner = Shrunk(keys.frame, 1);
    TRect first = inner, second = inner;
    if (sideBySide) {
        first.right = second.left = inner.left + key;
        keys.offKey = first; // "O" on the left
        keys.onKey = second;
    } else {
        first.bottom = second.top = inner.top + key;
        keys.onKey = first; // "I" on top
        keys.offKey = second;
    }
    return keys;
}

void TqxDblOnOff::GetOnReg(HRGN& region) {
    region = CreateRectRgnIndirect(KeyRects().onKey);
}

void TqxDblOnOff::GetOffReg(HRGN& region) {
    region = CreateRectRgnIndirect(KeyRects().offKey);
}

void TqxDblOnOff::PaintSwitch(TCanvas& canvas, TLook look) {
    const TKeys keys = KeyRects();
    if (keys.onKey.Width() >= MinKey) {
        if (look == TLook::Disabled) {
            OutlineRect(canvas, keys.frame, ShadowColor());
            PaintFlatKey(canvas, keys.onKey, true);
            PaintFlatKey(canvas, keys.offKey, false);
        } else {
            const bool on = look == TLook::On;
            TRect frame = keys.frame;
            PaintBevel(canvas, frame, TBevelKind::Lowered, 1, BevelColors());
            // Pressed, the key the switch moves to is drawn in.
            const bool onKeyIn = on != Pressed();
            PaintKey(canvas, keys.onKey, onKeyIn, true, on);
            PaintKey(canvas, keys.offKey, !onKeyIn, false, !on);
        }
    }
    PaintText(PictureLayout().text, canvas);
}

void TqxDblOnOff::PaintKey(TCanvas& canvas, const TRect& key, bool in, bool onKey, bool lit) const {
    TRect face = PaintButtonFace(canvas, key, in, clBtnFace, BevelColors(), clBlack);
    if (in) OffsetRect(face, 1, 1);
    const TRect symbol = SymbolIn(face);
    canvas.Pen().SetStyle(psClear);
    canvas.Brush().SetStyle(bsSolid);
    if (onKey) {
        canvas.Brush().SetColor(LampColor(lit));
        canvas.FillRect(BarIn(symbol));
        return;
    }
    // The ring: a disc of the symbol's colour with a disc of the face inside.
    const int thickness = std::max(2, symbol.Width() / 6);
    const TColor ring = lit ? clBlack : ShadowColor();
    PaintDisc(canvas, symbol, ring, ring);
    PaintDisc(canvas, Shrunk(symbol, thickness), clBtnFace, clBtnFace);
}

void TqxDblOnOff::PaintFlatKey(TCanvas& canvas, const TRect& key, bool onKey) const {
    OutlineRect(canvas, key, ShadowColor());
    const TRect symbol = SymbolIn(Shrunk(key, 2));
    if (onKey)
        OutlineRect(canvas, BarIn(symbol), ShadowColor());
    else
        OutlineDisc(canvas, symbol, ShadowColor());
}

} // namespace qv
