#include "Label.h"

#include "ControlProperties.h"

namespace qv {

const TClassInfo& TLabel::StaticClassInfo() {
    using C = TLabel;
    static const TClassInfo info = [] {
        TClassBuilder<C> b("TLabel", &TCustomLabel::StaticClassInfo());
        PublishControlProperties(b, {"Align"});
        b.Property("Alignment", &C::Alignment, &C::SetAlignment).Default(taLeftJustify);
        b.Property("AutoSize", &C::AutoSize, &C::SetAutoSize).Default(true);
        PublishControlProperties(b, {"Caption", "Color", "DragCursor", "DragMode", "Enabled"});
        b.Reference("FocusControl", &C::FocusControl, &C::SetFocusControl);
        PublishControlProperties(
            b, {"Font", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
        b.Property("ShowAccelChar", &C::ShowAccelChar, &C::SetShowAccelChar).Default(true);
        PublishControlProperties(b, {"ShowHint"});
        b.Property("Transparent", &C::Transparent, &C::SetTransparent).Default(false);
        b.Property("Layout", &C::Layout, &C::SetLayout).Default(tlTop);
        PublishControlProperties(b, {"Visible"});
        b.Property("WordWrap", &C::WordWrap, &C::SetWordWrap).Default(false);
        PublishControlProperties(b, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver",
                                     "OnEndDrag", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
        return b.Build();
    }();
    return info;
}

TLabel::TLabel(TComponent* AOwner) : TCustomLabel(AOwner) {}

} // namespace qv
