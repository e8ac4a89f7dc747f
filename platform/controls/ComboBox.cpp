#include "ComboBox.h"

#include "ControlProperties.h"

namespace qv {

const TClassInfo& TComboBox::StaticClassInfo() {
    using C = TComboBox;
    static const TClassInfo info = [] {
        TClassBuilder<C> b("TComboBox", &TCustomComboBox::StaticClassInfo());
        b.Property("Style", &C::Style, &C::SetStyle).Default(csDropDown);
        b.Property("Color", ColorType(), &C::Color, &C::SetColor)
            .Default(clWindow)
            .Stored([](const C& c) { return !c.ParentColor(); });
        PublishControlProperties(b, {"DragCursor", "DragMode"});
        b.Property("DropDownCount", &C::DropDownCount, &C::SetDropDownCount).Default(8);
        PublishControlProperties(b, {"Enabled", "Font"});
        b.Property("ItemHeight", &C::ItemHeight, &C::SetItemHeight).Default(16);
        b.Property("ParentColor", &C::ParentColor, &C::SetParentColor).Default(false);
        PublishControlProperties(b, {"ParentFont", "ParentShowHint", "PopupMenu", "ShowHint"});
        b.Property("Sorted", &C::Sorted, &C::SetSorted).Default(false);
        PublishControlProperties(b, {"TabOrder"});
        b.Property("TabStop", &C::TabStop, &C::SetTabStop).Default(true);
        b.Property("Text", &C::Text, &C::SetText);
        PublishControlProperties(b, {"Visible"});
        b.Event("OnChange", &C::OnChange);
        PublishControlProperties(b, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver"});
        b.Event("OnDrawItem", &C::OnDrawItem);
        b.Event("OnDropDown", &C::OnDropDown);
        PublishControlProperties(
            b, {"OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp"});
        b.Object("Items", &C::Items);
        return b.Build();
    }();
    return info;
}

TComboBox::TComboBox(TComponent* AOwner) : TCustomComboBox(AOwner) {}

} // namespace qv
