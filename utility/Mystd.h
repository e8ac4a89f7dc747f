#pragma once
// Unit Mystd: the calculator component, the math routines, the dialog-unit conversions and
// the processor and host routines, with the unit's initialization and finalization.
//
// Not here yet: FindForm (needs forms) and the shared hint-appearance record with its TFont
// (needs the graphics layer's fonts); both join this unit with those layers.

#include "utility/DialogUnits.h"
#include "utility/MathHelpers.h"
#include "utility/SystemInfo.h"
#include "utility/TqCalc.h"

namespace qv {

// Counter-guarded: the first initialization detects the processor features; the
// finalization that brings the counter back to zero frees what the initialization made.
void MystdInitialization();
void MystdFinalization();

} // namespace qv
