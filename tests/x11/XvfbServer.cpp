#include "XvfbServer.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

extern char** environ;

namespace qv::test {

namespace {

constexpr int startTimeoutMs = 10000;

// Reads the display number Xvfb writes once it accepts connections.
std::string ReadDisplayNumber(int fd) {
    std::string number;
    pollfd pfd{fd, POLLIN, 0};
    while (poll(&pfd, 1, startTimeoutMs) > 0) {
        char c = 0;
        if (read(fd, &c, 1) != 1) break;
        if (c == '\n') return number;
        number += c;
    }
    return {};
}

void Stop(pid_t pid) {
    kill(pid, SIGTERM);
    int status = 0;
    waitpid(pid, &status, 0);
}

} // namespace

std::unique_ptr<TXvfbServer> TXvfbServer::Start(int width, int height) {
    int pipeFds[2];
    if (pipe(pipeFds) != 0) return nullptr;
    const std::string fd = std::to_string(pipeFds[1]);
    const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
    std::vector<std::string> args = {"Xvfb", "-displayfd", fd,    "-screen", "0",
                                     screen, "-nolisten",  "tcp", "-noreset"};
    std::vector<char*> argv;
    for (std::string& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addclose(&actions, pipeFds[0]);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    const int spawned = posix_spawnp(&pid, "Xvfb", &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeFds[1]);
    std::string number = spawned == 0 ? ReadDisplayNumber(pipeFds[0]) : std::string();
    close(pipeFds[0]);
    if (number.empty()) {
        if (spawned == 0) Stop(pid);
        return nullptr;
    }
    return std::unique_ptr<TXvfbServer>(new TXvfbServer(pid, ":" + number));
}

TXvfbServer::~TXvfbServer() {
    Stop(m_pid);
}

} // namespace qv::test
