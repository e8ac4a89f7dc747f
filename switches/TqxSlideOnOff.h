#pragma once
// TqxSlideOnOff: a slide switch. A sunken slot runs along the picture's longer side with a
// raised, ridged thumb in it. On, the thumb sits at the right (or top) end and the part of the
// slot it bares is lit in Color; off, it sits at the left (or bottom) end and the bared slot
// is dimmed; while pressed it stands half way. A press on the half of the picture towards the
// on end turns the switch on, on the other half off.

#include "switches/TqxCustomOnOff.h"

namespace qv {

class TqxSlideOnOff : public TqxCustomOnOff {
    QV_OBJECT
public:
    explicit TqxSlideOnOff(TComponent* AOwner);

protected:
    void PaintDisabled(TCanvas& canvas) override { PaintSwitch(canvas, TLook::Disabled); }
    void PaintOn(TCanvas& canvas) override { PaintSwitch(canvas, TLook::On); }
    void PaintOff(TCanvas& canvas) override { PaintSwitch(canvas, TLook::Off); }
    // The half of the picture towards the on end: the right half, or the upper half of an
    // upright slot.
    void GetOnReg(HRGN& region) override;
    // The other half.
    void GetOffReg(HRGN& region) override;

private:
    void PaintSwitch(TCanvas& canvas, TLook look);
    // The picture's half towards the on end (`onEnd`) or the off end.
    TRect PictureHalf(bool onEnd) const;
};

} // namespace qv
