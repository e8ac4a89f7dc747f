#pragma once
// OnMouseEnter and OnMouseLeave as the package's components raise them: from the
// framework's mouse-enter and mouse-leave notifications, after the inherited handling,
// with the component as Sender, only if assigned. A subclass that acts on entering before the
// event (taking the focus, for instance) overrides MouseEntered.

#include "platform/controls/Messages.h"
#include "platform/core/Object.h"

namespace qv {

template <class Base> class TEnterLeaveEvents : public Base {
public:
    using Base::Base;
    TNotifyEvent OnMouseEnter;
    TNotifyEvent OnMouseLeave;

protected:
    // Called on entering, after the inherited handling and before OnMouseEnter.
    virtual void MouseEntered() {}
    void CMMouseEnter(TMessage& Message) override {
        Base::CMMouseEnter(Message);
        MouseEntered();
        if (OnMouseEnter) OnMouseEnter(this);
    }
    void CMMouseLeave(TMessage& Message) override {
        Base::CMMouseLeave(Message);
        if (OnMouseLeave) OnMouseLeave(this);
    }
};

} // namespace qv
