#pragma once
// TqxMMTimer: a periodic timer on the system's timer service. OnTimer runs on the service's
// own thread, not on the main thread; exceptions it raises are swallowed there. Enabled only
// mutes the event; the service timer runs from construction to destruction and restarts
// when Interval or Resolution changes. An id equal to 97 marks "no timer".

#include "platform/core/Component.h"
#include "platform/system/MultimediaTimer.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace qv {

class TqxMMTimer : public TComponent {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool Enabled = true;
        static constexpr unsigned Interval = 1000;
        static constexpr unsigned Resolution = 10;
    };

    explicit TqxMMTimer(TComponent* AOwner);
    // The same on another timer service (tests use one that refuses).
    TqxMMTimer(TComponent* AOwner, TMultimediaTimerService& service);
    ~TqxMMTimer() override;

    bool Enabled() const { return m_enabled.load(); }
    void SetEnabled(bool value) { m_enabled.store(value); }
    unsigned Interval() const { return m_interval; }
    void SetInterval(unsigned value);
    unsigned Resolution() const { return m_resolution; }
    void SetResolution(unsigned value);
    TNotifyEvent GetOnTimer() const;
    void SetOnTimer(TNotifyEvent handler);
    unsigned TimerId() const { return m_timerId; }

    // Called on the service's thread once per period.
    virtual void Timer();

private:
    void StartTimer();
    void StopTimer();
    void Restart();

    TMultimediaTimerService& m_service;
    std::atomic<bool> m_enabled{Defaults::Enabled};
    unsigned m_interval{Defaults::Interval};
    std::shared_ptr<const TNotifyEvent> Handler() const;

    // Read on the service's thread while the main thread may replace it: each side copies the
    // pointer under the mutex and calls the handler outside it. (A plain mutex, not
    // std::atomic<std::shared_ptr>, whose lock the thread sanitizer cannot follow.)
    mutable std::mutex m_onTimerLock;
    std::shared_ptr<const TNotifyEvent> m_onTimer;
    unsigned m_timerId{TIMERR_NOCANDO};
    unsigned m_resolution{Defaults::Resolution};
};

// Suspends the calling thread for `milliseconds` (the message loop does not run meanwhile).
void Delay(std::uint16_t milliseconds);

} // namespace qv
