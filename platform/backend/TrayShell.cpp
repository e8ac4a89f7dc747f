#include "TrayShell.h"

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

std::string RequestedTrayShell() {
    const char* value = std::getenv("QV_TRAY");
    if (!value) return {};
    const std::string requested = value;
    return requested == "headless" ? "fake" : requested;
}

} // namespace qv
