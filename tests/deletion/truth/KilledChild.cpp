#include "truth/KilledChild.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

namespace zentrill::test {

bool finishesWithin(std::chrono::nanoseconds delay, const std::function<void()>& body) {
    std::array<int, 2> started{};
    if (::pipe(started.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        ::close(started[0]);
        ::close(started[1]); // The other end sees that.
        body();
        ::_exit(0);
    }
    ::close(started[1]);
    char ignored = 0;
    while (::read(started[0], &ignored, 1) < 0 && errno == EINTR) {
    }
    // A sleep would be too coarse for what takes a fraction of a millisecond.
    const auto end = std::chrono::steady_clock::now() + delay;
    while (std::chrono::steady_clock::now() < end) {
    }
    ::close(started[0]);
    ::kill(child, SIGKILL);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status);
}

} // namespace zentrill::test
