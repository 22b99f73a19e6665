#include "Comparison.h"
#include "process/ShellCommandRunner.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace zentrill;

constexpr int rounds = 101;
/// What `run` waits after every command for output that is still on its way.
constexpr double settlingTime = 0.05;
constexpr std::size_t residentSize = std::size_t{1} << 30;
constexpr auto program = "/bin/true";

void fail(const char* what) {
    std::perror(what);
    std::exit(2);
}

void startBare() {
    char name[] = "true";
    char* const arguments[] = {name, nullptr};
    pid_t pid = -1;
    int status = 0;
    if (::posix_spawn(&pid, program, nullptr, nullptr, arguments, environ) != 0 ||
        ::waitpid(pid, &status, 0) != pid || status != 0) {
        fail(program);
    }
}

struct Medians {
    double ours = 0;
    double bare = 0;
};

/// Both in turn, so that the machine's moods meet both alike.
Medians measure(ShellCommandRunner& runner) {
    std::vector<double> ours;
    std::vector<double> bare;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(bench::secondsOf([&] {
                           if (!runner.run(program, {}).succeeded()) {
                               fail("run");
                           }
                       }) -
                       settlingTime);
        // The first start after an idle time is slower; ours has just idled through the settling time.
        ::usleep(static_cast<useconds_t>(settlingTime * 1e6));
        bare.push_back(bench::secondsOf(startBare));
        ::usleep(static_cast<useconds_t>(settlingTime * 1e6));
    }
    return {.ours = bench::median(ours), .bare = bench::median(bare)};
}

} // namespace

int main() {
    ShellCommandRunner runner;
    const Medians small = measure(runner);
    bool passed = bench::Comparison{.bench = "commands/start above the settling time",
                                    .peer = "posix_spawn and waitpid",
                                    .ours = small.ours,
                                    .theirs = small.bare,
                                    .target = 2}
                      .report();

    void* const memory =
        ::mmap(nullptr, residentSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        fail("mmap");
    }
    std::memset(memory, 1, residentSize);
    const Medians large = measure(runner);
    passed = bench::Comparison{.bench = "commands/start with 1 GiB resident",
                               .peer = "the same without",
                               .ours = large.ours,
                               .theirs = small.ours,
                               .target = 1.2}
                 .report() &&
             passed;
    return passed ? 0 : 1;
}
