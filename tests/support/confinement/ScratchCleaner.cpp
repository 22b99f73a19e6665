#include "support/confinement/ScratchCleaner.h"

#include "support/confinement/Check.h"
#include "support/confinement/EmptyFolder.h"

#include <array>
#include <csignal>
#include <exception>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

void waitFor(pid_t child) {
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void empty(const Scratch& scratch, const std::function<void()>& confine) {
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            confine();
            for (const std::string& folder : scratch.folders()) {
                emptyFolder(folder);
            }
        } catch (const std::exception&) {
            // Nobody is left to be told; what is left lies in a folder for temporary files.
            ::_exit(1);
        }
        ::_exit(0);
    }
    waitFor(child);
}

/// Away from everything that could end it early, or that waits for its descriptors to be closed.
void leave(int waitingPlace) {
    ::setsid();
    for (const int number : {SIGHUP, SIGINT, SIGTERM, SIGPIPE}) {
        ::signal(number, SIG_IGN);
    }
    ::signal(SIGCHLD, SIG_DFL);
    ::prctl(PR_SET_NAME, "zentrill-clean");
    ::dup2(waitingPlace, STDIN_FILENO);
    const int nothing = ::open("/dev/null", O_WRONLY);
    ::dup2(nothing, STDOUT_FILENO);
    ::dup2(nothing, STDERR_FILENO);
    ::closefrom(STDERR_FILENO + 1);
    [[maybe_unused]] const int moved = ::chdir("/");
}

void clean(const Scratch& scratch, const std::function<void()>& confine) {
    for (char nothing = 0; ::read(STDIN_FILENO, &nothing, 1) < 0 && errno == EINTR;) {
    }
    empty(scratch, confine);
    scratch.removeEmpty();
}

} // namespace

int startScratchCleaner(const Scratch& scratch, const std::function<void()>& confine) {
    std::array<int, 2> ends{};
    check(::pipe2(ends.data(), O_CLOEXEC), "pipe");
    const pid_t starter = check(::fork(), "fork");
    if (starter == 0) {
        // First of all, or what ends this process's group would end the cleaner with it.
        leave(ends[0]);
        if (::fork() == 0) {
            clean(scratch, confine);
        }
        ::_exit(0);
    }
    waitFor(starter);
    ::close(ends[0]);
    return ends[1];
}

} // namespace zentrill::confinement
