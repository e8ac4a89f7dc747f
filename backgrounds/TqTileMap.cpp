#include "backgrounds/TqTileMap.h"

#include "platform/controls/ControlProperties.h"

namespace qv {

namespace {

// The published list after PassMouseOn, the same for both classes.
template <class C> void PublishTileMapProperties(TClassBuilder<C>& b) {
    using D = TTileMapDefaults;
    b.Event("OnPaint", &C::OnPaint);
    b.Object("Bitmap", &C::Bitmap);
    PublishControlProperties(b, {"Width"});
    b.Default(D::Size);
    PublishControlProperties(b, {"Height"});
    b.Default(D::Size);
    PublishControlProperties(b, {"Color", "ParentColor", "Align", "Hint", "ParentShowHint",
                                 "PopupMenu", "ShowHint", "Visible", "OnClick", "OnDblClick",
                                 "OnDragDrop", "OnDragOver", "OnMouseDown", "OnMouseMove",
                                 "OnMouseUp", "DragCursor", "DragMode"});
}

} // namespace

const TClassInfo& TqTileMap::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqTileMap> b("TqTileMap", &TCustomControl::StaticClassInfo());
        PublishTileMapProperties(b);
        return b.Build();
    }();
    return info;
}

// Not opaque: the control is transparent where no tile lies.
TqTileMap::TqTileMap(TComponent* AOwner) : TTileMapBase<TCustomControl>(AOwner) {
    SetControlStyle({csAcceptsControls, csCaptureMouse, csClickEvents, csDoubleClicks});
}

const TClassInfo& TqNWTileMap::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqNWTileMap> b("TqNWTileMap", &TGraphicControl::StaticClassInfo());
        b.Property("PassMouseOn", &TqNWTileMap::PassMouseOn, &TqNWTileMap::SetPassMouseOn)
            .Default(PassMouseOnDefaults::PassMouseOn);
        PublishTileMapProperties(b);
        return b.Build();
    }();
    return info;
}

TqNWTileMap::TqNWTileMap(TComponent* AOwner)
    : TTileMapBase<TPassMouseOn<TGraphicControl>>(AOwner) {
    BitmapChanged();
}

void TqNWTileMap::BitmapChanged() {
    SetOpaqueStyle(*this, !Bitmap()->Empty());
    TTileMapBase<TPassMouseOn<TGraphicControl>>::BitmapChanged();
}

} // namespace qv
