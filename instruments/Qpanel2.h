#pragma once
// Unit Qpanel2: the analog clock and the DIN meter.
#include "instruments/TqxAnalogClock.h"
#include "instruments/TqxDinMeter.h"
