#include "componentbase/KeySteps.h"

#include "platform/controls/Messages.h"

#include <algorithm>

namespace qv {

std::int64_t PageStep(std::int64_t min, std::int64_t max) {
    return std::max<std::int64_t>(1, (max - min) / 10);
}

std::optional<std::int64_t> StepKeyTarget(unsigned key, std::int64_t value, std::int64_t min,
                                          std::int64_t max) {
    switch (key) {
    case VK_PRIOR:
        return value + PageStep(min, max) < max ? value + PageStep(min, max) : max;
    case VK_NEXT:
        return value - PageStep(min, max) > min ? value - PageStep(min, max) : min;
    case VK_END:
        return max;
    case VK_HOME:
        return min;
    case VK_LEFT:
    case VK_DOWN:
        if (value > min) return value - 1;
        return std::nullopt;
    case VK_UP:
    case VK_RIGHT:
        if (value < max) return value + 1;
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace qv
