#pragma once
// TqSegmentClock: a segment label that shows the time of day (Now plus OffSetTime minutes),
// in 24-hour or 12-hour formats, with or without seconds. Its thread timer checks the time;
// the cells change when the minute (or, with seconds, the second) changes.

#include "indicators/TqCustomSegmentLabel.h"
#include "platform/core/DateTime.h"
#include "timing/TqxTimer.h"

namespace qv {

enum qxClockFormat {
    qxc12Hour,
    qxc12Hour_AMPM,
    qxc12Hour_AP,
    qxc12HourAMPM,
    qxc12HourAP,
    qxc24Hour
};
QV_ENUM_TYPE(qxClockFormat, "qxc12Hour", "qxc12Hour_AMPM", "qxc12Hour_AP", "qxc12HourAMPM",
             "qxc12HourAP", "qxc24Hour")

class TqSegmentClock : public TqCustomSegmentLabel {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr std::int16_t OffSetTime = 0;
        static constexpr qxClockFormat Format = qxc24Hour;
        static constexpr bool ShowSeconds = false;
    };

    explicit TqSegmentClock(TComponent* AOwner);
    ~TqSegmentClock() override;

    TThreadPriority Priority() const { return m_timer->Priority(); }
    void SetPriority(TThreadPriority value) { m_timer->SetPriority(value); }
    std::int16_t OffSetTime() const { return m_offSetTime; }
    void SetOffSetTime(std::int16_t value);
    qxClockFormat ClockFormat() const { return m_format; }
    void SetClockFormat(qxClockFormat value);
    bool ShowSeconds() const { return m_showSeconds; }
    void SetShowSeconds(bool value);

    // The format text for FormatDateTime and the number of cells the format needs.
    std::string FormatText() const;
    int CellCount() const;
    TqxTimer* ClockTimer() const { return m_timer; }

    TNotifyEvent OnTimeChange;

protected:
    virtual void DoChange();
    void TimerNu(TObject* Sender);
    bool IsNew();
    void Setnow();
    void SetnChar();

private:
    TDateTime ShownTime() const;

    std::int16_t m_offSetTime{Defaults::OffSetTime};
    qxClockFormat m_format{Defaults::Format};
    bool m_showSeconds{Defaults::ShowSeconds};
    int m_minute{0};
    int m_second{0};
    TqxTimer* m_timer{nullptr}; // owned through the owner tree
};

} // namespace qv
