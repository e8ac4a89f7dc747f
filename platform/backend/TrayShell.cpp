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

bool THeadlessTrayShell::InjectHover(std::uintptr_t window, std::uint32_t id, bool inside,
                                     TPoint screen) const {
    auto it = m_icons.find({window, id});
    if (it == m_icons.end()) return false;
    NotifyTip(inside ? it->second.tip : std::string(), screen);
    return true;
}

namespace {

// A block of the picture averaged: its alpha-weighted colour (0xRRGGBB, straight) and its
// mean alpha.
struct TBlockAverage {
    std::uint32_t colour{0};
    std::uint32_t coverage{0};
};

TBlockAverage AverageBlock(const TPixelBuffer& icon, TRect block) {
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
    TBlockAverage average{0, static_cast<std::uint32_t>(alpha / count)};
    for (int c = 0; c < 3; ++c)
        if (alpha) average.colour |= static_cast<std::uint32_t>(sums[c] / alpha) << (16 - 8 * c);
    return average;
}

// The average blended onto the ground (0xRRGGBB) by its coverage.
std::uint32_t OnGround(TBlockAverage average, std::uint32_t ground) {
    std::uint32_t out = 0;
    for (int c = 0; c < 3; ++c) {
        const std::uint64_t colour = (average.colour >> (16 - 8 * c)) & 0xFF;
        const std::uint64_t under = (ground >> (16 - 8 * c)) & 0xFF;
        out |= static_cast<std::uint32_t>(
                   (colour * average.coverage + under * (255 - average.coverage)) / 255)
               << (16 - 8 * c);
    }
    return out;
}

// The block of the picture that covers pixel (x, y) of a picture of `size`.
TRect SourceBlock(const TPixelBuffer& icon, TSize size, int x, int y) {
    const std::int64_t w = icon.Width(), h = icon.Height();
    const int x0 = static_cast<int>(x * w / size.cx);
    const int y0 = static_cast<int>(y * h / size.cy);
    const int x1 = std::max(x0 + 1, static_cast<int>((x + 1) * w / size.cx));
    const int y1 = std::max(y0 + 1, static_cast<int>((y + 1) * h / size.cy));
    return {x0, y0, x1, y1};
}

} // namespace

namespace {

// The picture scaled to `size` by area average, each pixel made from its block's average.
template <class PixelOf>
TPixelBuffer ScaleByAverage(const TPixelBuffer& icon, TSize size, std::uint32_t empty,
                            PixelOf pixelOf) {
    TPixelBuffer out(std::max(size.cx, 0), std::max(size.cy, 0), empty);
    if (icon.IsEmpty()) return out;
    for (int y = 0; y < out.Height(); ++y)
        for (int x = 0; x < out.Width(); ++x)
            out.At(x, y) = pixelOf(AverageBlock(icon, SourceBlock(icon, size, x, y)));
    return out;
}

} // namespace

TPixelBuffer ScaleTrayIcon(const TPixelBuffer& icon, TSize size, std::uint32_t ground) {
    return ScaleByAverage(icon, size, ground,
                          [ground](TBlockAverage a) { return OnGround(a, ground); });
}

// On a black ground the blend is the colour times the coverage: the premultiplied colour.
TPixelBuffer ScaleTrayIconArgb(const TPixelBuffer& icon, TSize size) {
    return ScaleByAverage(icon, size, 0,
                          [](TBlockAverage a) { return a.coverage << 24 | OnGround(a, 0); });
}

TPixelBuffer ScaleTrayIconStraight(const TPixelBuffer& icon, TSize size) {
    return ScaleByAverage(icon, size, 0,
                          [](TBlockAverage a) { return a.coverage << 24 | a.colour; });
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
