#include "ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace qv {

namespace {

// Children whose owner let go of them while they still ran, kept until they have ended.
struct TDetachedChildren {
    std::mutex lock;
    std::vector<TChildProcess> children;
};

TDetachedChildren& Detached() {
    static TDetachedChildren list;
    return list;
}

// posix_spawn's attributes and file actions, freed with the object.
class TSpawnSetup {
public:
    explicit TSpawnSetup(const TSpawnOptions& options) {
        posix_spawnattr_init(&m_attr);
        posix_spawn_file_actions_init(&m_actions);
        short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        if (options.newSession) flags |= POSIX_SPAWN_SETSID;
        posix_spawnattr_setflags(&m_attr, flags);
        // The program starts with no signal blocked and every signal at its default action.
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_setsigmask(&m_attr, &none);
        posix_spawnattr_setsigdefault(&m_attr, &all);
        if (!options.stderrPath.empty())
            posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, options.stderrPath.c_str(),
                                             O_WRONLY | O_CREAT | O_APPEND, 0644);
        if (options.onlyStandardDescriptors)
            posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
    }
    ~TSpawnSetup() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attr);
    }
    TSpawnSetup(const TSpawnSetup&) = delete;
    TSpawnSetup& operator=(const TSpawnSetup&) = delete;

    const posix_spawnattr_t* Attr() const { return &m_attr; }
    const posix_spawn_file_actions_t* Actions() const { return &m_actions; }

private:
    posix_spawnattr_t m_attr;
    posix_spawn_file_actions_t m_actions;
};

int ExitStatusOf(const siginfo_t& info) {
    if (info.si_code == CLD_EXITED) return info.si_status;
    return 128 + info.si_status; // killed or dumped
}

bool IsDirectory(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

} // namespace

std::optional<TChildProcess> TChildProcess::Spawn(const std::vector<std::string>& argv,
                                                  int& error, const TSpawnOptions& options) {
    ReapDetachedChildren();
    error = 0;
    if (argv.empty() || argv.front().empty()) {
        error = ENOENT;
        return std::nullopt;
    }
    std::vector<char*> args;
    args.reserve(argv.size() + 1);
    for (const std::string& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    const TSpawnSetup setup(options);
    pid_t pid = 0;
    const int spawned = posix_spawnp(&pid, args[0], setup.Actions(), setup.Attr(), args.data(),
                                     environ);
    if (spawned != 0) {
        error = spawned;
        return std::nullopt;
    }
    // The child is ours and not reaped yet, so its pid cannot have been reused.
    const int pidfd = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (pidfd < 0) {
        // Without a pidfd the child cannot be watched: wait for it here rather than leak it.
        error = errno;
        waitpid(pid, nullptr, 0);
        return std::nullopt;
    }
    fcntl(pidfd, F_SETFD, FD_CLOEXEC);
    return TChildProcess(pid, pidfd);
}

TChildProcess::TChildProcess(TChildProcess&& other) noexcept
    : m_pid(other.m_pid), m_pidfd(other.m_pidfd), m_status(other.m_status) {
    other.m_pidfd = -1;
}

TChildProcess& TChildProcess::operator=(TChildProcess&& other) noexcept {
    if (this != &other) {
        Release();
        m_pid = other.m_pid;
        m_pidfd = other.m_pidfd;
        m_status = other.m_status;
        other.m_pidfd = -1;
    }
    return *this;
}

TChildProcess::~TChildProcess() {
    Release();
}

void TChildProcess::Release() {
    if (m_pidfd < 0) return;
    if (!TryWait()) {
        TDetachedChildren& list = Detached();
        const std::lock_guard guard(list.lock);
        list.children.push_back(std::move(*this));
        return;
    }
}

std::optional<int> TChildProcess::Reap(int flags) {
    if (m_status || m_pidfd < 0) return m_status;
    siginfo_t info{};
    int result = 0;
    do {
        result = waitid(P_PIDFD, static_cast<id_t>(m_pidfd), &info, WEXITED | flags);
    } while (result < 0 && errno == EINTR);
    if (result < 0) {
        // Reaped elsewhere (cannot happen for a child we hold): nothing is left to wait for.
        m_status = 0;
    } else if (info.si_pid == 0) {
        return std::nullopt; // still running
    } else {
        m_status = ExitStatusOf(info);
    }
    close(m_pidfd);
    m_pidfd = -1;
    return m_status;
}

std::optional<int> TChildProcess::TryWait() {
    return Reap(WNOHANG);
}

int TChildProcess::Wait() {
    return *Reap(0);
}

std::size_t ReapDetachedChildren() {
    TDetachedChildren& list = Detached();
    const std::lock_guard guard(list.lock);
    std::erase_if(list.children, [](TChildProcess& c) { return c.TryWait().has_value(); });
    return list.children.size();
}

std::vector<std::string> SplitCommandLine(std::string_view line) {
    std::vector<std::string> args;
    std::string current;
    bool inWord = false;
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '\\' && i + 1 < line.size() && line[i + 1] == '"') {
            current += '"';
            inWord = true;
            ++i;
        } else if (c == '"') {
            quoted = !quoted;
            inWord = true; // "" is an empty argument
        } else if (!quoted && (c == ' ' || c == '\t' || c == '\n' || c == '\r')) {
            if (inWord) args.push_back(std::move(current));
            current.clear();
            inWord = false;
        } else {
            current += c;
            inWord = true;
        }
    }
    if (inWord) args.push_back(std::move(current));
    return args;
}

unsigned ClassicErrorOfSpawn(int error, const std::string& program) {
    switch (error) {
    case ENOENT: {
        const std::size_t slash = program.rfind('/');
        if (slash != std::string::npos && slash > 0 && !IsDirectory(program.substr(0, slash)))
            return cePathNotFound;
        return ceFileNotFound;
    }
    case ENOTDIR:
        return cePathNotFound;
    case EACCES:
    case EPERM:
        return ceAccessDenied;
    case ENOEXEC:
        return ceBadFormat;
    case ENOMEM:
    case EAGAIN:
        return ceNotEnoughMemory;
    case EMFILE:
    case ENFILE:
        return ceTooManyOpenFiles;
    case ETXTBSY:
        return ceSharingViolation;
    case E2BIG:
        return ceInvalidParameter;
    case ENAMETOOLONG:
        return ceFilenameTooLong;
    default:
        return ceGeneralFailure;
    }
}

} // namespace qv
