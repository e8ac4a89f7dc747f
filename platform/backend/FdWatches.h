#pragma once
// TFdWatches: the file descriptors a backend's wait watches besides its own (a child
// process's pidfd, a bus connection), each with the call to run once it is readable. Both
// backends poll them together with their wake-up descriptor, so a wait for a process or a
// message sleeps in the loop's one poll instead of a thread per wait. Used on the main
// thread only, like the loop.

#include <functional>
#include <poll.h>
#include <vector>

namespace qv {

class TFdWatches {
public:
    using TCallback = std::function<void()>;

    // Watches `fd` (replacing an earlier watch of it).
    void Add(int fd, TCallback onReadable);
    void Remove(int fd);
    bool Empty() const { return m_watches.empty(); }
    std::size_t Count() const { return m_watches.size(); }
    // Appends one pollfd per watch, in watch order.
    void AppendPollFds(std::vector<pollfd>& fds) const;
    // Runs the callbacks of the descriptors that poll reported ready in fds[first...]
    // (appended by AppendPollFds). A callback may add or remove watches; one removed by an
    // earlier callback is not run.
    void Dispatch(const std::vector<pollfd>& fds, std::size_t first);

private:
    struct TWatch {
        int fd;
        unsigned serial;
        TCallback onReadable;
    };
    std::vector<TWatch> m_watches;
    unsigned m_nextSerial{0};
};

} // namespace qv
