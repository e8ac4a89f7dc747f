#include "componentbase/Scale.h"

namespace qv {

std::int64_t ScalePercent(std::int64_t value, std::int64_t min, std::int64_t max) {
    const std::int64_t range = max == min ? 1 : max - min;
    return (value - min) * 100 / range;
}

std::int64_t FirstMultipleAtOrAbove(std::int64_t value, std::int64_t step) {
    const std::int64_t remainder = ((value % step) + step) % step;
    return remainder == 0 ? value : value + (step - remainder);
}

} // namespace qv
