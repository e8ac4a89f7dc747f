#include "MultimediaTimer.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <thread>

namespace qv {

// One running event: a thread waiting on a timerfd and on an eventfd that stops it.
class TMultimediaTimerService::TEvent {
public:
    TEvent(unsigned delayMs, TCallback callback, bool periodic)
        : m_callback(std::move(callback)), m_timer(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC)),
          m_stop(::eventfd(0, EFD_CLOEXEC)) {
        timespec now{};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        itimerspec schedule{};
        schedule.it_value = Add(now, delayMs);
        if (periodic) schedule.it_interval = Span(delayMs);
        ::timerfd_settime(m_timer, TFD_TIMER_ABSTIME, &schedule, nullptr);
        m_thread = std::thread([this] { Run(); });
    }

    ~TEvent() {
        Stop();
        if (m_thread.joinable()) m_thread.join();
        ::close(m_timer);
        ::close(m_stop);
    }

    bool OnOwnThread() const { return m_thread.get_id() == std::this_thread::get_id(); }

    // Killed from its own callback: the thread cannot join itself, so it finishes the
    // callback and frees the event on its way out.
    void FreeOnExit() {
        m_freeOnExit = true;
        Stop();
        m_thread.detach();
    }

    bool Valid() const { return m_timer >= 0 && m_stop >= 0; }

    void Stop() {
        m_stopped.store(true);
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = ::write(m_stop, &one, sizeof one);
    }

private:
    static timespec Span(unsigned ms) {
        return {static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1000000L};
    }
    static timespec Add(timespec t, unsigned ms) {
        const timespec d = Span(ms);
        t.tv_sec += d.tv_sec;
        t.tv_nsec += d.tv_nsec;
        if (t.tv_nsec >= 1000000000L) {
            t.tv_nsec -= 1000000000L;
            ++t.tv_sec;
        }
        return t;
    }

    void Run() {
        Loop();
        if (m_freeOnExit) delete this;
    }

    void Loop() {
        ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        pollfd fds[2] = {{m_timer, POLLIN, 0}, {m_stop, POLLIN, 0}};
        while (!m_stopped.load()) {
            if (::poll(fds, 2, -1) < 0) continue;
            if (fds[1].revents || m_stopped.load()) return;
            std::uint64_t expirations = 0;
            if (::read(m_timer, &expirations, sizeof expirations) != sizeof expirations) continue;
            // Deadlines are absolute: a wake-up that comes after several of them calls back
            // once for each, so the count of ticks never falls behind the clock.
            for (std::uint64_t i = 0; i < expirations && !m_stopped.load(); ++i)
                m_callback();
        }
    }

    TCallback m_callback;
    int m_timer;
    int m_stop;
    std::atomic<bool> m_stopped{false};
    bool m_freeOnExit{false}; // set only on the event's own thread
    std::thread m_thread;
};

TMultimediaTimerService::TMultimediaTimerService() = default;

TMultimediaTimerService::~TMultimediaTimerService() {
    std::map<unsigned, std::unique_ptr<TEvent>> events;
    {
        std::lock_guard guard(m_lock);
        events.swap(m_events);
    }
}

unsigned TMultimediaTimerService::SetEvent(unsigned delayMs, unsigned /*resolutionMs*/,
                                           TCallback callback, bool periodic) {
    if (delayMs == 0 || delayMs > 1000000 || !callback) return 0;
    auto event = std::make_unique<TEvent>(delayMs, std::move(callback), periodic);
    if (!event->Valid()) return 0;
    std::lock_guard guard(m_lock);
    unsigned id = m_nextId++;
    if (id == TIMERR_NOCANDO) id = m_nextId++;
    if (m_nextId == 0) m_nextId = 1;
    m_events.emplace(id, std::move(event));
    return id;
}

void TMultimediaTimerService::KillEvent(unsigned id) {
    std::unique_ptr<TEvent> event;
    {
        std::lock_guard guard(m_lock);
        auto it = m_events.find(id);
        if (it == m_events.end()) return;
        event = std::move(it->second);
        m_events.erase(it);
    }
    if (event->OnOwnThread())
        event.release()->FreeOnExit();
    else
        event.reset(); // stops and joins outside the lock
}

TMultimediaTimerService& TMultimediaTimerService::System() {
    static TMultimediaTimerService service;
    return service;
}

} // namespace qv
