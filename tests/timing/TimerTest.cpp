#include "platform/core/Exceptions.h"
#include "platform/system/Thread.h"
#include "timing/Std2.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

using namespace qv;
using Clock = std::chrono::steady_clock;

namespace {

// Runs the main thread's side of Synchronize for a while.
void PumpFor(std::chrono::milliseconds span) {
    const auto end = Clock::now() + span;
    while (Clock::now() < end) {
        CheckSynchronize();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

// A timer service that refuses every request with the "cannot do" code.
class TRefusingService : public TMultimediaTimerService {
public:
    unsigned SetEvent(unsigned, unsigned, TCallback, bool) override { return TIMERR_NOCANDO; }
    void KillEvent(unsigned) override { ++kills; }
    int kills{0};
};

} // namespace

TEST(ThreadTimer, NoTicksWhileDisabledWithoutHandlerOrWithIntervalZero) {
    TqxTimer timer(nullptr);
    std::atomic<int> ticks{0};
    timer.SetInterval(10);
    EXPECT_TRUE(timer.Worker()->Suspended()); // no handler yet
    timer.SetEnabled(false);
    timer.SetOnTimer([&](TObject*) { ++ticks; });
    PumpFor(std::chrono::milliseconds(60));
    EXPECT_EQ(ticks, 0);
    timer.SetEnabled(true);
    timer.SetInterval(0);
    PumpFor(std::chrono::milliseconds(60));
    EXPECT_EQ(ticks, 0);
    EXPECT_TRUE(timer.Worker()->Suspended());
    timer.SetInterval(10);
    EXPECT_FALSE(timer.Worker()->Suspended());
    PumpFor(std::chrono::milliseconds(100));
    EXPECT_GT(ticks, 0);
}

TEST(ThreadTimer, TicksRunOnTheMainThreadNeverOverlapAndIncludeTheHandlersTime) {
    TqxTimer timer(nullptr);
    std::vector<Clock::time_point> starts;
    bool overlap = false, inHandler = false, offMain = false;
    timer.SetInterval(100);
    timer.SetOnTimer([&](TObject* sender) {
        offMain = offMain || !TThread::IsMainThread() || sender != &timer;
        overlap = overlap || inHandler;
        inHandler = true;
        starts.push_back(Clock::now());
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        inHandler = false;
    });
    PumpFor(std::chrono::milliseconds(1000));
    timer.SetEnabled(false);
    EXPECT_FALSE(overlap);
    EXPECT_FALSE(offMain);
    ASSERT_GE(starts.size(), 4u);
    const auto average = (starts.back() - starts.front()) / static_cast<int>(starts.size() - 1);
    // About 150 ms: the interval plus the handler's 50 ms (loosely, for busy machines).
    EXPECT_GT(average, std::chrono::milliseconds(135));
    EXPECT_LT(average, std::chrono::milliseconds(300));
}

TEST(ThreadTimer, SettingTheSameIntervalChangesNothingButAssigningTheHandlerAlwaysUpdates) {
    TqxTimer timer(nullptr);
    timer.SetOnTimer([](TObject*) {});
    EXPECT_FALSE(timer.Worker()->Suspended());
    timer.Worker()->Suspend(); // from outside, to see whether a setter touches the worker
    timer.SetInterval(1000);   // unchanged: no update step
    EXPECT_TRUE(timer.Worker()->Suspended());
    timer.SetOnTimer([](TObject*) {}); // always runs the update step
    EXPECT_FALSE(timer.Worker()->Suspended());
}

TEST(ThreadTimer, DestroyingWhileTicksArePendingIsClean) {
    for (int round = 0; round < 20; ++round) {
        auto timer = std::make_unique<TqxTimer>(nullptr);
        std::atomic<int> ticks{0};
        timer->SetInterval(1);
        timer->SetOnTimer([&](TObject*) { ++ticks; });
        std::this_thread::sleep_for(
            std::chrono::milliseconds(3)); // a tick waits for the main thread
        timer.reset();
        CheckSynchronize(); // nothing of the freed timer may run now
    }
}

TEST(MultimediaTimer, HandlerRunsOnTheServiceThreadAndExceptionsAreSwallowed) {
    TqxMMTimer timer(nullptr);
    std::atomic<int> ticks{0};
    std::atomic<bool> onMain{false};
    timer.SetOnTimer([&](TObject*) {
        onMain = onMain || TThread::IsMainThread();
        ++ticks;
        throw ERangeError("ignored");
    });
    timer.SetInterval(5);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_GE(ticks.load(), 5);
    EXPECT_FALSE(onMain);
}

TEST(MultimediaTimer, EnabledMutesWithoutRestartingAndResolutionChangesRestart) {
    TqxMMTimer timer(nullptr);
    std::atomic<int> ticks{0};
    timer.SetOnTimer([&](TObject*) { ++ticks; });
    timer.SetInterval(5);
    const unsigned id = timer.TimerId();
    EXPECT_NE(id, TIMERR_NOCANDO);
    timer.SetEnabled(false);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const int muted = ticks;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(ticks.load(), muted);
    EXPECT_EQ(timer.TimerId(), id);
    timer.SetEnabled(true);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_GT(ticks.load(), muted);
    timer.SetResolution(10); // unchanged
    EXPECT_EQ(timer.TimerId(), id);
    timer.SetResolution(1);
    EXPECT_NE(timer.TimerId(), id);
}

TEST(MultimediaTimer, TheNoTimerMarkerRaisesARangeErrorNamingTheResolution) {
    TRefusingService service;
    try {
        TqxMMTimer timer(nullptr, service);
        FAIL() << "no error";
    } catch (const ERangeError& e) {
        EXPECT_STREQ(e.what(), "10 is not within the valid range");
    }
    EXPECT_EQ(service.kills, 0); // no timer to stop
}

TEST(MultimediaTimer, DelayWaitsAndZeroReturnsAtOnce) {
    const auto start = Clock::now();
    Delay(0);
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(50));
    Delay(20);
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(20));
}
