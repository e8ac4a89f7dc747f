#pragma once
// The notification-area shell of the X11 backend: the freedesktop System Tray Protocol
// (XEmbed). Each icon is a small window of its own, docked with the owner of
// _NET_SYSTEM_TRAY_S<screen> (SYSTEM_TRAY_REQUEST_DOCK) and marked mapped in _XEMBED_INFO.
// The picture is scaled (area average) to the size the host gives the window and blended
// onto the button-face grey; when the host asks for a visual with alpha
// (_NET_SYSTEM_TRAY_VISUAL, 32 bits) the window has that visual and its own colormap and the
// picture keeps its transparency (premultiplied). Presses and motion on the window become the
// mouse messages 512-521 (a second press of the same button within the double-click time is a
// double click); the pointer entering the window reports the tip, leaving it or a press hides
// it. When the host goes, the window is withdrawn (the host's save set puts it back on the
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
        Colormap colormap{0};    // the window's own, with a visual of the host's
        Visual* visual{nullptr}; // null: the screen's default visual
        bool docked{false};
        bool tipShown{false};
        unsigned lastButton{0};
        std::int64_t lastPress{-1000000};
    };
    using TKey = std::pair<std::uintptr_t, std::uint32_t>;

    // The current host (owner of the tray selection), watched for its end; 0 when none.
    Window FindHost();
    // The visual the host asks icons to use when it has 32 bits (alpha), else null.
    Visual* HostArgbVisual();
    // A new window for the icon with `visual` (null: the default), replacing any old one.
    void MakeWindow(TIcon& icon, Visual* visual);
    void DestroyWindow(TIcon& icon);
    // Asks the host to take the icon, in a new window first when the host wants another visual.
    void Dock(TIcon& icon, Visual* visual);
    void SendToHost(Window window, Atom type, int format, const long* data);
    void Withdraw(TIcon& icon);
    void Paint(const TIcon& icon);
    TIcon* FindByWindow(Window xid);
    void OnButton(TIcon& icon, const XButtonEvent& e, bool press);
    void ShowTip(TIcon& icon, TPoint screen);
    void HideTip(TIcon& icon);

    Display* m_display;
    int m_screen;
    Window m_root;
    std::function<std::int64_t()> m_nowMs;
    Atom m_selection, m_opcode, m_manager, m_xembedInfo, m_messageData, m_visualAtom;
    long m_nextMessageId{1};
    Window m_host{0};
    std::map<TKey, TIcon> m_icons;
};

} // namespace qv
