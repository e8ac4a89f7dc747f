#include "instruments/TqTripKnob.h"

#include "componentbase/KeySteps.h"
#include "platform/core/ClassBuilder.h"

namespace qv {

const TClassInfo& TqTripKnob::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqTripKnob> b("TqTripKnob", &TqDblKnob::StaticClassInfo());
        b.Property("Value3", &TqTripKnob::Value3, &TqTripKnob::SetKnobValue3)
            .Default(Defaults::Value3);
        b.Event("OnMinimum3", &TqTripKnob::OnMinimum3);
        b.Event("OnMaximum3", &TqTripKnob::OnMaximum3);
        b.Property("PointColor3", ColorType(), &TqTripKnob::PointColor3, &TqTripKnob::SetPoint3)
            .Default(Defaults::PointColor3);
        return b.Build();
    }();
    return info;
}

void TqTripKnob::SetPoint3(TColor value) {
    if (value == m_pointColor3) return;
    m_pointColor3 = value;
    Invalidate();
}

TqKnob::TRing TqTripKnob::Ring(int index) {
    if (index == 2) return {&m_value3, &OnMinimum3, &OnMaximum3, m_pointColor3};
    return TqDblKnob::Ring(index);
}

int TqTripKnob::KeyRing(TShiftState Shift) const {
    if (Shift.Contains(ssShift)) return 1;
    if (Shift.Contains(ssCtrl)) return 2;
    return 0;
}

void TqTripKnob::KeyDown(unsigned& Key, TShiftState Shift) {
    const TRing ring = Ring(KeyRing(Shift));
    const int current = *ring.value;
    SetRingValue(ring,
                 static_cast<int>(StepKeyTarget(Key, current, Min(), Max()).value_or(current)));
}

} // namespace qv
