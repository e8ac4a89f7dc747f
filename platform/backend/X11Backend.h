#pragma once
// TX11Backend: forms as native X windows through Xlib. A window's frame buffer lives in an
// MIT-SHM image that the server reads in place; the framework writes to it again once the
// server reports it has read the last put. Without the extension or a shared segment the
// frame is the framework's own memory and goes to the server through plain XPutImage.
// Window-manager conventions: WM_DELETE_WINDOW for close, WM_NORMAL_HINTS for position and
// size limits, _NET_WM_STATE for maximised, WM_STATE/iconify for minimised, _NET_WORKAREA
// for the work area, override-redirect windows for popups. Wake writes an eventfd that is
// polled together with the X connection. Every other call belongs to the main thread.

#include "Backend.h"
#include "FdWatches.h"
#include "X11Handles.h"
#include "X11Input.h"

#include <deque>
#include <map>
#include <memory>

namespace qv {

class TX11TrayShell;

class TX11Backend : public TBackend {
public:
    // Connects to the named display (null: $DISPLAY); null when no server answers or its
    // default visual is not 24-bit true colour.
    static std::unique_ptr<TX11Backend> Open(const char* displayName = nullptr);
    ~TX11Backend() override;

    const char* Name() const override { return "x11"; }

    TNativeWindowId CreateNativeWindow(const TNativeWindowParams& params) override;
    void DestroyNativeWindow(TNativeWindowId window) override;
    void SetWindowBounds(TNativeWindowId window, const TRect& bounds) override;
    void SetWindowVisible(TNativeWindowId window, bool visible) override;
    void SetWindowTitle(TNativeWindowId window, const std::string& title) override;
    void SetWindowState(TNativeWindowId window, TNativeWindowState state) override;
    void SetSizeLimits(TNativeWindowId window, TSize minimum, TSize maximum) override;
    void SetSkipTaskbar(TNativeWindowId window, bool skip) override;
    void GrabPointer(TNativeWindowId window) override;
    TTrayShell& TrayShell() override;
    // The XEmbed shell when it is the one in use, for tests.
    TX11TrayShell* XEmbedTray() const { return m_xembed; }
    TPixelBuffer FrameStorage(TNativeWindowId window, TSize size) override;
    void AwaitFrameIdle(TNativeWindowId window) override;
    void Present(TNativeWindowId window, const TPixelBuffer& frame, const TRect& damaged) override;
    void SetCursorShape(TNativeWindowId window, int cursor) override;
    void SetFocus(TNativeWindowId window) override;

    TRect ScreenBounds() const override;
    TRect WorkArea() const override;
    TPoint CursorPos() const override;

    bool NextEvent(TBackendEvent& event) override;
    void WaitForEvents(std::int64_t timeoutMs) override;
    void Wake() override;
    void WatchFd(int fd, std::function<void()> onReadable) override;
    void UnwatchFd(int fd) override;
    std::int64_t NowMs() const override;

    // Waits until the server has handled every request sent so far.
    void Sync();
    bool UsesSharedMemory() const { return m_shmAvailable; }
    Display* XDisplay() const { return m_display.get(); }
    // True once the window is mapped (viewable) on the server.
    bool IsMapped(TNativeWindowId window) const;

private:
    struct TAtoms {
        Atom wmProtocols, wmDeleteWindow, wmState, netWmState, netWmStateMaxVert, netWmStateMaxHorz,
            netWmStateHidden, netWorkArea, netCurrentDesktop, netWmName, utf8String,
            netWmWindowType, netWmWindowTypePopupMenu, netWmPid, netWmStateSkipTaskbar;
    };
    struct TWindow {
        Window xid{0};
        bool popup{false};
        bool visible{false}; // as the framework last asked
        bool mapped{false};
        bool focusWhenMapped{false};
        bool grabWhenMapped{false}; // GrabPointer asked; the grab needs a viewable window
        bool skipTaskbar{false};
        TRect bounds;
        TNativeWindowState state{TNativeWindowState::Normal};
        TSize minSize, maxSize;
        unsigned long configureSerial{0}; // configure events older than this are stale
        std::unique_ptr<TShmImage> frame; // the frame buffer's memory (FrameStorage)
    };

    explicit TX11Backend(TDisplayPtr display);
    TWindow* Find(TNativeWindowId window);
    const TWindow* Find(TNativeWindowId window) const;
    void InternAtoms();
    void PublishNormalHints(const TWindow& w);
    void PublishPopupType(const TWindow& w);
    void SendNetWmState(const TWindow& w, bool add, Atom first, Atom second);
    void SetInitialNetWmState(const TWindow& w);
    void StartGrab(const TWindow& w);
    TNativeWindowState ReadState(const TWindow& w) const;
    Cursor CursorFor(int cursor);

    // Presenting.
    void PresentPlain(const TWindow& w, const TPixelBuffer& frame, const TRect& area);
    bool AwaitCompletion();
    void ReleaseLostPuts(TWindow& w);
    void MarkCompleted(ShmSeg segment);

    // Events (X11Events.cpp).
    void ReadPendingXEvents();
    void Dispatch(XEvent& event);
    void OnButton(const XButtonEvent& e, bool press);
    void OnMotion(const XMotionEvent& e);
    void OnCrossing(const XCrossingEvent& e, bool enter);
    void OnKey(XKeyEvent& e, bool press);
    void OnFocus(const XFocusChangeEvent& e, bool in);
    void OnConfigure(const XConfigureEvent& e);
    void OnMap(const XMapEvent& e);
    void OnProperty(const XPropertyEvent& e);
    void OnClientMessage(const XClientMessageEvent& e);
    void Push(const TBackendEvent& event);

    TDisplayPtr m_display;
    TX11ErrorTrap m_errorTrap;
    int m_screen{0};
    Window m_root{0};
    Visual* m_visual{nullptr};
    int m_depth{0};
    GC m_gc{nullptr};
    TAtoms m_atoms{};
    bool m_shmAvailable{false};
    int m_shmCompletionType{-1};
    TWakeFd m_wake;
    TFdWatches m_watches;
    std::map<TNativeWindowId, TWindow> m_windows;
    std::map<int, Cursor> m_cursors;
    std::deque<TBackendEvent> m_pending;
    TClickTracker m_clicks;
    TNativeWindowId m_focused{0};
    std::int64_t m_clockStart{0};
    std::unique_ptr<TTrayShell> m_tray;
    TX11TrayShell* m_xembed{nullptr}; // m_tray when it is the XEmbed shell
};

// The X11 backend on $DISPLAY, or null when no display answers.
std::unique_ptr<TBackend> CreateX11Backend();

} // namespace qv
