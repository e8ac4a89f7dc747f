#include "Timer.h"

#include "Application.h"

#include "platform/core/ClassBuilder.h"

namespace qv {

const TClassInfo& TTimer::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TTimer>("TTimer", &TComponent::StaticClassInfo())
            .Property("Enabled", &TTimer::Enabled, &TTimer::SetEnabled)
            .Default(true)
            .Property("Interval", &TTimer::Interval, &TTimer::SetInterval)
            .Default(1000u)
            .Event("OnTimer", &TTimer::GetOnTimer, &TTimer::SetOnTimer)
            .Build();
    return info;
}

TTimer::TTimer(TComponent* AOwner) : TComponent(AOwner) {}

TTimer::~TTimer() {
    if (m_registered)
        if (auto* app = ApplicationIfAlive()) app->RemoveTimer(this);
}

void TTimer::SetEnabled(bool v) {
    if (v == m_enabled) return;
    m_enabled = v;
    UpdateTimer();
}

void TTimer::SetInterval(unsigned v) {
    if (v == m_interval) return;
    m_interval = v;
    UpdateTimer();
}

void TTimer::SetOnTimer(TNotifyEvent handler) {
    m_onTimer = std::move(handler);
    UpdateTimer();
}

void TTimer::UpdateTimer() {
    TApplication& app = Application();
    const bool run = m_enabled && m_interval > 0 && m_onTimer && !IsDesigning();
    if (run) {
        m_dueAt = app.NowMs() + m_interval;
        app.AddTimer(this);
    } else {
        app.RemoveTimer(this);
    }
    m_registered = run;
}

void TTimer::Tick(std::int64_t now) {
    m_dueAt = now + m_interval;
    Timer();
}

void TTimer::Timer() {
    if (m_onTimer) m_onTimer(this);
}

} // namespace qv
