#include "platform/Pipe.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace zentrill {

namespace {

[[noreturn]] void fail() {
    throw std::system_error(errno, std::generic_category());
}

void moveAboveStandardDescriptors(FileDescriptor& descriptor) {
    if (descriptor.get() > STDERR_FILENO) {
        return;
    }
    FileDescriptor moved(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved) {
        fail();
    }
    descriptor = std::move(moved);
}

} // namespace

Pipe Pipe::open() {
    std::array<int, 2> ends{-1, -1};
#ifdef __APPLE__
    // No pipe2 there; the children are kept apart by POSIX_SPAWN_CLOEXEC_DEFAULT, so the gap is harmless.
    const bool made = ::pipe(ends.data()) == 0;
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
#else
    const bool made = ::pipe2(ends.data(), O_CLOEXEC) == 0;
#endif
    if (!made) {
        fail();
    }
    Pipe pipe{.reading = FileDescriptor(ends[0]), .writing = FileDescriptor(ends[1])};
    moveAboveStandardDescriptors(pipe.reading);
    moveAboveStandardDescriptors(pipe.writing);
    if (::fcntl(pipe.reading.get(), F_SETFL, O_NONBLOCK) != 0) {
        fail();
    }
    return pipe;
}

} // namespace zentrill
