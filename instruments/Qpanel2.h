#pragma once
// Unit Qpanel2: the analog clock, the DIN meter, the spectrum display and the credit scroll.
#include "instruments/TqxAnalogClock.h"
#include "instruments/TqxCreditScroll.h"
#include "instruments/TqxDinMeter.h"
#include "instruments/TqxSpectrum.h"
