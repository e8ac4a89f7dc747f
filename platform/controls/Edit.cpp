#include "Edit.h"

#include "ControlProperties.h"

namespace qv {

const TClassInfo& TEdit::StaticClassInfo() {
    using C = TEdit;
    static const TClassInfo info = [] {
        TClassBuilder<C> b("TEdit", &TCustomEdit::StaticClassInfo());
        b.Property("AutoSelect", &C::AutoSelect, &C::SetAutoSelect).Default(true);
        b.Property("AutoSize", &C::AutoSize, &C::SetAutoSize).Default(true);
        b.Property("BorderStyle", BorderStyleType(), &C::BorderStyle, &C::SetBorderStyle)
            .Default(bsSingle);
        b.Property("Color", ColorType(), &C::Color, &C::SetColor)
            .Default(clWindow)
            .Stored([](const C& c) { return !c.ParentColor(); });
        PublishControlProperties(b, {"DragCursor", "DragMode", "Enabled", "Font"});
        b.Property("HideSelection", &C::HideSelection, &C::SetHideSelection).Default(true);
        b.Property("MaxLength", &C::MaxLength, &C::SetMaxLength).Default(0);
        b.Property("ParentColor", &C::ParentColor, &C::SetParentColor).Default(false);
        PublishControlProperties(b, {"ParentFont", "ParentShowHint"});
        b.Property("PasswordChar", &C::PasswordChar, &C::SetPasswordChar).Default('\0');
        PublishControlProperties(b, {"PopupMenu"});
        b.Property("ReadOnly", &C::ReadOnly, &C::SetReadOnly).Default(false);
        PublishControlProperties(b, {"ShowHint", "TabOrder"});
        b.Property("TabStop", &C::TabStop, &C::SetTabStop).Default(true);
        b.Property("Text", &C::Text, &C::SetText);
        PublishControlProperties(b, {"Visible"});
        b.Event("OnChange", &C::OnChange);
        PublishControlProperties(b, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver",
                                     "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress",
                                     "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
        return b.Build();
    }();
    return info;
}

TEdit::TEdit(TComponent* AOwner) : TCustomEdit(AOwner) {}

} // namespace qv
