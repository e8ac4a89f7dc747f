#pragma once
// Publishing the framework's control properties and events in a component's own property
// list, by name and at the component's chosen position:
//
//   auto b = TClassBuilder<TqLed>("TqLed", &TGraphicControl::StaticClassInfo());
//   b.Property("SteelLook", ...);
//   PublishControlProperties(b, {"DragCursor", "DragMode", "Align", "Hint", "Visible"});

#include "Control.h"
#include "Menus.h"
#include "WinControl.h"

#include "platform/core/ClassBuilder.h"
#include "platform/graphics/Color.h"

#include <initializer_list>
#include <string_view>

namespace qv {

template <class C> void PublishControlProperty(TClassBuilder<C>& b, std::string_view name) {
    if (name == "Left")
        b.Property("Left", &C::Left, &C::SetLeft);
    else if (name == "Top")
        b.Property("Top", &C::Top, &C::SetTop);
    else if (name == "Width")
        b.Property("Width", &C::Width, &C::SetWidth);
    else if (name == "Height")
        b.Property("Height", &C::Height, &C::SetHeight);
    else if (name == "Align")
        b.Property("Align", &C::Align, &C::SetAlign).Default(alNone);
    else if (name == "Caption")
        b.Property("Caption", &C::Caption, &C::SetCaption);
    else if (name == "Color")
        b.Property("Color", ColorType(), &C::Color, &C::SetColor).Stored([](const C& c) {
            return !c.ParentColor();
        });
    else if (name == "ParentColor")
        b.Property("ParentColor", &C::ParentColor, &C::SetParentColor).Default(true);
    else if (name == "Font")
        b.Object("Font", &C::Font).Stored([](const C& c) { return !c.ParentFont(); });
    else if (name == "ParentFont")
        b.Property("ParentFont", &C::ParentFont, &C::SetParentFont).Default(true);
    else if (name == "Cursor")
        b.Property("Cursor", CursorType(), &C::Cursor, &C::SetCursor).Default(crDefault);
    else if (name == "DragCursor")
        b.Property("DragCursor", CursorType(), &C::DragCursor, &C::SetDragCursor).Default(crDrag);
    else if (name == "DragMode")
        b.Property("DragMode", &C::DragMode, &C::SetDragMode).Default(dmManual);
    else if (name == "Hint")
        b.Property("Hint", &C::Hint, &C::SetHint);
    else if (name == "HelpContext")
        b.Property("HelpContext", &C::HelpContext, &C::SetHelpContext).Default(0);
    else if (name == "ShowHint")
        b.Property("ShowHint", &C::ShowHint, &C::SetShowHint).Stored([](const C& c) {
            return !c.ParentShowHint();
        });
    else if (name == "ParentShowHint")
        b.Property("ParentShowHint", &C::ParentShowHint, &C::SetParentShowHint).Default(true);
    else if (name == "Visible")
        b.Property("Visible", &C::Visible, &C::SetVisible).Default(true);
    else if (name == "Enabled")
        b.Property("Enabled", &C::Enabled, &C::SetEnabled).Default(true);
    else if (name == "PopupMenu")
        b.Reference("PopupMenu", &C::PopupMenu, &C::SetPopupMenu);
    else if (name == "OnClick")
        b.Event("OnClick", &C::OnClick);
    else if (name == "OnDblClick")
        b.Event("OnDblClick", &C::OnDblClick);
    else if (name == "OnMouseDown")
        b.Event("OnMouseDown", &C::OnMouseDown);
    else if (name == "OnMouseMove")
        b.Event("OnMouseMove", &C::OnMouseMove);
    else if (name == "OnMouseUp")
        b.Event("OnMouseUp", &C::OnMouseUp);
    else if (name == "OnDragDrop")
        b.Event("OnDragDrop", &C::OnDragDrop);
    else if (name == "OnDragOver")
        b.Event("OnDragOver", &C::OnDragOver);
    else if (name == "OnEndDrag")
        b.Event("OnEndDrag", &C::OnEndDrag);
    else if (name == "OnStartDrag")
        b.Event("OnStartDrag", &C::OnStartDrag);
    else if (name == "OnResize")
        b.Event("OnResize", &C::OnResize);
    else if constexpr (std::is_base_of_v<TWinControl, C>) {
        if (name == "TabStop")
            b.Property("TabStop", &C::TabStop, &C::SetTabStop);
        else if (name == "TabOrder")
            // No storage default: a control's place in the tab order is always written (the
            // classic declared default of -1 is a value no placed control holds).
            b.Property("TabOrder", &C::TabOrder, &C::SetTabOrder);
        else if (name == "OnEnter")
            b.Event("OnEnter", &C::OnEnter);
        else if (name == "OnExit")
            b.Event("OnExit", &C::OnExit);
        else if (name == "OnKeyDown")
            b.Event("OnKeyDown", &C::OnKeyDown);
        else if (name == "OnKeyPress")
            b.Event("OnKeyPress", &C::OnKeyPress);
        else if (name == "OnKeyUp")
            b.Event("OnKeyUp", &C::OnKeyUp);
        else
            throw EComponentError("Unknown control property " + std::string(name));
    } else {
        throw EComponentError("Unknown control property " + std::string(name));
    }
}

template <class C>
TClassBuilder<C>& PublishControlProperties(TClassBuilder<C>& b,
                                           std::initializer_list<std::string_view> names) {
    for (std::string_view name : names)
        PublishControlProperty(b, name);
    return b;
}

} // namespace qv
