#pragma once
// Unit Qpanel: the knobs and the panel meter.
#include "instruments/TqDblKnob.h"
#include "instruments/TqKnob.h"
#include "instruments/TqPanelMeter.h"
#include "instruments/TqTripKnob.h"
