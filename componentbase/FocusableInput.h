#pragma once
// TFocusableInput<Base>: what the focusable value controls (knobs, slide bar) share about focus
// and input. They paint every pixel of their bounds (csOpaque, so nothing is erased under
// them), stop in the tab order, want the arrow keys (WM_GETDLGCODE answers DLGC_WANTARROWS),
// repaint at once when they gain or lose the focus (the focus rectangle), take the focus on a
// press, and with AutoFocus also when the pointer enters them, before OnMouseEnter.
//
// The focus is taken only when the control can take it: SetFocus raises on a hidden form or a
// disabled control.

#include "componentbase/EnterLeaveEvents.h"
#include "platform/controls/WinControl.h"

namespace qv {

// The defaults a focusable value control starts with.
struct TFocusableDefaults {
    static constexpr bool AutoFocus = false;
    static constexpr bool TabStop = true;
};

template <class Base> class TFocusableInput : public TEnterLeaveEvents<Base> {
public:
    explicit TFocusableInput(TComponent* AOwner) : TEnterLeaveEvents<Base>(AOwner) {
        this->SetControlStyle(this->ControlStyle() + TControlStyle{csOpaque});
        this->SetTabStop(TFocusableDefaults::TabStop);
    }

    // Take the focus when the pointer enters.
    bool AutoFocus() const { return m_autoFocus; }
    void SetAutoFocus(bool value) { m_autoFocus = value; }

protected:
    // A press focuses the control when it can take the focus.
    void FocusForPress() {
        if (this->CanFocus()) this->SetFocus();
    }

    void MouseEntered() override {
        if (m_autoFocus && !this->Focused() && this->CanFocus()) this->SetFocus();
    }
    void WMGetDlgCode(TMessage& Message) override { Message.Result = DLGC_WANTARROWS; }
    void CMEnter(TMessage& Message) override {
        Base::CMEnter(Message);
        this->Refresh();
    }
    void CMExit(TMessage& Message) override {
        Base::CMExit(Message);
        this->Refresh();
    }

private:
    bool m_autoFocus{TFocusableDefaults::AutoFocus};
};

} // namespace qv
