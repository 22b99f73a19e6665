#include "platform/FileDescriptor.h"

#include <cerrno>

#include <unistd.h>

namespace zentrill {

void FileDescriptor::reset() noexcept {
    if (descriptor_ < 0) {
        return;
    }
    const int saved = errno;
    // Never retried on EINTR: Linux has released the number by then, and another thread may own it.
    ::close(std::exchange(descriptor_, -1));
    errno = saved;
}

} // namespace zentrill
