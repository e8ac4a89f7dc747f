#pragma once
// HeadlessBackend: windows are frame buffers in memory. Tests inject input as a windowing
// system would deliver it and read what was presented. With the fake clock (the default),
// time stands still until AdvanceClock is called or the loop waits with a timeout, which
// moves the clock to the end of the wait at once: timer tests never sleep.

#include "Backend.h"
#include "FdWatches.h"
#include "TrayShell.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>

namespace qv {

class THeadlessBackend : public TBackend {
public:
    enum class TClockMode { Fake, Real };
    explicit THeadlessBackend(TClockMode mode = TClockMode::Fake);
    ~THeadlessBackend() override;
    THeadlessBackend(const THeadlessBackend&) = delete;
    THeadlessBackend& operator=(const THeadlessBackend&) = delete;

    const char* Name() const override { return "headless"; }

    TNativeWindowId CreateNativeWindow(const TNativeWindowParams& params) override;
    void DestroyNativeWindow(TNativeWindowId window) override;
    void SetWindowBounds(TNativeWindowId window, const TRect& bounds) override;
    void SetWindowVisible(TNativeWindowId window, bool visible) override;
    void SetWindowTitle(TNativeWindowId window, const std::string& title) override;
    void SetWindowState(TNativeWindowId window, TNativeWindowState state) override;
    void SetSizeLimits(TNativeWindowId window, TSize minimum, TSize maximum) override;
    void SetSkipTaskbar(TNativeWindowId window, bool skip) override;
    void GrabPointer(TNativeWindowId window) override;
    TTrayShell& TrayShell() override { return m_tray; }
    THeadlessTrayShell& FakeTray() { return m_tray; }
    TPixelBuffer FrameStorage(TNativeWindowId window, TSize size) override;
    void AwaitFrameIdle(TNativeWindowId) override {}
    void Present(TNativeWindowId window, const TPixelBuffer& frame, const TRect& damaged) override;
    void SetCursorShape(TNativeWindowId window, int cursor) override;
    void SetFocus(TNativeWindowId window) override;

    TRect ScreenBounds() const override { return m_screen; }
    TRect WorkArea() const override { return m_workArea; }
    TPoint CursorPos() const override;

    bool NextEvent(TBackendEvent& event) override;
    void WaitForEvents(std::int64_t timeoutMs) override;
    void Wake() override;
    void WatchFd(int fd, std::function<void()> onReadable) override;
    void UnwatchFd(int fd) override;
    std::int64_t NowMs() const override;

    // Test controls.
    void AdvanceClock(std::int64_t ms);
    void SetScreen(const TRect& screen, const TRect& workArea);
    void Inject(const TBackendEvent& event);
    // Mouse input in client coordinates of `window`; also moves the cursor.
    void MouseMove(TNativeWindowId window, TPoint pos, unsigned shift = 0);
    void MouseDown(TNativeWindowId window, TPoint pos, TMouseButton button = TMouseButton::Left,
                   unsigned shift = 0, bool doubleClick = false);
    void MouseUp(TNativeWindowId window, TPoint pos, TMouseButton button = TMouseButton::Left,
                 unsigned shift = 0);
    void KeyDown(TNativeWindowId window, unsigned key, unsigned shift = 0);
    void KeyUp(TNativeWindowId window, unsigned key, unsigned shift = 0);
    void Char(TNativeWindowId window, unsigned charCode, unsigned shift = 0);
    // Key down, the character it types (if any) and key up.
    void TypeKey(TNativeWindowId window, unsigned key, unsigned charCode = 0, unsigned shift = 0);

    struct TWindowRecord {
        TNativeWindowParams params;
        bool visible{false};
        TNativeWindowState state{TNativeWindowState::Normal};
        TSize minSize, maxSize;
        int cursor{0};
        TPixelBuffer presented; // what the "screen" shows of this window
        TPixelBuffer storage;   // the memory of the window's frame buffer (FrameStorage)
        int presentCount{0};
        bool grabbing{false}; // GrabPointer while shown
    };
    // The window's record; EInvalidOperation for unknown windows.
    const TWindowRecord& Window(TNativeWindowId window) const;
    bool HasWindow(TNativeWindowId window) const;
    TNativeWindowId FocusedWindow() const { return m_focused; }

private:
    TWindowRecord& Record(TNativeWindowId window);
    // The wait while descriptors are watched: a poll on them and the wake-up descriptor, in
    // real time also with the fake clock (which then moves on by the time waited).
    void PollWatched(std::int64_t timeoutMs);

    TClockMode m_mode;
    mutable std::mutex m_lock;
    std::condition_variable m_wakeup;
    bool m_woken{false};
    std::deque<TBackendEvent> m_events;
    std::map<TNativeWindowId, TWindowRecord> m_windows;
    TNativeWindowId m_nextId{1};
    TNativeWindowId m_focused{0};
    TPoint m_cursor;
    std::int64_t m_fakeNow{0};
    TFdWatches m_watches;
    int m_wakeFd{-1}; // an eventfd written by Wake, polled while descriptors are watched
    std::int64_t m_realStart{0};
    TRect m_screen{0, 0, 1280, 1024};
    TRect m_workArea{0, 0, 1280, 1000};
    THeadlessTrayShell m_tray;
};

} // namespace qv
