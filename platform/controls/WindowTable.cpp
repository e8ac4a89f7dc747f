#include "WindowTable.h"

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
#include <utility>
#include <variant>
#include <vector>

namespace qv {

namespace {

struct THook {
    std::uint64_t id;
    TWindowHookProc proc;
};

struct TWindow {
    TWndMethod proc;
    // Oldest first; shared so that a chain being run survives hooks removed meanwhile.
    std::vector<std::shared_ptr<const THook>> hooks;
};

// The window table (main thread only).
struct TWindowTable {
    std::map<HWND, TWindow> windows;
    HWND nextHandle{0x1000};
    std::uint64_t nextHookId{1};
};

TWindowTable& Table() {
    static TWindowTable table;
    return table;
}

struct TPosted {
    HWND hwnd;
    TMessage message;
};
using TQueued = std::variant<TPosted, std::function<void()>>;

// The posted-message queue, shared with other threads.
struct TPostQueue {
    std::mutex lock;
    std::deque<TQueued> items;
    std::function<void()> wake;
};

TPostQueue& Queue() {
    static TPostQueue queue;
    return queue;
}

void Enqueue(TQueued item) {
    std::function<void()> wake;
    {
        auto& q = Queue();
        std::lock_guard guard(q.lock);
        q.items.push_back(std::move(item));
        wake = q.wake;
    }
    if (wake) wake();
}

// Runs the hooks from index `index` down to the window's own procedure.
void RunChain(const std::vector<std::shared_ptr<const THook>>& hooks, std::size_t index,
              const TWndMethod& base, TMessage& message) {
    if (index == 0) {
        if (base) base(message);
        return;
    }
    const THook& hook = *hooks[index - 1];
    hook.proc(message, [&](TMessage& m) { RunChain(hooks, index - 1, base, m); });
}

} // namespace

HWND RegisterWindowProc(TWndMethod proc) {
    auto& t = Table();
    const HWND hwnd = t.nextHandle++;
    t.windows[hwnd] = TWindow{std::move(proc), {}};
    return hwnd;
}

void UnregisterWindowProc(HWND hwnd) {
    Table().windows.erase(hwnd);
}

bool IsWindow(HWND hwnd) {
    return Table().windows.count(hwnd) != 0;
}

HWND AllocateHWnd(TWndMethod proc) {
    return RegisterWindowProc(std::move(proc));
}
void DeallocateHWnd(HWND hwnd) {
    UnregisterWindowProc(hwnd);
}

LRESULT SendMessage(HWND hwnd, TMessage& message) {
    auto& t = Table();
    auto it = t.windows.find(hwnd);
    if (it == t.windows.end()) return 0;
    // Copies: the procedure may unregister the window or change its hooks.
    const auto hooks = it->second.hooks;
    const TWndMethod base = it->second.proc;
    RunChain(hooks, hooks.size(), base, message);
    return message.Result;
}

LRESULT SendMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    TMessage message{msg, wParam, lParam, 0};
    return SendMessage(hwnd, message);
}

bool PostMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    if (hwnd == 0) return false;
    Enqueue(TPosted{hwnd, TMessage{msg, wParam, lParam, 0}});
    return true;
}

void QueueCall(std::function<void()> call) {
    Enqueue(std::move(call));
}

bool DispatchOnePosted() {
    TQueued item;
    {
        auto& q = Queue();
        std::lock_guard guard(q.lock);
        if (q.items.empty()) return false;
        item = std::move(q.items.front());
        q.items.pop_front();
    }
    if (auto* posted = std::get_if<TPosted>(&item)) {
        if (IsWindow(posted->hwnd)) SendMessage(posted->hwnd, posted->message);
    } else {
        std::get<std::function<void()>>(item)();
    }
    return true;
}

bool HasPostedMessages() {
    auto& q = Queue();
    std::lock_guard guard(q.lock);
    return !q.items.empty();
}

void SetPostWakeup(std::function<void()> wake) {
    auto& q = Queue();
    std::lock_guard guard(q.lock);
    q.wake = std::move(wake);
}

TWindowHook::TWindowHook(HWND hwnd, TWindowHookProc proc) {
    auto& t = Table();
    auto it = t.windows.find(hwnd);
    if (it == t.windows.end()) return;
    m_hwnd = hwnd;
    m_id = t.nextHookId++;
    it->second.hooks.push_back(std::make_shared<const THook>(THook{m_id, std::move(proc)}));
}

TWindowHook::TWindowHook(TWindowHook&& other) noexcept
    : m_hwnd(std::exchange(other.m_hwnd, 0)), m_id(std::exchange(other.m_id, 0)) {}

TWindowHook& TWindowHook::operator=(TWindowHook&& other) noexcept {
    if (this != &other) {
        Remove();
        m_hwnd = std::exchange(other.m_hwnd, 0);
        m_id = std::exchange(other.m_id, 0);
    }
    return *this;
}

TWindowHook::~TWindowHook() {
    Remove();
}

void TWindowHook::Remove() {
    if (!m_id) return;
    auto& t = Table();
    auto it = t.windows.find(m_hwnd);
    if (it != t.windows.end())
        std::erase_if(it->second.hooks, [id = m_id](const auto& h) { return h->id == id; });
    m_id = 0;
    m_hwnd = 0;
}

} // namespace qv
