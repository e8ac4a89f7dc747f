#pragma once
// The notification-area shell over D-Bus (built with libdbus-1 only, QV_HAVE_DBUS): each icon
// is a StatusNotifierItem on a session-bus connection and name of its own
// (org.kde.StatusNotifierItem-<pid>-<n>, object /StatusNotifierItem), registered with
// org.kde.StatusNotifierWatcher and registered again whenever that name gets a new owner.
//
// The item publishes Category "ApplicationStatus", Id (the program's name and the icon's id),
// Title (the tip, else the program's name), Status "Active", IconPixmap (the picture as ARGB32
// in network byte order, its own size up to 256 pixels a side, scaled down by area average
// beyond; none for an empty picture), ToolTip (title = the tip) and ItemIsMenu false; changes
// send NewIcon, NewTitle and NewToolTip. Activate, ContextMenu and SecondaryActivate become the
// left, right and middle button's down and up (512-521; a second one of the same button within
// the double-click time is a double click); Scroll is ignored. A balloon is a notification
// (org.freedesktop.Notifications.Notify). The connections' descriptors and timeouts are
// watched in the backend's loop (WatchFd; a timer descriptor per timeout): no thread.

#include "TrayShell.h"

#include <memory>
#include <string>

namespace qv {

class TBackend;

// The session bus's address: DBUS_SESSION_BUS_ADDRESS, else $XDG_RUNTIME_DIR/bus when that
// socket exists; empty when neither (no bus is ever started for it).
std::string SessionBusAddress();

// The shell on the session bus; null when no session bus answers, or when `requireWatcher`
// and no watcher owns org.kde.StatusNotifierWatcher. `loop` runs the bus connections.
std::unique_ptr<TTrayShell> OpenSniTrayShell(TBackend& loop, bool requireWatcher);

} // namespace qv
