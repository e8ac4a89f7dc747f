#pragma once
// What makes the gallery's components look representative and alive: a few settings per
// class applied once, and a step per animation tick (values sweep between Min and Max,
// switches switch, LEDs blink, segment digits count).
//
// Each class's settings are written against its own getters and setters, so the compiler
// checks that they exist and take the value's type; a setting that does not take effect
// raises an error naming the class, the property and the value.

#include "platform/core/Component.h"

#include <functional>
#include <string>
#include <vector>

namespace qv::gallery {

// One showcase setting of a class: applying it, and whether the component now holds it.
struct TShowcaseSetting {
    std::string property;
    std::string value; // for messages
    std::function<void(TComponent&)> apply;
    std::function<bool(const TComponent&)> holds;
};

// One showcase of a class: its settings and, optionally, its own animation step. A class may
// have several showcases, each shown in a cell of its own; all but the first name their
// `look`, which also names their picture (<class>-<look>.png).
struct TShowcase {
    std::string className;
    std::vector<TShowcaseSetting> settings;
    std::function<void(TComponent&, int tick)> animate;
    std::string look{};
};

// Every class's showcases, in no particular order.
const std::vector<TShowcase>& Showcases();

// Components that act on the form they belong to (its size), so that the gallery gives them a
// form of their own.
bool ActsOnItsForm(const std::string& className);
// The showcases of one class, in the order the gallery shows them (none: the class shows as
// it is made).
std::vector<const TShowcase*> ShowcasesOf(const std::string& className);

// Applies `showcase` to `component`; throws EComponentError naming the class, property and
// value when a setting does not take effect.
void ApplyShowcase(const TShowcase& showcase, TComponent& component);
// Moves the component one animation step on; `tick` counts from 0, ten a second. Without a
// showcase, or when the showcase has no animation of its own, Value sweeps between Min and
// Max and SwitchOn flips, where the component publishes them.
void AnimateStep(const TShowcase* showcase, TComponent& component, int tick);

// What the cell writes under a component: its class name and, for a few classes, a live word
// (the label a slide bar stands at, the number spin buttons step).
std::string CellCaption(const TComponent& component);

// The value a sweep shows at `tick`: from `low` up to `high` and back, `period` ticks for
// the round trip.
int SweepValue(int low, int high, int tick, int period);

} // namespace qv::gallery
