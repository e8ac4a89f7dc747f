#include "backgrounds/TqBlendPaint.h"

#include "platform/controls/ControlProperties.h"

namespace qv {

namespace {

// The published list after PassMouseOn, the same for both classes.
template <class C> void PublishBlendProperties(TClassBuilder<C>& b) {
    using D = TBlendPaintDefaults;
    b.Property("SteelLook", &C::SteelLook, &C::SetSteelLook).Default(D::SteelLook);
    b.Property("FillType", &C::FillType, &C::SetFillType).Default(D::FillType);
    b.Event("OnPaint", &C::OnPaint);
    b.Property("Color", ColorType(), &C::Color, &C::SetColor).Default(D::Color);
    b.Property("ParentColor", &C::ParentColor, &C::SetParentColor).Default(D::ParentColor);
    b.Property("EndColor", ColorType(), &C::EndColor, &C::SetEndColor).Default(D::EndColor);
    b.Property("Bands", &C::Bands, &C::SetBands).Default(D::Bands);
    PublishControlProperties(b, {"Width"});
    b.Default(D::Size);
    PublishControlProperties(b, {"Height"});
    b.Default(D::Size);
    PublishControlProperties(b,
                             {"Align", "Hint", "ParentShowHint", "PopupMenu", "ShowHint", "Visible",
                              "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnMouseDown",
                              "OnMouseMove", "OnMouseUp", "DragCursor", "DragMode"});
}

} // namespace

const TClassInfo& TqBlendPaint::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqBlendPaint> b("TqBlendPaint", &TCustomControl::StaticClassInfo());
        PublishBlendProperties(b);
        return b.Build();
    }();
    return info;
}

TqBlendPaint::TqBlendPaint(TComponent* AOwner) : TBlendPaintBase<TCustomControl>(AOwner) {
    SetControlStyle({csAcceptsControls, csCaptureMouse, csClickEvents, csDoubleClicks});
}

const TClassInfo& TqNWBlendPaint::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqNWBlendPaint> b("TqNWBlendPaint", &TGraphicControl::StaticClassInfo());
        b.Property("PassMouseOn", &TqNWBlendPaint::PassMouseOn, &TqNWBlendPaint::SetPassMouseOn)
            .Default(PassMouseOnDefaults::PassMouseOn);
        PublishBlendProperties(b);
        return b.Build();
    }();
    return info;
}

TqNWBlendPaint::TqNWBlendPaint(TComponent* AOwner)
    : TBlendPaintBase<TPassMouseOn<TGraphicControl>>(AOwner) {
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
}

} // namespace qv
