#pragma once
// The notification-area seam: the backend's shell shows, changes and removes icons beside the
// clock and reports the mouse on them as classic mouse messages (512-521) to the icon's
// window through a notify callback the framework installs. Which shell a backend uses is
// chosen at run time (ChooseTrayShell): QV_TRAY=fake (or headless) forces the recording fake;
// otherwise a StatusNotifierItem when a watcher is on the session bus, else the backend's own
// (the headless backend always uses the fake).
//
// THeadlessTrayShell records every call and can inject mouse messages, as a shell would send
// them; it can also play a shell without a host, which refuses every add.

#include "platform/graphics/PixelBuffer.h"
#include "platform/graphics/Types.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace qv {

class TBackend;

// What the shell needs of an icon: the window its notifications go to and the icon's id
// (together they tell icons apart), the valid parts, the callback message, the picture and
// the tip.
struct TTrayIconRecord {
    std::uintptr_t window{0};
    std::uint32_t id{0};
    std::uint32_t flags{0};
    std::uint32_t callbackMessage{0};
    TPixelBuffer icon;
    std::string tip;
};

enum class TTrayOperation { Add, Modify, Delete };

class TTrayShell {
public:
    // window, callback message, icon id, mouse message.
    using TNotify =
        std::function<void(std::uintptr_t, std::uint32_t, std::uint32_t, std::uint32_t)>;
    // A shell that leaves the tip to the framework reports it when the pointer comes onto an
    // icon (the tip to show near the screen point) and an empty tip when it leaves or presses.
    using TTipNotify = std::function<void(const std::string&, TPoint)>;

    virtual ~TTrayShell() = default;
    virtual const char* Name() const = 0;
    // True when the shell did what was asked.
    virtual bool Apply(TTrayOperation operation, const TTrayIconRecord& record) = 0;
    // A balloon message beside a shown icon for about `timeoutMs` (0: until dismissed); false
    // when the shell cannot show it.
    virtual bool ShowMessage(const TTrayIconRecord& record, const std::string& text,
                             int timeoutMs) = 0;

    void SetNotify(TNotify notify) { m_notify = std::move(notify); }
    bool HasNotify() const { return static_cast<bool>(m_notify); }
    void SetTipNotify(TTipNotify notify) { m_tipNotify = std::move(notify); }

protected:
    void Notify(const TTrayIconRecord& icon, std::uint32_t mouseMessage) const {
        if (m_notify) m_notify(icon.window, icon.callbackMessage, icon.id, mouseMessage);
    }
    void NotifyTip(const std::string& tip, TPoint screen) const {
        if (m_tipNotify) m_tipNotify(tip, screen);
    }

private:
    TNotify m_notify;
    TTipNotify m_tipNotify;
};

class THeadlessTrayShell : public TTrayShell {
public:
    struct TCall {
        TTrayOperation operation;
        TTrayIconRecord record;
    };
    const char* Name() const override { return "fake"; }
    bool Apply(TTrayOperation operation, const TTrayIconRecord& record) override;
    bool ShowMessage(const TTrayIconRecord& record, const std::string& text,
                     int timeoutMs) override;

    const std::vector<TCall>& Calls() const { return m_calls; }
    // The balloon texts shown, in order.
    const std::vector<std::string>& Messages() const { return m_messages; }
    void ClearCalls() { m_calls.clear(); }
    // The icons shown, by window and id.
    const std::map<std::pair<std::uintptr_t, std::uint32_t>, TTrayIconRecord>& Icons() const {
        return m_icons;
    }
    // Without a host every add is refused (and modify and delete find nothing).
    void SetHostPresent(bool present) { m_hostPresent = present; }
    // Sends a mouse message as the shell would for a shown icon; false when not shown.
    bool Inject(std::uintptr_t window, std::uint32_t id, std::uint32_t mouseMessage) const;
    // The pointer comes to rest on a shown icon at `screen` (its tip is reported) or leaves
    // it (an empty tip); false when not shown.
    bool InjectHover(std::uintptr_t window, std::uint32_t id, bool inside, TPoint screen) const;

private:
    std::vector<TCall> m_calls;
    std::vector<std::string> m_messages;
    std::map<std::pair<std::uintptr_t, std::uint32_t>, TTrayIconRecord> m_icons;
    bool m_hostPresent{true};
};

// The picture (0xAARRGGBB) scaled to `size` by area average and blended onto `ground`
// (0xRRGGBB); all ground when the picture is empty.
TPixelBuffer ScaleTrayIcon(const TPixelBuffer& icon, TSize size, std::uint32_t ground);
// The picture scaled the same way with its coverage kept: premultiplied 0xAARRGGBB, as a
// 32-bit visual with alpha wants it; transparent when the picture is empty.
TPixelBuffer ScaleTrayIconArgb(const TPixelBuffer& icon, TSize size);
// The picture scaled the same way with straight (not premultiplied) alpha, as
// StatusNotifierItem pictures are published.
TPixelBuffer ScaleTrayIconStraight(const TPixelBuffer& icon, TSize size);

// QV_TRAY's choice: "fake" for the recording fake, "" when unset, else the value.
std::string RequestedTrayShell();

// A second press of the same button on an icon within this time is a double click.
constexpr std::int64_t TrayDoubleClickMs = 500;

// The shell of a backend whose windowing system has a notification area of its own
// (`native` makes that shell): QV_TRAY=fake the recording fake; unset, the StatusNotifierItem
// shell (platform/backend/SniTray.h) when a watcher owns org.kde.StatusNotifierWatcher on the
// session bus, else native; QV_TRAY=sni the StatusNotifierItem shell whenever a session bus
// answers (its icons register once a watcher comes); any other value (xembed) native. Without
// D-Bus support in the build the StatusNotifierItem shell is never chosen.
std::unique_ptr<TTrayShell>
ChooseTrayShell(TBackend& loop, const std::function<std::unique_ptr<TTrayShell>()>& native);

} // namespace qv
