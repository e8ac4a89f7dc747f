#include "HeadlessBackend.h"

#include "platform/core/Exceptions.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <sys/eventfd.h>
#include <unistd.h>

namespace qv {

namespace {
std::int64_t SteadyMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}
} // namespace

THeadlessBackend::THeadlessBackend(TClockMode mode)
    : m_mode(mode), m_wakeFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), m_realStart(SteadyMs()) {}

THeadlessBackend::~THeadlessBackend() {
    if (m_wakeFd >= 0) close(m_wakeFd);
}

THeadlessBackend::TWindowRecord& THeadlessBackend::Record(TNativeWindowId window) {
    auto it = m_windows.find(window);
    if (it == m_windows.end())
        throw EInvalidOperation("Unknown native window " + std::to_string(window));
    return it->second;
}

const THeadlessBackend::TWindowRecord& THeadlessBackend::Window(TNativeWindowId window) const {
    std::lock_guard guard(m_lock);
    auto it = m_windows.find(window);
    if (it == m_windows.end())
        throw EInvalidOperation("Unknown native window " + std::to_string(window));
    return it->second;
}

bool THeadlessBackend::HasWindow(TNativeWindowId window) const {
    std::lock_guard guard(m_lock);
    return m_windows.count(window) != 0;
}

TNativeWindowId THeadlessBackend::CreateNativeWindow(const TNativeWindowParams& params) {
    std::lock_guard guard(m_lock);
    const TNativeWindowId id = m_nextId++;
    TWindowRecord record;
    record.params = params;
    record.presented = TPixelBuffer(params.bounds.Width(), params.bounds.Height(), 0);
    m_windows.emplace(id, std::move(record));
    return id;
}

void THeadlessBackend::DestroyNativeWindow(TNativeWindowId window) {
    std::lock_guard guard(m_lock);
    m_windows.erase(window);
    if (m_focused == window) m_focused = 0;
}

void THeadlessBackend::SetWindowBounds(TNativeWindowId window, const TRect& bounds) {
    std::lock_guard guard(m_lock);
    TWindowRecord& r = Record(window);
    r.params.bounds = bounds;
    r.presented.Resize(bounds.Width(), bounds.Height(), 0);
}

void THeadlessBackend::SetWindowVisible(TNativeWindowId window, bool visible) {
    std::lock_guard guard(m_lock);
    TWindowRecord& r = Record(window);
    r.visible = visible;
    if (!visible) r.grabbing = false;
}

void THeadlessBackend::GrabPointer(TNativeWindowId window) {
    std::lock_guard guard(m_lock);
    Record(window).grabbing = true;
}

void THeadlessBackend::SetWindowTitle(TNativeWindowId window, const std::string& title) {
    std::lock_guard guard(m_lock);
    Record(window).params.title = title;
}

void THeadlessBackend::SetWindowState(TNativeWindowId window, TNativeWindowState state) {
    std::lock_guard guard(m_lock);
    Record(window).state = state;
}

void THeadlessBackend::SetSizeLimits(TNativeWindowId window, TSize minimum, TSize maximum) {
    std::lock_guard guard(m_lock);
    TWindowRecord& r = Record(window);
    r.minSize = minimum;
    r.maxSize = maximum;
}

void THeadlessBackend::SetSkipTaskbar(TNativeWindowId window, bool skip) {
    std::lock_guard guard(m_lock);
    Record(window).params.skipTaskbar = skip;
}

// The frame buffer lives in the window record, as a windowing system's shared memory would;
// presenting copies the damaged part to what the "screen" shows.
TPixelBuffer THeadlessBackend::FrameStorage(TNativeWindowId window, TSize size) {
    std::lock_guard guard(m_lock);
    TPixelBuffer& storage = Record(window).storage;
    if (storage.Width() != size.cx || storage.Height() != size.cy)
        storage = TPixelBuffer(size.cx, size.cy);
    if (storage.IsEmpty()) return {};
    return TPixelBuffer::View(storage.Row(0), storage.Width(), storage.Height(), storage.Stride());
}

void THeadlessBackend::Present(TNativeWindowId window, const TPixelBuffer& frame,
                               const TRect& damaged) {
    std::lock_guard guard(m_lock);
    TWindowRecord& r = Record(window);
    if (r.presented.Width() != frame.Width() || r.presented.Height() != frame.Height())
        r.presented.Resize(frame.Width(), frame.Height(), 0);
    CopyPixels(frame, {0, 0}, r.presented, {0, 0}, Intersect(damaged, frame.Bounds()));
    ++r.presentCount;
}

void THeadlessBackend::SetCursorShape(TNativeWindowId window, int cursor) {
    std::lock_guard guard(m_lock);
    Record(window).cursor = cursor;
}

void THeadlessBackend::SetFocus(TNativeWindowId window) {
    std::lock_guard guard(m_lock);
    m_focused = window;
}

TPoint THeadlessBackend::CursorPos() const {
    std::lock_guard guard(m_lock);
    return m_cursor;
}

bool THeadlessBackend::NextEvent(TBackendEvent& event) {
    std::lock_guard guard(m_lock);
    if (m_events.empty()) return false;
    event = m_events.front();
    m_events.pop_front();
    return true;
}

void THeadlessBackend::WaitForEvents(std::int64_t timeoutMs) {
    if (!m_watches.Empty()) {
        PollWatched(timeoutMs);
        return;
    }
    std::unique_lock guard(m_lock);
    const auto ready = [&] { return m_woken || !m_events.empty(); };
    if (!ready()) {
        if (m_mode == TClockMode::Fake && timeoutMs >= 0) {
            m_fakeNow += timeoutMs; // nothing to wait for: time passes at once
        } else if (timeoutMs < 0) {
            m_wakeup.wait(guard, ready);
        } else {
            m_wakeup.wait_for(guard, std::chrono::milliseconds(timeoutMs), ready);
        }
    }
    m_woken = false;
}

void THeadlessBackend::Wake() {
    {
        std::lock_guard guard(m_lock);
        m_woken = true;
    }
    m_wakeup.notify_all();
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(m_wakeFd, &one, sizeof one);
}

void THeadlessBackend::PollWatched(std::int64_t timeoutMs) {
    {
        std::lock_guard guard(m_lock);
        if (m_woken || !m_events.empty()) {
            m_woken = false;
            return;
        }
    }
    std::vector<pollfd> fds{{m_wakeFd, POLLIN, 0}};
    m_watches.AppendPollFds(fds);
    const int timeout =
        timeoutMs < 0 ? -1 : static_cast<int>(std::min<std::int64_t>(timeoutMs, INT_MAX));
    const std::int64_t start = SteadyMs();
    const int ready = poll(fds.data(), fds.size(), timeout);
    {
        std::lock_guard guard(m_lock);
        if (m_mode == TClockMode::Fake)
            m_fakeNow += ready == 0 ? std::max<std::int64_t>(timeoutMs, 0) : SteadyMs() - start;
        m_woken = false;
    }
    if (fds[0].revents & POLLIN) {
        std::uint64_t count = 0;
        [[maybe_unused]] const auto got = read(m_wakeFd, &count, sizeof count);
    }
    if (ready > 0) m_watches.Dispatch(fds, 1);
}

void THeadlessBackend::WatchFd(int fd, std::function<void()> onReadable) {
    m_watches.Add(fd, std::move(onReadable));
}

void THeadlessBackend::UnwatchFd(int fd) {
    m_watches.Remove(fd);
}

std::int64_t THeadlessBackend::NowMs() const {
    std::lock_guard guard(m_lock);
    return m_mode == TClockMode::Fake ? m_fakeNow : SteadyMs() - m_realStart;
}

void THeadlessBackend::AdvanceClock(std::int64_t ms) {
    std::lock_guard guard(m_lock);
    m_fakeNow += ms;
}

void THeadlessBackend::SetScreen(const TRect& screen, const TRect& workArea) {
    std::lock_guard guard(m_lock);
    m_screen = screen;
    m_workArea = workArea;
}

void THeadlessBackend::Inject(const TBackendEvent& event) {
    {
        std::lock_guard guard(m_lock);
        if (event.kind == TBackendEvent::Kind::MouseMove ||
            event.kind == TBackendEvent::Kind::MouseDown ||
            event.kind == TBackendEvent::Kind::MouseUp) {
            auto it = m_windows.find(event.window);
            if (it != m_windows.end())
                m_cursor = {it->second.params.bounds.left + event.pos.x,
                            it->second.params.bounds.top + event.pos.y};
        }
        m_events.push_back(event);
    }
    m_wakeup.notify_all();
}

namespace {
TBackendEvent InputEvent(TBackendEvent::Kind kind, TNativeWindowId window, unsigned shift) {
    TBackendEvent e;
    e.kind = kind;
    e.window = window;
    e.shift = shift;
    return e;
}
} // namespace

void THeadlessBackend::MouseMove(TNativeWindowId window, TPoint pos, unsigned shift) {
    TBackendEvent e = InputEvent(TBackendEvent::Kind::MouseMove, window, shift);
    e.pos = pos;
    Inject(e);
}

void THeadlessBackend::MouseDown(TNativeWindowId window, TPoint pos, TMouseButton button,
                                 unsigned shift, bool doubleClick) {
    TBackendEvent e = InputEvent(TBackendEvent::Kind::MouseDown, window, shift);
    e.pos = pos;
    e.button = button;
    e.doubleClick = doubleClick;
    Inject(e);
}

void THeadlessBackend::MouseUp(TNativeWindowId window, TPoint pos, TMouseButton button,
                               unsigned shift) {
    TBackendEvent e = InputEvent(TBackendEvent::Kind::MouseUp, window, shift);
    e.pos = pos;
    e.button = button;
    Inject(e);
}

void THeadlessBackend::KeyDown(TNativeWindowId window, unsigned key, unsigned shift) {
    TBackendEvent e = InputEvent(TBackendEvent::Kind::KeyDown, window, shift);
    e.key = key;
    Inject(e);
}

void THeadlessBackend::KeyUp(TNativeWindowId window, unsigned key, unsigned shift) {
    TBackendEvent e = InputEvent(TBackendEvent::Kind::KeyUp, window, shift);
    e.key = key;
    Inject(e);
}

void THeadlessBackend::Char(TNativeWindowId window, unsigned charCode, unsigned shift) {
    TBackendEvent e = InputEvent(TBackendEvent::Kind::Char, window, shift);
    e.charCode = charCode;
    Inject(e);
}

void THeadlessBackend::TypeKey(TNativeWindowId window, unsigned key, unsigned charCode,
                               unsigned shift) {
    KeyDown(window, key, shift);
    if (charCode) Char(window, charCode, shift);
    KeyUp(window, key, shift);
}

} // namespace qv
