#pragma once
// TqDblKnob: two concentric knobs on one axis, the outer one turning Value and the inner one
// Value2, sharing the range, the colours, the tick ring and OnChange. The inner face lies
// Width div 8 inside the outer one; a press turns the innermost ring under it, and the keys
// turn Value2 while Shift is held.

#include "instruments/TqKnob.h"

namespace qv {

class TqDblKnob : public TqKnob {
    QV_OBJECT
public:
    struct Defaults : TqKnob::Defaults {
        static constexpr int Value2 = 0;
        static constexpr TColor PointColor2 = 0x0000FF;
        static constexpr int Size = 75; // width and height
    };

    explicit TqDblKnob(TComponent* AOwner);

    int Value2() const { return m_value2; }
    // As SetKnobValue, with OnMinimum2 and OnMaximum2.
    void SetKnobValue2(int value) { SetRingValue(1, value); }
    TColor PointColor2() const { return m_pointColor2; }
    void SetPoint2(TColor value);

    TNotifyEvent OnMinimum2;
    TNotifyEvent OnMaximum2;

protected:
    int RingCount() const override { return 2; }
    TRing Ring(int index) override;
    int KeyRing(TShiftState Shift) const override { return Shift.Contains(ssShift) ? 1 : 0; }

private:
    int m_value2{Defaults::Value2};
    TColor m_pointColor2{Defaults::PointColor2};
};

} // namespace qv
