#pragma once
// Unit Qpanel: the knobs, the panel meter and the scope.
#include "instruments/TqDblKnob.h"
#include "instruments/TqKnob.h"
#include "instruments/TqPanelMeter.h"
#include "instruments/TqScope.h"
#include "instruments/TqTripKnob.h"
