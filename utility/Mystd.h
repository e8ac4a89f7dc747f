#pragma once
// Unit Mystd: the calculator component, the mouse spot, the tray icon, the math routines, the
// dialog-unit conversions, FindForm, gradType, the shared hint appearance and the processor and
// host routines, with the unit's initialization and finalization.

#include "componentbase/Gradient.h" // gradType
#include "utility/DialogUnits.h"
#include "utility/FormHelpers.h"
#include "utility/MathHelpers.h"
#include "utility/SystemInfo.h"
#include "utility/TqCalc.h"
#include "utility/TqMouseSpot.h"
#include "utility/TqTrayIcon.h"

namespace qv {

// Counter-guarded: the first initialization detects the processor features and creates the
// hint appearance; the finalization that brings the counter back to zero frees it.
void MystdInitialization();
void MystdFinalization();

} // namespace qv
