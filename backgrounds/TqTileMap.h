#pragma once
// TqTileMap: a windowed control, able to hold child controls, covered with copies of its
// bitmap; where no tile lies (an empty bitmap) its parent shows through.
// TqNWTileMap: the same painting on a graphic control that can pass clicks on.

#include "backgrounds/TileMapBase.h"

namespace qv {

class TqTileMap : public TTileMapBase<TCustomControl> {
    QV_OBJECT
public:
    explicit TqTileMap(TComponent* AOwner);
};

class TqNWTileMap : public TTileMapBase<TPassMouseOn<TGraphicControl>> {
    QV_OBJECT
public:
    explicit TqNWTileMap(TComponent* AOwner);

protected:
    // Opaque while tiles cover it; an empty one shows what lies beneath.
    void BitmapChanged() override;
};

} // namespace qv
