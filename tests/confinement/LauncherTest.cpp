#include "Canary.h"
#include "process/ShellCommandRunner.h"
#include "support/Processes.h"
#include "support/TemporaryDirectory.h"
#include "support/confinement/Rung.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

namespace zentrill {
namespace {

using test::TemporaryDirectory;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

class LauncherTest : public testing::Test {
protected:
    void SetUp() override {
        if (launch({"--rung"}).stdout == "none\n") {
            GTEST_SKIP() << "needs a rung within the one that confines this program";
        }
    }

    /// Runs zentrill-confine, on the rung `forced` if any.
    [[nodiscard]] CommandResult launch(const std::vector<std::string>& arguments,
                                       const std::string& forced = {}) const {
        return run(ZENTRILL_LAUNCHER, arguments, forced);
    }

    /// Runs a program as if nothing confined it yet.
    [[nodiscard]] CommandResult run(const std::string& program, const std::vector<std::string>& arguments,
                                    const std::string& forced = {}) const {
        Environment environment = ShellCommandRunner::defaultEnvironment();
        environment["TMPDIR"] = folder_.path();
        environment["GREETING"] = "kept";
        environment["PATH"] = "/usr/bin:/bin";
        environment.erase("ZENTRILL_CONFINED");
        environment.erase("ZENTRILL_CONFINEMENT");
        if (!forced.empty()) {
            environment["ZENTRILL_CONFINEMENT"] = forced;
        }
        return ShellCommandRunner(environment).run(program, arguments);
    }

    /// The script's exit status, with `arguments` as $1 and so on.
    [[nodiscard]] CommandResult shell(const std::string& script,
                                      const std::vector<std::string>& arguments = {},
                                      const std::vector<std::string>& options = {},
                                      const std::string& forced = {}) const {
        std::vector<std::string> all = options;
        all.insert(all.end(), {"--", "/bin/sh", "-c", script, "sh"});
        all.insert(all.end(), arguments.begin(), arguments.end());
        return launch(all, forced);
    }

    TemporaryDirectory folder_;
};

TEST_F(LauncherTest, KeepsStreamsEnvironmentAndExitStatus) {
    const CommandResult result = shell("echo out; echo error >&2; echo $GREETING $1; exit 42", {"argument"});
    EXPECT_EQ(result.stdout, "out\nkept argument\n");
    EXPECT_EQ(result.stderr, "error\n");
    EXPECT_EQ(result.exitCode, 42);
    const CommandResult piped =
        ShellCommandRunner().run("/bin/sh", {"-c", "echo input | \"$1\" /bin/cat", "sh", ZENTRILL_LAUNCHER});
    EXPECT_EQ(piped.stdout, "input\n") << piped.diagnostic();
}

TEST_F(LauncherTest, FindsTheCommandAsAShellDoes) {
    EXPECT_EQ(launch({"true"}).exitCode, 0);
    EXPECT_EQ(launch({"false"}).exitCode, 1);
    const CommandResult missing = launch({"no-such-program"});
    EXPECT_EQ(missing.exitCode, 127);
    EXPECT_EQ(missing.stderr, "zentrill-confine: no-such-program: No such file or directory\n");
    EXPECT_EQ(launch({"/etc/passwd"}).exitCode, 126);
}

TEST_F(LauncherTest, TheCommandWritesToItsScratchAndNowhereElse) {
    const test::Canary canary;
    const std::vector<std::string> before = canary.state();
    const CommandResult result = shell("echo > \"$TMPDIR/file\" || exit 1\n"
                                       "rm -rf \"$1\" \"$1/file\" \"$1/empty\"\n"
                                       "echo > \"$1/other\"\n"
                                       "echo \"$TMPDIR\"",
                                       {canary.path()});
    EXPECT_EQ(result.exitCode, 0) << result.stderr;
    EXPECT_EQ(canary.state(), before);
    const std::string scratch = result.stdout.substr(0, result.stdout.find('\n'));
    EXPECT_TRUE(scratch.starts_with(folder_.path() + "/")) << scratch;
    EXPECT_TRUE(test::eventually([this] { return fs::is_empty(folder_.path()); }));
}

/// The folder in which it starts is the caller's.
TEST_F(LauncherTest, TheCommandStaysWhereItIs) {
    const CommandResult result =
        run("/bin/sh", {"-c", "cd \"$2\" && \"$1\" --write . /bin/sh -c 'pwd; echo > file'", "sh",
                        ZENTRILL_LAUNCHER, folder_.makeDirectory("here")});
    EXPECT_EQ(result.stdout, folder_.path("here") + "\n") << result.diagnostic();
    EXPECT_TRUE(fs::exists(folder_.path("here/file")));
}

TEST_F(LauncherTest, ManyFoldersCanBeMadeWritable) {
    for (const confinement::Rung rung : confinement::rungs) {
        const std::string name(nameOf(rung));
        if (launch({"--rung"}, name).exitCode != 0) {
            continue;
        }
        const TemporaryDirectory other;
        const std::string one = other.makeDirectory("one");
        const std::string two = other.makeDirectory("two");
        other.makeFile("one/gone");
        const CommandResult result = shell("rm \"$1/gone\" && echo > \"$1/new\" && echo > \"$2/new\"\n"
                                           "echo > \"$1/../beside\"",
                                           {one, two}, {"--write", one, "--write", two}, name);
        EXPECT_FALSE(fs::exists(other.path("beside"))) << name;
        if (rung == confinement::Rung::user) {
            EXPECT_EQ(result.exitCode, 1);
            EXPECT_THAT(result.stderr, HasSubstr("another user cannot write to " + one));
            EXPECT_TRUE(fs::exists(other.path("one/gone")));
        } else {
            EXPECT_FALSE(fs::exists(other.path("one/gone"))) << name << result.stderr;
            EXPECT_TRUE(fs::exists(other.path("one/new"))) << name;
            EXPECT_TRUE(fs::exists(other.path("two/new"))) << name;
        }
    }
}

TEST_F(LauncherTest, WithoutARungTheCommandDoesNotRun) {
    const std::string mark = folder_.path("mark");
    const CommandResult result = shell("echo > \"$1\"", {mark}, {}, "none");
    EXPECT_EQ(result.exitCode, 77);
    EXPECT_EQ(result.stdout, "");
    EXPECT_EQ(result.stderr,
              "zentrill-confine: nothing here confines a program: ZENTRILL_CONFINEMENT says so\n");
    EXPECT_FALSE(fs::exists(mark));
}

TEST_F(LauncherTest, TellsTheRung) {
    EXPECT_EQ(launch({"--rung"}, "none").stdout, "none\n");
    const CommandResult best = launch({"--rung"});
    EXPECT_EQ(best.exitCode, 0);
    const std::string name = best.stdout.substr(0, best.stdout.find('\n'));
    EXPECT_TRUE(confinement::rungNamed(name)) << name;
    EXPECT_EQ(launch({"--rung"}, name).stdout, name + "\n");
}

TEST_F(LauncherTest, RefusesWhatItDoesNotUnderstand) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {}, {"--"}, {"--write"}, {"--write", "/"}, {"--unknown", "true"}, {"--rung", "true"}}) {
        const CommandResult result = launch(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_TRUE(result.stderr.starts_with("Usage: zentrill-confine")) << result.stderr;
    }
    EXPECT_EQ(launch({"--write", folder_.path("missing"), "true"}).exitCode, 1);
    EXPECT_EQ(launch({"--write", "/etc/passwd", "true"}).exitCode, 1);
    EXPECT_EQ(launch({"true"}, "ladder").exitCode, 1);
    EXPECT_TRUE(test::eventually([this] { return fs::is_empty(folder_.path()); }));
}

/// A command that is over may have left others behind that still work in the scratch.
TEST_F(LauncherTest, TheScratchStaysAsLongAsAnythingThatTheCommandStarted) {
    const TemporaryDirectory outside;
    const CommandResult made = ShellCommandRunner().run("/usr/bin/mkfifo", {outside.path("gate")});
    ASSERT_EQ(made.exitCode, 0);
    const CommandResult result = shell(
        "setsid /bin/sh -c 'echo > \"$TMPDIR/started\"; read line < \"$1\"' sh \"$1\" > /dev/null 2>&1 &\n"
        "until [ -e \"$TMPDIR/started\" ]; do sleep 0.01; done; echo \"$TMPDIR\"",
        {outside.path("gate")});
    const std::string scratch = result.stdout.substr(0, result.stdout.find('\n'));
    EXPECT_TRUE(fs::is_directory(scratch)) << result.diagnostic();
    // Lets the one that waits go on, and end.
    ASSERT_EQ(
        ShellCommandRunner().run("/bin/sh", {"-c", "echo > \"$1\"", "sh", outside.path("gate")}).exitCode, 0);
    EXPECT_TRUE(test::eventually([&] { return !fs::exists(scratch); }));
}

} // namespace
} // namespace zentrill
