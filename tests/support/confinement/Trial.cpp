#include "support/confinement/Trial.h"

#include "support/confinement/Check.h"

#include <array>
#include <exception>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

constexpr int passed = 0;
constexpr int failed = 1;

std::string contentOf(int pipe) {
    std::string content;
    std::array<char, 512> part{};
    while (true) {
        const ssize_t count = ::read(pipe, part.data(), part.size());
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return content;
        }
        content.append(part.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

} // namespace

std::optional<std::string> failureInChild(const std::function<void()>& body) {
    std::array<int, 2> ends{};
    check(::pipe2(ends.data(), O_CLOEXEC), "pipe");
    const pid_t child = check(::fork(), "fork");
    if (child == 0) {
        try {
            body();
        } catch (const std::exception& error) {
            const std::string text = error.what();
            static_cast<void>(!::write(ends[1], text.data(), text.size()));
            ::_exit(failed);
        }
        ::_exit(passed);
    }
    ::close(ends[1]);
    std::string failure = contentOf(ends[0]);
    ::close(ends[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return "the trial's end was missed";
        }
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == passed) {
        return std::nullopt;
    }
    return failure.empty() ? "the trial ended early" : failure;
}

} // namespace zentrill::confinement
