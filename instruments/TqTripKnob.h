#pragma once
// TqTripKnob: three concentric knobs on one axis (Value, Value2, Value3), each ring Width div 8
// inside the previous one. The keys turn Value2 with Shift, Value3 with Ctrl, Value otherwise;
// every key press, handled or not, passes the chosen value to its setter, so any key (Shift or
// Ctrl alone included) raises OnChange.

#include "instruments/TqDblKnob.h"

namespace qv {

class TqTripKnob : public TqDblKnob {
    QV_OBJECT
public:
    struct Defaults : TqDblKnob::Defaults {
        static constexpr int Value3 = 0;
        static constexpr TColor PointColor3 = 0x0000FF;
    };

    explicit TqTripKnob(TComponent* AOwner) : TqDblKnob(AOwner) {}

    int Value3() const { return m_value3; }
    // As SetKnobValue, with OnMinimum3 and OnMaximum3.
    void SetKnobValue3(int value) { SetRingValue(2, value); }
    TColor PointColor3() const { return m_pointColor3; }
    void SetPoint3(TColor value);

    TNotifyEvent OnMinimum3;
    TNotifyEvent OnMaximum3;

protected:
    int RingCount() const override { return 3; }
    TRing Ring(int index) override;
    int KeyRing(TShiftState Shift) const override;
    void KeyDown(unsigned& Key, TShiftState Shift) override;

private:
    int m_value3{Defaults::Value3};
    TColor m_pointColor3{Defaults::PointColor3};
};

} // namespace qv
