#pragma once
// TqMinMax: size limits for the form that owns it. The smallest and largest size the user can
// drag the form to, the maximised form's size and position, an optional adjustment that keeps
// the maximised form off the taskbar, and whether the form has a taskbar button of its own.
//
// Once the form is read (Loaded) the component hooks the form's window procedure (a
// TWindowHook: several components chain, and each can go in any order). The hook lets the
// previous procedure answer WM_GETMINMAXINFO first, then writes its limits into the answer;
// OnSizeChange sees working copies of the eight values and may change them for that answer
// only. With UseDefaultSize the properties take the framework's proposal instead (the work
// area as the maximised bounds, the screen as the largest tracking size).
//
// Every setter runs the size step (the limits made consistent, the form clamped at once) and
// asks the form for its limits again (UpdateSizeLimits), so that the window manager's hints
// follow. While the component is being read the setters only store: the size step runs once
// in Loaded, so that a form file whose limits come one by one reads back as it was written.
// A minimum larger than the screen raises the form only to the screen's size (a frame buffer
// of any larger minimum might not be made); the hint still carries the whole minimum.
//
// AutoTaskBarAjust takes the taskbar to be the strip of the screen outside the work area
// (_NET_WORKAREA on X11): at the bottom, else at the top, left or right. ShowOnStatusBar set
// to false gives the form no taskbar button (_NET_WM_STATE_SKIP_TASKBAR); set to true it
// gets one again. No window manager hint carries the maximised size and position: the form
// applies them itself when maximised.

#include "platform/controls/Form.h"
#include "platform/controls/WindowTable.h"
#include "platform/core/Component.h"
#include "platform/core/TypeInfo.h"

#include <functional>

namespace qv {

using TAskSize = std::function<void(TObject* Sender, int& MinDragWidth, int& MinDragHeight,
                                    int& MaxWidth, int& MaxHeight, int& MaxDragWidth,
                                    int& MaxDragHeight, int& Maxleft, int& MaxTop)>;
QV_EVENT_TYPE(TAskSize)

class TqMinMax : public TComponent {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool ShowOnStatusBar = false;
        static constexpr bool AutoTaskBarAjust = false;
        static constexpr bool UseDefaultSize = false;
        static constexpr int MaxLeft = 0;
        static constexpr int MaxTop = 0;
        static constexpr int MaxWidth = 600;
        static constexpr int MaxHeight = 400;
        static constexpr int MaxDragWidth = 600;
        static constexpr int MaxDragHeight = 400;
        static constexpr int MinDragWidth = 0;
        static constexpr int MinDragHeight = 0;
    };

    // The eight size values, in the order of TAskSize.
    struct TLimits {
        int minDragWidth{Defaults::MinDragWidth};
        int minDragHeight{Defaults::MinDragHeight};
        int maxWidth{Defaults::MaxWidth};
        int maxHeight{Defaults::MaxHeight};
        int maxDragWidth{Defaults::MaxDragWidth};
        int maxDragHeight{Defaults::MaxDragHeight};
        int maxLeft{Defaults::MaxLeft};
        int maxTop{Defaults::MaxTop};
    };

    explicit TqMinMax(TComponent* AOwner);
    ~TqMinMax() override;

    bool ShowOnStatusBar() const { return m_showOnStatusBar; }
    void SetShowOnStatusBar(bool value);
    bool AutoTaskBarAjust() const { return m_autoTaskBar; }
    void SetAutoTaskBarAjust(bool value);
    bool UseDefaultSize() const { return m_useDefaultSize; }
    void SetUseDefaultSize(bool value);
    int MaxLeft() const { return m_limits.maxLeft; }
    void SetMaxLeft(int value) { SetLimit(m_limits.maxLeft, value); }
    int MaxTop() const { return m_limits.maxTop; }
    void SetMaxTop(int value) { SetLimit(m_limits.maxTop, value); }
    int MaxWidth() const { return m_limits.maxWidth; }
    void SetMaxWidth(int value) { SetLimit(m_limits.maxWidth, value); }
    int MaxHeight() const { return m_limits.maxHeight; }
    void SetMaxHeight(int value) { SetLimit(m_limits.maxHeight, value); }
    int MaxDragWidth() const { return m_limits.maxDragWidth; }
    void SetMaxDragWidth(int value) { SetLimit(m_limits.maxDragWidth, value); }
    int MaxDragHeight() const { return m_limits.maxDragHeight; }
    void SetMaxDragHeight(int value) { SetLimit(m_limits.maxDragHeight, value); }
    int MinDragWidth() const { return m_limits.minDragWidth; }
    void SetMinDragWidth(int value) { SetLimit(m_limits.minDragWidth, value); }
    int MinDragHeight() const { return m_limits.minDragHeight; }
    void SetMinDragHeight(int value) { SetLimit(m_limits.minDragHeight, value); }

    TAskSize OnSizeChange;

    // True from Loaded (outside the designer, on a form) until destruction.
    bool Hooked() const { return m_hook.Installed(); }
    void Loaded() override;

    // The limits the component writes into WM_GETMINMAXINFO for `screen` and its `work` area
    // (the taskbar adjustment), before OnSizeChange.
    TLimits AdjustedLimits(const TRect& screen, const TRect& work) const;

protected:
    // Makes the limits consistent and clamps the owning form to them.
    virtual void SizeStep();

private:
    void SetLimit(int& field, int value);
    // The form the component belongs to, or null when its owners hold none.
    TCustomForm* OwningForm() const;
    void ClampForm(TCustomForm& form) const;
    // Size step and the form's limits asked again; only stores while reading.
    void LimitsChanged();
    void WindowProc(TMessage& Message, const TWndMethod& Previous);
    void AnswerMinMaxInfo(TMinMaxInfo& info);

    TLimits m_limits;
    bool m_showOnStatusBar{Defaults::ShowOnStatusBar};
    bool m_autoTaskBar{Defaults::AutoTaskBarAjust};
    bool m_useDefaultSize{Defaults::UseDefaultSize};
    TCustomForm* m_form{nullptr};
    TWindowHook m_hook;
};

} // namespace qv
