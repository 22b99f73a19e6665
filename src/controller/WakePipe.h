#pragma once

#include "platform/FileDescriptor.h"

namespace zentrill {

/// Lets one thread wake another that waits for a descriptor to become readable.
class WakePipe {
public:
    WakePipe();

    /// Readable from a `wake` until the next `reset`.
    [[nodiscard]] int descriptor() const noexcept { return readingEnd_.get(); }

    /// From any thread; never blocks.
    void wake() const noexcept;

    void reset() const noexcept;

private:
    FileDescriptor readingEnd_;
    FileDescriptor writingEnd_;
};

} // namespace zentrill
