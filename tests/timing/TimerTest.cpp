#include "platform/core/Exceptions.h"
#include "platform/system/Thread.h"
#include "timing/Std2.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

using namespace qv;
using Clock = std::chrono::steady_clock;

namespace {

// A bound for waits on a worker thread: long enough for a machine several times overloaded,
// and a wait ends as soon as what it waits for has happened.
constexpr auto Patience = std::chrono::seconds(10);

// Runs the main thread's side of Synchronize for a while.
void PumpFor(std::chrono::milliseconds span) {
    const auto end = Clock::now() + span;
    while (Clock::now() < end) {
        CheckSynchronize();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

// Runs the main thread's side of Synchronize until `done` holds; false after `Patience`.
bool PumpUntil(const std::function<bool()>& done) {
    const auto end = Clock::now() + Patience;
    while (!done()) {
        if (Clock::now() > end) return false;
        CheckSynchronize();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// Waits without pumping, for timers whose handler runs on a thread of their own.
bool WaitUntil(const std::function<bool()>& done) {
    const auto end = Clock::now() + Patience;
    while (!done()) {
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// A timer service that refuses every request with the "cannot do" code.
class TRefusingService : public TMultimediaTimerService {
public:
    unsigned SetEvent(unsigned, unsigned, TCallback, bool) override { return TIMERR_NOCANDO; }
    void KillEvent(unsigned) override { ++kills; }
    int kills{0};
};

} // namespace

// A new timer's worker starts at once and may already sleep the default 1000 ms before the
// test sets a shorter interval: a sleep that has begun keeps its length. So the first tick
// is awaited with `Patience`; what is measured comes from the ticks after it.

TEST(ThreadTimer, TicksOnlyWhileEnabledWithAHandlerAndANonZeroInterval) {
    TqxTimer timer(nullptr);
    std::atomic<int> ticks{0};
    timer.SetInterval(10);
    EXPECT_TRUE(timer.Worker()->Suspended()); // no handler yet
    timer.SetEnabled(false);
    timer.SetOnTimer([&](TObject*) { ++ticks; });
    EXPECT_TRUE(timer.Worker()->Suspended()); // disabled
    PumpFor(std::chrono::milliseconds(50));
    EXPECT_EQ(ticks, 0); // a suspended worker hands nothing over, whatever it slept
    timer.SetEnabled(true);
    ASSERT_TRUE(PumpUntil([&] { return ticks > 0; }));

    // Once ticking, every sleep is 10 ms: a window of 200 ms sees any tick that could come.
    // One tick may already be on its way to the main thread when the worker is suspended.
    const auto ticksIn200ms = [&] {
        const int before = ticks;
        PumpFor(std::chrono::milliseconds(200));
        return ticks - before;
    };
    timer.SetEnabled(false);
    EXPECT_TRUE(timer.Worker()->Suspended());
    EXPECT_LE(ticksIn200ms(), 1);
    EXPECT_EQ(ticksIn200ms(), 0);
    timer.SetEnabled(true);
    timer.SetInterval(0);
    EXPECT_TRUE(timer.Worker()->Suspended());
    EXPECT_LE(ticksIn200ms(), 1);
    EXPECT_EQ(ticksIn200ms(), 0);
    timer.SetInterval(10);
    EXPECT_FALSE(timer.Worker()->Suspended());
    const int resumed = ticks;
    EXPECT_TRUE(PumpUntil([&] { return ticks > resumed; }));
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
    ASSERT_TRUE(PumpUntil([&] { return starts.size() >= 6; }));
    timer.SetEnabled(false);
    EXPECT_FALSE(overlap);
    EXPECT_FALSE(offMain);
    // The period from the second tick on: the interval plus the handler's 50 ms, about 150 ms.
    // Both parts are sleeps, so it is never shorter; the upper bound allows a machine three
    // times overloaded.
    const auto average = (starts.back() - starts[1]) / static_cast<int>(starts.size() - 2);
    EXPECT_GE(average, std::chrono::milliseconds(145));
    EXPECT_LT(average, std::chrono::milliseconds(450));
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
    EXPECT_TRUE(WaitUntil([&] { return ticks >= 5; }));
    EXPECT_FALSE(onMain);
}

TEST(MultimediaTimer, EnabledMutesWithoutRestartingAndResolutionChangesRestart) {
    TqxMMTimer timer(nullptr);
    std::atomic<int> ticks{0};
    timer.SetOnTimer([&](TObject*) { ++ticks; });
    timer.SetInterval(5);
    const unsigned id = timer.TimerId();
    EXPECT_NE(id, TIMERR_NOCANDO);
    ASSERT_TRUE(WaitUntil([&] { return ticks > 0; }));
    timer.SetEnabled(false);
    // A handler already running when the timer is muted may still count once.
    const int muted = ticks;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_LE(ticks.load(), muted + 1);
    EXPECT_EQ(timer.TimerId(), id);
    timer.SetEnabled(true);
    const int unmuted = ticks;
    EXPECT_TRUE(WaitUntil([&] { return ticks > unmuted; }));
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
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(500)); // no sleep at all
    Delay(20);
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(20));
}
