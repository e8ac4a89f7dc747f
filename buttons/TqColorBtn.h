#pragma once
// TqColorBtn: a windowed push button whose face colour, bevel colours, caption placement and
// flat look (a bevel only while hovered or pressed) are properties. It takes the focus, takes
// part in its form's dialog keys (Enter for the active button, Escape with Cancel, the "&"
// accelerator) and hands its ModalResult to the form when clicked.

#include "buttons/ColorButtonBase.h"

namespace qv {

class TqColorBtn : public TColorButtonBase<TCustomControl> {
    QV_OBJECT
public:
    struct Defaults : TColorButtonDefaults {
        static constexpr bool AutoFocus = false;
        static constexpr TModalResult ModalResult = mrNone;
        static constexpr bool Default = false;
        static constexpr bool TabStop = true;
    };

    explicit TqColorBtn(TComponent* AOwner);

    bool AutoFocus() const { return m_autoFocus; }
    void SetAutoFocus(bool value) { m_autoFocus = value; }
    TModalResult ModalResult() const { return m_modalResult; }
    void SetModalResult(TModalResult value) { m_modalResult = value; }
    bool Default() const { return m_default; }
    // Stores the value and lets every button of the form recompute which one Enter clicks.
    void SetDefault(bool value);
    // Whether Enter clicks this button: it has the focus, or no colour button has the focus
    // and it is the Default one.
    bool Active() const { return m_active; }

    // Lifts the face, re-synchronises the hover state, hands ModalResult to the form (also
    // when it is 0) and fires OnClick.
    void Click() override;

protected:
    bool TracksHover() const override { return Enabled() && Flat(); }
    void PressByMouse() override;
    bool LeavesHover() const override { return Flat() && Hovered() && !Held(); }
    void EnterHover() override;
    void AdjustCaptionFont(TFont& font) override;
    void PaintAfterCaption(TCanvas& canvas) override;

    void KeyDown(unsigned& Key, TShiftState Shift) override;
    void KeyUp(unsigned& Key, TShiftState Shift) override;
    void CMDialogKey(TMessage& Message) override;
    void CMDialogChar(TMessage& Message) override;
    void CMFocusChanged(TMessage& Message) override;

private:
    void TakeFocus();

    bool m_autoFocus{Defaults::AutoFocus};
    TModalResult m_modalResult{Defaults::ModalResult};
    bool m_default{Defaults::Default};
    bool m_active{false};
};

} // namespace qv
