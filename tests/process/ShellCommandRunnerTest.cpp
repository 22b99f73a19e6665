#include "process/ShellCommandRunner.h"

#include "support/Processes.h"
#include "support/TemporaryDirectory.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include <unistd.h>

namespace zentrill {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::AnyOf;

class ShellCommandRunnerTest : public testing::Test {
protected:
    test::TemporaryDirectory folder;
    ShellCommandRunner runner;

    CommandResult shell(const std::string& script, CommandExecuting::Timeout timeout = 30s) {
        return runner.run("/bin/sh", {"-c", script}, timeout);
    }
};

TEST_F(ShellCommandRunnerTest, SeparatesTheTwoStreams) {
    const CommandResult result = shell("echo out; echo err >&2; exit 7");
    EXPECT_EQ(result.stdout, "out\n");
    EXPECT_EQ(result.stderr, "err\n");
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.launchError, std::nullopt);
}

TEST_F(ShellCommandRunnerTest, ArgumentsArriveAsTheyAre) {
    const std::vector<std::string> odd{"", "two words", "$HOME", "*", "'\"", "line\nbreak", "\xff\xfe"};
    std::vector<std::string> arguments{"%s|"};
    arguments.insert(arguments.end(), odd.begin(), odd.end() - 1);
    EXPECT_EQ(runner.run("/usr/bin/printf", arguments).stdout, "|two words|$HOME|*|'\"|line\nbreak|");
    const CommandResult bytes =
        runner.run("/bin/sh", {"-c", "printf %s \"$1\" | od -An -tx1", "sh", odd.back()});
    EXPECT_EQ(bytes.stdout, " ff fe\n");
}

TEST_F(ShellCommandRunnerTest, ArgumentZeroIsTheExecutable) {
    EXPECT_EQ(shell("echo \"$0\"").stdout, "/bin/sh\n");
}

TEST_F(ShellCommandRunnerTest, StandardInputIsTheNullDevice) {
    EXPECT_EQ(shell("cat; readlink /proc/self/fd/0").stdout, "/dev/null\n");
}

TEST_F(ShellCommandRunnerTest, DiagnosticsOfRealCommands) {
    EXPECT_EQ(shell("echo ' no such thing ' >&2; exit 1").diagnostic(), "no such thing");
    EXPECT_EQ(shell("exit 3").diagnostic(), "Command exited with status 3.");
    EXPECT_EQ(shell("printf '  \\n' >&2; echo ok").diagnostic(), "ok");
}

TEST_F(ShellCommandRunnerTest, DeathByASignalGivesItsNumber) {
    const CommandResult result = shell("kill -SEGV $$");
    EXPECT_EQ(result.exitCode, SIGSEGV);
    EXPECT_FALSE(result.succeeded());
    EXPECT_FALSE(result.timedOut);
}

TEST_F(ShellCommandRunnerTest, AChildThatStopsItselfTimesOut) {
    const CommandResult result = shell("kill -STOP $$", 0.2s);
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.exitCode, SIGKILL);
}

TEST_F(ShellCommandRunnerTest, TheTimeOutEndsTheCommandAndKeepsItsOutput) {
    const auto start = Clock::now();
    const CommandResult result = shell("echo begun; exec sleep 600", 1s);
    const auto elapsed = Clock::now() - start;
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.stdout, "begun\n");
    // Which of the two comes first depends on how fast the child takes notice that it is stopped.
    EXPECT_THAT(result.exitCode, AnyOf(SIGTERM, SIGKILL));
    EXPECT_EQ(result.launchError, std::nullopt);
    EXPECT_GE(elapsed, 1150ms);
    EXPECT_LT(elapsed, 2200ms);
}

TEST_F(ShellCommandRunnerTest, NoTimeOutIsShorterThanAFiftiethOfASecond) {
    for (const double timeout : {0.0, -5.0, 0.01, std::numeric_limits<double>::quiet_NaN()}) {
        SCOPED_TRACE(timeout);
        const auto start = Clock::now();
        EXPECT_TRUE(shell("exec sleep 600", CommandExecuting::Timeout(timeout)).timedOut);
        EXPECT_GE(Clock::now() - start, 200ms);
    }
}

TEST_F(ShellCommandRunnerTest, AnEndlessTimeOutIsNoTimeOut) {
    const CommandExecuting::Timeout endless(std::numeric_limits<double>::infinity());
    EXPECT_TRUE(runner.run("/bin/true", {}, endless).succeeded());
}

TEST_F(ShellCommandRunnerTest, OutputBeyondThePipesCapacityArrivesWhole) {
    const CommandResult result =
        shell("head -c 3000000 /dev/zero | tr '\\0' a; head -c 2000000 /dev/zero | tr '\\0' b >&2");
    EXPECT_EQ(result.stdout, std::string(3000000, 'a'));
    EXPECT_TRUE(result.stdoutIsWhole);
    EXPECT_EQ(result.stderr, std::string(2000000, 'b'));
}

TEST_F(ShellCommandRunnerTest, OutputBeyondTheLimitIsDroppedNotTheText) {
    // 64 MiB is no multiple of three: the limit falls into the middle of a euro sign.
    const CommandResult result = shell("yes '€€€€€€€€' | tr -d '\\n' | head -c 69000000; echo end >&2", 120s);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.stdout.size(), std::size_t{64} * 1024 * 1024 - 1);
    EXPECT_TRUE(result.stdout.ends_with("€"));
    EXPECT_FALSE(result.stdoutIsWhole);
    EXPECT_EQ(result.stderr, "end\n");
    EXPECT_TRUE(result.stderrIsWhole);
}

TEST_F(ShellCommandRunnerTest, InvalidUtf8EmptiesThatStreamAlone) {
    const CommandResult result = shell("printf 'good\\377'; echo fine >&2");
    EXPECT_EQ(result.stdout, "");
    EXPECT_FALSE(result.stdoutIsWhole);
    EXPECT_EQ(result.stderr, "fine\n");
    EXPECT_TRUE(result.stderrIsWhole);
    const CommandResult other = shell("printf 'zo\\303\\253'; printf '\\355\\240\\200' >&2");
    EXPECT_EQ(other.stdout, "zoë");
    EXPECT_TRUE(other.stdoutIsWhole);
    EXPECT_FALSE(other.stderrIsWhole);
}

TEST_F(ShellCommandRunnerTest, GivesTheChildExactlyItsEnvironment) {
    ShellCommandRunner bare(Environment{{"ONE", "1"}, {"EMPTY", ""}, {"EQUALS", "a=b"}});
    EXPECT_EQ(bare.run("/usr/bin/env", {}).stdout, "EMPTY=\nEQUALS=a=b\nONE=1\n");
    EXPECT_EQ(ShellCommandRunner(Environment{}).run("/usr/bin/env", {}).stdout, "");
}

TEST_F(ShellCommandRunnerTest, TheDefaultPathReplacesTheInheritedOne) {
    const test::TemporaryHome home;
    ::setenv("ZENTRILL_TEST_VARIABLE", "kept", 1);
    const Environment environment = ShellCommandRunner::defaultEnvironment();
    ::unsetenv("ZENTRILL_TEST_VARIABLE");
    EXPECT_EQ(environment.at("PATH"), "/usr/local/bin:/opt/homebrew/bin:" + home.path() + "/.local/bin:" +
                                          home.path() + "/.npm-global/bin:/usr/bin:/bin:/usr/sbin:/sbin");
    EXPECT_EQ(environment.at("ZENTRILL_TEST_VARIABLE"), "kept");
    EXPECT_EQ(environment.at("HOME"), home.path());
}

TEST_F(ShellCommandRunnerTest, TheDefaultPathBelowARootThatIsTheHome) {
    const test::TemporaryHome home;
    ::setenv("HOME", "/", 1);
    EXPECT_EQ(ShellCommandRunner::defaultEnvironment().at("PATH"),
              "/usr/local/bin:/opt/homebrew/bin:/.local/bin:/.npm-global/bin:/usr/bin:/bin:/usr/sbin:/sbin");
}

TEST_F(ShellCommandRunnerTest, WaitsForNothingMoreOnceBothStreamsHaveEnded) {
    EXPECT_TRUE(test::holdsInForkedChild([] {
        ::alarm(60); // Ends this process, should it wait.
        ShellCommandRunner patient(ShellCommandRunner::defaultEnvironment(), 1h);
        const CommandResult result = patient.run("/bin/sh", {"-c", "echo out; echo err >&2"});
        return result.succeeded() && result.stdout == "out\n" && result.stderr == "err\n";
    }));
}

} // namespace
} // namespace zentrill
