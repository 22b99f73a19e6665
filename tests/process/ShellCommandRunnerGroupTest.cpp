#include "process/ShellCommandRunner.h"
#include "support/Processes.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>

#include <unistd.h>

namespace zentrill {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using test::contentOf;
using test::eventually;
using test::isGone;

/// What becomes of the processes that a command starts itself. The scripts name them on standard error.
class ShellCommandRunnerGroupTest : public testing::Test {
protected:
    test::TemporaryDirectory folder;
    ShellCommandRunner runner;

    CommandResult shell(const std::string& script, CommandExecuting::Timeout timeout = 30s) {
        return runner.run("/bin/sh", {"-c", script, "sh", folder.path()}, timeout);
    }

    void TearDown() override { EXPECT_TRUE(test::hasNoChildren()); }
};

TEST_F(ShellCommandRunnerGroupTest, WhatANormalEndLeavesBehindIsAskedToEnd) {
    const CommandResult result =
        shell("(trap 'echo asked > $1/end; exit' TERM; echo > $1/ready\n"
              "while :; do sleep 0.01; done) &\n"
              "echo $! >&2; while [ ! -e $1/ready ]; do sleep 0.01; done; echo done");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.stdout, "done\n");
    EXPECT_TRUE(eventually([&] { return contentOf(folder.path("end")) == "asked\n"; }));
    EXPECT_TRUE(eventually([&] { return isGone(std::stoi(result.stderr)); }));
}

TEST_F(ShellCommandRunnerGroupTest, AProcessThatKeepsThePipeOpenDoesNotKeepTheCommand) {
    const auto start = Clock::now();
    const CommandResult result =
        shell("setsid sh -c 'echo > $1/ready; exec sleep 600' sh $1 &\n"
              "echo $! >&2; while [ ! -e $1/ready ]; do sleep 0.01; done; echo done");
    EXPECT_LT(Clock::now() - start, 10s);
    EXPECT_EQ(result.stdout, "done\n");
    EXPECT_TRUE(result.succeeded());
    // `setsid` of a process that leads no group keeps its number.
    const pid_t left = std::stoi(result.stderr);
    ASSERT_FALSE(isGone(left));
    ::kill(left, SIGKILL);
    EXPECT_TRUE(eventually([&] { return isGone(left); }));
}

TEST_F(ShellCommandRunnerGroupTest, AProcessThatKeepsAStreamOpenIsHeardForTheSettlingTime) {
    ShellCommandRunner brief(ShellCommandRunner::defaultEnvironment(), 300ms);
    for (const std::string other : {"2", "1"}) {
        SCOPED_TRACE("without stream " + other);
        const auto start = Clock::now();
        const CommandResult result = brief.run(
            "/bin/sh", {"-c",
                        "setsid sh -c 'echo $$ > $1/new; mv $1/new $1/left; exec sleep 600' sh $1 " + other +
                            "> /dev/null &\n"
                            "while [ ! -e $1/left ]; do sleep 0.01; done",
                        "sh", folder.path()});
        EXPECT_GE(Clock::now() - start, 300ms);
        EXPECT_TRUE(result.succeeded());
        const pid_t left = std::stoi(contentOf(folder.path("left")));
        ASSERT_FALSE(isGone(left));
        ::kill(left, SIGKILL);
        EXPECT_TRUE(eventually([&] { return isGone(left); }));
        ASSERT_EQ(::unlink(folder.path("left").c_str()), 0);
    }
}

TEST_F(ShellCommandRunnerGroupTest, ALastWordWithinTheSettlingTimeArrives) {
    // It is said once the command is over: the command stays unreaped for as long as the runner listens.
    EXPECT_TRUE(test::holdsInForkedChild([&] {
        ::alarm(60); // Ends this process, should it go on listening after the last word.
        ShellCommandRunner patient(ShellCommandRunner::defaultEnvironment(), 1h);
        const CommandResult result = patient.run(
            "/bin/sh", {"-c",
                        "setsid sh -c 'echo > $1/ready\n"
                        "while state=$(cut -d \" \" -f 3 /proc/$2/stat) && [ \"$state\" != Z ]; do\n"
                        "sleep 0.01; done; echo late; echo too >&2' sh $1 $$ &\n"
                        "while [ ! -e $1/ready ]; do sleep 0.01; done; echo done",
                        "sh", folder.path()});
        return result.succeeded() && result.stdout == "done\nlate\n" && result.stderr == "too\n";
    }));
}

TEST_F(ShellCommandRunnerGroupTest, AProcessThatFloodsThePipeDoesNotKeepTheCommand) {
    const auto start = Clock::now();
    const CommandResult result = shell("(trap '' TERM; exec yes) & echo $! >&2");
    EXPECT_LT(Clock::now() - start, 10s);
    EXPECT_EQ(result.exitCode, 0);
    // Deaf to SIGTERM, it ends by the closed pipe.
    EXPECT_TRUE(eventually([&] { return isGone(std::stoi(result.stderr)); }));
}

TEST_F(ShellCommandRunnerGroupTest, ATimeOutEndsEvenWhatIsDeafToTheRequest) {
    const CommandResult result =
        shell("trap '' TERM; sleep 600 & echo $! >&2; sleep 600 & echo $! >&2; echo > $1/ready; wait", 0.5s);
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.exitCode, SIGKILL);
    std::size_t next = 0;
    const pid_t first = std::stoi(result.stderr, &next);
    const pid_t second = std::stoi(result.stderr.substr(next));
    EXPECT_TRUE(eventually([&] { return isGone(first) && isGone(second); }));
}

TEST_F(ShellCommandRunnerGroupTest, ATimeOutGivesTheGroupTimeToTidyUp) {
    // The command itself is stopped at once; what it started may still do something about the request.
    const CommandResult result = shell("(trap 'echo tidied; exit' TERM; while :; do sleep 0.01; done) &\n"
                                       "exec sleep 600",
                                       0.5s);
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.stdout, "tidied\n");
}

TEST_F(ShellCommandRunnerGroupTest, ATimeOutStopsACommandThatKeepsForkingBeforeItIsAskedToEnd) {
    // Without the stop the command would answer the request with one process more, which ends after the
    // others.
    const CommandResult result =
        shell("trap 'asked=1' TERM; echo > $1/ready\n"
              "while :; do (:); if [ \"$asked\" ]; then (echo late >> $1/late); fi; done",
              0.5s);
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.exitCode, SIGKILL);
    EXPECT_EQ(contentOf(folder.path("ready")), "\n");
    EXPECT_EQ(contentOf(folder.path("late")), "");
}

TEST_F(ShellCommandRunnerGroupTest, LeadsAGroupOfItsOwn) {
    const CommandResult result = shell("echo $$; cut -d ' ' -f 5 /proc/$$/stat");
    const std::string pid = result.stdout.substr(0, result.stdout.find('\n') + 1);
    EXPECT_EQ(result.stdout, pid + pid);
    EXPECT_NE(std::stoi(pid), ::getpgrp());
}

} // namespace
} // namespace zentrill
