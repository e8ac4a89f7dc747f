#pragma once
// TqMouseSpot: an invisible hot spot for clicks, hints and mouse enter and leave over any part
// of a form. A label that is transparent, never opaque and never sized by its text; it
// paints nothing at run time (a caption set in code is never drawn), a dashed outline while
// designing, and always raises OnParentPaint so that the application can draw through it.

#include "componentbase/EnterLeaveEvents.h"
#include "platform/controls/CustomLabel.h"

namespace qv {

class TqMouseSpot : public TEnterLeaveEvents<TCustomLabel> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr int Size = 20;
    };

    explicit TqMouseSpot(TComponent* AOwner);

    TNotifyEvent OnParentPaint;

protected:
    void Paint() override;
};

} // namespace qv
