#include "process/ShellCommandRunner.h"
#include "support/Processes.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace zentrill {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using test::contentOf;
using test::eventually;

/// A program of its own, with this one test, because there is no way back.
TEST(ShellCommandRunnerShutDown, EndsEveryCommandAndRefusesLaterOnes) {
    struct Worker {
        CommandResult result;
        Clock::time_point end;
    };

    const test::TemporaryDirectory folder;
    ShellCommandRunner first;
    ShellCommandRunner second(Environment{});
    constexpr std::size_t count = 6;
    std::array<Worker, count> workers;
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        threads.emplace_back([&, number] {
            // Deaf to every polite signal, with a child that is deaf as well.
            const std::string script = "trap '' TERM HUP INT; /bin/sleep 600 & echo $! > $1.new\n"
                                       "/bin/mv $1.new $1; wait";
            ShellCommandRunner& runner = number % 2 == 0 ? first : second;
            workers[number].result =
                runner.run("/bin/sh", {"-c", script, "sh", folder.path(std::to_string(number))}, 600s);
            workers[number].end = Clock::now();
        });
    }
    for (std::size_t number = 0; number < count; ++number) {
        ASSERT_TRUE(eventually([&] { return !contentOf(folder.path(std::to_string(number))).empty(); }));
    }

    const auto start = Clock::now();
    ShellCommandRunner::shutDown();
    const auto elapsed = Clock::now() - start;
    // Nothing is left when it returns: the process may end in the next moment.
    EXPECT_TRUE(test::hasNoChildren());
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_LT(elapsed, 400ms);
    for (std::size_t number = 0; number < count; ++number) {
        EXPECT_EQ(workers[number].result.exitCode, SIGKILL);
        EXPECT_FALSE(workers[number].result.timedOut);
        EXPECT_FALSE(workers[number].result.succeeded());
        EXPECT_LT(workers[number].end - start, 400ms);
        const pid_t grandchild = std::stoi(contentOf(folder.path(std::to_string(number))));
        EXPECT_TRUE(eventually([&] { return test::isGone(grandchild); }));
    }
    CommandResult refused;
    refused.launchError = std::generic_category().message(ECANCELED);
    EXPECT_EQ(first.run("/bin/true", {}), refused);
    EXPECT_EQ(ShellCommandRunner().run("/bin/true", {}), refused);
    ShellCommandRunner::shutDown();
}

} // namespace
} // namespace zentrill
