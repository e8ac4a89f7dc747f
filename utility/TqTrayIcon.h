#pragma once
// TqTrayIcon: an icon with a tip in the notification area (Shell_NotifyIcon over the backend's
// tray seam, platform/controls/ShellApi.h). A hidden message window (AllocateHWnd) gets the
// shell's callback (1026) and two messages of the component's own: the update (1025), which
// sends the icon to the shell a second time from the queue, and the show-form message
// (1027), which shows or hides a form other than the main form (HideParentForm).
//
// The shell's mouse messages become the component's events: a click needs a down seen by the
// component before its up (then OnClick and the menu step for the left button, OnRightClick
// and the menu step for the right, OnMidClick for the middle), OnMouseUp comes for every up;
// a left double click runs the popup menu's default item (DoDefaultMenu, OnDefaultMenu may
// veto it) or else OnDblClick. X and Y are the cursor's screen position. The menu step pops
// LeftPopupMenu or PopupMenu up at the cursor when its AutoPopup is on. The main form's
// query-end-session message (17) asks OnAskEndSession.
//
// The icon shows outside the designer while Active is true, inside it while ShowDesigning is
// true. A component whose owners hold no form fails in its constructor ("NoForm") and frees
// its window. The tip is cut to 62 characters.

#include "platform/controls/Control.h"
#include "platform/controls/Menus.h"
#include "platform/controls/ShellApi.h"
#include "platform/controls/WindowTable.h"
#include "platform/core/Component.h"
#include "platform/graphics/Bitmap.h"

#include <functional>
#include <memory>
#include <string>

namespace qv {

class TCustomForm;

using TqxDefaultMenuEvent = std::function<void(TObject* Sender, bool& DoDefault)>;
using TAskEndSession = std::function<void(bool& DoEnd)>;
// TqxDefaultMenuEvent has the signature of TCloseQueryEvent and shares its type information.
QV_EVENT_TYPE(TAskEndSession)

class TqTrayIcon : public TComponent {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool HideParentForm = false;
        static constexpr bool ShowDesigning = false;
        static constexpr bool Active = false;
        static constexpr bool DoDefaultMenu = false;
        static constexpr std::size_t ToolTipLength = 62;
    };
    static constexpr UINT UpdateMessage = WM_USER + 1;
    static constexpr UINT CallbackMessage = WM_USER + 2;
    static constexpr UINT ShowFormMessage = WM_USER + 3;

    explicit TqTrayIcon(TComponent* AOwner);
    ~TqTrayIcon() override;

    TPopupMenu* PopupMenu() const { return m_rightMenu; }
    void SetPopupMenu(TPopupMenu* value) { SetMenu(m_rightMenu, value); }
    TPopupMenu* LeftPopupMenu() const { return m_leftMenu; }
    void SetLeftPopupMenu(TPopupMenu* value) { SetMenu(m_leftMenu, value); }
    bool HideParentForm() const { return m_hideParentForm; }
    void SetHideParentForm(bool value);
    bool ShowDesigning() const { return m_showDesigning; }
    void SetShowDesigning(bool value);
    bool Active() const { return m_active; }
    void SetActive(bool value);
    TIcon* Icon() const { return m_icon.get(); }
    void SetIcon(const TIcon* value);
    const std::string& ToolTip() const { return m_toolTip; }
    void SetToolTip(const std::string& value);
    bool DoDefaultMenu() const { return m_doDefaultMenu; }
    void SetDoDefaultMenu(bool value) { m_doDefaultMenu = value; }

    TNotifyEvent OnClick;
    TNotifyEvent OnDblClick;
    TMouseEvent OnRightClick;
    TMouseEvent OnRightDblClick;
    TMouseEvent OnMidClick;
    TMouseEvent OnMidDblClick;
    TMouseMoveEvent OnMouseMove;
    TMouseEvent OnMouseDown;
    TMouseEvent OnMouseUp;
    TNotifyEvent OnleftMenu;
    TNotifyEvent OnRightMenu;
    TqxDefaultMenuEvent OnDefaultMenu;
    TAskEndSession OnAskEndSession;

    // The hidden window the shell's notifications go to.
    HWND WindowHandle() const { return m_window.handle; }
    // The record sent with the last shell call.
    const TNotifyIconData& NotifyData() const { return m_data; }

    // The modifier keys now (shift, control, alt).
    virtual TShiftState GetShift() const;
    // The default-item step: true when the popup menu's default item ran.
    virtual bool CheckMenu();
    void CheckMenuPopup(TPoint point, bool left);
    // A balloon message beside the shown icon (not published): the tray host's message on
    // X11. False when the icon is not shown or the host shows no messages.
    bool ShowBalloon(const std::string& text, int timeoutMs = 10000);

    void Notification(TComponent* AComponent, TOperation Operation) override;

private:
    struct THiddenWindow {
        HWND handle{0};
        explicit THiddenWindow(HWND h) : handle(h) {}
        THiddenWindow(const THiddenWindow&) = delete;
        THiddenWindow& operator=(const THiddenWindow&) = delete;
        ~THiddenWindow() { DeallocateHWnd(handle); }
    };

    void SetMenu(TPopupMenu*& field, TPopupMenu* value);
    bool Shown() const;
    void FillData();
    bool AddIcon();
    void ModifyIcon();
    void DeleteIcon();
    void WindowProc(TMessage& Message);
    void ShowFormStep();
    void MouseStep(UINT mouseMessage);
    void QueryEndSession(TMessage& Message);

    TPopupMenu* m_rightMenu{nullptr};
    TPopupMenu* m_leftMenu{nullptr};
    bool m_doDefaultMenu{Defaults::DoDefaultMenu};
    bool m_leftDown{false};
    bool m_rightDown{false};
    bool m_middleDown{false};
    TNotifyIconData m_data;
    std::unique_ptr<TIcon> m_icon;
    std::string m_toolTip;
    bool m_showDesigning{Defaults::ShowDesigning};
    bool m_active{Defaults::Active};
    bool m_hideParentForm{Defaults::HideParentForm};
    THiddenWindow m_window;
};

} // namespace qv
