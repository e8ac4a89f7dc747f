#include "X11Backend.h"

#include "TrayShell.h"
#include "X11Keys.h"
#include "X11Tray.h"
#include "platform/core/SysUtils.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/cursorfont.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

namespace qv {

namespace {

std::int64_t SteadyMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// The frame buffer's pixel layout is what a little-endian 24-bit true-colour visual with
// the usual masks stores in 32-bit ZPixmaps.
bool VisualMatchesFrames(const Visual* visual, int depth) {
    return (depth == 24 || depth == 32) && visual->c_class == TrueColor &&
           visual->red_mask == 0xFF0000 && visual->green_mask == 0xFF00 &&
           visual->blue_mask == 0xFF;
}

// Classic cursor numbers (crArrow = -2 ... crHandPoint = -21) to X font cursors.
unsigned FontCursorFor(int cursor) {
    switch (cursor) {
    case -3:
        return XC_crosshair;
    case -4:
        return XC_xterm;
    case -22:
        return XC_fleur;
    case -6:
        return XC_bottom_left_corner;
    case -7:
        return XC_sb_v_double_arrow;
    case -8:
        return XC_bottom_right_corner;
    case -9:
        return XC_sb_h_double_arrow;
    case -10:
        return XC_center_ptr;
    case -11:
    case -17:
    case -19:
        return XC_watch;
    case -12:
    case -16:
        return XC_dotbox;
    case -13:
    case -18:
        return XC_X_cursor;
    case -14:
        return XC_sb_h_double_arrow;
    case -15:
        return XC_sb_v_double_arrow;
    case -20:
        return XC_question_arrow;
    case -21:
        return XC_hand2;
    default:
        return XC_left_ptr;
    }
}

constexpr int crNoneCursor = -1;
constexpr long windowEvents = ExposureMask | KeyPressMask | KeyReleaseMask | ButtonPressMask |
                              ButtonReleaseMask | PointerMotionMask | EnterWindowMask |
                              LeaveWindowMask | FocusChangeMask | StructureNotifyMask |
                              PropertyChangeMask;

unsigned Extent(int size) {
    return static_cast<unsigned>(std::max(size, 1));
}

} // namespace

std::unique_ptr<TBackend> CreateX11Backend() {
    return TX11Backend::Open(nullptr);
}

std::unique_ptr<TX11Backend> TX11Backend::Open(const char* displayName) {
    TDisplayPtr display = OpenDisplay(displayName);
    if (!display) return nullptr;
    const int screen = DefaultScreen(display.get());
    if (!VisualMatchesFrames(DefaultVisual(display.get(), screen),
                             DefaultDepth(display.get(), screen))) {
        std::fprintf(stderr, "X11: the default visual is not 24-bit true colour; "
                             "running without windows\n");
        return nullptr;
    }
    auto backend = std::unique_ptr<TX11Backend>(new TX11Backend(std::move(display)));
    if (!backend->m_wake.Valid()) return nullptr;
    return backend;
}

TX11Backend::TX11Backend(TDisplayPtr display)
    : m_display(std::move(display)), m_clockStart(SteadyMs()) {
    Display* dpy = m_display.get();
    m_screen = DefaultScreen(dpy);
    m_root = RootWindow(dpy, m_screen);
    m_visual = DefaultVisual(dpy, m_screen);
    m_depth = DefaultDepth(dpy, m_screen);
    XGCValues values{};
    values.graphics_exposures = False;
    m_gc = XCreateGC(dpy, m_root, GCGraphicsExposures, &values);
    InternAtoms();
    XkbSetDetectableAutoRepeat(dpy, True, nullptr); // held keys repeat presses only
    m_shmAvailable = XShmQueryExtension(dpy) != 0;
    if (m_shmAvailable) m_shmCompletionType = XShmGetEventBase(dpy) + ShmCompletion;
}

TX11Backend::~TX11Backend() {
    Display* dpy = m_display.get();
    for (auto& [id, w] : m_windows) {
        w.frame.reset();
        XDestroyWindow(dpy, w.xid);
    }
    for (const auto& [shape, cursor] : m_cursors)
        XFreeCursor(dpy, cursor);
    XFreeGC(dpy, m_gc);
    XSync(dpy, False);
}

void TX11Backend::InternAtoms() {
    const char* names[] = {"WM_PROTOCOLS",
                           "WM_DELETE_WINDOW",
                           "WM_STATE",
                           "_NET_WM_STATE",
                           "_NET_WM_STATE_MAXIMIZED_VERT",
                           "_NET_WM_STATE_MAXIMIZED_HORZ",
                           "_NET_WM_STATE_HIDDEN",
                           "_NET_WORKAREA",
                           "_NET_CURRENT_DESKTOP",
                           "_NET_WM_NAME",
                           "UTF8_STRING",
                           "_NET_WM_WINDOW_TYPE",
                           "_NET_WM_WINDOW_TYPE_POPUP_MENU",
                           "_NET_WM_PID",
                           "_NET_WM_STATE_SKIP_TASKBAR"};
    constexpr int count = sizeof names / sizeof names[0];
    Atom atoms[count];
    XInternAtoms(m_display.get(), const_cast<char**>(names), count, False, atoms);
    m_atoms = {atoms[0], atoms[1], atoms[2],  atoms[3],  atoms[4],  atoms[5],  atoms[6], atoms[7],
               atoms[8], atoms[9], atoms[10], atoms[11], atoms[12], atoms[13], atoms[14]};
}

TX11Backend::TWindow* TX11Backend::Find(TNativeWindowId window) {
    auto it = m_windows.find(window);
    return it == m_windows.end() ? nullptr : &it->second;
}

const TX11Backend::TWindow* TX11Backend::Find(TNativeWindowId window) const {
    auto it = m_windows.find(window);
    return it == m_windows.end() ? nullptr : &it->second;
}

bool TX11Backend::IsMapped(TNativeWindowId window) const {
    const TWindow* w = Find(window);
    return w && w->mapped;
}

// Windows.

TNativeWindowId TX11Backend::CreateNativeWindow(const TNativeWindowParams& params) {
    Display* dpy = m_display.get();
    XSetWindowAttributes attributes{};
    attributes.background_pixmap = None; // the frame covers everything: no flash of grey
    attributes.bit_gravity = NorthWestGravity;
    attributes.event_mask = windowEvents;
    attributes.override_redirect = params.popup ? True : False;
    attributes.save_under = params.popup ? True : False;
    const TRect& b = params.bounds;
    const Window xid = XCreateWindow(
        dpy, m_root, b.left, b.top, Extent(b.Width()), Extent(b.Height()), 0, m_depth, InputOutput,
        m_visual, CWBackPixmap | CWBitGravity | CWEventMask | CWOverrideRedirect | CWSaveUnder,
        &attributes);
    const auto id = static_cast<TNativeWindowId>(xid);
    TWindow& w = m_windows[id];
    w.xid = xid;
    w.popup = params.popup;
    w.bounds = b;
    w.skipTaskbar = params.skipTaskbar;
    if (w.skipTaskbar) SetInitialNetWmState(w);

    XClassHint classHint{const_cast<char*>("quelvar"), const_cast<char*>("Quelvar")};
    XSetClassHint(dpy, xid, &classHint);
    Atom protocols[] = {m_atoms.wmDeleteWindow};
    XSetWMProtocols(dpy, xid, protocols, 1);
    const long pid = getpid();
    XChangeProperty(dpy, xid, m_atoms.netWmPid, XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&pid), 1);
    if (params.popup) PublishPopupType(w);
    PublishNormalHints(w);
    SetWindowTitle(id, params.title);
    return id;
}

void TX11Backend::PublishPopupType(const TWindow& w) {
    XChangeProperty(m_display.get(), w.xid, m_atoms.netWmWindowType, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&m_atoms.netWmWindowTypePopupMenu), 1);
}

void TX11Backend::DestroyNativeWindow(TNativeWindowId window) {
    auto it = m_windows.find(window);
    if (it == m_windows.end()) return;
    it->second.frame.reset();
    XDestroyWindow(m_display.get(), it->second.xid);
    XFlush(m_display.get());
    if (m_focused == window) m_focused = 0;
    m_windows.erase(it);
}

// Position (client area, StaticGravity) and size limits, so that window managers place
// the client where the form says and keep it within WM_GETMINMAXINFO's limits.
void TX11Backend::PublishNormalHints(const TWindow& w) {
    XSizeHints hints{};
    hints.flags = USPosition | USSize | PWinGravity;
    hints.x = w.bounds.left;
    hints.y = w.bounds.top;
    hints.width = static_cast<int>(Extent(w.bounds.Width()));
    hints.height = static_cast<int>(Extent(w.bounds.Height()));
    hints.win_gravity = StaticGravity;
    if (w.minSize.cx > 0 || w.minSize.cy > 0) {
        hints.flags |= PMinSize;
        hints.min_width = std::max(w.minSize.cx, 1);
        hints.min_height = std::max(w.minSize.cy, 1);
    }
    if (w.maxSize.cx > 0 || w.maxSize.cy > 0) {
        hints.flags |= PMaxSize;
        hints.max_width = w.maxSize.cx > 0 ? w.maxSize.cx : SHRT_MAX;
        hints.max_height = w.maxSize.cy > 0 ? w.maxSize.cy : SHRT_MAX;
    }
    XSetWMNormalHints(m_display.get(), w.xid, &hints);
}

void TX11Backend::SetWindowBounds(TNativeWindowId window, const TRect& bounds) {
    TWindow* w = Find(window);
    if (!w || w->bounds == bounds) return;
    w->bounds = bounds;
    w->configureSerial = NextRequest(m_display.get());
    PublishNormalHints(*w);
    XMoveResizeWindow(m_display.get(), w->xid, bounds.left, bounds.top, Extent(bounds.Width()),
                      Extent(bounds.Height()));
    XFlush(m_display.get());
}

void TX11Backend::SetWindowVisible(TNativeWindowId window, bool visible) {
    TWindow* w = Find(window);
    if (!w) return;
    Display* dpy = m_display.get();
    w->visible = visible;
    if (visible) {
        if (w->state == TNativeWindowState::Minimized && !w->popup) {
            XWMHints hints{};
            hints.flags = StateHint;
            hints.initial_state = IconicState;
            XSetWMHints(dpy, w->xid, &hints);
        }
        XMapRaised(dpy, w->xid);
    } else if (w->popup) {
        XUnmapWindow(dpy, w->xid);
    } else {
        XWithdrawWindow(dpy, w->xid, m_screen); // the window manager forgets it too
    }
    const bool endsGrab = !visible && w->grabWhenMapped && w->mapped;
    if (!visible) {
        w->mapped = false;
        w->grabWhenMapped = false; // unmapping ends the grab
    }
    // A grab ends only when the server has unmapped the window: until then every press on
    // the screen still comes here. Waiting for it lets the next press, from this or any other
    // client, reach the window under the pointer.
    if (endsGrab)
        XSync(dpy, False);
    else
        XFlush(dpy);
}

void TX11Backend::GrabPointer(TNativeWindowId window) {
    TWindow* w = Find(window);
    if (!w) return;
    w->grabWhenMapped = true;
    if (w->mapped) StartGrab(*w);
}

// Events over the application's own windows go to them as usual (owner events); all others
// come to this window.
void TX11Backend::StartGrab(const TWindow& w) {
    XGrabPointer(m_display.get(), w.xid, True,
                 ButtonPressMask | ButtonReleaseMask | PointerMotionMask, GrabModeAsync,
                 GrabModeAsync, None, None, CurrentTime);
    XFlush(m_display.get());
}

void TX11Backend::SetWindowTitle(TNativeWindowId window, const std::string& title) {
    TWindow* w = Find(window);
    if (!w) return;
    XStoreName(m_display.get(), w->xid, title.c_str());
    const std::string utf8 = Latin1ToUtf8(title);
    XChangeProperty(m_display.get(), w->xid, m_atoms.netWmName, m_atoms.utf8String, 8,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(utf8.data()),
                    static_cast<int>(utf8.size()));
    XFlush(m_display.get());
}

// _NET_WM_STATE changes of a mapped window go to the window manager as a client message.
void TX11Backend::SendNetWmState(const TWindow& w, bool add, Atom first, Atom second) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = w.xid;
    event.xclient.message_type = m_atoms.netWmState;
    event.xclient.format = 32;
    event.xclient.data.l[0] = add ? 1 : 0;
    event.xclient.data.l[1] = static_cast<long>(first);
    event.xclient.data.l[2] = static_cast<long>(second);
    event.xclient.data.l[3] = 1; // from an application
    XSendEvent(m_display.get(), m_root, False, SubstructureRedirectMask | SubstructureNotifyMask,
               &event);
}

// Before mapping, the window manager reads _NET_WM_STATE from the property itself.
void TX11Backend::SetInitialNetWmState(const TWindow& w) {
    Atom states[3];
    int count = 0;
    if (w.state == TNativeWindowState::Maximized) {
        states[count++] = m_atoms.netWmStateMaxVert;
        states[count++] = m_atoms.netWmStateMaxHorz;
    }
    if (w.skipTaskbar) states[count++] = m_atoms.netWmStateSkipTaskbar;
    XChangeProperty(m_display.get(), w.xid, m_atoms.netWmState, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(states), count);
}

void TX11Backend::SetWindowState(TNativeWindowId window, TNativeWindowState state) {
    TWindow* w = Find(window);
    if (!w || w->state == state) return;
    Display* dpy = m_display.get();
    const TNativeWindowState old = w->state;
    w->state = state;
    const bool maximize = state == TNativeWindowState::Maximized;
    if (!w->mapped) {
        SetInitialNetWmState(*w);
    } else if (state == TNativeWindowState::Minimized) {
        XIconifyWindow(dpy, w->xid, m_screen);
    } else {
        if (old == TNativeWindowState::Minimized) XMapRaised(dpy, w->xid);
        SendNetWmState(*w, maximize, m_atoms.netWmStateMaxVert, m_atoms.netWmStateMaxHorz);
    }
    XFlush(dpy);
}

void TX11Backend::SetSizeLimits(TNativeWindowId window, TSize minimum, TSize maximum) {
    TWindow* w = Find(window);
    if (!w || (w->minSize == minimum && w->maxSize == maximum)) return;
    w->minSize = minimum;
    w->maxSize = maximum;
    PublishNormalHints(*w);
    XFlush(m_display.get());
}

void TX11Backend::SetSkipTaskbar(TNativeWindowId window, bool skip) {
    TWindow* w = Find(window);
    if (!w || w->skipTaskbar == skip) return;
    w->skipTaskbar = skip;
    if (w->mapped)
        SendNetWmState(*w, skip, m_atoms.netWmStateSkipTaskbar, None);
    else
        SetInitialNetWmState(*w);
    XFlush(m_display.get());
}

// The notification area: StatusNotifierItems when a watcher is on the session bus, else the
// System Tray Protocol on this display (or what QV_TRAY asks for, ChooseTrayShell).
TTrayShell& TX11Backend::TrayShell() {
    if (m_tray) return *m_tray;
    m_tray = ChooseTrayShell(*this, [this]() -> std::unique_ptr<TTrayShell> {
        auto xembed =
            std::make_unique<TX11TrayShell>(m_display.get(), m_screen, [this] { return NowMs(); });
        m_xembed = xembed.get();
        return xembed;
    });
    return *m_tray;
}

Cursor TX11Backend::CursorFor(int cursor) {
    auto it = m_cursors.find(cursor);
    if (it != m_cursors.end()) return it->second;
    Display* dpy = m_display.get();
    Cursor made = None;
    if (cursor == crNoneCursor) {
        const char blank = 0;
        const Pixmap empty = XCreateBitmapFromData(dpy, m_root, &blank, 1, 1);
        XColor black{};
        made = XCreatePixmapCursor(dpy, empty, empty, &black, &black, 0, 0);
        XFreePixmap(dpy, empty);
    } else {
        made = XCreateFontCursor(dpy, FontCursorFor(cursor));
    }
    m_cursors.emplace(cursor, made);
    return made;
}

void TX11Backend::SetCursorShape(TNativeWindowId window, int cursor) {
    TWindow* w = Find(window);
    if (!w) return;
    XDefineCursor(m_display.get(), w->xid, CursorFor(cursor));
    XFlush(m_display.get());
}

void TX11Backend::SetFocus(TNativeWindowId window) {
    TWindow* w = Find(window);
    if (!w || m_focused == window) return;
    if (!w->mapped) {
        w->focusWhenMapped = true; // focusing an unmapped window is an error
        return;
    }
    XSetInputFocus(m_display.get(), w->xid, RevertToParent, CurrentTime);
    XFlush(m_display.get());
}

// Screen.

TRect TX11Backend::ScreenBounds() const {
    Display* dpy = m_display.get();
    return {0, 0, DisplayWidth(dpy, m_screen), DisplayHeight(dpy, m_screen)};
}

TRect TX11Backend::WorkArea() const {
    Display* dpy = m_display.get();
    long desktop = 0;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, after = 0;
    unsigned char* data = nullptr;
    if (XGetWindowProperty(dpy, m_root, m_atoms.netCurrentDesktop, 0, 1, False, XA_CARDINAL, &type,
                           &format, &count, &after, &data) == Success &&
        data) {
        if (count == 1 && format == 32) desktop = *reinterpret_cast<long*>(data);
        XFree(data);
        data = nullptr;
    }
    TRect area = ScreenBounds();
    if (XGetWindowProperty(dpy, m_root, m_atoms.netWorkArea, desktop * 4, 4, False, XA_CARDINAL,
                           &type, &format, &count, &after, &data) == Success &&
        data) {
        if (count == 4 && format == 32) {
            const long* v = reinterpret_cast<long*>(data);
            const TRect published = Bounds(static_cast<int>(v[0]), static_cast<int>(v[1]),
                                           static_cast<int>(v[2]), static_cast<int>(v[3]));
            if (!published.IsEmpty()) area = published;
        }
        XFree(data);
    }
    return area;
}

TPoint TX11Backend::CursorPos() const {
    Window root = 0, child = 0;
    int rootX = 0, rootY = 0, winX = 0, winY = 0;
    unsigned mask = 0;
    XQueryPointer(m_display.get(), m_root, &root, &child, &rootX, &rootY, &winX, &winY, &mask);
    return {rootX, rootY};
}

// Presenting.

// The window's shared-memory image of `size`, made anew when the size changes. The server
// finishes a put before it handles the detach of a replaced image, so one still being
// read may go at once.
TPixelBuffer TX11Backend::FrameStorage(TNativeWindowId window, TSize size) {
    TWindow* w = Find(window);
    if (!w || !m_shmAvailable || size.cx <= 0 || size.cy <= 0) return {};
    if (!w->frame || w->frame->Width() != size.cx || w->frame->Height() != size.cy) {
        w->frame.reset();
        w->frame =
            TShmImage::Create(m_display.get(), m_visual, m_depth, size.cx, size.cy, m_errorTrap);
        if (!w->frame) return {};
    }
    return TPixelBuffer::View(w->frame->Row(0), size.cx, size.cy, w->frame->Stride());
}

// Events are read (and queued) until the server has reported every put of the window's
// image complete.
void TX11Backend::AwaitFrameIdle(TNativeWindowId window) {
    TWindow* w = Find(window);
    if (!w || !w->frame) return;
    while (w->frame->Busy())
        if (!AwaitCompletion()) ReleaseLostPuts(*w);
}

void TX11Backend::Present(TNativeWindowId window, const TPixelBuffer& frame, const TRect& damaged) {
    TWindow* w = Find(window);
    if (!w) return;
    const TRect area = Intersect(damaged, frame.Bounds());
    if (area.IsEmpty()) return;
    TShmImage* image = w->frame.get();
    if (!image || frame.IsEmpty() || frame.Row(0) != image->Row(0) ||
        frame.Width() != image->Width() || frame.Height() != image->Height()) {
        PresentPlain(*w, frame, area); // not our image: send the pixels
        return;
    }
    XShmPutImage(m_display.get(), w->xid, m_gc, image->Image(), area.left, area.top, area.left,
                 area.top, static_cast<unsigned>(area.Width()),
                 static_cast<unsigned>(area.Height()), True);
    image->PutSent();
    XFlush(m_display.get());
}

void TX11Backend::MarkCompleted(ShmSeg segment) {
    for (auto& [id, w] : m_windows)
        if (w.frame && w.frame->Segment() == segment) w.frame->PutCompleted();
}

// Reads one event, waiting for it for at most a while; false when none came.
bool TX11Backend::AwaitCompletion() {
    constexpr int completionWaitMs = 250;
    Display* dpy = m_display.get();
    if (XPending(dpy) == 0) {
        pollfd fd{ConnectionNumber(dpy), POLLIN, 0};
        if (poll(&fd, 1, completionWaitMs) <= 0 || XPending(dpy) == 0) return false;
    }
    XEvent event;
    XNextEvent(dpy, &event);
    Dispatch(event);
    return true;
}

// A put the server refused (an X error) never completes. After a round trip every
// completion that is coming has arrived; puts still counted then are lost.
void TX11Backend::ReleaseLostPuts(TWindow& w) {
    Display* dpy = m_display.get();
    XSync(dpy, False);
    while (XEventsQueued(dpy, QueuedAlready) > 0) {
        XEvent event;
        XNextEvent(dpy, &event);
        Dispatch(event);
    }
    if (w.frame) w.frame->ForgetPuts();
}

// XPutImage reads the frame buffer in place: the image only describes its memory.
void TX11Backend::PresentPlain(const TWindow& w, const TPixelBuffer& frame, const TRect& area) {
    XImage image{};
    image.width = frame.Width();
    image.height = frame.Height();
    image.format = ZPixmap;
    image.data = reinterpret_cast<char*>(const_cast<std::uint32_t*>(frame.Row(0)));
    image.byte_order = LSBFirst;
    image.bitmap_unit = 32;
    image.bitmap_bit_order = LSBFirst;
    image.bitmap_pad = 32;
    image.depth = m_depth;
    image.bytes_per_line = frame.Stride() * 4;
    image.bits_per_pixel = 32;
    image.red_mask = m_visual->red_mask;
    image.green_mask = m_visual->green_mask;
    image.blue_mask = m_visual->blue_mask;
    if (!XInitImage(&image)) return;
    XPutImage(m_display.get(), w.xid, m_gc, &image, area.left, area.top, area.left, area.top,
              static_cast<unsigned>(area.Width()), static_cast<unsigned>(area.Height()));
    XFlush(m_display.get());
}

void TX11Backend::Sync() {
    XSync(m_display.get(), False);
}

// The loop.

bool TX11Backend::NextEvent(TBackendEvent& event) {
    if (m_pending.empty()) ReadPendingXEvents();
    if (m_pending.empty()) return false;
    event = m_pending.front();
    m_pending.pop_front();
    return true;
}

void TX11Backend::WaitForEvents(std::int64_t timeoutMs) {
    if (!m_pending.empty() || XPending(m_display.get()) > 0) return;
    std::vector<pollfd> fds = {{ConnectionNumber(m_display.get()), POLLIN, 0},
                               {m_wake.Fd(), POLLIN, 0}};
    m_watches.AppendPollFds(fds);
    const int timeout =
        timeoutMs < 0 ? -1 : static_cast<int>(std::min<std::int64_t>(timeoutMs, INT_MAX));
    if (poll(fds.data(), fds.size(), timeout) <= 0) return;
    if (fds[1].revents & POLLIN) m_wake.Drain();
    m_watches.Dispatch(fds, 2);
}

void TX11Backend::WatchFd(int fd, std::function<void()> onReadable) {
    m_watches.Add(fd, std::move(onReadable));
}

void TX11Backend::UnwatchFd(int fd) {
    m_watches.Remove(fd);
}

void TX11Backend::Wake() {
    m_wake.Signal();
}

std::int64_t TX11Backend::NowMs() const {
    return SteadyMs() - m_clockStart;
}

} // namespace qv
