#pragma once
// TqxLightOnOff: a round illuminated push button. A bevelled bezel holds a lens that is lit in
// Color with a small glint when the switch is on and glows at half strength when it is off;
// pressed, the bezel turns sunken and the lens sinks by a pixel. A press anywhere toggles.

#include "switches/TqxCustomOnOff.h"

namespace qv {

class TqxLightOnOff : public TqxCustomOnOff {
    QV_OBJECT
public:
    explicit TqxLightOnOff(TComponent* AOwner);

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
