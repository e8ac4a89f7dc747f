#pragma once
// Unit Blend: the gradient and steel backgrounds and the tile maps.
#include "backgrounds/TqBackground.h"
#include "backgrounds/TqBlendPaint.h"
#include "backgrounds/TqTileMap.h"
