#pragma once
// TqxSingleOnOff: a toggle lever on a round nut. On, the lever points up and its tip is lit
// in Color; off, it points down with the tip dimmed; while pressed it stands level, pointing
// at the viewer, so that only its tip shows over the nut. The switch keeps the base's halves:
// a press on the upper half turns it on, on the lower half off.

#include "switches/TqxCustomOnOff.h"

namespace qv {

class TqxSingleOnOff : public TqxCustomOnOff {
    QV_OBJECT
public:
    explicit TqxSingleOnOff(TComponent* AOwner);

protected:
    void PaintDisabled(TCanvas& canvas) override { PaintSwitch(canvas, TLook::Disabled); }
    void PaintOn(TCanvas& canvas) override { PaintSwitch(canvas, TLook::On); }
    void PaintOff(TCanvas& canvas) override { PaintSwitch(canvas, TLook::Off); }

private:
    void PaintSwitch(TCanvas& canvas, TLook look);
};

} // namespace qv
