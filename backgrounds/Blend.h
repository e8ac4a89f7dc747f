#pragma once
// Unit Blend: the gradient and steel backgrounds and the tile maps.
#include "backgrounds/TqBlendPaint.h"
