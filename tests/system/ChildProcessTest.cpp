#include "platform/system/ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace qv;
namespace fs = std::filesystem;

namespace {

int RunToEnd(const std::vector<std::string>& argv, const TSpawnOptions& options = {}) {
    int error = 0;
    std::optional<TChildProcess> child = TChildProcess::Spawn(argv, error, options);
    EXPECT_TRUE(child) << "spawn failed with errno " << error;
    return child ? child->Wait() : -1;
}

int SpawnError(const std::vector<std::string>& argv) {
    int error = 0;
    EXPECT_FALSE(TChildProcess::Spawn(argv, error));
    return error;
}

// A scratch folder removed with the object.
struct TScratch {
    fs::path dir = fs::temp_directory_path() / ("qv-child-" + std::to_string(getpid()));
    TScratch() { fs::create_directories(dir); }
    ~TScratch() { fs::remove_all(dir); }
    fs::path File(const std::string& name, const std::string& text, fs::perms perms) const {
        const fs::path p = dir / name;
        std::ofstream(p) << text;
        fs::permissions(p, perms);
        return p;
    }
};

// Whether `pid` still has an entry in the process table (a zombie has one).
bool ProcessExists(pid_t pid) {
    return kill(pid, 0) == 0 || errno != ESRCH;
}

} // namespace

TEST(ChildProcess, ExitCodesAndSignalsBecomeTheExitStatus) {
    EXPECT_EQ(RunToEnd({"true"}), 0);
    EXPECT_EQ(RunToEnd({"sh", "-c", "exit 3"}), 3);
    EXPECT_EQ(RunToEnd({"sh", "-c", "exit 255"}), 255);
    EXPECT_EQ(RunToEnd({"sh", "-c", "kill -9 $$"}), 128 + SIGKILL);
    EXPECT_EQ(RunToEnd({"sh", "-c", "kill -TERM $$"}), 128 + SIGTERM);
}

TEST(ChildProcess, TryWaitReportsOnlyAnEndedProgramAndThePidfdSignalsTheEnd) {
    int error = 0;
    std::optional<TChildProcess> child = TChildProcess::Spawn({"sleep", "30"},
                                                              error);
    ASSERT_TRUE(child);
    EXPECT_FALSE(child->TryWait());
    EXPECT_GE(child->PidFd(), 0);
    kill(child->Pid(), SIGKILL);
    pollfd pfd{child->PidFd(), POLLIN, 0};
    ASSERT_EQ(poll(&pfd, 1, 10000), 1);
    EXPECT_EQ(child->TryWait(), 128 + SIGKILL);
    EXPECT_EQ(child->PidFd(), -1);
    EXPECT_FALSE(ProcessExists(child->Pid()));
}

TEST(ChildProcess, FailedStartsReportTheirErrnoAndTheClassicNumber) {
    const TScratch scratch;
    const fs::path script = scratch.File("noshebang", "exit 4\n", fs::perms::owner_all);
    const fs::path locked = scratch.File("locked", "#!/bin/sh\nexit 0\n", fs::perms::owner_read);
    EXPECT_EQ(SpawnError({"qv-no-such-program"}), ENOENT);
    EXPECT_EQ(SpawnError({script.string()}), ENOEXEC);
    EXPECT_EQ(ClassicErrorOfSpawn(ENOEXEC, script), ceBadFormat);
    EXPECT_EQ(SpawnError({scratch.dir.string()}), EACCES);
    EXPECT_EQ(ClassicErrorOfSpawn(SpawnError({locked.string()}), locked), ceAccessDenied);
    EXPECT_EQ(SpawnError({""}), ENOENT);

    const std::string missingFile = (scratch.dir / "missing").string();
    const std::string missingDir = (scratch.dir / "nodir" / "prog").string();
    EXPECT_EQ(ClassicErrorOfSpawn(SpawnError({missingFile}), missingFile), ceFileNotFound);
    EXPECT_EQ(ClassicErrorOfSpawn(SpawnError({missingDir}), missingDir), cePathNotFound);
    EXPECT_EQ(ClassicErrorOfSpawn(ENOENT, "prog"), ceFileNotFound);
    EXPECT_EQ(ClassicErrorOfSpawn(ENOTDIR, "a/b"), cePathNotFound);
    EXPECT_EQ(ClassicErrorOfSpawn(ENOMEM, "p"), ceNotEnoughMemory);
    EXPECT_EQ(ClassicErrorOfSpawn(EAGAIN, "p"), ceNotEnoughMemory);
    EXPECT_EQ(ClassicErrorOfSpawn(EMFILE, "p"), ceTooManyOpenFiles);
    EXPECT_EQ(ClassicErrorOfSpawn(ETXTBSY, "p"), ceSharingViolation);
    EXPECT_EQ(ClassicErrorOfSpawn(E2BIG, "p"), ceInvalidParameter);
    EXPECT_EQ(ClassicErrorOfSpawn(ENAMETOOLONG, "p"), ceFilenameTooLong);
    EXPECT_EQ(ClassicErrorOfSpawn(EIO, "p"), ceGeneralFailure);
}

TEST(ChildProcess, TheChildGetsItsOwnSessionAndOnlyTheStandardDescriptors) {
    TSpawnOptions options;
    options.newSession = true;
    options.onlyStandardDescriptors = true;
    // Field 6 of /proc/PID/stat is the session id; a session leader's equals its pid.
    const std::string ownSession = "[ \"$(cut -d' ' -f6 /proc/$$/stat)\" = \"$$\" ]";
    EXPECT_EQ(RunToEnd({"sh", "-c", ownSession}, options), 0);
    EXPECT_NE(RunToEnd({"sh", "-c", ownSession}), 0);

    const int inherited = dup2(STDIN_FILENO, 57); // without close-on-exec
    ASSERT_EQ(inherited, 57);
    const std::string noFd57 = "[ ! -e /proc/$$/fd/57 ]";
    EXPECT_EQ(RunToEnd({"sh", "-c", noFd57}, options), 0);
    EXPECT_NE(RunToEnd({"sh", "-c", noFd57}), 0);
    close(inherited);
}

TEST(ChildProcess, ARunningChildLetGoIsReapedByALaterSweep) {
    pid_t pid = 0;
    {
        int error = 0;
        std::optional<TChildProcess> child = TChildProcess::Spawn({"sleep", "0.2"}, error);
        ASSERT_TRUE(child);
        pid = child->Pid();
    }
    EXPECT_TRUE(ProcessExists(pid));
    for (int i = 0; i < 1000 && ReapDetachedChildren() > 0; ++i)
        usleep(10000);
    EXPECT_EQ(ReapDetachedChildren(), 0u);
    EXPECT_FALSE(ProcessExists(pid)); // no zombie is left
}

TEST(CommandLine, QuotesGroupAndNothingIsExpanded) {
    using V = std::vector<std::string>;
    EXPECT_EQ(SplitCommandLine("\"my prog\" \"a b\" c"), (V{"my prog", "a b", "c"}));
    EXPECT_EQ(SplitCommandLine("  a\t\tb  "), (V{"a", "b"}));
    EXPECT_EQ(SplitCommandLine("say \"he said \\\"hi\\\"\""), (V{"say", "he said \"hi\""}));
    EXPECT_EQ(SplitCommandLine("a \"unterminated  rest"), (V{"a", "unterminated  rest"}));
    EXPECT_EQ(SplitCommandLine("x\"y z\"w"), (V{"xy zw"}));
    EXPECT_EQ(SplitCommandLine("a \"\" b"), (V{"a", "", "b"}));
    EXPECT_EQ(SplitCommandLine("echo $HOME *.txt 'q' a\\b"),
              (V{"echo", "$HOME", "*.txt", "'q'", "a\\b"}));
    EXPECT_TRUE(SplitCommandLine("   ").empty());
    EXPECT_TRUE(SplitCommandLine("").empty());
}
