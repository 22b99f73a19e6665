#include "platform/WakePipe.h"

#include <cerrno>

#include <unistd.h>

namespace zentrill {

void WakePipe::wake() const noexcept {
    const char token = 0;
    while (::write(pipe_.writing.get(), &token, sizeof token) < 0 && errno == EINTR) {
    }
}

void WakePipe::reset() const noexcept {
    char token = 0;
    while (::read(pipe_.reading.get(), &token, sizeof token) < 0 && errno == EINTR) {
    }
}

} // namespace zentrill
