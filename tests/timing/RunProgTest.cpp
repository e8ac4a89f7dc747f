#include "platform/controls/Application.h"
#include "platform/controls/Timer.h"
#include "timing/Std2.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

using namespace qv;
namespace fs = std::filesystem;

namespace {

// Runs the application's loop until `done` holds or ten seconds of real time have passed.
bool LoopUntil(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        Application().ProcessMessages();
        usleep(2000);
    }
    return true;
}

class RunProg : public ::testing::Test {
protected:
    void SetUp() override {
        Application().ResetTerminated();
        run = std::make_unique<TqxRunProg>(nullptr);
        run->OnBeforeRun = [this](TObject*) { events.push_back("BeforeRun"); };
        run->OnBeforeWait = [this](TObject*) { events.push_back("BeforeWait"); };
        run->OnFinish = [this](TObject*) { events.push_back("Finish"); };
        run->OnError = [this](TObject*, TqxRunError error, std::int32_t code) {
            events.push_back("Error " + std::to_string(static_cast<int>(error)) + " " +
                             std::to_string(code));
        };
    }
    void TearDown() override { Application().ResetTerminated(); }

    std::uint32_t Exit(const std::string& line) {
        run->RunThis(line);
        return run->ReturnCode();
    }

    std::unique_ptr<TqxRunProg> run;
    std::vector<std::string> events;
};

using Events = std::vector<std::string>;

} // namespace

TEST_F(RunProg, ASoftWaitEndsWithTheExitCodeOr128PlusTheSignal) {
    EXPECT_EQ(Exit("true"), 0u);
    EXPECT_EQ(Exit("sh -c \"exit 3\""), 3u);
    EXPECT_EQ(Exit("sh -c \"exit 255\""), 255u);
    EXPECT_EQ(Exit("sh -c \"kill -9 $$\""), 128u + SIGKILL);
    EXPECT_EQ(run->LastResultCode(), qre_OK);
    EXPECT_EQ(run->SavedErrorCode(), 0u);
    EXPECT_EQ(events, (Events{"BeforeRun", "BeforeWait", "Finish", "BeforeRun", "BeforeWait",
                              "Finish", "BeforeRun", "BeforeWait", "Finish", "BeforeRun",
                              "BeforeWait", "Finish"}));
}

TEST_F(RunProg, FailedStartsReportTheClassicResultOnceAndNeverThrow) {
    const fs::path dir = fs::temp_directory_path() / ("qv-run-" + std::to_string(getpid()));
    fs::create_directories(dir);
    const fs::path script = dir / "plain";
    std::ofstream(script) << "exit 4\n";
    fs::permissions(script, fs::perms::owner_all);
    const fs::path locked = dir / "locked";
    std::ofstream(locked) << "#!/bin/sh\n";
    fs::permissions(locked, fs::perms::owner_read);

    const auto failure = [&](const std::string& line) {
        events.clear();
        EXPECT_NO_THROW(run->RunThis(line));
        EXPECT_EQ(run->ReturnCode(), 0u) << line;
        return std::pair(run->LastResultCode(), run->SavedErrorCode());
    };
    EXPECT_EQ(failure("qv-missing-program --x"), std::pair(qre_FileNotFound, 2u));
    EXPECT_EQ(events, (Events{"BeforeRun", "Error 2 2"}));
    EXPECT_EQ(failure((dir / "nodir" / "prog").string()), std::pair(qre_PathNotFound, 3u));
    EXPECT_EQ(failure(dir.string()), std::pair(qre_networkerror, 5u));
    EXPECT_EQ(failure(locked.string()), std::pair(qre_networkerror, 5u));
    EXPECT_EQ(failure(script.string()), std::pair(qre_MemoryError, 11u));
    EXPECT_EQ(failure("   "), std::pair(qre_FileNotFound, 2u));
    EXPECT_EQ(events, (Events{"BeforeRun", "Error 2 2"}));
    // A later success clears the saved error.
    EXPECT_EQ(Exit("true"), 0u);
    EXPECT_EQ(run->SavedErrorCode(), 0u);
    EXPECT_EQ(run->LastResultCode(), qre_OK);
    fs::remove_all(dir);
}

TEST(RunErrorTable, ClassicNumbersMapAsDefined) {
    const std::vector<std::pair<std::uint32_t, TqxRunError>> table = {
        {0, qre_OK},           {1, qre_FileNotFound},   {2, qre_FileNotFound},
        {3, qre_PathNotFound}, {4, qre_FileError},      {5, qre_networkerror},
        {6, qre_MemoryError},  {14, qre_MemoryError},   {15, qre_FileError},
        {31, qre_FileError},   {32, qre_networkerror},  {36, qre_networkerror},
        {37, qre_UnknownError}, {38, qre_FileError},    {52, qre_FileError},
        {53, qre_networkerror}, {55, qre_networkerror}, {56, qre_UnknownError},
        {87, qre_UnknownError}, {206, qre_UnknownError}};
    for (const auto& [code, result] : table)
        EXPECT_EQ(RunErrorOf(code), result) << code;
}

TEST_F(RunProg, ArgumentsReachTheProgramWithoutAShell) {
    const fs::path dir = fs::temp_directory_path() / ("qv-args-" + std::to_string(getpid()));
    fs::create_directories(dir);
    const fs::path prog = dir / "my prog";
    std::ofstream(prog) << "#!/bin/sh\n[ \"$1\" = 'a b' ] && [ \"$2\" = c ] && exit $#\nexit 99\n";
    fs::permissions(prog, fs::perms::owner_all);
    EXPECT_EQ(Exit("\"" + prog.string() + "\" \"a b\" c"), 2u);
    // Nothing is expanded: the program sees the dollar sign.
    EXPECT_EQ(Exit("sh -c \"[ \\\"$0\\\" = '$HOME' ]\" $HOME"), 0u);
    std::string many = "sh -c \"exit $(($# % 256))\" x";
    for (int i = 0; i < 10000; ++i)
        many += " a";
    EXPECT_EQ(Exit(many), 10000u % 256);
    fs::remove_all(dir);
}

TEST_F(RunProg, HardWaitBlocksAndLeavesTheReturnCodeZero) {
    run->SetHardWait(true);
    EXPECT_EQ(Exit("sh -c \"exit 3\""), 0u);
    EXPECT_EQ(events, (Events{"BeforeRun", "BeforeWait", "Finish"}));
}

TEST_F(RunProg, WithoutWaitTheLoopReapsTheProgramLater) {
    run->SetWait(false);
    const std::size_t before = Application().UnreapedChildren();
    EXPECT_EQ(Exit("sh -c \"sleep 0.2; exit 3\""), 0u);
    EXPECT_EQ(events, (Events{"BeforeRun"}));
    EXPECT_EQ(Application().UnreapedChildren(), before + 1);
    // The application's wait sleeps on the process and reaps it when it ends: no zombie.
    EXPECT_TRUE(LoopUntil([&] {
        Application().Backend().WaitForEvents(100);
        return Application().UnreapedChildren() == before;
    }));
}

TEST_F(RunProg, TimersRunWhileASoftWaitSleepsOnTheProcess) {
    TTimer timer(nullptr);
    int ticks = 0;
    timer.SetInterval(20);
    timer.SetOnTimer([&](TObject*) { ++ticks; });
    EXPECT_EQ(Exit("sh -c \"sleep 0.3; exit 5\""), 5u);
    EXPECT_GT(ticks, 0);
}

TEST_F(RunProg, TerminatingEndsTheWaitAndTheProgramRunsOn) {
    const fs::path mark = fs::temp_directory_path() / ("qv-mark-" + std::to_string(getpid()));
    fs::remove(mark);
    TTimer timer(nullptr);
    timer.SetInterval(10);
    std::uint32_t codeDuringWait = 0;
    timer.SetOnTimer([&](TObject*) {
        codeDuringWait = run->ReturnCode();
        timer.SetEnabled(false);
        Application().Terminate();
    });
    run->RunThis("sh -c \"sleep 0.3; touch '" + mark.string() + "'\"");
    EXPECT_EQ(codeDuringWait, TqxRunProg::StillActive);
    EXPECT_EQ(run->ReturnCode(), TqxRunProg::StillActive);
    EXPECT_EQ(events, (Events{"BeforeRun", "BeforeWait", "Finish"}));
    EXPECT_FALSE(fs::exists(mark));
    Application().ResetTerminated();
    EXPECT_TRUE(LoopUntil([&] { return fs::exists(mark); }));
    fs::remove(mark);
}

TEST_F(RunProg, ARunStartedDuringASoftWaitEndsFirstAndTheOuterWaitThenEnds) {
    TqxRunProg inner(nullptr);
    TTimer timer(nullptr);
    timer.SetInterval(10);
    timer.SetOnTimer([&](TObject*) {
        timer.SetEnabled(false);
        inner.RunThis("sh -c \"sleep 0.3; exit 6\"");
        events.push_back("inner " + std::to_string(inner.ReturnCode()));
    });
    EXPECT_EQ(Exit("sh -c \"sleep 0.1; exit 4\""), 4u);
    EXPECT_EQ(events, (Events{"BeforeRun", "BeforeWait", "inner 6", "Finish"}));
}

TEST_F(RunProg, ASoftWaitSleepsInTheLoopInsteadOfSpinning) {
    int idle = 0;
    Application().OnIdle = [&](TObject*) { ++idle; };
    EXPECT_EQ(Exit("sleep 0.3"), 0u);
    Application().OnIdle = nullptr;
    // Each pass of the loop goes idle once; a loop that polled the process would pass
    // thousands of times while the program sleeps.
    EXPECT_GE(idle, 1);
    EXPECT_LT(idle, 20);
}
