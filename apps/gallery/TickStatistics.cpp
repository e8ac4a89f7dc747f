#include "TickStatistics.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace qv::gallery {

namespace {

// The nearest-rank percentile of sorted values (p in 0..100).
TTickDuration Percentile(const std::vector<TTickDuration>& sorted, int p) {
    const auto rank = static_cast<std::size_t>(std::ceil(p / 100.0 * sorted.size()));
    return sorted[std::max<std::size_t>(rank, 1) - 1];
}

} // namespace

void TTickCounter::Tick(TTickClock::time_point at) {
    ++m_count;
    if (m_last) m_lastInterval = at - *m_last;
    m_last = at;
}

TLatenessWindow::TLatenessWindow(TTickDuration window) : m_window(window) {}

void TLatenessWindow::Restart(TTickDuration period) {
    m_period = period;
    m_due.reset();
    m_samples.clear();
}

void TLatenessWindow::Tick(TTickClock::time_point at) {
    if (m_period <= TTickDuration::zero()) return;
    if (!m_due || at < *m_due) m_due = at; // the first or the most punctual tick so far
    m_samples.push_back({at, at - *m_due});
    *m_due += std::chrono::duration_cast<TTickClock::duration>(m_period);
    while (at - m_samples.front().at > m_window)
        m_samples.pop_front();
}

std::optional<TLatenessFigures> TLatenessWindow::Figures(TTickClock::time_point now) const {
    std::vector<TTickDuration> lateness;
    for (const TSample& s : m_samples)
        if (now - s.at <= m_window) lateness.push_back(s.lateness);
    if (lateness.empty()) return std::nullopt;
    std::sort(lateness.begin(), lateness.end());
    return TLatenessFigures{Percentile(lateness, 50), Percentile(lateness, 99), lateness.size()};
}

} // namespace qv::gallery
