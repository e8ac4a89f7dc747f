#pragma once
// TqxDblOnOff: two keys in one sunken frame, an "I" key (a bar) and an "O" key (a ring). The
// key of the current state is latched in and its symbol lit (the bar in Color, the ring in
// black); the other key stands raised with its symbol dimmed. While pressed, the keys preview
// the move: the key the switch goes to is in, the other one out. The keys sit side by side,
// "O" on the left, when the picture is wider than tall, and stacked, "I" on top, otherwise.
// A press on the "I" key turns the switch on, a press on the "O" key turns it off.

#include "switches/TqxCustomOnOff.h"

namespace qv {

class TqxDblOnOff : public TqxCustomOnOff {
    QV_OBJECT
public:
    explicit TqxDblOnOff(TComponent* AOwner);

    // Where the two keys are, for the current layout.
    struct TKeys {
        TRect frame, onKey, offKey;
    };
    TKeys KeyRects() const;

protected:
    void PaintDisabled(TCanvas& canvas) override { PaintSwitch(canvas, TLook::Disabled); }
    void PaintOn(TCanvas& canvas) override { PaintSwitch(canvas, TLook::On); }
    void PaintOff(TCanvas& canvas) override { PaintSwitch(canvas, TLook::Off); }
    // The "I" key.
    void GetOnReg(HRGN& region) override;
    // The "O" key.
    void GetOffReg(HRGN& region) override;

private:
    void PaintSwitch(TCanvas& canvas, TLook look);
    void PaintKey(TCanvas& canvas, const TRect& key, bool in, bool onKey, bool lit) const;
    void PaintFlatKey(TCanvas& canvas, const TRect& key, bool onKey) const;
};

} // namespace qv
