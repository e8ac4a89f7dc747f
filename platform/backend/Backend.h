#pragma once
// The seam between the framework and a windowing system. Only top-level windows (forms,
// popup menus, hint windows) are native; everything inside them is drawn by the framework
// into a frame buffer per window, and the backend presents the damaged parts.
//
// Two implementations: HeadlessBackend (windows are frame buffers in memory; input is
// injected; a fake clock by default) and the X11 backend.

#include "platform/graphics/PixelBuffer.h"
#include "platform/graphics/Types.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace qv {

class TTrayShell;

using TNativeWindowId = std::uint32_t;

enum class TNativeWindowState { Normal, Minimized, Maximized };

struct TNativeWindowParams {
    std::string title;
    TRect bounds;            // screen coordinates of the client area
    bool popup{false};       // menus and hints: no decoration, not managed
    bool skipTaskbar{false}; // no taskbar button of its own
};

enum class TMouseButton { Left, Right, Middle };

// Key and button state carried with input events.
enum TInputShift : unsigned {
    isShift = 1,
    isCtrl = 2,
    isAlt = 4,
    isLeft = 8,
    isRight = 16,
    isMiddle = 32,
};

struct TBackendEvent {
    enum class Kind {
        MouseDown,
        MouseUp,
        MouseMove,
        MouseWheel,
        MouseLeaveWindow,
        KeyDown,
        KeyUp,
        Char,
        FocusIn,
        FocusOut,
        Close,
        Resized,
        Moved,
        StateChanged,
        Expose,
    };
    Kind kind{Kind::MouseMove};
    TNativeWindowId window{0};
    TPoint pos; // client coordinates (mouse), new origin (Moved)
    TMouseButton button{TMouseButton::Left};
    bool doubleClick{false};
    int wheelDelta{0};    // multiples of 120, positive away from the user
    unsigned key{0};      // virtual-key code (KeyDown, KeyUp)
    unsigned charCode{0}; // the character (Char), a byte of the active encoding
    unsigned shift{0};    // TInputShift flags
    TSize size;           // Resized
    TNativeWindowState state{TNativeWindowState::Normal};
};

class TBackend {
public:
    virtual ~TBackend() = default;
    virtual const char* Name() const = 0;

    virtual TNativeWindowId CreateNativeWindow(const TNativeWindowParams& params) = 0;
    virtual void DestroyNativeWindow(TNativeWindowId window) = 0;
    virtual void SetWindowBounds(TNativeWindowId window, const TRect& bounds) = 0;
    virtual void SetWindowVisible(TNativeWindowId window, bool visible) = 0;
    virtual void SetWindowTitle(TNativeWindowId window, const std::string& title) = 0;
    virtual void SetWindowState(TNativeWindowId window, TNativeWindowState state) = 0;
    // Size limits of the client area; 0 means no limit.
    virtual void SetSizeLimits(TNativeWindowId window, TSize minimum, TSize maximum) = 0;
    // Whether the window has a button of its own on the taskbar (true: it has none).
    virtual void SetSkipTaskbar(TNativeWindowId window, bool skip) = 0;
    // Every press on the screen goes to the window while it is shown (the pointer grab of the
    // notification area's menus): a press outside the application's windows arrives as the
    // window's, outside its client area. The grab ends when the window is hidden.
    virtual void GrabPointer(TNativeWindowId window) = 0;
    // The notification-area shell (platform/backend/TrayShell.h), made on first use.
    virtual TTrayShell& TrayShell() = 0;
    // The memory the window's frame buffer of `size` pixels should live in: a view
    // (TPixelBuffer::View) of storage the backend presents from without copying, valid
    // until the next FrameStorage call for the window or its destruction. Empty when the
    // backend has none; the caller then keeps a buffer of its own.
    virtual TPixelBuffer FrameStorage(TNativeWindowId window, TSize size) = 0;
    // Returns once the window's frame storage may be written: the windowing system has
    // read everything presented from it.
    virtual void AwaitFrameIdle(TNativeWindowId window) = 0;
    // Shows `damaged` (frame coordinates) of the window's frame buffer, which is the
    // window's frame storage or a buffer of the caller's.
    virtual void Present(TNativeWindowId window, const TPixelBuffer& frame,
                         const TRect& damaged) = 0;
    virtual void SetCursorShape(TNativeWindowId window, int cursor) = 0;
    virtual void SetFocus(TNativeWindowId window) = 0;

    virtual TRect ScreenBounds() const = 0;
    virtual TRect WorkArea() const = 0;
    virtual TPoint CursorPos() const = 0;

    // The next pending input event, without waiting.
    virtual bool NextEvent(TBackendEvent& event) = 0;
    // Waits until an event arrives, Wake is called, or `timeoutMs` passes (-1: no limit).
    virtual void WaitForEvents(std::int64_t timeoutMs) = 0;
    // Ends a wait; safe from any thread.
    virtual void Wake() = 0;
    // Watches a descriptor (main thread only): WaitForEvents also ends once it is readable,
    // after running `onReadable`, which usually reads it or removes the watch.
    virtual void WatchFd(int fd, std::function<void()> onReadable) = 0;
    virtual void UnwatchFd(int fd) = 0;
    // Milliseconds of the backend's monotonic clock (timers run on it).
    virtual std::int64_t NowMs() const = 0;
};

// Picks the backend: headless when QV_BACKEND=headless or no X display answers, X11
// otherwise (when built with X11 support).
std::unique_ptr<TBackend> CreateDefaultBackend();

} // namespace qv
