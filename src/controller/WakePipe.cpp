#include "controller/WakePipe.h"

#include "platform/Precondition.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace zentrill {

WakePipe::WakePipe() {
    std::array<int, 2> ends{};
    precondition(::pipe(ends.data()) == 0, "no descriptor is left for the wake-up pipe");
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    readingEnd_ = FileDescriptor(ends[0]);
    writingEnd_ = FileDescriptor(ends[1]);
}

void WakePipe::wake() const noexcept {
    const char token = 0;
    // A full pipe is readable as it is, so the one failure worth a second try is the interrupted call.
    while (::write(writingEnd_.get(), &token, sizeof token) < 0 && errno == EINTR) {
    }
}

void WakePipe::reset() const noexcept {
    std::array<char, 64> tokens{};
    for (;;) {
        const ssize_t count = ::read(readingEnd_.get(), tokens.data(), tokens.size());
        if (count <= 0 && !(count < 0 && errno == EINTR))
            return;
    }
}

} // namespace zentrill
