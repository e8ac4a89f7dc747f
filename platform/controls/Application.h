#pragma once
// TApplication: the message loop of the main thread. It delivers posted messages and calls
// from other threads, turns backend input into control messages (hit testing, capture,
// mouse enter and leave, focus and keyboard routing, dialog keys), runs TTimer ticks on the
// backend's clock, paints what was invalidated, and nests for modal forms.
//
// Application() is the process-wide object; it starts with a headless backend until one is
// chosen with SetBackend (CreateDefaultBackend picks X11 when a display answers).

#include "Form.h"

#include "platform/backend/Backend.h"
#include "platform/system/ChildProcess.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace qv {

class THintWindow;
class TTimer;

using TIdleEvent = std::function<void(TObject* Sender, bool& Done)>;
using TExceptionEvent = std::function<void(TObject* Sender, const std::exception& E)>;

class TApplication : public TComponent {
    QV_OBJECT
public:
    TApplication();
    ~TApplication() override;

    TBackend& Backend();
    void SetBackend(std::unique_ptr<TBackend> backend);

    // Creates a form owned by the application; the first becomes the main form.
    template <class F> F* CreateForm() {
        auto* form = new F(this);
        if (!m_mainForm) m_mainForm = form;
        return form;
    }
    // Every form registers itself when it is created (whoever owns it).
    void RegisterForm(TCustomForm* form);
    bool IsForm(const TCustomForm* form) const;
    TCustomForm* MainForm() const { return m_mainForm; }
    void SetMainForm(TCustomForm* form) { m_mainForm = form; }

    // Shows the main form and loops until Terminate (or the main form closes).
    void Run();
    // Handles one message or event, waiting for one when nothing is pending.
    void HandleMessage();
    // Handles everything that is pending, without waiting.
    void ProcessMessages();
    void Terminate();
    bool Terminated() const { return m_terminated; }
    // Lets the loop continue after Terminate (tests and modal loops reuse the object).
    void ResetTerminated() { m_terminated = false; }

    // Hints: the hint of the control under the pointer (the nearest with ShowHint, and the
    // nearest hint text up its parents) shows HintPause ms after the pointer came to it, or
    // HintShortPause ms while another hint was showing, near the pointer; it hides after
    // HintHidePause ms, when the pointer leaves the control, and on a button or key press.
    bool ShowHint() const { return m_showHint; }
    void SetShowHint(bool v);
    int HintPause() const { return m_hintPause; }
    void SetHintPause(int v) { m_hintPause = v; }
    int HintShortPause() const { return m_hintShortPause; }
    void SetHintShortPause(int v) { m_hintShortPause = v; }
    int HintHidePause() const { return m_hintHidePause; }
    void SetHintHidePause(int v) { m_hintHidePause = v; }
    TColor HintColor() const { return m_hintColor; }
    void SetHintColor(TColor v) { m_hintColor = v; }
    // The window showing hints, created with the first hint; null before.
    THintWindow* HintWindow() const { return m_hintWindow; }
    // Hides the hint and forgets its control: the next pointer move starts over.
    void CancelHint();
    // A hint of no control (the notification area's tip): `text` shows below `screen` after
    // the hint pause, as a control's would, until CancelHint or the hide pause.
    void ActivateHintAt(const std::string& text, TPoint screen);

    // Cursors: the pointer shows Screen().Cursor when that is not crDefault, else the cursor
    // of the control under it: its Cursor, or when that is crDefault its own shape (a
    // control answers WM_SETCURSOR with a cursor, or 0 for none), or its parent's, and so on.
    TCursor CursorOf(TControl* control) const;
    // Screen().Cursor changed: every shown form takes it.
    void ScreenCursorChanged();
    TNotifyEvent OnIdle;
    TIdleEvent OnIdleDone;

    // An exception that leaves a handler run by the loop (a message, an input event, a timer
    // tick, a paint) goes to OnException when it is assigned; otherwise ShowException reports
    // it on stderr. Either way the loop goes on with the next message.
    TExceptionEvent OnException;
    void HandleException(TObject* Sender, const std::exception& E);
    void ShowException(const std::exception& E);

    // Forms in creation order (shown or not).
    const std::vector<TCustomForm*>& Forms() const { return m_forms; }
    TCustomForm* ActiveForm() const { return m_activeForm; }
    void SetActiveForm(TCustomForm* form);
    TCustomForm* FormOfNativeWindow(TNativeWindowId window) const;

    // Mouse capture (messages go to this control wherever the pointer is).
    TControl* CaptureControl() const { return m_capture; }
    void SetCaptureControl(TControl* control);
    // The control under the pointer as last seen.
    TControl* MouseControl() const { return m_mouseControl; }
    // The control under a screen point (disabled ones included when asked), or null.
    TControl* FindControlAtScreen(TPoint screen, bool allowDisabled) const;
    // Re-checks which control is under the pointer and sends mouse leave and enter.
    void UpdateMouseControl();
    TPoint CursorPos();
    // The shift state of the last input event (GetKeyState).
    bool KeyDown(unsigned virtualKey) const;

    // Timers.
    void AddTimer(TTimer* timer);
    void RemoveTimer(TTimer* timer);
    std::int64_t NowMs();

    // Started programs nobody waits for: the loop reaps each once it has ended (its pidfd is
    // watched), so none stays a zombie.
    void ReapWhenEnded(TChildProcess child);
    std::size_t UnreapedChildren() const { return m_children.size(); }

    void Notification(TComponent* AComponent, TOperation Operation) override;
    // A control is going away: forget it as capture or mouse control.
    void ControlGone(TControl* control);

private:
    friend class TCustomForm;
    void FormDestroyed(TCustomForm* form);
    // One round of the loop's sources (posted messages, synchronized calls, input, timers);
    // true when any of them had something.
    bool DispatchPending();
    bool DispatchOneEvent();
    void HandleInput(const TBackendEvent& event);
    void HandleMouse(const TBackendEvent& event, TCustomForm& form);
    void HandleKey(const TBackendEvent& event, TCustomForm& form);
    bool FireDueTimers();
    std::int64_t MsUntilNextTimer();
    bool PaintForms();
    void Idle();
    // The control whose hint shows for the control under the pointer, or null.
    TControl* HintControlOf(TControl* control) const;
    void HintMouseMoved();
    void ShowHintNow();
    void HideHint();
    bool FireDueHint(std::int64_t now);
    void UpdateCursorShape();
    void WatchChild(int pidfd);
    void ChildReadable(int pidfd);

    std::unique_ptr<TBackend> m_backend;
    std::vector<TChildProcess> m_children;
    std::vector<TCustomForm*> m_forms;
    TCustomForm* m_mainForm{nullptr};
    TCustomForm* m_activeForm{nullptr};
    TControl* m_capture{nullptr};
    TControl* m_mouseControl{nullptr};
    std::vector<TTimer*> m_timers;
    bool m_terminated{false};
    bool m_showHint{true};
    int m_hintPause{500};
    int m_hintShortPause{50};
    int m_hintHidePause{2500};
    TColor m_hintColor{clInfoBk};
    THintWindow* m_hintWindow{nullptr}; // owned by the application
    TControl* m_hintControl{nullptr};
    std::string m_hintText; // ActivateHintAt's, shown when no control's is
    TPoint m_hintAt;
    std::int64_t m_hintShowAt{-1};
    std::int64_t m_hintHideAt{-1};
    TNativeWindowId m_cursorWindow{0};
    TCursor m_cursorShape{crDefault};
    unsigned m_shift{0};
    TPoint m_cursor; // where the last mouse event happened, on the screen
    bool m_cursorKnown{false};
    unsigned m_keysDown[256 / 32]{};
};

TApplication& Application();
// The application object if it exists and is not being destroyed, else null.
TApplication* ApplicationIfAlive();

// The cursor position in screen coordinates, and whether a key is down (high bit set).
TPoint GetCursorPos();
short GetKeyState(unsigned virtualKey);

} // namespace qv
