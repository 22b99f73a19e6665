#include "process/CommandResult.h"

#include "support/FakeCommandRunner.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(CommandResult, SucceedsOnlyWithoutAnyOfTheThreeFailures) {
    CommandResult result = test::ok();
    EXPECT_TRUE(result.succeeded());
    result.timedOut = true;
    EXPECT_FALSE(result.succeeded());
    result = test::ok();
    result.launchError = "";
    EXPECT_FALSE(result.succeeded());
    EXPECT_FALSE(test::failed(1).succeeded());
}

TEST(CommandResult, DiagnosticPrefersTheLaunchErrorThenTheTimeOut) {
    CommandResult result = test::failed(1, "stderr");
    result.timedOut = true;
    EXPECT_EQ(result.diagnostic(), "Command timed out.");
    result.launchError = " No such file ";
    EXPECT_EQ(result.diagnostic(), " No such file ");
}

TEST(CommandResult, DiagnosticIsTheTrimmedTextThatIsNotBlank) {
    CommandResult result = test::failed(1, " \n ");
    result.stdout = "\tok \r\n";
    EXPECT_EQ(result.diagnostic(), "ok");
    result.stderr = "\n broken pipe \n";
    EXPECT_EQ(result.diagnostic(), "broken pipe");
}

TEST(CommandResult, DiagnosticIsTrimmedOfEveryWhiteSpace) {
    CommandResult result = test::failed(1, "\u00A0\u2028 \u3000\n");
    result.stdout = "\u2003\xC2\x85 r\u00E9sum\u00E9 \u202F\u1680\u200A\r\n";
    EXPECT_EQ(result.diagnostic(), "r\u00E9sum\u00E9");
}

TEST(CommandResult, DiagnosticOfASilentCommandIsItsStatus) {
    EXPECT_EQ(test::failed(3).diagnostic(), "Command exited with status 3.");
    EXPECT_EQ(test::ok().diagnostic(), "Command exited with status 0.");
}

TEST(CommandResult, EqualityComparesWhatTheCommandSaidAndHowItEnded) {
    const CommandResult result = test::failed(2, "e");
    CommandResult other = result;
    EXPECT_EQ(result, other);
    other.launchError = "";
    EXPECT_NE(result, other);
    other = result;
    other.timedOut = true;
    EXPECT_NE(result, other);
    other = result;
    other.exitCode = 3;
    EXPECT_NE(result, other);
    other = result;
    other.stdout.push_back('o');
    EXPECT_NE(result, other);
    other = result;
    other.stderr.push_back('f');
    EXPECT_NE(result, other);
}

TEST(CommandResult, WhatGotLostOnTheWayTakesNoPartInEquality) {
    const CommandResult result = test::ok("text");
    CommandResult other = result;
    other.stdoutIsWhole = false;
    other.stderrIsWhole = false;
    EXPECT_EQ(result, other);
}

} // namespace
} // namespace zentrill
