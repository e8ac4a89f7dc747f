#pragma once
// Input bookkeeping of the X11 backend that does not need a display: double-click
// detection and the translation of X modifier masks into TInputShift flags.

#include "Backend.h"

#include <cstdint>

namespace qv {

// Decides whether a button press completes a double click: the same button in the same
// window within `IntervalMs` and within `Slop` pixels of the previous press on each axis. A
// press that completes a double click does not start another one, so a third quick press is
// a single click again.
class TClickTracker {
public:
    static constexpr std::int64_t IntervalMs = 500;
    static constexpr int Slop = 4;

    bool Press(TNativeWindowId window, TMouseButton button, TPoint pos, std::int64_t timeMs);

private:
    bool m_armed{false};
    TNativeWindowId m_window{0};
    TMouseButton m_button{TMouseButton::Left};
    TPoint m_pos;
    std::int64_t m_time{0};
};

// TInputShift flags from an X event's state mask.
unsigned ShiftFromXState(unsigned state);

// The backend's button for an X button number (1 left, 2 middle, 3 right); false for the
// wheel and the extra buttons.
bool ButtonFromX(unsigned xButton, TMouseButton& button);

// The wheel delta of X buttons 4 (away from the user) and 5 (towards), 0 for the others.
int WheelDeltaFromX(unsigned xButton);

} // namespace qv
