#include "X11Tray.h"

#include <X11/Xatom.h>
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
constexpr std::uint32_t ButtonFace = 0xF0F0F0;
constexpr long iconEvents = ButtonPressMask | ButtonReleaseMask | PointerMotionMask |
                            EnterWindowMask | LeaveWindowMask | ExposureMask | StructureNotifyMask;

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
    m_visualAtom = XInternAtom(display, "_NET_SYSTEM_TRAY_VISUAL", False);
    // MANAGER comes to the root with StructureNotifyMask.
    XWindowAttributes root{};
    XGetWindowAttributes(display, m_root, &root);
    XSelectInput(display, m_root, root.your_event_mask | StructureNotifyMask);
}

TX11TrayShell::~TX11TrayShell() {
    for (auto& [key, icon] : m_icons) {
        icon.tipShown = false; // nobody is left to hide it for
        DestroyWindow(icon);
    }
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

Visual* TX11TrayShell::HostArgbVisual() {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0, after = 0;
    unsigned char* data = nullptr;
    if (XGetWindowProperty(m_display, m_host, m_visualAtom, 0, 1, False, XA_VISUALID, &type,
                           &format, &count, &after, &data) != Success)
        return nullptr;
    const VisualID id = data && format == 32 && count == 1 ? *reinterpret_cast<VisualID*>(data) : 0;
    if (data) XFree(data);
    if (!id) return nullptr;
    XVisualInfo wanted{};
    wanted.visualid = id;
    wanted.screen = m_screen;
    int matches = 0;
    XVisualInfo* found =
        XGetVisualInfo(m_display, VisualIDMask | VisualScreenMask, &wanted, &matches);
    Visual* visual = found && matches > 0 && found->depth == 32 ? found->visual : nullptr;
    if (found) XFree(found);
    return visual;
}

void TX11TrayShell::MakeWindow(TIcon& icon, Visual* visual) {
    DestroyWindow(icon);
    XSetWindowAttributes attributes{};
    attributes.event_mask = iconEvents;
    unsigned long mask = CWEventMask | CWBackPixel;
    int depth = CopyFromParent;
    if (visual) { // transparent until painted; the border pixel must match the depth too
        icon.colormap = XCreateColormap(m_display, m_root, visual, AllocNone);
        attributes.colormap = icon.colormap;
        attributes.background_pixel = 0;
        attributes.border_pixel = 0;
        mask |= CWColormap | CWBorderPixel;
        depth = 32;
    } else {
        attributes.background_pixel = ButtonFace;
    }
    icon.visual = visual;
    icon.xid = XCreateWindow(m_display, m_root, 0, 0, IconSize, IconSize, 0, depth, InputOutput,
                             visual ? visual : CopyFromParent, mask, &attributes);
    const long info[2] = {0, XEmbedMapped};
    XChangeProperty(m_display, icon.xid, m_xembedInfo, m_xembedInfo, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(info), 2);
    XStoreName(m_display, icon.xid, icon.record.tip.c_str());
    XSizeHints hints{}; // the size the embedding host starts from
    hints.flags = PMinSize | PBaseSize;
    hints.min_width = hints.base_width = IconSize;
    hints.min_height = hints.base_height = IconSize;
    XSetWMNormalHints(m_display, icon.xid, &hints);
}

void TX11TrayShell::DestroyWindow(TIcon& icon) {
    HideTip(icon);
    if (icon.xid) XDestroyWindow(m_display, icon.xid);
    if (icon.colormap) XFreeColormap(m_display, icon.colormap);
    icon.xid = 0;
    icon.colormap = 0;
    icon.docked = false;
}

bool TX11TrayShell::Apply(TTrayOperation operation, const TTrayIconRecord& record) {
    const TKey key{record.window, record.id};
    auto it = m_icons.find(key);
    switch (operation) {
    case TTrayOperation::Add: {
        if (it != m_icons.end()) return false;
        TIcon& icon = m_icons[key];
        icon.record = record;
        if (!m_host) FindHost();
        Visual* visual = m_host ? HostArgbVisual() : nullptr;
        MakeWindow(icon, visual);
        if (m_host) Dock(icon, visual);
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
        DestroyWindow(it->second);
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

void TX11TrayShell::Dock(TIcon& icon, Visual* visual) {
    if (visual != icon.visual) MakeWindow(icon, visual);
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
    HideTip(icon);
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
    const TPixelBuffer scaled = icon.visual
                                    ? ScaleTrayIconArgb(icon.record.icon, {width, height})
                                    : ScaleTrayIcon(icon.record.icon, {width, height}, ButtonFace);
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

void TX11TrayShell::ShowTip(TIcon& icon, TPoint screen) {
    if (icon.record.tip.empty()) return;
    icon.tipShown = true;
    NotifyTip(icon.record.tip, screen);
}

void TX11TrayShell::HideTip(TIcon& icon) {
    if (!icon.tipShown) return;
    icon.tipShown = false;
    NotifyTip({}, {});
}

void TX11TrayShell::OnButton(TIcon& icon, const XButtonEvent& e, bool press) {
    if (press) HideTip(icon);
    if (e.button < 1 || e.button > 3) return; // the wheel is not the shell's
    const std::uint32_t down = DownOf(e.button);
    if (!press) {
        Notify(icon.record, down + 1);
        return;
    }
    const std::int64_t now = m_nowMs();
    const bool second = icon.lastButton == e.button && now - icon.lastPress <= TrayDoubleClickMs;
    Notify(icon.record, second ? down + 2 : down);
    icon.lastButton = second ? 0 : e.button;
    icon.lastPress = now;
}

bool TX11TrayShell::HandleEvent(const XEvent& event) {
    if (event.type == ClientMessage && event.xclient.window == m_root &&
        event.xclient.message_type == m_manager &&
        static_cast<Atom>(event.xclient.data.l[1]) == m_selection) {
        if (FindHost()) {
            Visual* visual = HostArgbVisual();
            for (auto& [key, icon] : m_icons)
                Dock(icon, visual);
        }
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
    case EnterNotify:
        ShowTip(*icon, {event.xcrossing.x_root, event.xcrossing.y_root});
        break;
    case LeaveNotify:
        HideTip(*icon);
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
