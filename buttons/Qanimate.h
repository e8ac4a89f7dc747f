#pragma once
// Unit Qanimate: the bitmap routines and the colour and gradient buttons.
#include "buttons/BitmapRoutines.h"
