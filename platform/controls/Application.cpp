#include "Application.h"

#include "HintWindow.h"
#include "Screen.h"
#include "Timer.h"
#include "WindowTable.h"

#include "platform/backend/HeadlessBackend.h"
#include "platform/core/ClassBuilder.h"
#include "platform/system/Thread.h"

#include <algorithm>
#include <cstdio>

namespace qv {

namespace {
// The process-wide application object and whether it is alive.
TApplication* g_application = nullptr;
} // namespace

TApplication& Application() {
    static TApplication application;
    return application;
}

TApplication* ApplicationIfAlive() {
    return g_application;
}

TPoint GetCursorPos() {
    return Application().CursorPos();
}

short GetKeyState(unsigned virtualKey) {
    auto* app = ApplicationIfAlive();
    return app && app->KeyDown(virtualKey) ? static_cast<short>(0x8000) : 0;
}

const TClassInfo& TApplication::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TApplication>("TApplication", &TComponent::StaticClassInfo()).Build();
    return info;
}

TApplication::TApplication() : TComponent(nullptr) {
    g_application = this;
    // The window table must outlive the forms the application owns (the hint window):
    // created first, it is destroyed last.
    IsWindow(0);
    SetBackend(std::make_unique<THeadlessBackend>());
}

TApplication::~TApplication() {
    Destroying();
    DestroyComponents(); // the forms, while the backend still exists
    SetPostWakeup(nullptr);
    SetSynchronizeWakeup(nullptr);
    g_application = nullptr;
}

TBackend& TApplication::Backend() {
    return *m_backend;
}

void TApplication::SetBackend(std::unique_ptr<TBackend> backend) {
    for (TCustomForm* f : m_forms)
        f->DetachFrameStorage(); // frame storage of the old backend goes with it
    m_backend = std::move(backend);
    TBackend* b = m_backend.get();
    SetPostWakeup([b] { b->Wake(); });
    SetSynchronizeWakeup([b] { b->Wake(); });
    for (const TChildProcess& child : m_children)
        WatchChild(child.PidFd());
}

void TApplication::ReapWhenEnded(TChildProcess child) {
    if (child.TryWait()) return;
    const int pidfd = child.PidFd();
    m_children.push_back(std::move(child));
    WatchChild(pidfd);
}

void TApplication::WatchChild(int pidfd) {
    m_backend->WatchFd(pidfd, [this, pidfd] { ChildReadable(pidfd); });
}

void TApplication::ChildReadable(int pidfd) {
    const auto child = std::find_if(m_children.begin(), m_children.end(),
                                    [pidfd](const TChildProcess& c) { return c.PidFd() == pidfd; });
    if (child != m_children.end() && !child->TryWait()) return;
    m_backend->UnwatchFd(pidfd);
    if (child != m_children.end()) m_children.erase(child);
}

void TApplication::RegisterForm(TCustomForm* form) {
    if (!IsForm(form)) m_forms.push_back(form);
}

bool TApplication::IsForm(const TCustomForm* form) const {
    return std::find(m_forms.begin(), m_forms.end(), form) != m_forms.end();
}

void TApplication::FormDestroyed(TCustomForm* form) {
    std::erase(m_forms, form);
    if (m_mainForm == form) m_mainForm = nullptr;
    if (m_activeForm == form) m_activeForm = nullptr;
    ControlGone(form);
}

void TApplication::ControlGone(TControl* control) {
    if (m_capture == control) m_capture = nullptr;
    if (m_mouseControl == control) m_mouseControl = nullptr;
    if (m_hintControl == control) CancelHint();
    if (m_hintWindow == control) m_hintWindow = nullptr;
}

void TApplication::Notification(TComponent* AComponent, TOperation Operation) {
    TComponent::Notification(AComponent, Operation);
}

void TApplication::SetActiveForm(TCustomForm* form) {
    if (form == m_activeForm) return;
    TCustomForm* old = m_activeForm;
    m_activeForm = form;
    if (old && old->OnDeactivate) old->OnDeactivate(old);
    if (form && form->OnActivate) form->OnActivate(form);
}

TCustomForm* TApplication::FormOfNativeWindow(TNativeWindowId window) const {
    for (TCustomForm* f : m_forms)
        if (f->NativeWindow() == window && window != 0) return f;
    return nullptr;
}

void TApplication::SetCaptureControl(TControl* control) {
    m_capture = control;
}

TPoint TApplication::CursorPos() {
    return m_cursorKnown ? m_cursor : m_backend->CursorPos();
}

bool TApplication::KeyDown(unsigned virtualKey) const {
    if (virtualKey >= 256) return false;
    return (m_keysDown[virtualKey / 32] >> (virtualKey % 32)) & 1u;
}

// Message loop.

void TApplication::Run() {
    if (m_mainForm && !m_mainForm->Visible()) m_mainForm->Show();
    while (!m_terminated) {
        HandleMessage();
        if (m_mainForm && !m_mainForm->Visible()) Terminate();
    }
}

void TApplication::Terminate() {
    m_terminated = true;
    m_backend->Wake();
}

void TApplication::ProcessMessages() {
    for (;;) {
        bool did = true;
        try {
            did = DispatchPending();
        } catch (const std::exception& e) {
            HandleException(this, e);
        }
        if (!did) break;
    }
    try {
        UpdateCursorShape();
        PaintForms();
    } catch (const std::exception& e) {
        HandleException(this, e);
    }
}

void TApplication::HandleMessage() {
    try {
        if (DispatchPending()) return;
        Idle();
    } catch (const std::exception& e) {
        HandleException(this, e);
        return;
    }
    if (m_terminated || HasPostedMessages()) return;
    m_backend->WaitForEvents(MsUntilNextTimer());
}

bool TApplication::DispatchPending() {
    bool did = DispatchOnePosted();
    did = CheckSynchronize() || did;
    did = DispatchOneEvent() || did;
    did = FireDueTimers() || did;
    return did;
}

void TApplication::HandleException(TObject* Sender, const std::exception& E) {
    if (OnException)
        OnException(Sender, E);
    else
        ShowException(E);
}

void TApplication::ShowException(const std::exception& E) {
    std::fprintf(stderr, "%s\n", E.what());
}

void TApplication::Idle() {
    UpdateCursorShape();
    PaintForms();
    if (OnIdle) OnIdle(this);
}

bool TApplication::PaintForms() {
    bool painted = false;
    for (TCustomForm* f : std::vector<TCustomForm*>(m_forms))
        if (IsForm(f) && f->Visible()) painted = f->PaintPending() || painted;
    return painted;
}

// Timers.

std::int64_t TApplication::NowMs() {
    return m_backend->NowMs();
}

void TApplication::AddTimer(TTimer* timer) {
    if (std::find(m_timers.begin(), m_timers.end(), timer) == m_timers.end())
        m_timers.push_back(timer);
}

void TApplication::RemoveTimer(TTimer* timer) {
    std::erase(m_timers, timer);
}

bool TApplication::FireDueTimers() {
    const std::int64_t now = NowMs();
    if (FireDueHint(now)) return true;
    for (TTimer* t : std::vector<TTimer*>(m_timers)) {
        if (std::find(m_timers.begin(), m_timers.end(), t) == m_timers.end()) continue;
        if (t->DueAt() <= now) {
            t->Tick(now);
            return true;
        }
    }
    return false;
}

std::int64_t TApplication::MsUntilNextTimer() {
    std::int64_t next = -1;
    const auto consider = [&next](std::int64_t due) {
        if (due >= 0 && (next < 0 || due < next)) next = due;
    };
    for (TTimer* t : m_timers)
        consider(t->DueAt());
    consider(m_hintShowAt);
    consider(m_hintHideAt);
    return next < 0 ? -1 : std::max<std::int64_t>(0, next - NowMs());
}

// Input.

bool TApplication::DispatchOneEvent() {
    TBackendEvent event;
    if (!m_backend->NextEvent(event)) return false;
    HandleInput(event);
    return true;
}

void TApplication::HandleInput(const TBackendEvent& event) {
    m_shift = event.shift;
    const auto setKey = [&](unsigned vk, bool down) {
        if (vk >= 256) return;
        if (down)
            m_keysDown[vk / 32] |= 1u << (vk % 32);
        else
            m_keysDown[vk / 32] &= ~(1u << (vk % 32));
    };
    setKey(VK_SHIFT, event.shift & isShift);
    setKey(VK_CONTROL, event.shift & isCtrl);
    setKey(VK_MENU, event.shift & isAlt);
    setKey(VK_LBUTTON, event.shift & isLeft);
    setKey(VK_RBUTTON, event.shift & isRight);
    setKey(VK_MBUTTON, event.shift & isMiddle);
    if (event.kind == TBackendEvent::Kind::KeyDown) setKey(event.key, true);
    if (event.kind == TBackendEvent::Kind::KeyUp) setKey(event.key, false);

    TCustomForm* form = FormOfNativeWindow(event.window);
    if (!form) return;
    switch (event.kind) {
    case TBackendEvent::Kind::MouseDown:
    case TBackendEvent::Kind::MouseUp:
    case TBackendEvent::Kind::MouseMove:
    case TBackendEvent::Kind::MouseWheel:
        HandleMouse(event, *form);
        break;
    case TBackendEvent::Kind::MouseLeaveWindow:
        if (m_hintControl) CancelHint(); // a tip of the notification area is the shell's
        if (m_mouseControl && !m_capture) {
            TControl* old = m_mouseControl;
            m_mouseControl = nullptr;
            old->Perform(CM_MOUSELEAVE);
        }
        break;
    case TBackendEvent::Kind::KeyDown:
    case TBackendEvent::Kind::KeyUp:
    case TBackendEvent::Kind::Char:
        HandleKey(event, *form);
        break;
    case TBackendEvent::Kind::FocusIn:
        SetActiveForm(form);
        break;
    case TBackendEvent::Kind::FocusOut:
        if (m_activeForm == form) SetActiveForm(nullptr);
        break;
    case TBackendEvent::Kind::Close:
        form->Close();
        break;
    case TBackendEvent::Kind::Resized:
        form->SetBounds(form->Left(), form->Top(), event.size.cx, event.size.cy);
        break;
    case TBackendEvent::Kind::Moved:
        form->SetBounds(event.pos.x, event.pos.y, form->Width(), form->Height());
        break;
    case TBackendEvent::Kind::StateChanged: {
        static constexpr TWindowState states[] = {wsNormal, wsMinimized, wsMaximized};
        const TWindowState state = states[static_cast<int>(event.state)];
        const bool maximized = state == wsMaximized && form->m_windowState != wsMaximized;
        form->m_windowState = state;
        if (maximized) form->UpdateSizeLimits(); // the maximised bounds of the answer
        break;
    }
    case TBackendEvent::Kind::Expose:
        form->InvalidateFormRect(form->ClientRect());
        break;
    }
}

namespace {

// The deepest control under a point of `parent`'s client area.
TControl* DeepControlAt(TWinControl& parent, TPoint pos, bool allowDisabled) {
    TControl* hit = parent.ControlAtPos(pos, allowDisabled);
    if (!hit) return &parent;
    if (auto* win = dynamic_cast<TWinControl*>(hit))
        return DeepControlAt(*win, {pos.x - win->Left(), pos.y - win->Top()}, allowDisabled);
    return hit;
}

WPARAM MouseKeys(unsigned shift) {
    WPARAM keys = 0;
    if (shift & isShift) keys |= MK_SHIFT;
    if (shift & isCtrl) keys |= MK_CONTROL;
    if (shift & isLeft) keys |= MK_LBUTTON;
    if (shift & isRight) keys |= MK_RBUTTON;
    if (shift & isMiddle) keys |= MK_MBUTTON;
    return keys;
}

// Windowed controls get system messages through their window procedure (so hooks see
// them); graphic controls directly.
LRESULT Deliver(TControl& control, UINT msg, WPARAM w, LPARAM l) {
    if (auto* win = dynamic_cast<TWinControl*>(&control))
        return SendMessage(win->Handle(), msg, w, l);
    return control.Perform(msg, w, l);
}

} // namespace

TControl* TApplication::FindControlAtScreen(TPoint screen, bool allowDisabled) const {
    for (auto it = m_forms.rbegin(); it != m_forms.rend(); ++it) {
        TCustomForm* f = *it;
        if (!f->Visible() || !f->BoundsRect().Contains(screen)) continue;
        return DeepControlAt(*f, f->ScreenToClient(screen), allowDisabled);
    }
    return nullptr;
}

void TApplication::UpdateMouseControl() {
    TControl* now = FindControlAtScreen(CursorPos(), true);
    if (now == m_mouseControl) return;
    TControl* old = m_mouseControl;
    m_mouseControl = now;
    if (old) old->Perform(CM_MOUSELEAVE);
    if (now && now == m_mouseControl) now->Perform(CM_MOUSEENTER);
}

void TApplication::HandleMouse(const TBackendEvent& event, TCustomForm& form) {
    const TPoint screen = form.ClientToScreen(event.pos);
    m_cursor = screen;
    m_cursorKnown = true;
    if (event.kind == TBackendEvent::Kind::MouseDown)
        for (TCustomForm* f : std::vector<TCustomForm*>(m_forms))
            if (f != &form && IsForm(f) && f->IsPopupWindow() && f->Visible())
                f->Perform(CM_CANCELMODE);
    if (event.kind != TBackendEvent::Kind::MouseMove) CancelHint();
    if (event.kind == TBackendEvent::Kind::MouseDown && !m_capture && form.IsPopupWindow() &&
        !form.ClientRect().Contains(event.pos)) {
        form.Perform(CM_CANCELMODE); // a press outside it, brought by a grab, closes a popup
        return;
    }
    TControl* target = m_capture ? m_capture : DeepControlAt(form, event.pos, false);
    if (!target) return;
    const TPoint local = target->ScreenToClient(screen);
    const LPARAM pos = MAKELPARAM(local.x, local.y);
    WPARAM keys = MouseKeys(event.shift);
    UINT msg = WM_MOUSEMOVE;
    switch (event.kind) {
    case TBackendEvent::Kind::MouseDown: {
        static constexpr UINT down[] = {WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN};
        static constexpr UINT dbl[] = {WM_LBUTTONDBLCLK, WM_RBUTTONDBLCLK, WM_MBUTTONDBLCLK};
        static constexpr WPARAM button[] = {MK_LBUTTON, MK_RBUTTON, MK_MBUTTON};
        const auto b = static_cast<std::size_t>(event.button);
        msg = event.doubleClick ? dbl[b] : down[b];
        keys |= button[b];
        break;
    }
    case TBackendEvent::Kind::MouseUp: {
        static constexpr UINT up[] = {WM_LBUTTONUP, WM_RBUTTONUP, WM_MBUTTONUP};
        static constexpr WPARAM button[] = {MK_LBUTTON, MK_RBUTTON, MK_MBUTTON};
        const auto b = static_cast<std::size_t>(event.button);
        msg = up[b];
        keys &= ~button[b];
        break;
    }
    case TBackendEvent::Kind::MouseWheel:
        msg = WM_MOUSEWHEEL;
        keys |= static_cast<WPARAM>(static_cast<std::uint16_t>(event.wheelDelta)) << 16;
        break;
    default:
        break;
    }
    if (msg == WM_MOUSEWHEEL) {
        // The wheel goes to the focused control, with screen coordinates.
        TControl* focus =
            form.ActiveControl() ? static_cast<TControl*>(form.ActiveControl()) : &form;
        Deliver(*focus, msg, keys, MAKELPARAM(screen.x, screen.y));
        return;
    }
    Deliver(*target, msg, keys, pos);
    UpdateMouseControl();
    UpdateCursorShape();
    if (event.kind == TBackendEvent::Kind::MouseMove) HintMouseMoved();
}

void TApplication::HandleKey(const TBackendEvent& event, TCustomForm& form) {
    if (event.kind != TBackendEvent::Kind::KeyUp) CancelHint();
    TWinControl* target = form.ActiveControl() ? form.ActiveControl() : &form;
    const bool alt = event.shift & isAlt;
    switch (event.kind) {
    case TBackendEvent::Kind::KeyDown:
        Deliver(*target, alt ? WM_SYSKEYDOWN : WM_KEYDOWN, event.key, alt ? KF_ALTDOWN_LPARAM : 0);
        break;
    case TBackendEvent::Kind::KeyUp:
        Deliver(*target, alt ? WM_SYSKEYUP : WM_KEYUP, event.key, 0);
        break;
    case TBackendEvent::Kind::Char:
        Deliver(*target, alt ? WM_SYSCHAR : WM_CHAR, event.charCode, 0);
        break;
    default:
        break;
    }
}

// Hints.

void TApplication::SetShowHint(bool v) {
    if (v == m_showHint) return;
    m_showHint = v;
    if (!v) CancelHint();
}

TControl* TApplication::HintControlOf(TControl* control) const {
    while (control && !control->ShowHint())
        control = control->Parent();
    return control && !control->IsDesigning() ? control : nullptr;
}

void TApplication::HintMouseMoved() {
    TControl* control = m_showHint ? HintControlOf(m_mouseControl) : nullptr;
    if (!control) {
        if (m_hintControl) CancelHint(); // a tip of the notification area is the shell's
        return;
    }
    if (control == m_hintControl) return;
    const bool hintShowing = m_hintWindow && m_hintWindow->Visible();
    HideHint();
    m_hintControl = control;
    m_hintShowAt = NowMs() + (hintShowing ? m_hintShortPause : m_hintPause);
}

namespace {

// The nearest hint text from `control` up its parents.
std::string HintTextOf(const TControl* control) {
    for (; control; control = control->Parent())
        if (!control->Hint().empty()) return control->Hint();
    return {};
}

// How far below the pointer's hot spot a hint goes, clear of the arrow cursor.
constexpr int CursorHeightMargin = 20;

} // namespace

void TApplication::ActivateHintAt(const std::string& text, TPoint screen) {
    CancelHint();
    if (!m_showHint || text.empty()) return;
    m_hintText = text;
    m_hintAt = screen;
    m_hintShowAt = NowMs() + m_hintPause;
}

void TApplication::ShowHintNow() {
    m_hintShowAt = -1;
    const std::string text = m_hintControl ? GetShortHint(HintTextOf(m_hintControl)) : m_hintText;
    if (text.empty()) return;
    if (!m_hintWindow) m_hintWindow = new THintWindow(this);
    m_hintWindow->SetColor(m_hintColor);
    TRect rect = m_hintWindow->CalcHintRect(m_backend->ScreenBounds().Width(), text);
    const TPoint at = m_hintControl ? CursorPos() : m_hintAt;
    OffsetRect(rect, at.x, at.y + CursorHeightMargin);
    m_hintWindow->ActivateHint(rect, text);
    m_hintHideAt = NowMs() + m_hintHidePause;
}

void TApplication::HideHint() {
    m_hintHideAt = -1;
    if (m_hintWindow && m_hintWindow->Visible()) m_hintWindow->ReleaseHint();
}

void TApplication::CancelHint() {
    HideHint();
    m_hintControl = nullptr;
    m_hintText.clear();
    m_hintShowAt = -1;
}

bool TApplication::FireDueHint(std::int64_t now) {
    if (m_hintShowAt >= 0 && now >= m_hintShowAt) {
        ShowHintNow();
        return true;
    }
    if (m_hintHideAt >= 0 && now >= m_hintHideAt) {
        HideHint(); // the control keeps its hint hidden until the pointer leaves it
        return true;
    }
    return false;
}

// Cursors.

TCursor TApplication::CursorOf(TControl* control) const {
    for (TControl* c = control; c; c = c->Parent()) {
        if (c->Cursor() != crDefault) return c->Cursor();
        if (const LRESULT own = c->Perform(WM_SETCURSOR, 0, HTCLIENT); own != 0)
            return static_cast<TCursor>(own);
    }
    return crDefault;
}

void TApplication::UpdateCursorShape() {
    if (!m_mouseControl) return;
    const TCustomForm* form = GetParentForm(m_mouseControl);
    if (!form || !form->NativeWindow()) return;
    const TCursor shape =
        Screen().Cursor() != crDefault ? Screen().Cursor() : CursorOf(m_mouseControl);
    if (form->NativeWindow() == m_cursorWindow && shape == m_cursorShape) return;
    m_cursorWindow = form->NativeWindow();
    m_cursorShape = shape;
    m_backend->SetCursorShape(m_cursorWindow, shape);
}

void TApplication::ScreenCursorChanged() {
    const TCursor shape = Screen().Cursor();
    for (const TCustomForm* f : m_forms)
        if (f->Visible() && f->NativeWindow()) m_backend->SetCursorShape(f->NativeWindow(), shape);
    m_cursorWindow = 0;
    UpdateCursorShape();
}

} // namespace qv
