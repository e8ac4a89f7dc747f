#pragma once
// Unit Qpanel: the knobs.
#include "instruments/TqDblKnob.h"
#include "instruments/TqKnob.h"
#include "instruments/TqTripKnob.h"
