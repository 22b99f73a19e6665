#include "support/Processes.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>
#ifdef __APPLE__
#include <libproc.h>

#include <sys/proc.h>
#endif

namespace zentrill::test {

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

bool isGone(pid_t pid) {
#ifdef __APPLE__
    proc_bsdinfo process{};
    return ::proc_pidinfo(pid, PROC_PIDTBSDINFO, 0, &process, sizeof process) <= 0 ||
           process.pbi_status == SZOMB;
#else
    const std::string stat = contentOf("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t state = stat.rfind(") ");
    return state == std::string::npos || stat[state + 2] == 'Z' || stat[state + 2] == 'X';
#endif
}

bool hasNoChildren() {
    siginfo_t status{};
    return ::waitid(P_ALL, 0, &status, WEXITED | WNOHANG | WNOWAIT) != 0 && errno == ECHILD;
}

std::size_t openDescriptorCount() {
    const std::filesystem::directory_iterator entries("/dev/fd");
    // One of them is the listing's own.
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries))) - 1;
}

bool holdsInForkedChild(const std::function<bool()>& body) {
    const pid_t pid = ::fork();
    if (pid < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (pid == 0) {
        ::_exit(body() ? 0 : 1);
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string contentOf(const std::string& path) {
    const std::ifstream file(path, std::ios::binary);
    // Unlike the file itself it does not throw where a process ends while it is read.
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

} // namespace zentrill::test
