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

constexpr int rounds = 301;
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

/// Both in turn and each first every other time, so that the machine's moods meet both alike.
Medians measure(ShellCommandRunner& runner) {
    std::vector<double> ours;
    std::vector<double> bare;
    const auto measureOurs = [&] {
        ours.push_back(bench::secondsOf([&] {
            if (!runner.run(program, {}).succeeded()) {
                fail("run");
            }
        }));
    };
    const auto measureBare = [&] { bare.push_back(bench::secondsOf(startBare)); };
    for (int round = 0; round < rounds; ++round) {
        if (round % 2 == 0) {
            measureOurs();
            measureBare();
        } else {
            measureBare();
            measureOurs();
        }
    }
    return {.ours = bench::median(ours), .bare = bench::median(bare)};
}

} // namespace

int main() {
    ShellCommandRunner runner;
    const Medians small = measure(runner);
    bool passed = bench::Comparison{.bench = "commands/start",
                                    .peer = "posix_spawn and waitpid",
                                    .ours = small.ours,
                                    .theirs = small.bare,
                                    .target = 1.5}
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
