#include "X11Input.h"

#include <X11/X.h>

#include <cstdlib>

namespace qv {

bool TClickTracker::Press(TNativeWindowId window, TMouseButton button, TPoint pos,
                          std::int64_t timeMs) {
    const bool isDouble = m_armed && window == m_window && button == m_button &&
                          timeMs - m_time >= 0 && timeMs - m_time <= IntervalMs &&
                          std::abs(pos.x - m_pos.x) <= Slop && std::abs(pos.y - m_pos.y) <= Slop;
    m_armed = !isDouble;
    m_window = window;
    m_button = button;
    m_pos = pos;
    m_time = timeMs;
    return isDouble;
}

unsigned ShiftFromXState(unsigned state) {
    unsigned shift = 0;
    if (state & ShiftMask) shift |= isShift;
    if (state & ControlMask) shift |= isCtrl;
    if (state & Mod1Mask) shift |= isAlt;
    if (state & Button1Mask) shift |= isLeft;
    if (state & Button3Mask) shift |= isRight;
    if (state & Button2Mask) shift |= isMiddle;
    return shift;
}

bool ButtonFromX(unsigned xButton, TMouseButton& button) {
    switch (xButton) {
    case Button1:
        button = TMouseButton::Left;
        return true;
    case Button2:
        button = TMouseButton::Middle;
        return true;
    case Button3:
        button = TMouseButton::Right;
        return true;
    default:
        return false;
    }
}

int WheelDeltaFromX(unsigned xButton) {
    constexpr int wheelStep = 120;
    if (xButton == Button4) return wheelStep;
    if (xButton == Button5) return -wheelStep;
    return 0;
}

} // namespace qv
