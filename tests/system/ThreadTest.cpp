#include "platform/system/Thread.h"
#include "platform/core/Exceptions.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>

using namespace qv;

namespace {

// Runs a function as its Execute.
class TLambdaThread : public TThread {
public:
    explicit TLambdaThread(std::function<void(TLambdaThread&)> body, bool suspended = true)
        : TThread(suspended), m_body(std::move(body)) {}
    ~TLambdaThread() override { StopAndJoin(); }
    using TThread::CheckSuspended;
    using TThread::SetReturnValue;
    using TThread::Sleep;
    using TThread::Synchronize;

protected:
    void Execute() override { m_body(*this); }

private:
    std::function<void(TLambdaThread&)> m_body;
};

} // namespace

TEST(Thread, RunsExecuteAndReturnsItsValueFromWaitFor) {
    TLambdaThread t([](TLambdaThread& self) { self.SetReturnValue(42); });
    EXPECT_TRUE(t.Suspended());
    t.Start();
    EXPECT_EQ(t.WaitFor(), 42);
    EXPECT_TRUE(t.Finished());
}

TEST(Thread, SynchronizeRunsOnTheMainThreadAndReraisesInTheWorker) {
    std::atomic<bool> ranOnMain{false};
    std::atomic<bool> caught{false};
    TLambdaThread t([&](TLambdaThread& self) {
        self.Synchronize([&] { ranOnMain = TThread::IsMainThread(); });
        try {
            self.Synchronize([] { throw EConvertError("bad tick"); });
        } catch (const EConvertError& e) {
            caught = std::string(e.what()) == "bad tick";
        }
    });
    t.Start();
    t.WaitFor(); // runs the handed-over calls while waiting
    EXPECT_TRUE(ranOnMain);
    EXPECT_TRUE(caught);
}

TEST(Thread, AnExceptionEndingExecuteIsKept) {
    TLambdaThread t([](TLambdaThread&) { throw ERangeError("out"); });
    t.Start();
    t.WaitFor();
    ASSERT_TRUE(t.FatalException());
    EXPECT_THROW(std::rethrow_exception(t.FatalException()), ERangeError);
}

TEST(Thread, SuspendAndResumeNestAndStopTheWorkerAtItsNextSuspensionPoint) {
    std::atomic<int> laps{0};
    TLambdaThread t([&](TLambdaThread& self) {
        while (!self.Terminated()) {
            self.CheckSuspended();
            ++laps;
            self.Sleep(1);
        }
    });
    t.Start();
    while (laps < 3)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    t.Suspend();
    t.Suspend();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const int stopped = laps;
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_LE(laps - stopped, 1); // at most the lap that was under way
    t.Resume();
    EXPECT_TRUE(t.Suspended()); // one suspension left
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_LE(laps - stopped, 1);
    t.Resume();
    EXPECT_FALSE(t.Suspended());
    while (laps < stopped + 3)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    t.Terminate();
    t.WaitFor();
}

TEST(Thread, DestroyingWhileTheWorkerWaitsForTheMainThreadCancelsTheCall) {
    std::atomic<bool> ran{false};
    std::atomic<bool> waiting{false};
    auto t = std::make_unique<TLambdaThread>([&](TLambdaThread& self) {
        waiting = true;
        self.Synchronize([&] { ran = true; });
    });
    t->Start();
    while (!waiting)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    t.reset(); // must not hang and must not run the pending call
    CheckSynchronize();
    EXPECT_FALSE(ran);
}

TEST(Thread, PriorityIsKeptEvenWhereTheSystemRefusesIt) {
    TLambdaThread t([](TLambdaThread& self) { self.Sleep(5); });
    t.SetPriority(TThreadPriority::tpTimeCritical);
    t.Start();
    t.SetPriority(TThreadPriority::tpLowest);
    EXPECT_EQ(t.Priority(), TThreadPriority::tpLowest);
    t.WaitFor();
}

TEST(Thread, SleepEndsEarlyWhenTerminated) {
    std::atomic<bool> fullTime{true};
    std::atomic<bool> sleeping{false};
    TLambdaThread t([&](TLambdaThread& self) {
        sleeping = true;
        fullTime = self.Sleep(10000);
    });
    t.Start();
    while (!sleeping)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const auto start = std::chrono::steady_clock::now();
    t.Terminate();
    t.WaitFor();
    EXPECT_FALSE(fullTime);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}
