#include "process/AbandonedChildren.h"

#include <cerrno>
#include <mutex>
#include <vector>

#include <sys/wait.h>

namespace zentrill::abandoned_children {

namespace {

struct Register {
    std::mutex mutex;
    std::vector<pid_t> children;
};

Register& shared() {
    // Never destroyed: a worker may still be running a command while the process exits.
    static auto& instance = *new Register;
    return instance;
}

} // namespace

void add(pid_t pid) {
    Register& abandoned = shared();
    const std::lock_guard lock(abandoned.mutex);
    abandoned.children.push_back(pid);
}

void reapEnded() {
    Register& abandoned = shared();
    const std::lock_guard lock(abandoned.mutex);
    std::erase_if(abandoned.children, [](pid_t pid) {
        const pid_t ended = ::waitpid(pid, nullptr, WNOHANG);
        return ended > 0 || (ended < 0 && errno == ECHILD);
    });
}

} // namespace zentrill::abandoned_children
