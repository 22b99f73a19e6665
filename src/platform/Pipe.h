#pragma once

#include "platform/FileDescriptor.h"

namespace zentrill {

/// Both ends of a pipe. They close on exec, and are above the three standard descriptors even if this process
/// was started without these. Reading never blocks.
struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;

    /// Throws `std::system_error` when the system has no more descriptors to give.
    [[nodiscard]] static Pipe open();
};

} // namespace zentrill
