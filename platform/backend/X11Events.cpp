// Translation of X events into backend events.

#include "Backend.h"

namespace {
// Xlib defines Expose, FocusIn and FocusOut as macros: name these kinds before it does.
constexpr auto exposeKind = qv::TBackendEvent::Kind::Expose;
constexpr auto focusInKind = qv::TBackendEvent::Kind::FocusIn;
constexpr auto focusOutKind = qv::TBackendEvent::Kind::FocusOut;
} // namespace

#include "X11Backend.h"
#include "X11Tray.h"

#include "X11Keys.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

namespace qv {

namespace {

TBackendEvent MakeEvent(TBackendEvent::Kind kind, Window window) {
    TBackendEvent event;
    event.kind = kind;
    event.window = static_cast<TNativeWindowId>(window);
    return event;
}

bool IsKeypadDigit(KeySym keysym) {
    return keysym >= XK_KP_0 && keysym <= XK_KP_9;
}

} // namespace

void TX11Backend::ReadPendingXEvents() {
    Display* dpy = m_display.get();
    while (m_pending.empty() && XPending(dpy) > 0) {
        XEvent event;
        XNextEvent(dpy, &event);
        Dispatch(event);
    }
}

void TX11Backend::Push(const TBackendEvent& event) {
    if (!Find(event.window)) return; // a window destroyed since the server sent this
    m_pending.push_back(event);
}

void TX11Backend::Dispatch(XEvent& event) {
    if (m_xembed && m_xembed->HandleEvent(event)) return;
    if (event.type == m_shmCompletionType) {
        MarkCompleted(reinterpret_cast<const XShmCompletionEvent&>(event).shmseg);
        return;
    }
    switch (event.type) {
    case ButtonPress:
        OnButton(event.xbutton, true);
        break;
    case ButtonRelease:
        OnButton(event.xbutton, false);
        break;
    case MotionNotify:
        OnMotion(event.xmotion);
        break;
    case EnterNotify:
        OnCrossing(event.xcrossing, true);
        break;
    case LeaveNotify:
        OnCrossing(event.xcrossing, false);
        break;
    case KeyPress:
        OnKey(event.xkey, true);
        break;
    case KeyRelease:
        OnKey(event.xkey, false);
        break;
    case FocusIn:
        OnFocus(event.xfocus, true);
        break;
    case FocusOut:
        OnFocus(event.xfocus, false);
        break;
    case ConfigureNotify:
        OnConfigure(event.xconfigure);
        break;
    case MapNotify:
        OnMap(event.xmap);
        break;
    case UnmapNotify:
        if (TWindow* w = Find(static_cast<TNativeWindowId>(event.xunmap.window))) w->mapped = false;
        break;
    case PropertyNotify:
        OnProperty(event.xproperty);
        break;
    case ClientMessage:
        OnClientMessage(event.xclient);
        break;
    case Expose:
        if (event.xexpose.count == 0) Push(MakeEvent(exposeKind, event.xexpose.window));
        break;
    default:
        break;
    }
}

void TX11Backend::OnButton(const XButtonEvent& e, bool press) {
    TBackendEvent event = MakeEvent(TBackendEvent::Kind::MouseDown, e.window);
    event.pos = {e.x, e.y};
    event.shift = ShiftFromXState(e.state);
    if (const int delta = WheelDeltaFromX(e.button)) {
        if (!press) return; // the wheel's release carries nothing
        event.kind = TBackendEvent::Kind::MouseWheel;
        event.wheelDelta = delta;
        Push(event);
        return;
    }
    if (!ButtonFromX(e.button, event.button)) return;
    if (press) {
        event.doubleClick = m_clicks.Press(event.window, event.button, event.pos,
                                           static_cast<std::int64_t>(e.time));
    } else {
        event.kind = TBackendEvent::Kind::MouseUp;
    }
    Push(event);
}

// Consecutive moves collapse into the latest one.
void TX11Backend::OnMotion(const XMotionEvent& e) {
    TBackendEvent event = MakeEvent(TBackendEvent::Kind::MouseMove, e.window);
    event.pos = {e.x, e.y};
    event.shift = ShiftFromXState(e.state);
    if (!m_pending.empty()) {
        TBackendEvent& last = m_pending.back();
        if (last.kind == event.kind && last.window == event.window && last.shift == event.shift) {
            last.pos = event.pos;
            return;
        }
    }
    Push(event);
}

// Entering is a move to the entry point; leaving is reported unless a grab caused it.
void TX11Backend::OnCrossing(const XCrossingEvent& e, bool enter) {
    if (enter) {
        TBackendEvent event = MakeEvent(TBackendEvent::Kind::MouseMove, e.window);
        event.pos = {e.x, e.y};
        event.shift = ShiftFromXState(e.state);
        Push(event);
    } else if (e.mode != NotifyGrab && e.detail != NotifyInferior) {
        TBackendEvent event = MakeEvent(TBackendEvent::Kind::MouseLeaveWindow, e.window);
        event.shift = ShiftFromXState(e.state);
        Push(event);
    }
}

// A press is a KeyDown with the key's classic code followed by one Char per character it
// types; a release is a KeyUp. The code comes from the unshifted keysym (Shift+1 is still
// the key '1'), except on the keypad with Num Lock, where the digit keys report VK_NUMPADn.
void TX11Backend::OnKey(XKeyEvent& e, bool press) {
    char text[32] = {};
    KeySym typed = NoSymbol;
    const int length = XLookupString(&e, text, sizeof text, &typed, nullptr);
    const KeySym base = XLookupKeysym(&e, 0);
    const unsigned key = VirtualKeyFromKeysym(IsKeypadDigit(typed) ? typed : base);
    TBackendEvent event =
        MakeEvent(press ? TBackendEvent::Kind::KeyDown : TBackendEvent::Kind::KeyUp, e.window);
    event.key = key != 0 ? key : VirtualKeyFromKeysym(typed);
    event.shift = ShiftFromXState(e.state);
    if (event.key != 0) Push(event);
    if (!press) return;
    for (const char c : CharsFromLookup(std::string(text, static_cast<std::size_t>(length)))) {
        TBackendEvent typedChar = MakeEvent(TBackendEvent::Kind::Char, e.window);
        typedChar.charCode = static_cast<unsigned char>(c);
        typedChar.shift = event.shift;
        Push(typedChar);
    }
}

void TX11Backend::OnFocus(const XFocusChangeEvent& e, bool in) {
    if (e.mode == NotifyGrab || e.mode == NotifyUngrab || e.detail == NotifyPointer ||
        e.detail == NotifyInferior)
        return;
    const auto id = static_cast<TNativeWindowId>(e.window);
    if (in)
        m_focused = id;
    else if (m_focused == id)
        m_focused = 0;
    Push(MakeEvent(in ? focusInKind : focusOutKind, e.window));
}

// Size and position changes the server or window manager made. Events that answer an
// older request of ours are stale: a newer request is on its way and its event will follow.
void TX11Backend::OnConfigure(const XConfigureEvent& e) {
    TWindow* w = Find(static_cast<TNativeWindowId>(e.window));
    if (!w || e.serial < w->configureSerial) return;
    int x = e.x, y = e.y;
    if (!e.send_event) { // real events are relative to a window manager's frame, if any
        Window child = 0;
        XTranslateCoordinates(m_display.get(), w->xid, m_root, 0, 0, &x, &y, &child);
    }
    const TRect now = Bounds(x, y, e.width, e.height);
    const TRect old = w->bounds;
    if (now == old) return;
    w->bounds = now;
    if (now.Width() != old.Width() || now.Height() != old.Height()) {
        TBackendEvent event = MakeEvent(TBackendEvent::Kind::Resized, e.window);
        event.size = {now.Width(), now.Height()};
        Push(event);
    }
    if (now.TopLeft() != old.TopLeft()) {
        TBackendEvent event = MakeEvent(TBackendEvent::Kind::Moved, e.window);
        event.pos = now.TopLeft();
        Push(event);
    }
}

void TX11Backend::OnMap(const XMapEvent& e) {
    TWindow* w = Find(static_cast<TNativeWindowId>(e.window));
    if (!w) return;
    w->mapped = true;
    if (w->grabWhenMapped) StartGrab(*w);
    if (w->focusWhenMapped) {
        w->focusWhenMapped = false;
        XSetInputFocus(m_display.get(), w->xid, RevertToParent, CurrentTime);
    }
}

// The state as the window manager keeps it: iconic (WM_STATE or _NET_WM_STATE_HIDDEN),
// maximised in both directions, or normal.
TNativeWindowState TX11Backend::ReadState(const TWindow& w) const {
    Display* dpy = m_display.get();
    Atom type = None;
    int format = 0;
    unsigned long count = 0, after = 0;
    unsigned char* data = nullptr;
    bool iconic = false, maxVert = false, maxHorz = false;
    if (XGetWindowProperty(dpy, w.xid, m_atoms.wmState, 0, 2, False, m_atoms.wmState, &type,
                           &format, &count, &after, &data) == Success &&
        data) {
        iconic = count >= 1 && format == 32 && *reinterpret_cast<long*>(data) == IconicState;
        XFree(data);
        data = nullptr;
    }
    if (XGetWindowProperty(dpy, w.xid, m_atoms.netWmState, 0, 64, False, XA_ATOM, &type, &format,
                           &count, &after, &data) == Success &&
        data) {
        const Atom* atoms = reinterpret_cast<Atom*>(data);
        for (unsigned long i = 0; format == 32 && i < count; ++i) {
            iconic = iconic || atoms[i] == m_atoms.netWmStateHidden;
            maxVert = maxVert || atoms[i] == m_atoms.netWmStateMaxVert;
            maxHorz = maxHorz || atoms[i] == m_atoms.netWmStateMaxHorz;
        }
        XFree(data);
    }
    if (iconic) return TNativeWindowState::Minimized;
    return maxVert && maxHorz ? TNativeWindowState::Maximized : TNativeWindowState::Normal;
}

void TX11Backend::OnProperty(const XPropertyEvent& e) {
    if (e.atom != m_atoms.wmState && e.atom != m_atoms.netWmState) return;
    TWindow* w = Find(static_cast<TNativeWindowId>(e.window));
    if (!w || !w->visible) return; // withdrawing clears the state: not a change
    const TNativeWindowState state = ReadState(*w);
    if (state == w->state) return;
    w->state = state;
    TBackendEvent event = MakeEvent(TBackendEvent::Kind::StateChanged, e.window);
    event.state = state;
    Push(event);
}

void TX11Backend::OnClientMessage(const XClientMessageEvent& e) {
    if (e.message_type == m_atoms.wmProtocols && e.format == 32 &&
        static_cast<Atom>(e.data.l[0]) == m_atoms.wmDeleteWindow)
        Push(MakeEvent(TBackendEvent::Kind::Close, e.window));
}

} // namespace qv
