#include "XvfbServer.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <string>

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

void Stop(TChildProcess& server) {
    kill(server.Pid(), SIGTERM);
    server.Wait();
}

} // namespace

std::unique_ptr<TXvfbServer> TXvfbServer::Start(int width, int height) {
    // The read end stays here; the write end reaches Xvfb under its number.
    int pipeFds[2];
    if (pipe2(pipeFds, O_CLOEXEC) != 0) return nullptr;
    fcntl(pipeFds[1], F_SETFD, 0);
    const std::string fd = std::to_string(pipeFds[1]);
    const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
    TSpawnOptions options;
    options.stderrPath = "/dev/null";
    int error = 0;
    std::optional<TChildProcess> server = TChildProcess::Spawn(
        {"Xvfb", "-displayfd", fd, "-screen", "0", screen, "-nolisten", "tcp", "-noreset"}, error,
        options);
    close(pipeFds[1]);
    std::string number = server ? ReadDisplayNumber(pipeFds[0]) : std::string();
    close(pipeFds[0]);
    if (number.empty()) {
        if (server) Stop(*server);
        return nullptr;
    }
    return std::unique_ptr<TXvfbServer>(new TXvfbServer(std::move(*server), ":" + number));
}

TXvfbServer::~TXvfbServer() {
    Stop(m_server);
}

} // namespace qv::test
