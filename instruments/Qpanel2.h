#pragma once
// Unit Qpanel2: the spectrum display and the credit scroll.
#include "instruments/TqxCreditScroll.h"
#include "instruments/TqxSpectrum.h"
