#pragma once

#include "platform/Pipe.h"

namespace zentrill {

/// Lets one thread wake another that waits for a descriptor to become readable.
class WakePipe {
public:
    /// Readable from a `wake` until the next `reset`.
    [[nodiscard]] int descriptor() const noexcept { return pipe_.reading.get(); }

    /// From any thread, once until the next `reset`.
    void wake() const noexcept;

    void reset() const noexcept;

private:
    Pipe pipe_ = Pipe::open();
};

} // namespace zentrill
