#pragma once
// TPassMouseOn<Base>: the PassMouseOn option of the non-windowed components. While it is set,
// the control answers the framework's hit test with "nothing here", so the mouse acts on the
// control beneath it.

#include "platform/controls/Messages.h"

namespace qv {

template <class Base> class TPassMouseOn : public Base {
public:
    using Base::Base;
    struct PassMouseOnDefaults {
        static constexpr bool PassMouseOn = false;
    };

    bool PassMouseOn() const { return m_passMouseOn; }
    void SetPassMouseOn(bool value) { m_passMouseOn = value; }

protected:
    void CMHitTest(TMessage& Message) override {
        if (m_passMouseOn)
            Message.Result = 0;
        else
            Base::CMHitTest(Message);
    }

private:
    bool m_passMouseOn{PassMouseOnDefaults::PassMouseOn};
};

} // namespace qv
