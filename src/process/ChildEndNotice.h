#pragma once

#include "platform/FileDescriptor.h"

#include <chrono>
#include <cstdint>

#include <sys/types.h>

namespace zentrill {

/// A descriptor that becomes readable, and stays so, when a child has ended. Leaves the child unreaped.
class ChildEndNotice {
public:
    enum class Method : std::uint8_t {
        /// A process descriptor where the system has them, otherwise a thread.
        best,
        /// A thread that waits for the child, as on systems without process descriptors.
        thread,
    };

    /// Throws `std::system_error` when the system has no descriptor or thread to give.
    explicit ChildEndNotice(pid_t pid, Method method = Method::best);

    /// For `poll` with POLLIN; a hang-up counts as readable.
    [[nodiscard]] int descriptor() const noexcept { return descriptor_.get(); }

    /// Whether the child ends within `limit`.
    [[nodiscard]] bool wait(std::chrono::milliseconds limit) const noexcept;

private:
    FileDescriptor descriptor_;
};

} // namespace zentrill
