#pragma once
// TqxCreditScroll: a panel that scrolls a block of text lines upwards, film-credits style. Its
// thread timer ticks every Interval ms; each tick lifts the text by Step pixels, and once the
// text has left the top it starts again from below the bottom edge.

#include "componentbase/EnterLeaveEvents.h"
#include "componentbase/PaintFrame.h"
#include "platform/controls/CustomPanel.h"
#include "platform/core/Strings.h"
#include "timing/TqxTimer.h"

#include <cstdint>
#include <memory>

namespace qv {

class TqxCreditScroll : public TEnterLeaveEvents<TCustomPanel> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr int Interval = 50;
        static constexpr int Step = 1;
        static constexpr TAlignment Alignment = taCenter;
        static constexpr TColor Color = 0x000000;
        static constexpr TColor FontColor = 0xFF00FF;
        static constexpr bool ParentColor = false;
        static constexpr int Width = 90;
        static constexpr int Height = 30;
    };

    explicit TqxCreditScroll(TComponent* AOwner);
    ~TqxCreditScroll() override;

    TThreadPriority GetPriority() const { return m_timer->Priority(); }
    void Setpriority(TThreadPriority value) { m_timer->SetPriority(value); }
    TStringList* Lines() const { return m_lines.get(); }
    // Takes a copy of `value`.
    void SetLines(const TStrings& value) { m_lines->Assign(value); }
    int GetInterval() const { return m_interval; }
    // Passed to the timer; an interval below 1 stops it.
    void SetInterval(int value);
    int Step() const { return m_step; }
    // Values below 1 are ignored.
    void SetStep(int value);

    // Starts the text again from below the bottom edge.
    void Reset();
    // The pixels the text has risen since it started.
    std::int64_t Offset() const { return m_offset; }
    // One timer tick: lifts the text by Step when the scroll can paint.
    void DoTimer(TObject* Sender);
    TqxTimer* ScrollTimer() const { return m_timer; }

    TNotifyEvent OnPaint;

protected:
    void Paint() override;
    void DoChange(TObject* Sender);

private:
    std::unique_ptr<TStringList> m_lines;
    int m_interval{Defaults::Interval};
    int m_step{Defaults::Step};
    std::int64_t m_offset{0};
    TPaintFrame m_frame{TPaintFrame::TOutline::None, 1}; // one pixel larger each way
    TqxTimer* m_timer{nullptr};                          // owned through the owner tree
};

} // namespace qv
