#pragma once
// The periodic timer service: each event runs its callback on a thread of its own, at
// absolute deadlines (a timerfd on the monotonic clock), so periods do not drift; the
// thread's timer slack is 1 ns so wake-ups are not delayed by the kernel's default 50 us.
// Identifiers are never 0 (the failure result) and never 97 (the value callers of the
// classic service treat as "cannot do").

#include <functional>
#include <map>
#include <memory>
#include <mutex>

namespace qv {

class TMultimediaTimerService {
public:
    using TCallback = std::function<void()>;

    TMultimediaTimerService();
    virtual ~TMultimediaTimerService();

    // Starts an event every `delayMs` (once when not periodic); 0 when it cannot be started
    // (delay 0 or above 1 000 000 ms). `resolutionMs` is the accuracy asked for.
    virtual unsigned SetEvent(unsigned delayMs, unsigned resolutionMs, TCallback callback,
                              bool periodic);
    // Stops the event. After it returns the callback does not run again (unless called from
    // the callback itself, which then finishes first). Unknown ids are ignored.
    virtual void KillEvent(unsigned id);

    // The process-wide service.
    static TMultimediaTimerService& System();

private:
    class TEvent;
    std::mutex m_lock;
    std::map<unsigned, std::unique_ptr<TEvent>> m_events;
    unsigned m_nextId{1};
};

constexpr unsigned TIMERR_NOCANDO = 97;

} // namespace qv
