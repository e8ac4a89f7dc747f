#pragma once
// The framework's window table. Every windowed control, form and hidden message window has
// a handle here and gets its messages through its window procedure. A window procedure can
// be hooked: hooks form a chain (the newest runs first and may pass the message on), and
// each hook can be removed at any time, in any order.
//
// SendMessage runs at once on the calling (main) thread. PostMessage and QueueCall may be
// used from any thread; the application's loop delivers them on the main thread in the
// order they were posted.

#include "Messages.h"

#include <functional>
#include <memory>

namespace qv {

using TWndMethod = std::function<void(TMessage&)>;
// A hook gets the message and the rest of the chain, which it may call or not.
using TWindowHookProc = std::function<void(TMessage& Message, const TWndMethod& Next)>;

// Registers a window procedure and returns its handle (never 0).
HWND RegisterWindowProc(TWndMethod proc);
void UnregisterWindowProc(HWND hwnd);
bool IsWindow(HWND hwnd);

// Hidden message windows, as components use them for timers and callbacks.
HWND AllocateHWnd(TWndMethod proc);
void DeallocateHWnd(HWND hwnd);

// Runs the window's procedure (through its hooks) at once; 0 for unknown windows.
LRESULT SendMessage(HWND hwnd, UINT msg, WPARAM wParam = 0, LPARAM lParam = 0);
LRESULT SendMessage(HWND hwnd, TMessage& message);

// Queues a message for the window; false when the window does not exist. Messages to a
// window that is gone by the time they are delivered are dropped.
bool PostMessage(HWND hwnd, UINT msg, WPARAM wParam = 0, LPARAM lParam = 0);
// Queues a call to run on the main thread, in order with posted messages.
void QueueCall(std::function<void()> call);
// Delivers one queued message or call; false when the queue was empty. Main thread only.
bool DispatchOnePosted();
bool HasPostedMessages();
// Called (from any thread) after something was queued, so that a sleeping loop wakes.
void SetPostWakeup(std::function<void()> wake);

// A hook on a window's procedure, removed when this object goes away (or by Remove).
class TWindowHook {
public:
    TWindowHook() = default;
    TWindowHook(HWND hwnd, TWindowHookProc proc);
    TWindowHook(TWindowHook&& other) noexcept;
    TWindowHook& operator=(TWindowHook&& other) noexcept;
    TWindowHook(const TWindowHook&) = delete;
    TWindowHook& operator=(const TWindowHook&) = delete;
    ~TWindowHook();

    bool Installed() const { return m_id != 0; }
    void Remove();

private:
    HWND m_hwnd{0};
    std::uint64_t m_id{0};
};

} // namespace qv
