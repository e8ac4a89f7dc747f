#pragma once
// Unit Slidebar: the slide bar.
#include "slidebar/TqSlideBar.h"
