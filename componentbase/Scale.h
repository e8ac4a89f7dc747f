#pragma once
// What the scaled instruments share about their Min..Max range: the percent a value stands at,
// the walk over the scale marks, and the rule by which Min and Max are read from a form file.
// Everything is worked out in 64 bits, so the full integer range neither overflows nor costs a
// step per integer.

#include <algorithm>
#include <cstdint>

namespace qv {

// (value - min) * 100 div (max - min); a zero range counts as 1, so a value at min is at 0 %.
std::int64_t ScalePercent(std::int64_t value, std::int64_t min, std::int64_t max);

// Calls visit(percent) once for every distinct ScalePercent of the values in [min, max] that are
// divisible by `step` (a negative step acts as its magnitude, as with mod), lowest first. At most
// 101 calls, whatever the range. Nothing is visited when `step` is 0 or the range is empty
// (min >= max): such a scale has no marks.
template <class Visit>
void ForEachScalePercent(std::int64_t min, std::int64_t max, std::int64_t step, Visit&& visit);

// Calls visit(percent, first, last) for every percent 0..100 that values of [min, max] reach, in
// rising order, with the lowest and highest such value. A one-value range (min = max) is one
// group at 0 %; an empty range (min > max) has none. At most 101 calls, whatever the range, so
// that a scale drawn value by value can be drawn group by group with each group's last value.
template <class Visit> void ForEachScaleGroup(std::int64_t min, std::int64_t max, Visit&& visit);

// Min and Max as a component holds them. Outside loading, Min never rises above Max (SetMin keeps
// it at most Max, SetMax at least Min). While a form file is read the setters store the value as
// read, so that Min 200 followed by Max 300 stays 200..300 instead of becoming 100..300 against
// the default Max; Loaded then settles the pair as the setters would, Min first.
//
// `gap` is how far a bound that would cross the other lands from it: 0 puts it on the other bound,
// 1 (the scope and the spectrum) one step short of it, so that SetMin(150) with Max 100 gives 99.
// Equal bounds are still reachable by setting the bound itself. The step saturates at the ends of
// the integer range.
class TLoadingRange {
public:
    constexpr TLoadingRange(int min, int max, int gap = 0) : m_min(min), m_max(max), m_gap(gap) {}

    int Min() const { return m_min; }
    int Max() const { return m_max; }
    void SetMin(int value, bool loading) {
        m_min = loading || value <= m_max ? value : Saturated(std::int64_t{m_max} - m_gap);
    }
    void SetMax(int value, bool loading) {
        m_max = loading || value >= m_min ? value : Saturated(std::int64_t{m_min} + m_gap);
    }
    // After loading: a Max read below Min is set as SetMax would set it.
    void Loaded() {
        if (m_max < m_min) SetMax(m_max, false);
    }
    int Clamp(int value) const { return std::clamp(value, m_min, m_max); }

private:
    static int Saturated(std::int64_t value) {
        return static_cast<int>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
    }

    int m_min;
    int m_max;
    int m_gap;
};

// The first multiple of `step` (> 0) at or above `value`.
std::int64_t FirstMultipleAtOrAbove(std::int64_t value, std::int64_t step);

template <class Visit>
void ForEachScalePercent(std::int64_t min, std::int64_t max, std::int64_t step, Visit&& visit) {
    if (step == 0 || min >= max) return;
    const std::int64_t magnitude = step < 0 ? -step : step;
    const std::int64_t range = max - min;
    // The values at percent p are min + ceil(p * range / 100) .. min + ceil((p + 1) * range /
    // 100) - 1, and p = 100 holds max alone.
    const auto firstAt = [&](std::int64_t p) { return min + (p * range + 99) / 100; };
    for (std::int64_t p = 0; p <= 100; ++p) {
        const std::int64_t last = p == 100 ? max : firstAt(p + 1) - 1;
        if (FirstMultipleAtOrAbove(firstAt(p), magnitude) <= last) visit(p);
    }
}

template <class Visit> void ForEachScaleGroup(std::int64_t min, std::int64_t max, Visit&& visit) {
    if (min > max) return;
    if (min == max) {
        visit(std::int64_t{0}, min, max);
        return;
    }
    const std::int64_t range = max - min;
    const auto firstAt = [&](std::int64_t p) { return min + (p * range + 99) / 100; };
    for (std::int64_t p = 0; p <= 100; ++p) {
        const std::int64_t first = firstAt(p);
        const std::int64_t last = p == 100 ? max : firstAt(p + 1) - 1;
        if (first <= last) visit(p, first, last);
    }
}

// The last multiple of `step` (> 0) at or below `value`.
inline std::int64_t LastMultipleAtOrBelow(std::int64_t value, std::int64_t step) {
    const std::int64_t remainder = ((value % step) + step) % step;
    return value - remainder;
}

} // namespace qv
