#include "FdWatches.h"

#include <algorithm>

namespace qv {

void TFdWatches::Add(int fd, TCallback onReadable) {
    Remove(fd);
    m_watches.push_back({fd, ++m_nextSerial, std::move(onReadable)});
}

void TFdWatches::Remove(int fd) {
    std::erase_if(m_watches, [fd](const TWatch& w) { return w.fd == fd; });
}

void TFdWatches::AppendPollFds(std::vector<pollfd>& fds) const {
    for (const TWatch& w : m_watches)
        fds.push_back({w.fd, POLLIN, 0});
}

void TFdWatches::Dispatch(const std::vector<pollfd>& fds, std::size_t first) {
    // The serials of the ready watches first: callbacks may change the list.
    std::vector<std::pair<int, unsigned>> ready;
    for (std::size_t i = first; i < fds.size() && i - first < m_watches.size(); ++i)
        if (fds[i].revents != 0) ready.emplace_back(fds[i].fd, m_watches[i - first].serial);
    for (const std::pair<int, unsigned>& entry : ready) {
        const auto it = std::find_if(m_watches.begin(), m_watches.end(), [&](const TWatch& w) {
            return w.fd == entry.first && w.serial == entry.second;
        });
        if (it == m_watches.end()) continue;
        const TCallback callback = it->onReadable; // the watch may go while it runs
        callback();
    }
}

} // namespace qv
