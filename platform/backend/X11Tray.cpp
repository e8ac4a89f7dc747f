#include "X11Tray.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace qv {

namespace {

constexpr long SystemTrayRequestDock = 0;
constexpr long SystemTrayBeginMessage = 1;
constexpr long XEmbedMapped = 1;
constexpr unsigned IconSize = 24; // until the host gives its size
constexpr std::int64_t DoubleClickMs = 500;
constexpr std::uint32_t ButtonFace = 0xF0F0F0;
constexpr long iconEvents =
    ButtonPressMask | ButtonReleaseMask | PointerMotionMask | ExposureMask | StructureNotifyMask;

// Mouse messages of the classic shell.
constexpr std::uint32_t MouseMove = 0x200;
constexpr std::uint32_t DownOf(unsigned button) {
    return button == 1 ? 0x201 : button == 3 ? 0x204 : 0x207;
}

} // namespace

TX11TrayShell::TX11TrayShell(Display* display, int screen, std::function<std::int64_t()> nowMs)
    : m_display(display), m_screen(screen), m_root(RootWindow(display, screen)),
      m_nowMs(std::move(nowMs)) {
    const std::string selection = "_NET_SYSTEM_TRAY_S" + std::to_string(screen);
    m_selection = XInternAtom(display, selection.c_str(), False);
    m_opcode = XInternAtom(display, "_NET_SYSTEM_TRAY_OPCODE", False);
    m_manager = XInternAtom(display, "MANAGER", False);
    m_xembedInfo = XInternAtom(display, "_XEMBED_INFO", False);
    m_messageData = XInternAtom(display, "_NET_SYSTEM_TRAY_MESSAGE_DATA", False);
    // MANAGER comes to the root with StructureNotifyMask.
    XWindowAttributes root{};
    XGetWindowAttributes(display, m_root, &root);
    XSelectInput(display, m_root, root.your_event_mask | StructureNotifyMask);
}

TX11TrayShell::~TX11TrayShell() {
    for (auto& [key, icon] : m_icons)
        XDestroyWindow(m_display, icon.xid);
    XFlush(m_display);
}

Window TX11TrayShell::FindHost() {
    XGrabServer(m_display); // the owner must not go between finding and watching it
    m_host = XGetSelectionOwner(m_display, m_selection);
    if (m_host) XSelectInput(m_display, m_host, StructureNotifyMask);
    XUngrabServer(m_display);
    XFlush(m_display);
    return m_host;
}

bool TX11TrayShell::Apply(TTrayOperation operation, const TTrayIconRecord& record) {
    const TKey key{record.window, record.id};
    auto it = m_icons.find(key);
    switch (operation) {
    case TTrayOperation::Add: {
        if (it != m_icons.end()) return false;
        TIcon& icon = m_icons[key];
        icon.record = record;
        XSetWindowAttributes attributes{};
        attributes.event_mask = iconEvents;
        attributes.background_pixel = ButtonFace;
        icon.xid =
            XCreateWindow(m_display, m_root, 0, 0, IconSize, IconSize, 0, CopyFromParent,
                          InputOutput, CopyFromParent, CWEventMask | CWBackPixel, &attributes);
        const long info[2] = {0, XEmbedMapped};
        XChangeProperty(m_display, icon.xid, m_xembedInfo, m_xembedInfo, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(info), 2);
        XStoreName(m_display, icon.xid, record.tip.c_str());
        XSizeHints hints{}; // the size the embedding host starts from
        hints.flags = PMinSize | PBaseSize;
        hints.min_width = hints.base_width = IconSize;
        hints.min_height = hints.base_height = IconSize;
        XSetWMNormalHints(m_display, icon.xid, &hints);
        if (!m_host) FindHost();
        if (m_host) Dock(icon);
        XFlush(m_display);
        return icon.docked;
    }
    case TTrayOperation::Modify:
        if (it == m_icons.end()) return false;
        it->second.record = record;
        XStoreName(m_display, it->second.xid, record.tip.c_str());
        Paint(it->second);
        XFlush(m_display);
        return it->second.docked;
    case TTrayOperation::Delete:
        if (it == m_icons.end()) return false;
        XDestroyWindow(m_display, it->second.xid);
        m_icons.erase(it);
        XFlush(m_display);
        return true;
    }
    return false;
}

void TX11TrayShell::SendToHost(Window window, Atom type, int format, const long* data) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = type;
    event.xclient.format = format;
    if (format == 32)
        std::copy(data, data + 5, event.xclient.data.l);
    else
        std::memcpy(event.xclient.data.b, data, sizeof event.xclient.data.b);
    XSendEvent(m_display, m_host, False, NoEventMask, &event);
}

bool TX11TrayShell::ShowMessage(const TTrayIconRecord& record, const std::string& text,
                                int timeoutMs) {
    auto it = m_icons.find({record.window, record.id});
    if (it == m_icons.end() || !it->second.docked || !m_host) return false;
    const Window xid = it->second.xid;
    const long begin[5] = {CurrentTime, SystemTrayBeginMessage, std::max(timeoutMs, 0),
                           static_cast<long>(text.size()), m_nextMessageId++};
    SendToHost(xid, m_opcode, 32, begin);
    for (std::size_t at = 0; at < text.size(); at += 20) {
        long piece[5] = {};
        std::memcpy(piece, text.data() + at, std::min<std::size_t>(20, text.size() - at));
        SendToHost(xid, m_messageData, 8, piece);
    }
    XFlush(m_display);
    return true;
}

void TX11TrayShell::Dock(TIcon& icon) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = m_host;
    event.xclient.message_type = m_opcode;
    event.xclient.format = 32;
    event.xclient.data.l[0] = CurrentTime;
    event.xclient.data.l[1] = SystemTrayRequestDock;
    event.xclient.data.l[2] = static_cast<long>(icon.xid);
    XSendEvent(m_display, m_host, False, NoEventMask, &event);
    icon.docked = true;
}

// The host's save set has put the window back on the root: take it off the screen.
void TX11TrayShell::Withdraw(TIcon& icon) {
    icon.docked = false;
    XWithdrawWindow(m_display, icon.xid, m_screen);
}

TX11TrayShell::TIcon* TX11TrayShell::FindByWindow(Window xid) {
    for (auto& [key, icon] : m_icons)
        if (icon.xid == xid) return &icon;
    return nullptr;
}

Window TX11TrayShell::IconWindow(std::uintptr_t window, std::uint32_t id) const {
    auto it = m_icons.find({window, id});
    return it == m_icons.end() ? 0 : it->second.xid;
}

void TX11TrayShell::Paint(const TIcon& icon) {
    XWindowAttributes attributes{};
    if (!XGetWindowAttributes(m_display, icon.xid, &attributes) || attributes.width <= 0 ||
        attributes.height <= 0)
        return;
    const int width = attributes.width, height = attributes.height;
    const TPixelBuffer scaled = ScaleTrayIcon(icon.record.icon, {width, height}, ButtonFace);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pixels[static_cast<std::size_t>(y) * width + x] = scaled.At(x, y);
    XImage* image =
        XCreateImage(m_display, attributes.visual, static_cast<unsigned>(attributes.depth), ZPixmap,
                     0, reinterpret_cast<char*>(pixels.data()), static_cast<unsigned>(width),
                     static_cast<unsigned>(height), 32, 0);
    if (!image) return;
    GC gc = XCreateGC(m_display, icon.xid, 0, nullptr);
    XPutImage(m_display, icon.xid, gc, image, 0, 0, 0, 0, static_cast<unsigned>(width),
              static_cast<unsigned>(height));
    XFreeGC(m_display, gc);
    image->data = nullptr; // the vector owns the pixels
    XDestroyImage(image);
}

void TX11TrayShell::OnButton(TIcon& icon, const XButtonEvent& e, bool press) {
    if (e.button < 1 || e.button > 3) return; // the wheel is not the shell's
    const std::uint32_t down = DownOf(e.button);
    if (!press) {
        Notify(icon.record, down + 1);
        return;
    }
    const std::int64_t now = m_nowMs();
    const bool second = icon.lastButton == e.button && now - icon.lastPress <= DoubleClickMs;
    Notify(icon.record, second ? down + 2 : down);
    icon.lastButton = second ? 0 : e.button;
    icon.lastPress = now;
}

bool TX11TrayShell::HandleEvent(const XEvent& event) {
    if (event.type == ClientMessage && event.xclient.window == m_root &&
        event.xclient.message_type == m_manager &&
        static_cast<Atom>(event.xclient.data.l[1]) == m_selection) {
        if (FindHost())
            for (auto& [key, icon] : m_icons)
                Dock(icon);
        XFlush(m_display);
        return true;
    }
    if (event.type == DestroyNotify && m_host && event.xdestroywindow.window == m_host) {
        m_host = 0;
        for (auto& [key, icon] : m_icons)
            Withdraw(icon);
        XFlush(m_display);
        return true;
    }
    TIcon* icon = FindByWindow(event.xany.window);
    if (!icon) return false;
    switch (event.type) {
    case ButtonPress:
    case ButtonRelease:
        OnButton(*icon, event.xbutton, event.type == ButtonPress);
        break;
    case MotionNotify:
        Notify(icon->record, MouseMove);
        break;
    case Expose:
        if (event.xexpose.count == 0) Paint(*icon);
        break;
    case ReparentNotify:
        // Back on the root while no host holds it: the host went.
        if (event.xreparent.parent == m_root && icon->docked && !m_host) Withdraw(*icon);
        break;
    default:
        break;
    }
    return true;
}

} // namespace qv
