#pragma once
// Unit Qseg: the 16-segment cell with its character table, the segment label and clock.
#include "indicators/TqCustomSegmentLabel.h"
#include "indicators/TqSegment.h"
#include "indicators/TqSegmentClock.h"
#include "indicators/TqSegmentLabel.h"
