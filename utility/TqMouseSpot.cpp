#include "TqMouseSpot.h"

#include "componentbase/PaintFrame.h"
#include "platform/controls/ControlProperties.h"

namespace qv {

const TClassInfo& TqMouseSpot::StaticClassInfo() {
    using C = TqMouseSpot;
    static const TClassInfo info = [] {
        TClassBuilder<C> b("TqMouseSpot", &TCustomLabel::StaticClassInfo());
        PublishControlProperties(b, {"DragCursor", "DragMode"});
        b.Event("OnParentPaint", &C::OnParentPaint);
        b.Property("Height", &C::Height, &C::SetHeight).Default(Defaults::Size);
        b.Property("Width", &C::Width, &C::SetWidth).Default(Defaults::Size);
        PublishControlProperties(b, {"Enabled", "ParentShowHint", "PopupMenu", "ShowHint", "Hint",
                                     "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver",
                                     "OnEndDrag", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
        b.Event("OnMouseEnter", &C::OnMouseEnter);
        b.Event("OnMouseLeave", &C::OnMouseLeave);
        return b.Build();
    }();
    return info;
}

TqMouseSpot::TqMouseSpot(TComponent* AOwner) : TEnterLeaveEvents<TCustomLabel>(AOwner) {
    SetControlStyle(ControlStyle() - TControlStyle{csOpaque});
    SetAutoSize(false);
    SetBounds(Left(), Top(), Defaults::Size, Defaults::Size);
    SetTransparent(true);
    SetCaption("");
}

void TqMouseSpot::Paint() {
    if (IsDesigning()) DrawDesignOutline(Canvas(), Width(), Height());
    if (OnParentPaint) OnParentPaint(this);
}

} // namespace qv
