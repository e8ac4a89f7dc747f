#pragma once
// TqBlendPaint: a windowed gradient (or steel) panel that holds child controls.
// TqNWBlendPaint: the same painting on a graphic control that can pass clicks on.

#include "backgrounds/BlendPaintBase.h"

namespace qv {

class TqBlendPaint : public TBlendPaintBase<TCustomControl> {
    QV_OBJECT
public:
    explicit TqBlendPaint(TComponent* AOwner);
};

class TqNWBlendPaint : public TBlendPaintBase<TPassMouseOn<TGraphicControl>> {
    QV_OBJECT
public:
    explicit TqNWBlendPaint(TComponent* AOwner);
};

} // namespace qv
