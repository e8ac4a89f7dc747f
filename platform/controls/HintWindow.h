#pragma once
// THintWindow: the small popup window that shows a control's hint: a one-pixel frame around
// the text on the info colours, word-wrapped within the width it is given. The application
// shows and hides it (see TApplication's hint handling).

#include "Form.h"

#include <string>

namespace qv {

class THintWindow : public TCustomForm {
    QV_OBJECT
public:
    explicit THintWindow(TComponent* AOwner);

    bool IsPopupWindow() const override { return true; }

    // The size the window needs for `hint`, wrapped at `maxWidth`, at (0, 0); ActivateHint
    // adds four pixels to its height.
    virtual TRect CalcHintRect(int maxWidth, const std::string& hint) const;
    // Shows `hint` in `rect` (screen coordinates), kept on the screen.
    virtual void ActivateHint(TRect rect, const std::string& hint);
    void ReleaseHint() { Hide(); }

protected:
    void Paint() override;
};

// The part of a hint before '|' (shown in the hint window) and the part after it.
std::string GetShortHint(const std::string& hint);
std::string GetLongHint(const std::string& hint);

} // namespace qv
