#pragma once
// Unit Qpanel: the knobs and the scope.
#include "instruments/TqDblKnob.h"
#include "instruments/TqKnob.h"
#include "instruments/TqScope.h"
#include "instruments/TqTripKnob.h"
