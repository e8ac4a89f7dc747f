#pragma once
// TCustomForm / TForm: a top-level window. It owns a native window of the backend while it
// is shown, a frame buffer in which it paints itself and its controls, the record of what
// needs repainting, the focused control, and the modal loop.

#include "WinControl.h"

#include "platform/backend/Backend.h"

#include <vector>

namespace qv {

enum TFormBorderStyle { bsNone, bsSingle, bsSizeable, bsDialog, bsToolWindow, bsSizeToolWin };
enum TPosition {
    poDesigned,
    poDefault,
    poDefaultPosOnly,
    poDefaultSizeOnly,
    poScreenCenter,
    poDesktopCenter,
    poMainFormCenter,
    poOwnerFormCenter
};
enum TWindowState { wsNormal, wsMinimized, wsMaximized };
enum TFormStyle { fsNormal, fsMDIChild, fsMDIForm, fsStayOnTop };
enum TCloseAction { caNone, caHide, caFree, caMinimize };
QV_ENUM_TYPE(TFormBorderStyle, "bsNone", "bsSingle", "bsSizeable", "bsDialog", "bsToolWindow",
             "bsSizeToolWin")
QV_ENUM_TYPE(TPosition, "poDesigned", "poDefault", "poDefaultPosOnly", "poDefaultSizeOnly",
             "poScreenCenter", "poDesktopCenter", "poMainFormCenter", "poOwnerFormCenter")
QV_ENUM_TYPE(TWindowState, "wsNormal", "wsMinimized", "wsMaximized")
QV_ENUM_TYPE(TFormStyle, "fsNormal", "fsMDIChild", "fsMDIForm", "fsStayOnTop")

using TCloseEvent = std::function<void(TObject* Sender, TCloseAction& Action)>;
using TCloseQueryEvent = std::function<void(TObject* Sender, bool& CanClose)>;
QV_EVENT_TYPE(TCloseEvent)
QV_EVENT_TYPE(TCloseQueryEvent)

// WM_GETMINMAXINFO's record (LParam points to it).
struct TMinMaxInfo {
    TPoint ptReserved;
    TPoint ptMaxSize;
    TPoint ptMaxPosition;
    TPoint ptMinTrackSize;
    TPoint ptMaxTrackSize;
};

class TCustomForm : public TWinControl {
    QV_OBJECT
public:
    explicit TCustomForm(TComponent* AOwner);
    ~TCustomForm() override;

    TFormBorderStyle BorderStyle() const { return m_borderStyle; }
    void SetBorderStyle(TFormBorderStyle v) { m_borderStyle = v; }
    TPosition Position() const { return m_position; }
    void SetPosition(TPosition v) { m_position = v; }
    TWindowState WindowState() const { return m_windowState; }
    void SetWindowState(TWindowState v);
    TFormStyle FormStyle() const { return m_formStyle; }
    void SetFormStyle(TFormStyle v) { m_formStyle = v; }
    TModalResult ModalResult() const { return m_modalResult; }
    void SetModalResult(TModalResult v) { m_modalResult = v; }
    bool KeyPreview() const { return m_keyPreview; }
    void SetKeyPreview(bool v) { m_keyPreview = v; }

    TWinControl* ActiveControl() const { return m_activeControl; }
    void SetActiveControl(TWinControl* control);
    // Moves the focus bookkeeping to `control` (CM_EXIT, CM_ENTER, CM_FOCUSCHANGED).
    bool SetFocusedControl(TWinControl* control);
    // Sends CM_FOCUSCHANGED for the active control again, so that every control updates.
    void FocusChanged();

    // Shows the form and runs a message loop until ModalResult is set; then hides it.
    TModalResult ShowModal();
    bool Modal() const { return m_modalLevel > 0; }
    // Asks OnCloseQuery and OnClose; hides (or frees, minimises) as OnClose decides.
    void Close();
    void Release();

    bool Showing() const override { return Visible(); }
    TPoint ClientOrigin() const override { return {Left(), Top()}; }

    // Paints what is pending and presents it. True when anything was painted.
    bool PaintPending();
    void InvalidateFormRect(const TRect& r);
    bool HasPendingPaint() const { return !m_damage.empty(); }
    // The whole form, painted now, as the screen shows it.
    void Screenshot(TBitmap& bitmap);
    const TPixelBuffer& FrameBuffer() const { return m_frame; }
    // For drawing outside the paint (GetDC); what is drawn shows once presented.
    TPixelBuffer& FrameBuffer() { return m_frame; }
    TNativeWindowId NativeWindow() const { return m_native; }

    TNotifyEvent OnCreate;
    TNotifyEvent OnShow;
    TNotifyEvent OnHide;
    TCloseEvent OnClose;
    TCloseQueryEvent OnCloseQuery;
    TNotifyEvent OnDestroy;
    TNotifyEvent OnActivate;
    TNotifyEvent OnDeactivate;
    TNotifyEvent OnPaint;

    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    void Loaded() override;

    // Asks WM_GETMINMAXINFO (through the window procedure, so hooks take part) and
    // publishes the tracking limits to the native window. The framework proposes the work
    // area as the maximised bounds and the screen as the largest tracking size. No window
    // manager hint carries the maximised bounds: a maximised form whose answer differs from
    // the work area moves and sizes itself to the answer's.
    void UpdateSizeLimits();
    // The maximised bounds of the last WM_GETMINMAXINFO answer.
    TRect MaximizedBounds() const { return m_maximizedBounds; }

    // True: the form has no taskbar button of its own (_NET_WM_STATE_SKIP_TASKBAR on X11).
    bool SkipTaskbar() const { return m_skipTaskbar; }
    void SetSkipTaskbar(bool skip);

    // Popup windows (menus, hints) get an undecorated native window of their own and
    // are cancelled (CM_CANCELMODE) by a press in another window.
    virtual bool IsPopupWindow() const { return false; }

protected:
    virtual void Paint();
    void WndProc(TMessage& Message) override;
    void WMPaint(TMessage& Message) override;
    void CMDialogKey(TMessage& Message) override;
    void CMTextChanged(TMessage& Message) override;
    void CMVisibleChanged(TMessage& Message) override;
    virtual void WMGetMinMaxInfo(TMessage& Message);

private:
    friend class TApplication;
    void CreateNativeWindow();
    void DestroyNativeWindow();
    void PlaceOnScreen();
    void MergeDamage(TRect r);
    void ResizeFrame();
    void AttachFrameStorage();
    void DetachFrameStorage();

    TFormBorderStyle m_borderStyle{bsSizeable};
    TPosition m_position{poDesigned};
    TWindowState m_windowState{wsNormal};
    TFormStyle m_formStyle{fsNormal};
    TModalResult m_modalResult{mrNone};
    bool m_keyPreview{false};
    TWinControl* m_activeControl{nullptr};
    int m_modalLevel{0};
    bool m_createCalled{false};
    TNativeWindowId m_native{0};
    TPixelBuffer m_frame;
    std::vector<TRect> m_damage;
    TRect m_maximizedBounds;
    bool m_skipTaskbar{false};
};

class TForm : public TCustomForm {
    QV_OBJECT
public:
    explicit TForm(TComponent* AOwner);
};

// The form a control sits on, or null.
TCustomForm* GetParentForm(const TControl* control);

} // namespace qv
