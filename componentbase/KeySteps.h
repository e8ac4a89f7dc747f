#pragma once
// The keyboard of the focusable value controls (knobs, slide bar): the value a navigation key
// asks for, worked out in 64 bits so that no range overflows.
//
//   Page Up    value + step, or Max when that reaches Max
//   Page Down  value - step, or Min when that reaches Min
//   End, Home  Max, Min
//   Left, Down value - 1 while above Min
//   Up, Right  value + 1 while below Max
//
// with step = max(1, (Max - Min) div 10). Each control applies the target through its own
// value setter, so the setter's clamping and events stay the control's.

#include <cstdint>
#include <optional>

namespace qv {

// The page step of a range: the larger of 1 and (max - min) div 10.
std::int64_t PageStep(std::int64_t min, std::int64_t max);

// The value `key` moves `value` to within [min, max], or nothing when the key is not one of the
// table's or changes nothing (an arrow at its end of the range).
std::optional<std::int64_t> StepKeyTarget(unsigned key, std::int64_t value, std::int64_t min,
                                          std::int64_t max);

} // namespace qv
