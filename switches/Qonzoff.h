#pragma once
// Unit Qonzoff: the on/off switches on their common base.
#include "switches/TqxCustomOnOff.h"
#include "switches/TqxDblOnOff.h"
#include "switches/TqxLightOnOff.h"
#include "switches/TqxPushOnOff.h"
#include "switches/TqxSingleOnOff.h"
#include "switches/TqxSlideOnOff.h"
