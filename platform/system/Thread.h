#pragma once
// TThread: a worker thread with the classic interface. Derive, override Execute, create it
// and call Start (or create it suspended and Resume it). Suspend and Resume nest; a thread
// suspended by another one stops at its next suspension point (Sleep, Synchronize, Queue or
// CheckSuspended) and continues there when resumed. Synchronize runs a call on the main
// thread and waits for it; an exception the call raises is raised again in the worker.
// Queue hands a call to the main thread without waiting. The main thread runs both from
// its message loop (CheckSynchronize); while it waits in WaitFor it runs them too.

#include "platform/core/Object.h"
#include "platform/core/TypeInfo.h"

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace qv {

enum class TThreadPriority {
    tpIdle,
    tpLowest,
    tpLower,
    tpNormal,
    tpHigher,
    tpHighest,
    tpTimeCritical
};
QV_ENUM_TYPE(TThreadPriority, "tpIdle", "tpLowest", "tpLower", "tpNormal", "tpHigher", "tpHighest",
             "tpTimeCritical")

class TThread {
public:
    explicit TThread(bool CreateSuspended = true);
    TThread(const TThread&) = delete;
    TThread& operator=(const TThread&) = delete;
    // Stops the thread (see StopAndJoin). A derived class whose Execute uses its own
    // members calls StopAndJoin in its destructor, before those members go.
    virtual ~TThread();

    // Starts a thread that was not started yet; the same as Resume for a suspended one.
    void Start();
    void Suspend();
    void Resume();
    bool Suspended() const;

    void Terminate();
    bool Terminated() const;
    bool Finished() const;
    // Waits for the end of the thread and returns ReturnValue.
    int WaitFor();

    TThreadPriority Priority() const;
    // Applied to the running thread where the system permits; kept in any case.
    void SetPriority(TThreadPriority value);

    std::exception_ptr FatalException() const;
    int ReturnValue() const;
    std::thread::id ThreadID() const;

    // Runs on the main thread after Execute ends (through the message loop).
    TNotifyEvent OnTerminate;

    // Runs `method` on the main thread and waits; from the main thread it runs at once.
    static void Synchronize(TThread* thread, const std::function<void()>& method);
    // Hands `method` to the main thread without waiting.
    static void Queue(TThread* thread, std::function<void()> method);

    static bool IsMainThread();
    // The thread that runs the message loop (the one that started the process by default).
    static void SetMainThread(std::thread::id id);

protected:
    virtual void Execute() = 0;
    void Synchronize(const std::function<void()>& method) { Synchronize(this, method); }
    void Queue(std::function<void()> method) { Queue(this, std::move(method)); }
    // Sleeps up to `ms` milliseconds, ends early when the thread is terminated, then stops
    // while suspended. True when the whole time passed without termination.
    bool Sleep(unsigned ms);
    // Stops here while the thread is suspended.
    void CheckSuspended();
    void SetReturnValue(int value);
    // Terminates the thread, resumes it if suspended, cancels a Synchronize call it waits
    // in (the call does not run), and waits for it to end.
    void StopAndJoin();

private:
    struct TState;
    void Run();
    void ApplyPriority();
    std::shared_ptr<TState> m_state;
    std::thread m_thread;
};

// Runs the calls that worker threads handed to the main thread; true if any ran. The
// message loop calls it; WaitFor on the main thread calls it while waiting.
bool CheckSynchronize();
// Called (from any thread) when a call was handed over, so that a sleeping loop wakes.
void SetSynchronizeWakeup(std::function<void()> wake);

// Suspends the calling thread; 0 gives up the rest of the time slice.
void Sleep(unsigned milliseconds);

} // namespace qv
