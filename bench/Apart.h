#pragma once

#include <cstdio>

#include <sys/wait.h>
#include <unistd.h>

namespace zentrill::bench {

/// Whether the trial passes in a process of its own, whose peak of memory is its own as well.
template <typename Trial>
[[nodiscard]] bool passesApart(const Trial& trial) {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool passed = trial();
        std::fflush(nullptr);
        ::_exit(passed ? 0 : 1);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

} // namespace zentrill::bench
