#include "ListBox.h"

#include "ControlProperties.h"

namespace qv {

const TClassInfo& TListBox::StaticClassInfo() {
    using C = TListBox;
    static const TClassInfo info = [] {
        TClassBuilder<C> b("TListBox", &TCustomListBox::StaticClassInfo());
        PublishControlProperties(b, {"Align"});
        b.Property("BorderStyle", BorderStyleType(), &C::BorderStyle, &C::SetBorderStyle)
            .Default(bsSingle);
        b.Property("Color", ColorType(), &C::Color, &C::SetColor)
            .Default(clWindow)
            .Stored([](const C& c) { return !c.ParentColor(); });
        PublishControlProperties(b, {"DragCursor", "DragMode", "Enabled", "Font"});
        b.Property("IntegralHeight", &C::IntegralHeight, &C::SetIntegralHeight).Default(false);
        b.Property("ItemHeight", &C::ItemHeight, &C::SetItemHeight).Default(16);
        b.Object("Items", &C::Items);
        b.Property("ParentColor", &C::ParentColor, &C::SetParentColor).Default(false);
        PublishControlProperties(b, {"ParentFont", "ParentShowHint", "PopupMenu", "ShowHint"});
        b.Property("Sorted", &C::Sorted, &C::SetSorted).Default(false);
        b.Property("Style", &C::Style, &C::SetStyle).Default(lbStandard);
        PublishControlProperties(b, {"TabOrder"});
        b.Property("TabStop", &C::TabStop, &C::SetTabStop).Default(true);
        PublishControlProperties(b,
                                 {"Visible", "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver"});
        b.Event("OnDrawItem", &C::OnDrawItem);
        PublishControlProperties(b, {"OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress",
                                     "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
        return b.Build();
    }();
    return info;
}

TListBox::TListBox(TComponent* AOwner) : TCustomListBox(AOwner) {}

} // namespace qv
