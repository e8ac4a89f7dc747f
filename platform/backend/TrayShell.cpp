#include "TrayShell.h"

#ifdef QV_HAVE_DBUS
#include "SniTray.h"
#endif

#include <algorithm>
#include <cstdlib>

namespace qv {

bool THeadlessTrayShell::Apply(TTrayOperation operation, const TTrayIconRecord& record) {
    m_calls.push_back({operation, record});
    if (!m_hostPresent) return false;
    const auto key = std::make_pair(record.window, record.id);
    switch (operation) {
    case TTrayOperation::Add:
        return m_icons.emplace(key, record).second;
    case TTrayOperation::Modify: {
        auto it = m_icons.find(key);
        if (it == m_icons.end()) return false;
        it->second = record;
        return true;
    }
    case TTrayOperation::Delete:
        return m_icons.erase(key) != 0;
    }
    return false;
}

bool THeadlessTrayShell::ShowMessage(const TTrayIconRecord& record, const std::string& text, int) {
    if (!m_icons.count({record.window, record.id})) return false;
    m_messages.push_back(text);
    return true;
}

bool THeadlessTrayShell::Inject(std::uintptr_t window, std::uint32_t id,
                                std::uint32_t mouseMessage) const {
    auto it = m_icons.find({window, id});
    if (it == m_icons.end()) return false;
    Notify(it->second, mouseMessage);
    return true;
}

namespace {

// The alpha-weighted average of a block of the picture, blended onto the ground.
std::uint32_t BlockOnGround(const TPixelBuffer& icon, TRect block, std::uint32_t ground) {
    std::uint64_t alpha = 0, sums[3] = {0, 0, 0}, count = 0;
    for (int y = block.top; y < block.bottom; ++y)
        for (int x = block.left; x < block.right; ++x) {
            const std::uint32_t p = icon.At(x, y);
            const std::uint32_t a = p >> 24;
            alpha += a;
            for (int c = 0; c < 3; ++c)
                sums[c] += ((p >> (16 - 8 * c)) & 0xFF) * a;
            ++count;
        }
    const std::uint64_t coverage = alpha / count;
    std::uint32_t out = 0;
    for (int c = 0; c < 3; ++c) {
        const std::uint64_t colour = alpha ? sums[c] / alpha : 0;
        const std::uint64_t under = (ground >> (16 - 8 * c)) & 0xFF;
        out |= static_cast<std::uint32_t>((colour * coverage + under * (255 - coverage)) / 255)
               << (16 - 8 * c);
    }
    return out;
}

} // namespace

TPixelBuffer ScaleTrayIcon(const TPixelBuffer& icon, TSize size, std::uint32_t ground) {
    TPixelBuffer out(std::max(size.cx, 0), std::max(size.cy, 0), ground);
    if (icon.IsEmpty()) return out;
    const std::int64_t w = icon.Width(), h = icon.Height();
    for (int y = 0; y < out.Height(); ++y)
        for (int x = 0; x < out.Width(); ++x) {
            const int x0 = static_cast<int>(x * w / size.cx);
            const int y0 = static_cast<int>(y * h / size.cy);
            const int x1 = std::max(x0 + 1, static_cast<int>((x + 1) * w / size.cx));
            const int y1 = std::max(y0 + 1, static_cast<int>((y + 1) * h / size.cy));
            out.At(x, y) = BlockOnGround(icon, {x0, y0, x1, y1}, ground);
        }
    return out;
}

std::string RequestedTrayShell() {
    const char* value = std::getenv("QV_TRAY");
    if (!value) return {};
    const std::string requested = value;
    return requested == "headless" ? "fake" : requested;
}

std::unique_ptr<TTrayShell>
ChooseTrayShell([[maybe_unused]] TBackend& loop,
                const std::function<std::unique_ptr<TTrayShell>()>& native) {
    const std::string requested = RequestedTrayShell();
    if (requested == "fake") return std::make_unique<THeadlessTrayShell>();
#ifdef QV_HAVE_DBUS
    if (requested.empty() || requested == "sni")
        if (auto sni = OpenSniTrayShell(loop, requested.empty())) return sni;
#endif
    return native();
}

} // namespace qv
