#pragma once
// Owning wrappers for the X resources of the X11 backend: the display connection, a scoped
// trap for X protocol errors, and shared-memory images (MIT-SHM).

#include <X11/Xlib.h>
#include <X11/extensions/XShm.h>

#include <cstdint>
#include <memory>

namespace qv {

struct TDisplayCloser {
    void operator()(Display* display) const;
};
using TDisplayPtr = std::unique_ptr<Display, TDisplayCloser>;

// Opens the named display (null: $DISPLAY); null when no server answers.
TDisplayPtr OpenDisplay(const char* name);

// Installs an error handler that records X errors instead of ending the process, for the
// lifetime of the backend. Xlib's handler is a plain function, so the last error code lives
// in one process-wide atomic owned by this trap.
class TX11ErrorTrap {
public:
    TX11ErrorTrap();
    ~TX11ErrorTrap();
    TX11ErrorTrap(const TX11ErrorTrap&) = delete;
    TX11ErrorTrap& operator=(const TX11ErrorTrap&) = delete;

    // Forgets earlier errors; Failed tells whether one arrived since (after an XSync).
    void Reset();
    bool Failed() const;

private:
    using THandler = int (*)(Display*, XErrorEvent*);
    THandler m_previous;
};

// A ZPixmap image whose pixels live in a System V shared-memory segment attached to the X
// server. Pixels are 32 bits, 0x00RRGGBB, rows `Width()` pixels apart.
class TShmImage {
public:
    // Null when the segment cannot be created or the server cannot attach it (a remote
    // display); `trap` catches the attach error.
    static std::unique_ptr<TShmImage> Create(Display* display, Visual* visual, int depth, int width,
                                             int height, TX11ErrorTrap& trap);
    ~TShmImage();
    TShmImage(const TShmImage&) = delete;
    TShmImage& operator=(const TShmImage&) = delete;

    int Width() const { return m_image->width; }
    int Height() const { return m_image->height; }
    std::uint32_t* Row(int y) {
        return reinterpret_cast<std::uint32_t*>(m_image->data + y * m_image->bytes_per_line);
    }
    XImage* Image() const { return m_image; }
    ShmSeg Segment() const { return m_info.shmseg; }

    int Stride() const { return m_image->bytes_per_line / 4; }

    // True from a put until the server reports it has read the pixels of every put.
    bool Busy() const { return m_pending > 0; }
    void PutSent() { ++m_pending; }
    void PutCompleted() {
        if (m_pending > 0) --m_pending;
    }
    void ForgetPuts() { m_pending = 0; }

private:
    TShmImage(Display* display, XImage* image, const XShmSegmentInfo& info);

    Display* m_display;
    XImage* m_image;
    XShmSegmentInfo m_info;
    int m_pending{0};
};

// An eventfd that ends a poll from any thread: Signal adds to its counter, Drain clears it.
class TWakeFd {
public:
    TWakeFd();
    ~TWakeFd();
    TWakeFd(const TWakeFd&) = delete;
    TWakeFd& operator=(const TWakeFd&) = delete;

    bool Valid() const { return m_fd >= 0; }
    int Fd() const { return m_fd; }
    void Signal() const;
    void Drain() const;

private:
    int m_fd;
};

} // namespace qv
