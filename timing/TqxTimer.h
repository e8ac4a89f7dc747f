#pragma once
// TqxTimer: an interval timer driven by a worker thread of its own. The worker sleeps for
// the interval and hands each tick to the main thread (Synchronize), which runs OnTimer; the
// worker waits until it has run, so ticks never overlap and the period is the interval plus
// the handler's time. The worker runs only while Enabled, Interval > 0 and OnTimer is set;
// otherwise it stays suspended wherever it was.

#include "platform/core/Component.h"
#include "platform/system/Thread.h"

#include <atomic>
#include <memory>

namespace qv {

class TqxTimer;

class TqxTimerThread : public TThread {
public:
    explicit TqxTimerThread(TqxTimer& owner);
    ~TqxTimerThread() override;
    // Set before the thread is freed: no tick is handed over after it.
    void SetStop() { m_stop.store(true); }

protected:
    void Execute() override;

private:
    TqxTimer& m_owner;
    std::atomic<bool> m_stop{false};
};

class TqxTimer : public TComponent {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr TThreadPriority Priority = TThreadPriority::tpNormal;
        static constexpr bool Enabled = true;
        static constexpr unsigned Interval = 1000;
    };

    explicit TqxTimer(TComponent* AOwner);
    ~TqxTimer() override;

    TThreadPriority Priority() const { return m_priority.load(); }
    void SetPriority(TThreadPriority value);
    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool value);
    unsigned Interval() const { return m_interval.load(); }
    void SetInterval(unsigned value);
    const TNotifyEvent& GetOnTimer() const { return m_onTimer; }
    void SetOnTimer(TNotifyEvent handler);

    // Called on the main thread for each tick.
    virtual void Timer();
    // The worker, for tests and the clock components (null never happens after construction).
    TqxTimerThread* Worker() const { return m_worker.get(); }

private:
    void UpdateTimer();

    std::atomic<TThreadPriority> m_priority{Defaults::Priority};
    std::unique_ptr<TqxTimerThread> m_worker;
    bool m_enabled{Defaults::Enabled};
    std::atomic<unsigned> m_interval{Defaults::Interval};
    TNotifyEvent m_onTimer;
};

} // namespace qv
