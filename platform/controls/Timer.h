#pragma once
// TTimer: raises OnTimer on the main thread every Interval milliseconds of the backend's
// clock while Enabled, Interval > 0 and OnTimer is assigned. A tick that runs late does not
// pile up: the next one is due an interval after the late one.

#include "platform/core/Component.h"

#include <cstdint>

namespace qv {

class TTimer : public TComponent {
    QV_OBJECT
public:
    explicit TTimer(TComponent* AOwner);
    ~TTimer() override;

    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool v);
    unsigned Interval() const { return m_interval; }
    void SetInterval(unsigned v);
    const TNotifyEvent& GetOnTimer() const { return m_onTimer; }
    void SetOnTimer(TNotifyEvent handler);

    // Called by the application's loop.
    std::int64_t DueAt() const { return m_dueAt; }
    void Tick(std::int64_t now);

protected:
    virtual void Timer();

private:
    void UpdateTimer();

    bool m_enabled{true};
    unsigned m_interval{1000};
    TNotifyEvent m_onTimer;
    std::int64_t m_dueAt{0};
    bool m_registered{false};
};

} // namespace qv
