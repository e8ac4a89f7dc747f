#include "timing/TqxMMTimer.h"

#include "platform/core/ClassBuilder.h"
#include "platform/core/SysUtils.h"
#include "platform/system/Thread.h"

namespace qv {

const TClassInfo& TqxMMTimer::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TqxMMTimer>("TqxMMTimer", &TComponent::StaticClassInfo())
            .Property("Enabled", &TqxMMTimer::Enabled, &TqxMMTimer::SetEnabled)
            .Default(Defaults::Enabled)
            .Property("Interval", &TqxMMTimer::Interval, &TqxMMTimer::SetInterval)
            .Default(Defaults::Interval)
            .Event("OnTimer", &TqxMMTimer::GetOnTimer, &TqxMMTimer::SetOnTimer)
            .Property("Resolution", &TqxMMTimer::Resolution, &TqxMMTimer::SetResolution)
            .Default(Defaults::Resolution)
            .Build();
    return info;
}

TqxMMTimer::TqxMMTimer(TComponent* AOwner)
    : TqxMMTimer(AOwner, TMultimediaTimerService::System()) {}

// The service timer starts in every case, also in the form designer.
TqxMMTimer::TqxMMTimer(TComponent* AOwner, TMultimediaTimerService& service)
    : TComponent(AOwner), m_service(service) {
    StartTimer();
}

TqxMMTimer::~TqxMMTimer() {
    StopTimer();
}

std::shared_ptr<const TNotifyEvent> TqxMMTimer::Handler() const {
    const std::lock_guard guard(m_onTimerLock);
    return m_onTimer;
}

TNotifyEvent TqxMMTimer::GetOnTimer() const {
    const auto handler = Handler();
    return handler ? *handler : TNotifyEvent{};
}

void TqxMMTimer::SetOnTimer(TNotifyEvent handler) {
    auto shared = handler ? std::make_shared<const TNotifyEvent>(std::move(handler)) : nullptr;
    const std::lock_guard guard(m_onTimerLock);
    m_onTimer.swap(shared); // the old handler is freed outside the lock
}

void TqxMMTimer::SetInterval(unsigned value) {
    if (value == m_interval) return;
    StopTimer();
    m_interval = value;
    StartTimer();
}

void TqxMMTimer::SetResolution(unsigned value) {
    if (value == m_resolution) return;
    StopTimer();
    m_resolution = value;
    StartTimer();
}

void TqxMMTimer::StartTimer() {
    m_timerId = m_service.SetEvent(
        m_interval, m_resolution,
        [this] {
            try {
                Timer();
            } catch (...) {
                // A handler's exception must never reach the timer service.
            }
        },
        true);
    if (m_timerId == TIMERR_NOCANDO)
        throw ERangeError(Format("%d is not within the valid range", {m_resolution}));
}

void TqxMMTimer::StopTimer() {
    if (m_timerId != TIMERR_NOCANDO) m_service.KillEvent(m_timerId);
    m_timerId = TIMERR_NOCANDO;
}

void TqxMMTimer::Timer() {
    if (!m_enabled.load()) return;
    if (const auto handler = Handler(); handler && *handler) (*handler)(this);
}

void Delay(std::uint16_t milliseconds) {
    Sleep(milliseconds);
}

} // namespace qv
