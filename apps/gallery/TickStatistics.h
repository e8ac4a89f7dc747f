#pragma once
// Figures of a periodic timer's ticks for the gallery's timer cells: how many came and the
// interval between the last two, and how late they came against their schedule over the
// last second. Times are given by the caller, so the figures are plain arithmetic.

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>

namespace qv::gallery {

using TTickClock = std::chrono::steady_clock;
using TTickDuration = std::chrono::duration<double, std::milli>;

// Counts ticks and keeps the interval between the last two.
class TTickCounter {
public:
    void Tick(TTickClock::time_point at);
    long Count() const { return m_count; }
    // Empty until two ticks came.
    std::optional<TTickDuration> LastInterval() const { return m_lastInterval; }

private:
    long m_count{0};
    std::optional<TTickClock::time_point> m_last;
    std::optional<TTickDuration> m_lastInterval;
};

struct TLatenessFigures {
    TTickDuration p50;
    TTickDuration p99;
    std::size_t ticks; // in the window
};

// The lateness of ticks due every `period`, over a sliding window. The schedule is anchored
// at the most punctual tick seen so far: a tick that comes earlier than the schedule says
// moves the schedule there, so lateness is never negative. Every tick stands for one period,
// as the timers hand over one tick per expired period.
class TLatenessWindow {
public:
    explicit TLatenessWindow(TTickDuration window = std::chrono::seconds(1));

    // Starts over with a new period (no ticks, no schedule).
    void Restart(TTickDuration period);
    void Tick(TTickClock::time_point at);
    // The median and the 99th percentile of the lateness of the ticks that came within the
    // window before `now`; empty without such ticks.
    std::optional<TLatenessFigures> Figures(TTickClock::time_point now) const;
    TTickDuration Period() const { return m_period; }

private:
    struct TSample {
        TTickClock::time_point at;
        TTickDuration lateness;
    };

    TTickDuration m_window;
    TTickDuration m_period{0};
    std::optional<TTickClock::time_point> m_due; // when the next tick is due
    std::deque<TSample> m_samples;
};

} // namespace qv::gallery
