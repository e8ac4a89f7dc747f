#pragma once
// TqxPushOnOff: a rectangular latching key. Off, the key stands raised; on, it is latched in
// (the bevel inverted, the face one pixel down and right) and a small indicator window on its
// face is lit in Color; while pressed the key goes to the bottom, two pixels in. A press
// anywhere toggles.

#include "switches/TqxCustomOnOff.h"

namespace qv {

class TqxPushOnOff : public TqxCustomOnOff {
    QV_OBJECT
public:
    explicit TqxPushOnOff(TComponent* AOwner);

protected:
    void PaintDisabled(TCanvas& canvas) override { PaintSwitch(canvas, TLook::Disabled); }
    void PaintOn(TCanvas& canvas) override { PaintSwitch(canvas, TLook::On); }
    void PaintOff(TCanvas& canvas) override { PaintSwitch(canvas, TLook::Off); }
    // Both regions are the whole client.
    void GetOnReg(HRGN& region) override;
    void GetOffReg(HRGN& region) override;

private:
    void PaintSwitch(TCanvas& canvas, TLook look);
};

} // namespace qv
