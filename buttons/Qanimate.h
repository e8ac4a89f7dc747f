#pragma once
// Unit Qanimate: the bitmap routines and the colour and gradient buttons.
#include "buttons/BitmapRoutines.h"
#include "buttons/TqColorBtn.h"
#include "buttons/TqGradBtn.h"
#include "buttons/TqNWColorBtn.h"
