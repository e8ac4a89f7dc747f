#include "timing/TqxTimer.h"

#include "platform/core/ClassBuilder.h"

#include <sys/prctl.h>

namespace qv {

TqxTimerThread::TqxTimerThread(TqxTimer& owner) : TThread(true), m_owner(owner) {}

TqxTimerThread::~TqxTimerThread() {
    StopAndJoin();
}

void TqxTimerThread::Execute() {
    // Wake-ups as close to the interval as the system allows (the default slack adds ~50 us).
    ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    SetPriority(m_owner.Priority());
    while (!Terminated()) {
        const bool sleptToTheEnd = Sleep(m_owner.Interval());
        if (sleptToTheEnd && !m_stop.load()) Synchronize([this] { m_owner.Timer(); });
    }
}

const TClassInfo& TqxTimer::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TqxTimer>("TqxTimer", &TComponent::StaticClassInfo())
            .Property("Priority", &TqxTimer::Priority, &TqxTimer::SetPriority)
            .Default(Defaults::Priority)
            .Property("Enabled", &TqxTimer::Enabled, &TqxTimer::SetEnabled)
            .Default(Defaults::Enabled)
            .Property("Interval", &TqxTimer::Interval, &TqxTimer::SetInterval)
            .Default(Defaults::Interval)
            .Event("OnTimer", &TqxTimer::GetOnTimer, &TqxTimer::SetOnTimer)
            .Build();
    return info;
}

TqxTimer::TqxTimer(TComponent* AOwner)
    : TComponent(AOwner), m_worker(std::make_unique<TqxTimerThread>(*this)) {
    m_worker->Start();
}

TqxTimer::~TqxTimer() {
    m_enabled = false;
    UpdateTimer();
    if (m_worker) {
        m_worker->SetStop();
        m_worker.reset(); // cancels a tick that waits for the main thread
    }
}

void TqxTimer::SetPriority(TThreadPriority value) {
    if (value == m_priority.load()) return;
    m_priority.store(value);
    UpdateTimer();
}

void TqxTimer::SetEnabled(bool value) {
    if (value == m_enabled) return;
    m_enabled = value;
    UpdateTimer();
}

void TqxTimer::SetInterval(unsigned value) {
    if (value == m_interval.load()) return;
    m_interval.store(value);
    UpdateTimer();
}

void TqxTimer::SetOnTimer(TNotifyEvent handler) {
    m_onTimer = std::move(handler);
    UpdateTimer();
}

// Suspends the worker, then resumes it completely only while all three conditions hold.
void TqxTimer::UpdateTimer() {
    if (m_worker && !m_worker->Suspended()) m_worker->Suspend();
    if (!m_worker) {
        m_worker = std::make_unique<TqxTimerThread>(*this);
        m_worker->Start();
    }
    if (m_interval.load() != 0 && m_enabled && m_onTimer) {
        m_worker->SetPriority(m_priority.load());
        while (m_worker->Suspended())
            m_worker->Resume();
    }
}

void TqxTimer::Timer() {
    if (m_onTimer) m_onTimer(this);
}

} // namespace qv
