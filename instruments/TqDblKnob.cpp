#include "instruments/TqDblKnob.h"

#include "platform/core/ClassBuilder.h"

namespace qv {

const TClassInfo& TqDblKnob::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqDblKnob> b("TqDblKnob", &TqKnob::StaticClassInfo());
        b.Property("Value2", &TqDblKnob::Value2, &TqDblKnob::SetKnobValue2)
            .Default(Defaults::Value2);
        b.Event("OnMinimum2", &TqDblKnob::OnMinimum2);
        b.Event("OnMaximum2", &TqDblKnob::OnMaximum2);
        b.Property("PointColor2", ColorType(), &TqDblKnob::PointColor2, &TqDblKnob::SetPoint2)
            .Default(Defaults::PointColor2);
        b.Property("Width", &TqDblKnob::Width, &TqDblKnob::SetheightWidth).Default(Defaults::Size);
        b.Property("Height", &TqDblKnob::Height, &TqDblKnob::SetheightWidth)
            .Default(Defaults::Size);
        return b.Build();
    }();
    return info;
}

TqDblKnob::TqDblKnob(TComponent* AOwner) : TqKnob(AOwner) {
    SetBounds(Left(), Top(), Defaults::Size, Defaults::Size);
}

void TqDblKnob::SetPoint2(TColor value) {
    if (value == m_pointColor2) return;
    m_pointColor2 = value;
    Invalidate();
}

TqKnob::TRing TqDblKnob::Ring(int index) {
    if (index == 1) return {&m_value2, &OnMinimum2, &OnMaximum2, m_pointColor2};
    return TqKnob::Ring(index);
}

} // namespace qv
