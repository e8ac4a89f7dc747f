#pragma once
// Unit Qgauge: the progress gauge.
#include "instruments/TqGauge.h"
