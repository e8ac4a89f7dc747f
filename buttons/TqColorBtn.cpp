#include "buttons/TqColorBtn.h"

#include "componentbase/Bevels.h"
#include "platform/controls/ControlProperties.h"
#include "platform/controls/Form.h"

namespace qv {

const TClassInfo& TqColorBtn::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqColorBtn> b("TqColorBtn", &TCustomControl::StaticClassInfo());
        b.Property("AutoFocus", &TqColorBtn::AutoFocus, &TqColorBtn::SetAutoFocus)
            .Default(Defaults::AutoFocus);
        b.Property("Flat", &TqColorBtn::Flat, &TqColorBtn::SetFlat).Default(Defaults::Flat);
        b.Property("HorzAlign", &TqColorBtn::HorzAlign, &TqColorBtn::SetHorzAlign)
            .Default(Defaults::HorzAlign);
        b.Property("MultipleLines", &TqColorBtn::MultipleLines, &TqColorBtn::SetMultipleLines)
            .Default(Defaults::MultipleLines);
        b.Property("WordWrap", &TqColorBtn::WordWrap, &TqColorBtn::SetWordWrap)
            .Default(Defaults::WordWrap);
        b.Property("Alignment", &TqColorBtn::Alignment, &TqColorBtn::SetAlignment)
            .Default(Defaults::Alignment);
        b.Event("OnPaint", &TqColorBtn::OnPaint);
        b.Property("Cancel", &TqColorBtn::Cancel, &TqColorBtn::SetCancel).Default(Defaults::Cancel);
        b.Property("ModalResult", &TqColorBtn::ModalResult, &TqColorBtn::SetModalResult)
            .Default(Defaults::ModalResult);
        b.Property("Default", &TqColorBtn::Default, &TqColorBtn::SetDefault)
            .Default(Defaults::Default);
        PublishControlProperties(
            b, {"PopupMenu", "OnDragDrop", "OnDragOver", "OnEndDrag", "OnKeyDown", "OnKeyPress",
                "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp", "DragCursor", "DragMode",
                "Font", "ParentFont", "Caption", "Color", "ParentColor", "HelpContext"});
        b.Property("HighLightColor", ColorType(), &TqColorBtn::HighLightColor,
                   &TqColorBtn::SetHighLightColor)
            .Default(Defaults::HighLightColor);
        b.Property("ShadowColor", ColorType(), &TqColorBtn::ShadowColor,
                   &TqColorBtn::SetShadowColor)
            .Default(Defaults::ShadowColor);
        PublishControlProperties(b, {"TabStop"});
        b.Default(Defaults::TabStop);
        PublishControlProperties(b, {"TabOrder", "Width"});
        b.Default(Defaults::Width);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Height);
        PublishControlProperties(b, {"Enabled", "ParentShowHint", "ShowHint", "Visible", "OnEnter",
                                     "OnExit", "OnClick", "OnDblClick"});
        b.Event("OnMouseEnter", &TqColorBtn::OnMouseEnter);
        b.Event("OnMouseLeave", &TqColorBtn::OnMouseLeave);
        return b.Build();
    }();
    return info;
}

TqColorBtn::TqColorBtn(TComponent* AOwner) : TColorButtonBase<TCustomControl>(AOwner) {
    SetControlStyle({csCaptureMouse, csClickEvents, csSetCaption, csOpaque, csDoubleClicks});
    SetTabStop(Defaults::TabStop);
}

void TqColorBtn::TakeFocus() {
    if (!Focused() && CanFocus()) SetFocus();
}

// Before the window exists the button is active exactly when it is the Default one.
void TqColorBtn::SetDefault(bool value) {
    m_default = value;
    if (!HandleAllocated()) {
        m_active = value;
        return;
    }
    if (TCustomForm* form = ParentForm()) form->FocusChanged();
}

void TqColorBtn::Click() {
    ClearHover();
    SetMouseIn();
    EndHolding();
    Repaint();
    if (TCustomForm* form = ParentForm()) form->SetModalResult(m_modalResult);
    TColorButtonBase<TCustomControl>::Click();
}

void TqColorBtn::PressByMouse() {
    TakeFocus();
    SetDown(true);
    Repaint();
}

void TqColorBtn::EnterHover() {
    TColorButtonBase<TCustomControl>::EnterHover();
    if (m_autoFocus) TakeFocus();
}

void TqColorBtn::AdjustCaptionFont(TFont& font) {
    font.SetStyle(Focused() || m_default ? TFontStyles{fsBold} : TFontStyles{});
}

void TqColorBtn::PaintAfterCaption(TCanvas& canvas) {
    if (Focused() && Enabled()) PaintFocusRect(canvas, ClientRect(), 3);
}

void TqColorBtn::KeyDown(unsigned& Key, TShiftState Shift) {
    if (Key == VK_SPACE) {
        if (Down()) {
            Key = 0; // a repeat while pressed is swallowed
            return;
        }
        TakeFocus();
        SetMouseIn();
        EndHolding();
        SetDown(true);
        Invalidate();
        return;
    }
    if (Key == VK_RETURN && Focused() && CanFocus()) {
        Key = 0;
        Click();
        return;
    }
    TColorButtonBase<TCustomControl>::KeyDown(Key, Shift);
}

void TqColorBtn::KeyUp(unsigned& Key, TShiftState Shift) {
    if (Key != VK_SPACE) {
        TColorButtonBase<TCustomControl>::KeyUp(Key, Shift);
        return;
    }
    if (!Down() || Held()) return;
    Click();
    SetDown(false);
    SetMouseIn();
    Invalidate();
}

void TqColorBtn::CMDialogKey(TMessage& Message) {
    const auto key = static_cast<unsigned>(Message.WParam);
    const TShiftState shift = KeyboardShiftState();
    const bool plain =
        !shift.Contains(ssShift) && !shift.Contains(ssCtrl) && !shift.Contains(ssAlt);
    if (plain && ((key == VK_RETURN && m_active) || (key == VK_ESCAPE && Cancel())) && CanFocus()) {
        Click();
        Message.Result = 1;
        return;
    }
    TColorButtonBase<TCustomControl>::CMDialogKey(Message);
}

void TqColorBtn::CMDialogChar(TMessage& Message) {
    if (IsAccel(static_cast<unsigned>(Message.WParam), Caption()) && CanFocus()) {
        Click();
        Message.Result = 1;
        return;
    }
    TColorButtonBase<TCustomControl>::CMDialogChar(Message);
}

void TqColorBtn::CMFocusChanged(TMessage& Message) {
    auto* focused = reinterpret_cast<TWinControl*>(Message.LParam);
    if (focused == this)
        m_active = true;
    else if (dynamic_cast<TqColorBtn*>(focused))
        m_active = false;
    else
        m_active = m_default;
    if (!Focused()) EndHolding();
    SetMouseIn();
    TColorButtonBase<TCustomControl>::CMFocusChanged(Message);
    Invalidate();
}

} // namespace qv
