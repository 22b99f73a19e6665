#pragma once

#include <mutex>

namespace zentrill {

/// The cancellation flag of one operation, shared by the main thread, which sets it, and the worker, which
/// polls it between steps. It is never reset: the next operation gets a new one.
class CancellableOperation final {
public:
    [[nodiscard]] bool isCancelled() const {
        const std::lock_guard guard(lock_);
        return cancelled_;
    }

    void cancel() {
        const std::lock_guard guard(lock_);
        cancelled_ = true;
    }

private:
    mutable std::mutex lock_;
    bool cancelled_ = false;
};

} // namespace zentrill
