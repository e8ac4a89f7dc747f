#include "Timer.h"

#include "Application.h"

#include "platform/core/ClassBuilder.h"

namespace qv {

namespace {
const TTypeInfo& OnTimerType() {
    static const TTypeInfo info = TTypeInfo::Method("TNotifyEvent");
    return info;
}
} // namespace

const TClassInfo& TTimer::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassInfo i = TClassBuilder<TTimer>("TTimer", &TComponent::StaticClassInfo())
                           .Property("Enabled", &TTimer::Enabled, &TTimer::SetEnabled)
                           .Default(true)
                           .Property("Interval", &TTimer::Interval, &TTimer::SetInterval)
                           .Default(1000u)
                           .Build();
        // OnTimer goes through its setter, which starts or stops the timer.
        auto p = std::make_shared<TPropInfo>();
        p->name = "OnTimer";
        p->type = &OnTimerType();
        p->getMethod = [](const TObject& o) { return std::any(static_cast<const TTimer&>(o).GetOnTimer()); };
        p->hasMethod = [](const TObject& o) { return static_cast<bool>(static_cast<const TTimer&>(o).GetOnTimer()); };
        p->setMethod = [](TObject& o, const std::any& v) {
            const auto* handler = std::any_cast<TNotifyEvent>(&v);
            static_cast<TTimer&>(o).SetOnTimer(handler ? *handler : TNotifyEvent{});
        };
        i.ownProperties.push_back(p);
        return i;
    }();
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
