#include "platform/FileDescriptor.h"
#include "platform/Pipe.h"
#include "process/ShellCommandRunner.h"
#include "process/SpawnChild.h"
#include "support/Processes.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace zentrill {
namespace {

using namespace std::chrono_literals;

/// What a child sees of this process: nothing but what it is meant to.
class ShellCommandRunnerIsolationTest : public testing::Test {
protected:
    ShellCommandRunner runner;

    /// The descriptors that `ls` sees: the standard ones and that of the folder it lists.
    static constexpr auto onlyItsOwn = "0\n1\n2\n3\n";
};

TEST_F(ShellCommandRunnerIsolationTest, IgnoredAndBlockedSignalsAreNotInherited) {
    const auto previous = ::signal(SIGINT, SIG_IGN);
    const auto previousPipe = ::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const CommandResult result =
        runner.run("/bin/sed", {"-En", "s/^Sig(Blk|Ign):\\t//p", "/proc/self/status"});
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_NE(::signal(SIGPIPE, previousPipe), SIG_ERR);
    ASSERT_NE(::signal(SIGINT, previous), SIG_ERR);
    // The C library keeps two real-time signals (32 and 33) to itself.
    constexpr unsigned long long internal = 0x1'8000'0000;
    std::size_t next = 0;
    EXPECT_EQ(std::stoull(result.stdout, &next, 16), 0U);
    EXPECT_EQ(std::stoull(result.stdout.substr(next), nullptr, 16) & ~internal, 0U);
}

TEST_F(ShellCommandRunnerIsolationTest, DescriptorsWithoutCloseOnExecAreNotInherited) {
    // Whatever this process has open already: every descriptor from the first one above standard error up to
    // a high one.
    EXPECT_TRUE(test::holdsInForkedChild([&] {
        constexpr int high = 100;
        const FileDescriptor null(::open("/dev/null", O_RDONLY)); // NOLINT(android-cloexec-open): the point
        for (int number = STDERR_FILENO + 1; number <= high; ++number) {
            const bool isOpen = ::fcntl(number, F_GETFD) >= 0 || ::dup2(null.get(), number) == number;
            if (!isOpen || ::fcntl(number, F_SETFD, 0) != 0) {
                return false;
            }
        }
        return runner.run("/bin/ls", {"/proc/self/fd"}).stdout == onlyItsOwn;
    }));
}

TEST_F(ShellCommandRunnerIsolationTest, SixteenThreadsDoNotHoldEachOthersPipes) {
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    threads.reserve(16);
    for (int number = 0; number < 16; ++number) {
        threads.emplace_back([&, number] {
            for (int round = 0; round < 10; ++round) {
                const std::string text = std::to_string((number * 100) + round) + "\n";
                const CommandResult echo = runner.run("/bin/sh", {"-c", "cat; printf %s \"$1\"", "sh", text});
                const CommandResult list = runner.run("/bin/ls", {"/proc/self/fd"});
                if (!echo.succeeded() || echo.stdout != text || list.stdout != onlyItsOwn) {
                    ++wrong;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_TRUE(test::hasNoChildren());
}

TEST_F(ShellCommandRunnerIsolationTest, WorksWithoutStandardDescriptors) {
    const test::TemporaryDirectory folder;
    EXPECT_TRUE(test::holdsInForkedChild([&] {
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            ::close(standard);
        }
        const CommandResult result = runner.run("/bin/sh", {"-c", "echo out; echo err >&2; cat"});
        return result.succeeded() && result.stdout == "out\n" && result.stderr == "err\n";
    }));
}

TEST_F(ShellCommandRunnerIsolationTest, WorksWithoutSomeOfTheStandardDescriptors) {
    for (const std::vector<int>& missing :
         std::vector<std::vector<int>>{{0}, {1}, {2}, {0, 1}, {0, 2}, {1, 2}}) {
        SCOPED_TRACE(testing::PrintToString(missing));
        EXPECT_TRUE(test::holdsInForkedChild([&] {
            for (const int standard : missing) {
                ::close(standard);
            }
            const CommandResult result = runner.run("/bin/sh", {"-c", "echo out; echo err >&2; cat"});
            // What this process writes to a standard descriptor must not end up in a pipe.
            return result.succeeded() && result.stdout == "out\n" && result.stderr == "err\n" &&
                   std::ranges::all_of(missing, [](int standard) { return ::fcntl(standard, F_GETFD) < 0; });
        }));
    }
}

TEST_F(ShellCommandRunnerIsolationTest, NoEndOfAPipeIsAStandardDescriptor) {
    for (const std::vector<int>& missing : std::vector<std::vector<int>>{{2}, {1, 2}, {0, 1, 2}}) {
        SCOPED_TRACE(testing::PrintToString(missing));
        EXPECT_TRUE(test::holdsInForkedChild([&] {
            for (const int standard : missing) {
                ::close(standard);
            }
            const Pipe first = Pipe::open();
            const Pipe second = Pipe::open();
            return std::ranges::all_of(std::array{first.reading.get(), first.writing.get(),
                                                  second.reading.get(), second.writing.get()},
                                       [](int end) { return end > STDERR_FILENO; });
        }));
    }
}

TEST_F(ShellCommandRunnerIsolationTest, ReapsWhatWasAbandonedBefore) {
    const Pipe pipe = Pipe::open();
    SpawnedChild spawned = spawnChild("/bin/sleep", {"600"}, {}, pipe.writing.get(), pipe.writing.get());
    ASSERT_TRUE(spawned.child) << spawned.error.message();
    // It still runs, so it is killed and left to be reaped later.
    ASSERT_EQ(spawned.child->reap(), -1);
    ASSERT_TRUE(test::eventually([&] { return test::isGone(spawned.child->id()); }));
    EXPECT_FALSE(test::hasNoChildren());
    EXPECT_TRUE(runner.run("/bin/true", {}).succeeded());
    EXPECT_TRUE(test::hasNoChildren());
}

TEST_F(ShellCommandRunnerIsolationTest, ReturnsInAProcessThatIgnoresItsChildren) {
    EXPECT_TRUE(test::holdsInForkedChild([&] {
        if (::signal(SIGCHLD, SIG_IGN) == SIG_ERR) {
            return false;
        }
        const auto start = std::chrono::steady_clock::now();
        const CommandResult result = runner.run("/bin/echo", {"text"});
        // The system has thrown the status away, and nobody may guess it.
        return result.stdout == "text\n" && result.exitCode == -1 && !result.timedOut &&
               std::chrono::steady_clock::now() - start < 10s;
    }));
}

TEST_F(ShellCommandRunnerIsolationTest, NothingIsLeftOpenOrUnreaped) {
    static_cast<void>(
        runner.run("/bin/true", {})); // The descriptor that all commands share opens with the first.
    const std::size_t before = test::openDescriptorCount();
    const std::vector<std::string> scripts{"exit 0", "exit 3", "kill -9 $$", "exec sleep 600", "sleep 600 &"};
    for (const std::string& script : scripts) {
        SCOPED_TRACE(script);
        static_cast<void>(runner.run("/bin/sh", {"-c", script}, 0.3s));
        EXPECT_EQ(test::openDescriptorCount(), before);
        EXPECT_TRUE(test::hasNoChildren());
    }
}

} // namespace
} // namespace zentrill
