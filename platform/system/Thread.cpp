#include "Thread.h"

#include "platform/core/Exceptions.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <deque>

namespace qv {

namespace {

std::thread::id& MainThreadId() {
    static std::thread::id id = std::this_thread::get_id();
    return id;
}
// Fixed while the process starts, so that the first caller need not be the main thread.
const bool g_mainThreadKnown = (MainThreadId(), true);

// A call handed to the main thread. `done` is set when it ran or was cancelled.
struct TSyncRequest {
    std::function<void()> method;
    bool waited{false};
    bool done{false};
    bool cancelled{false};
    std::exception_ptr error;
};

// The calls waiting for the main thread, and the wake-up of its loop.
struct TSyncQueue {
    std::mutex lock;
    std::condition_variable finished;
    std::deque<std::shared_ptr<TSyncRequest>> pending;
    std::function<void()> wake;
};

TSyncQueue& SyncQueue() {
    static TSyncQueue queue;
    return queue;
}

void Enqueue(const std::shared_ptr<TSyncRequest>& request) {
    std::function<void()> wake;
    {
        auto& q = SyncQueue();
        std::lock_guard guard(q.lock);
        q.pending.push_back(request);
        wake = q.wake;
    }
    if (wake) wake();
}

int NiceOf(TThreadPriority p) {
    switch (p) {
    case TThreadPriority::tpIdle:
        return 19;
    case TThreadPriority::tpLowest:
        return 10;
    case TThreadPriority::tpLower:
        return 5;
    case TThreadPriority::tpNormal:
        return 0;
    case TThreadPriority::tpHigher:
        return -5;
    case TThreadPriority::tpHighest:
        return -10;
    case TThreadPriority::tpTimeCritical:
        return -20;
    }
    return 0;
}

} // namespace

struct TThread::TState {
    mutable std::mutex lock;
    std::condition_variable changed;
    bool started{false};
    bool finished{false};
    bool terminated{false};
    bool destroying{false}; // the object is going away: no more calls to the main thread
    int suspendCount{0};
    int returnValue{0};
    TThreadPriority priority{TThreadPriority::tpNormal};
    pid_t tid{0};
    std::exception_ptr fatal;
    std::shared_ptr<TSyncRequest> waitingIn; // the Synchronize call the thread waits in
};

TThread::TThread(bool CreateSuspended) : m_state(std::make_shared<TState>()) {
    m_state->suspendCount = CreateSuspended ? 1 : 0;
}

TThread::~TThread() {
    StopAndJoin();
}

void TThread::StopAndJoin() {
    {
        std::lock_guard guard(m_state->lock);
        m_state->terminated = true;
        m_state->destroying = true;
        m_state->suspendCount = 0;
        if (auto request = m_state->waitingIn) {
            std::lock_guard queueGuard(SyncQueue().lock);
            if (!request->done) {
                request->cancelled = true;
                request->done = true;
            }
        }
    }
    m_state->changed.notify_all();
    SyncQueue().finished.notify_all();
    if (m_thread.joinable()) m_thread.join();
}

void TThread::Start() {
    std::unique_lock guard(m_state->lock);
    if (m_state->started) {
        guard.unlock();
        Resume();
        return;
    }
    m_state->started = true;
    m_state->suspendCount = 0;
    m_thread = std::thread([this] { Run(); });
}

void TThread::Run() {
    {
        std::lock_guard guard(m_state->lock);
        m_state->tid = static_cast<pid_t>(::syscall(SYS_gettid));
    }
    ApplyPriority();
    try {
        CheckSuspended();
        if (!Terminated()) Execute();
    } catch (...) {
        std::lock_guard guard(m_state->lock);
        m_state->fatal = std::current_exception();
    }
    if (OnTerminate) {
        // The handler runs on the main thread; it must not outlive this object, so the
        // thread waits for it (the destructor cancels it if the object goes first).
        try {
            Synchronize([this] { OnTerminate(nullptr); });
        } catch (...) {
        }
    }
    {
        std::lock_guard guard(m_state->lock);
        m_state->finished = true;
    }
    m_state->changed.notify_all();
}

void TThread::Suspend() {
    {
        std::lock_guard guard(m_state->lock);
        ++m_state->suspendCount;
    }
    m_state->changed.notify_all();
}

void TThread::Resume() {
    bool startNow = false;
    {
        std::lock_guard guard(m_state->lock);
        if (m_state->suspendCount > 0) --m_state->suspendCount;
        startNow = !m_state->started && m_state->suspendCount == 0;
    }
    if (startNow) {
        Start();
        return;
    }
    m_state->changed.notify_all();
}

bool TThread::Suspended() const {
    std::lock_guard guard(m_state->lock);
    return m_state->suspendCount > 0;
}

void TThread::Terminate() {
    {
        std::lock_guard guard(m_state->lock);
        m_state->terminated = true;
    }
    m_state->changed.notify_all();
}

bool TThread::Terminated() const {
    std::lock_guard guard(m_state->lock);
    return m_state->terminated;
}

bool TThread::Finished() const {
    std::lock_guard guard(m_state->lock);
    return m_state->finished;
}

int TThread::WaitFor() {
    if (std::this_thread::get_id() == ThreadID()) throw EThread("A thread cannot wait for itself");
    {
        std::unique_lock guard(m_state->lock);
        if (!m_state->started) throw EThread("Cannot wait for a thread that was never started");
    }
    for (;;) {
        {
            std::unique_lock guard(m_state->lock);
            if (m_state->finished) break;
            if (!IsMainThread()) {
                m_state->changed.wait(guard, [&] { return m_state->finished; });
                break;
            }
            m_state->changed.wait_for(guard, std::chrono::milliseconds(1),
                                      [&] { return m_state->finished; });
            if (m_state->finished) break;
        }
        CheckSynchronize(); // the worker may be waiting for the main thread
    }
    if (m_thread.joinable()) m_thread.join();
    return ReturnValue();
}

TThreadPriority TThread::Priority() const {
    std::lock_guard guard(m_state->lock);
    return m_state->priority;
}

void TThread::SetPriority(TThreadPriority value) {
    {
        std::lock_guard guard(m_state->lock);
        m_state->priority = value;
    }
    ApplyPriority();
}

void TThread::ApplyPriority() {
    pid_t tid;
    TThreadPriority priority;
    {
        std::lock_guard guard(m_state->lock);
        tid = m_state->tid;
        priority = m_state->priority;
    }
    if (tid == 0) return;
    // Raising a priority needs privileges; without them the value is only kept.
    (void)::setpriority(PRIO_PROCESS, static_cast<id_t>(tid), NiceOf(priority));
}

std::exception_ptr TThread::FatalException() const {
    std::lock_guard guard(m_state->lock);
    return m_state->fatal;
}

int TThread::ReturnValue() const {
    std::lock_guard guard(m_state->lock);
    return m_state->returnValue;
}

void TThread::SetReturnValue(int value) {
    std::lock_guard guard(m_state->lock);
    m_state->returnValue = value;
}

std::thread::id TThread::ThreadID() const {
    return m_thread.get_id();
}

void TThread::CheckSuspended() {
    std::unique_lock guard(m_state->lock);
    m_state->changed.wait(guard, [&] { return m_state->suspendCount == 0 || m_state->terminated; });
}

bool TThread::Sleep(unsigned ms) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    bool fullTime;
    {
        std::unique_lock guard(m_state->lock);
        fullTime =
            !m_state->changed.wait_until(guard, deadline, [&] { return m_state->terminated; });
    }
    CheckSuspended();
    return fullTime && !Terminated();
}

void TThread::Synchronize(TThread* thread, const std::function<void()>& method) {
    if (IsMainThread()) {
        method();
        return;
    }
    if (thread) thread->CheckSuspended();
    auto request = std::make_shared<TSyncRequest>();
    request->method = method;
    request->waited = true;
    if (thread) {
        std::lock_guard guard(thread->m_state->lock);
        if (thread->m_state->destroying) return;
        thread->m_state->waitingIn = request;
    }
    Enqueue(request);
    auto& q = SyncQueue();
    {
        std::unique_lock guard(q.lock);
        q.finished.wait(guard, [&] { return request->done; });
    }
    if (thread) {
        std::lock_guard guard(thread->m_state->lock);
        thread->m_state->waitingIn.reset();
    }
    // The exception leaves the request under the lock: whichever thread frees the request
    // last, the exception object is freed on this thread, which uses it.
    std::exception_ptr error;
    {
        std::lock_guard guard(q.lock);
        error = std::move(request->error);
    }
    if (error) std::rethrow_exception(error);
}

void TThread::Queue(TThread* thread, std::function<void()> method) {
    if (thread) thread->CheckSuspended();
    auto request = std::make_shared<TSyncRequest>();
    request->method = std::move(method);
    Enqueue(request);
}

bool TThread::IsMainThread() {
    return std::this_thread::get_id() == MainThreadId();
}

void TThread::SetMainThread(std::thread::id id) {
    MainThreadId() = id;
}

bool CheckSynchronize() {
    auto& q = SyncQueue();
    bool ran = false;
    for (;;) {
        std::shared_ptr<TSyncRequest> request;
        {
            std::lock_guard guard(q.lock);
            while (!q.pending.empty() && !request) {
                request = q.pending.front();
                q.pending.pop_front();
                if (request->cancelled) request.reset();
            }
        }
        if (!request) return ran;
        ran = true;
        std::exception_ptr error;
        try {
            request->method();
        } catch (...) {
            error = std::current_exception();
        }
        if (error && !request->waited) {
            {
                std::lock_guard guard(q.lock);
                request->done = true;
            }
            std::rethrow_exception(error);
        }
        {
            // The worker takes over the only reference to the exception.
            std::lock_guard guard(q.lock);
            request->error = std::move(error);
            request->done = true;
        }
        q.finished.notify_all();
    }
}

void SetSynchronizeWakeup(std::function<void()> wake) {
    auto& q = SyncQueue();
    std::lock_guard guard(q.lock);
    q.wake = std::move(wake);
}

void Sleep(unsigned milliseconds) {
    if (milliseconds == 0) {
        std::this_thread::yield();
        return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

} // namespace qv
