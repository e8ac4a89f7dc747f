#pragma once
// Unit Qsplit: the splitter containers TqVerSplit and TqHorSplit and their bar TqSplit.

#include "splitters/TqHorSplit.h"
#include "splitters/TqSplit.h"
#include "splitters/TqVerSplit.h"
