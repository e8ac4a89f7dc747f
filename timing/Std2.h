#pragma once
// Unit Std2: the thread timer TqxTimer, the multimedia timer TqxMMTimer, Delay, the program
// launcher TqxRunProg, the composite canvas TqCompCanvas and the form size limits TqMinMax. Its
// initialization creates the shared steel texture (componentbase/Steel.h) and its finalization
// frees it.

#include "timing/TqCompCanvas.h"
#include "timing/TqMinMax.h"
#include "timing/TqxMMTimer.h"
#include "timing/TqxRunProg.h"
#include "timing/TqxTimer.h"

namespace qv {

void Std2Initialization();
void Std2Finalization();

} // namespace qv
