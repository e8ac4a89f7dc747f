#pragma once
// What makes the gallery's components look representative and alive: a few settings per
// class applied once, and a step per animation tick (values sweep between Min and Max,
// switches switch, LEDs blink, segment digits count).

#include "platform/core/Component.h"

namespace qv::gallery {

// Applies the showcase settings known for the component's class. The package is written
// alongside the gallery, so a setting the class does not (yet) publish is skipped.
void ApplyShowcaseSettings(TComponent& component);

// Moves the component one animation step on; `tick` counts from 0, ten a second.
void AnimateStep(TComponent& component, int tick);

// The value a sweep shows at `tick`: from `low` up to `high` and back, `period` ticks for
// the round trip.
int SweepValue(int low, int high, int tick, int period);

} // namespace qv::gallery
