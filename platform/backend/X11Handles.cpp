#include "X11Handles.h"

#include <X11/Xutil.h>

#include <atomic>
#include <cstdint>
#include <sys/eventfd.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <unistd.h>

namespace qv {

namespace {

// The last X error code seen by the trap's handler (0: none).
std::atomic<int> g_lastXError{0};

int RecordXError(Display*, XErrorEvent* error) {
    g_lastXError = error->error_code;
    return 0;
}

// Detaches and removes a segment that was never handed to the server.
void DiscardSegment(XShmSegmentInfo& info) {
    if (info.shmaddr != reinterpret_cast<char*>(-1) && info.shmaddr) shmdt(info.shmaddr);
    if (info.shmid >= 0) shmctl(info.shmid, IPC_RMID, nullptr);
}

} // namespace

void TDisplayCloser::operator()(Display* display) const {
    XCloseDisplay(display);
}

TDisplayPtr OpenDisplay(const char* name) {
    return TDisplayPtr(XOpenDisplay(name));
}

TX11ErrorTrap::TX11ErrorTrap() : m_previous(XSetErrorHandler(RecordXError)) {}

TX11ErrorTrap::~TX11ErrorTrap() {
    XSetErrorHandler(m_previous);
}

void TX11ErrorTrap::Reset() {
    g_lastXError = 0;
}

bool TX11ErrorTrap::Failed() const {
    return g_lastXError != 0;
}

std::unique_ptr<TShmImage> TShmImage::Create(Display* display, Visual* visual, int depth, int width,
                                             int height, TX11ErrorTrap& trap) {
    XShmSegmentInfo info{};
    info.shmid = -1;
    XImage* image =
        XShmCreateImage(display, visual, static_cast<unsigned>(depth), ZPixmap, nullptr, &info,
                        static_cast<unsigned>(width), static_cast<unsigned>(height));
    if (!image) return nullptr;
    const auto bytes = static_cast<std::size_t>(image->bytes_per_line) * image->height;
    info.shmid = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    info.shmaddr = info.shmid >= 0 ? static_cast<char*>(shmat(info.shmid, nullptr, 0))
                                   : reinterpret_cast<char*>(-1);
    if (info.shmaddr == reinterpret_cast<char*>(-1)) {
        DiscardSegment(info);
        XDestroyImage(image);
        return nullptr;
    }
    image->data = info.shmaddr;
    info.readOnly = False;
    trap.Reset();
    const bool attached = XShmAttach(display, &info) != 0;
    XSync(display, False);
    // Once both sides are attached the segment can be marked for removal: it goes away
    // with the last detach, even if the process dies.
    shmctl(info.shmid, IPC_RMID, nullptr);
    info.shmid = -1;
    if (!attached || trap.Failed()) {
        image->data = nullptr;
        XDestroyImage(image);
        DiscardSegment(info);
        return nullptr;
    }
    return std::unique_ptr<TShmImage>(new TShmImage(display, image, info));
}

// XShmPutImage finds the segment through the image's obdata, which XShmCreateImage pointed at
// the caller's record: point it at the record this object keeps.
TShmImage::TShmImage(Display* display, XImage* image, const XShmSegmentInfo& info)
    : m_display(display), m_image(image), m_info(info) {
    m_image->obdata = reinterpret_cast<char*>(&m_info);
}

TShmImage::~TShmImage() {
    XShmDetach(m_display, &m_info);
    m_image->data = nullptr; // the segment is not the image's to free
    XDestroyImage(m_image);
    shmdt(m_info.shmaddr);
}

TWakeFd::TWakeFd() : m_fd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

TWakeFd::~TWakeFd() {
    if (m_fd >= 0) close(m_fd);
}

void TWakeFd::Signal() const {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(m_fd, &one, sizeof one);
}

void TWakeFd::Drain() const {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto got = read(m_fd, &count, sizeof count);
}

} // namespace qv
