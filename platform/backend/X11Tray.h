#pragma once
// The notification-area shell of the X11 backend: the freedesktop System Tray Protocol
// (XEmbed). Each icon is a small window of its own, docked with the owner of
// _NET_SYSTEM_TRAY_S<screen> (SYSTEM_TRAY_REQUEST_DOCK) and marked mapped in _XEMBED_INFO.
// The picture is scaled (area average) to the size the host gives the window and blended
// onto the button-face grey. Presses and motion on the window become the mouse messages
// 512-521 (a second press of the same button within the double-click time is a double
// click). When the host goes, the window is withdrawn (the host's save set puts it back on the
// root); the next MANAGER message docks it again, also after an add that found no host.

#include "TrayShell.h"

#include <X11/Xlib.h>

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

namespace qv {

class TX11TrayShell : public TTrayShell {
public:
    TX11TrayShell(Display* display, int screen, std::function<std::int64_t()> nowMs);
    ~TX11TrayShell() override;
    TX11TrayShell(const TX11TrayShell&) = delete;
    TX11TrayShell& operator=(const TX11TrayShell&) = delete;

    const char* Name() const override { return "xembed"; }
    bool Apply(TTrayOperation operation, const TTrayIconRecord& record) override;
    // _NET_SYSTEM_TRAY_BEGIN_MESSAGE and the text in _NET_SYSTEM_TRAY_MESSAGE_DATA pieces.
    bool ShowMessage(const TTrayIconRecord& record, const std::string& text,
                     int timeoutMs) override;
    // True when the event was the tray's (an icon window's, the host's or MANAGER).
    bool HandleEvent(const XEvent& event);

    // The icon's window, for tests; 0 when the icon is not shown.
    Window IconWindow(std::uintptr_t window, std::uint32_t id) const;
    Window Host() const { return m_host; }

private:
    struct TIcon {
        TTrayIconRecord record;
        Window xid{0};
        bool docked{false};
        unsigned lastButton{0};
        std::int64_t lastPress{-1000000};
    };
    using TKey = std::pair<std::uintptr_t, std::uint32_t>;

    // The current host (owner of the tray selection), watched for its end; 0 when none.
    Window FindHost();
    void Dock(TIcon& icon);
    void SendToHost(Window window, Atom type, int format, const long* data);
    void Withdraw(TIcon& icon);
    void Paint(const TIcon& icon);
    TIcon* FindByWindow(Window xid);
    void OnButton(TIcon& icon, const XButtonEvent& e, bool press);

    Display* m_display;
    int m_screen;
    Window m_root;
    std::function<std::int64_t()> m_nowMs;
    Atom m_selection, m_opcode, m_manager, m_xembedInfo, m_messageData;
    long m_nextMessageId{1};
    Window m_host{0};
    std::map<TKey, TIcon> m_icons;
};

} // namespace qv
