#pragma once
// TChildProcess: a program started from an argument vector with posix_spawn and held through
// a pidfd, so that its end can be polled together with other descriptors and reaped without
// waitpid(-1) or a SIGCHLD handler. Exec errors come back from Spawn itself (posix_spawn
// reports them synchronously). A child dropped while it still runs is handed to a process-wide
// list of detached children, which every later Spawn (and ReapDetachedChildren) sweeps, so no
// zombie outlives the next start.
//
// SplitCommandLine turns a command line into arguments without a shell, and
// ClassicErrorOfSpawn turns a spawn errno into the classic operating-system error number.

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace qv {

struct TSpawnOptions {
    // The child starts a session of its own (no controlling terminal, its own process group).
    bool newSession{false};
    // Only descriptors 0, 1 and 2 reach the program.
    bool onlyStandardDescriptors{false};
    // Standard error goes to this file when set (opened for writing).
    std::string stderrPath;
};

class TChildProcess {
public:
    // Starts argv[0], searched in PATH when it holds no slash, with the caller's environment
    // and directory. On failure the result is empty and `error` holds the errno.
    static std::optional<TChildProcess> Spawn(const std::vector<std::string>& argv, int& error,
                                              const TSpawnOptions& options = {});

    TChildProcess(TChildProcess&& other) noexcept;
    TChildProcess& operator=(TChildProcess&& other) noexcept;
    TChildProcess(const TChildProcess&) = delete;
    TChildProcess& operator=(const TChildProcess&) = delete;
    // Reaps an ended child; a running one is detached (reaped by a later sweep).
    ~TChildProcess();

    pid_t Pid() const { return m_pid; }
    // Readable once the program has ended; -1 after the process was reaped.
    int PidFd() const { return m_pidfd; }
    // The exit status once ended (reaping it), without blocking: the exit code, or 128 + N
    // when signal N ended it.
    std::optional<int> TryWait();
    // Blocks until the program ends; its exit status as TryWait gives it.
    int Wait();
    bool Ended() const { return m_status.has_value(); }

private:
    TChildProcess(pid_t pid, int pidfd) : m_pid(pid), m_pidfd(pidfd) {}
    std::optional<int> Reap(int flags);
    void Release();

    pid_t m_pid{0};
    int m_pidfd{-1};
    std::optional<int> m_status;
};

// Reaps every detached child that has ended; returns how many still run.
std::size_t ReapDetachedChildren();

// Arguments of a command line, without a shell: whitespace separates them, double quotes
// group (and may stand inside a word), \" is a literal quote, an unterminated quote runs to
// the end; nothing is expanded.
std::vector<std::string> SplitCommandLine(std::string_view line);

// Classic error numbers of a failed start.
enum TClassicError : unsigned {
    ceFileNotFound = 2,
    cePathNotFound = 3,
    ceTooManyOpenFiles = 4,
    ceAccessDenied = 5,
    ceNotEnoughMemory = 8,
    ceBadFormat = 11,
    ceGeneralFailure = 31,
    ceSharingViolation = 32,
    ceInvalidParameter = 87,
    ceFilenameTooLong = 206,
};

// The classic number for a spawn errno. `program` is argv[0]: a missing file in an explicit
// path whose directory does not exist is a missing path.
unsigned ClassicErrorOfSpawn(int error, const std::string& program);

} // namespace qv
