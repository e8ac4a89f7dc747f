#include "Backend.h"
#include "HeadlessBackend.h"

#include <cstdlib>
#include <cstring>

namespace qv {

#ifdef QV_HAVE_X11
std::unique_ptr<TBackend> CreateX11Backend(); // null when no display answers
#endif

std::unique_ptr<TBackend> CreateDefaultBackend() {
    const char* requested = std::getenv("QV_BACKEND");
    const bool headless = requested && std::strcmp(requested, "headless") == 0;
#ifdef QV_HAVE_X11
    if (!headless)
        if (auto x11 = CreateX11Backend()) return x11;
#else
    (void)headless;
#endif
    return std::make_unique<THeadlessBackend>(THeadlessBackend::TClockMode::Real);
}

} // namespace qv
