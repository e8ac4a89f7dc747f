#pragma once
// A private Xvfb server for the X11 tests: started on a free display number (Xvfb chooses
// it and reports it through -displayfd) and stopped when the object goes away.

#include <memory>
#include <string>
#include <sys/types.h>

namespace qv::test {

class TXvfbServer {
public:
    // Null when Xvfb is not installed or does not come up within a few seconds.
    static std::unique_ptr<TXvfbServer> Start(int width = 1024, int height = 768);
    ~TXvfbServer();
    TXvfbServer(const TXvfbServer&) = delete;
    TXvfbServer& operator=(const TXvfbServer&) = delete;

    // ":N", for XOpenDisplay.
    const std::string& DisplayName() const { return m_display; }

private:
    TXvfbServer(pid_t pid, std::string display) : m_pid(pid), m_display(std::move(display)) {}

    pid_t m_pid;
    std::string m_display;
};

} // namespace qv::test
