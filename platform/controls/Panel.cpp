#include "Panel.h"

#include "ControlProperties.h"

namespace qv {

const TClassInfo& TPanel::StaticClassInfo() {
    using C = TPanel;
    static const TClassInfo info = [] {
        TClassBuilder<C> b("TPanel", &TCustomPanel::StaticClassInfo());
        PublishControlProperties(b, {"Align"});
        b.Property("Alignment", &C::Alignment, &C::SetAlignment).Default(taCenter);
        b.Property("BevelInner", &C::BevelInner, &C::SetBevelInner).Default(bvNone);
        b.Property("BevelOuter", &C::BevelOuter, &C::SetBevelOuter).Default(bvRaised);
        b.Property("BevelWidth", &C::BevelWidth, &C::SetBevelWidth).Default(1);
        b.Property("BorderWidth", &C::BorderWidth, &C::SetBorderWidth).Default(0);
        b.Property("BorderStyle", BorderStyleType(), &C::BorderStyle, &C::SetBorderStyle)
            .Default(bsNone);
        PublishControlProperties(b, {"Caption"});
        b.Property("Color", ColorType(), &C::Color, &C::SetColor)
            .Default(clBtnFace)
            .Stored([](const C& c) { return !c.ParentColor(); });
        PublishControlProperties(b, {"DragCursor", "DragMode", "Enabled"});
        b.Property("FullRepaint", &C::FullRepaint, &C::SetFullRepaint).Default(true);
        PublishControlProperties(b, {"Font"});
        b.Property("ParentColor", &C::ParentColor, &C::SetParentColor).Default(false);
        PublishControlProperties(
            b, {"ParentFont", "ParentShowHint", "PopupMenu", "ShowHint", "TabOrder"});
        b.Property("TabStop", &C::TabStop, &C::SetTabStop).Default(false);
        PublishControlProperties(b, {"Visible", "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver",
                                     "OnEndDrag", "OnEnter", "OnExit", "OnMouseDown", "OnMouseMove",
                                     "OnMouseUp", "OnResize"});
        return b.Build();
    }();
    return info;
}

TPanel::TPanel(TComponent* AOwner) : TCustomPanel(AOwner) {}

} // namespace qv
