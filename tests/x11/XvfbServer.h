#pragma once
// A private Xvfb server for the X11 tests: started on a free display number (Xvfb chooses
// it and reports it through -displayfd) and stopped when the object goes away.

#include "platform/system/ChildProcess.h"

#include <memory>
#include <string>

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
    TXvfbServer(TChildProcess server, std::string display)
        : m_server(std::move(server)), m_display(std::move(display)) {}

    TChildProcess m_server;
    std::string m_display;
};

} // namespace qv::test
