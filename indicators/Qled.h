#pragma once
// Unit Qled: the LED indicator.
#include "indicators/TqLed.h"
