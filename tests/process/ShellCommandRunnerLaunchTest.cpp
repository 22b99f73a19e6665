#include "process/ShellCommandRunner.h"
#include "support/Processes.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

namespace zentrill {
namespace {

class ShellCommandRunnerLaunchTest : public testing::Test {
protected:
    test::TemporaryDirectory folder;
    ShellCommandRunner runner;
    std::size_t descriptorsBefore = 0;

    void SetUp() override {
        ASSERT_TRUE(runner.run("/bin/true", {}).succeeded());
        descriptorsBefore = test::openDescriptorCount();
    }

    void TearDown() override {
        EXPECT_EQ(test::openDescriptorCount(), descriptorsBefore);
        EXPECT_TRUE(test::hasNoChildren());
    }

    static CommandResult launchFailure(int error) {
        CommandResult result;
        result.launchError = std::generic_category().message(error);
        return result;
    }

    /// Sanitizers look into the first object of a type that they meet, and need a descriptor for that.
    static void showErrorsToSanitizers() {
        try {
            throw std::system_error(EMFILE, std::generic_category());
        } catch (const std::system_error& error) {
            ASSERT_EQ(error.code().message(), launchFailure(EMFILE).diagnostic());
        }
    }
};

TEST_F(ShellCommandRunnerLaunchTest, MissingExecutable) {
    EXPECT_EQ(runner.run(folder.path("missing"), {}), launchFailure(ENOENT));
    EXPECT_EQ(runner.run("", {}), launchFailure(ENOENT));
    EXPECT_EQ(runner.run(folder.path("missing"), {}).diagnostic(), "No such file or directory");
}

TEST_F(ShellCommandRunnerLaunchTest, FolderOrFileWithoutPermission) {
    EXPECT_EQ(runner.run(folder.path(), {}), launchFailure(EACCES));
    EXPECT_EQ(runner.run(folder.makeFile("plain", "#!/bin/sh\n"), {}), launchFailure(EACCES));
}

TEST_F(ShellCommandRunnerLaunchTest, FileThatIsNoProgramIsNotGivenToAShell) {
    const std::string script = folder.makeExecutable("script", "echo ran > " + folder.path("ran") + "\n");
    EXPECT_EQ(runner.run(script, {}), launchFailure(ENOEXEC));
    EXPECT_EQ(test::contentOf(folder.path("ran")), "");
    EXPECT_EQ(runner.run(folder.makeExecutable("empty", ""), {}), launchFailure(ENOEXEC));
    EXPECT_EQ(runner.run(folder.makeExecutable("cut", "\x7f"
                                                      "ELF"),
                         {}),
              launchFailure(ENOEXEC));
}

TEST_F(ShellCommandRunnerLaunchTest, MissingInterpreter) {
    const std::string script = folder.makeExecutable("script", "#!" + folder.path("missing") + "\n");
    EXPECT_EQ(runner.run(script, {}), launchFailure(ENOENT));
}

TEST_F(ShellCommandRunnerLaunchTest, PathThroughAFileOrALoop) {
    EXPECT_EQ(runner.run(folder.makeFile("file") + "/tool", {}), launchFailure(ENOTDIR));
    EXPECT_EQ(runner.run(folder.makeLink("loop", "loop"), {}), launchFailure(ELOOP));
}

TEST_F(ShellCommandRunnerLaunchTest, TooLongArguments) {
    EXPECT_EQ(runner.run("/bin/true", {std::string(std::size_t{4} << 20, 'a')}), launchFailure(E2BIG));
    EXPECT_EQ(runner.run("/bin/true", std::vector<std::string>(200'000, std::string(100, 'a'))),
              launchFailure(E2BIG));
}

TEST_F(ShellCommandRunnerLaunchTest, TextsThatTheSystemWouldCut) {
    using namespace std::string_literals;
    EXPECT_EQ(runner.run("/bin/true\0x"s, {}), launchFailure(EINVAL));
    EXPECT_EQ(runner.run("/bin/echo", {"fine", "a\0b"s}), launchFailure(EINVAL));
    for (const Environment& environment : {Environment{{"NAME", "a\0b"s}}, Environment{{"NA\0ME"s, "a"}},
                                           Environment{{"A=B", "c"}}, Environment{{"", "a"}}}) {
        EXPECT_EQ(ShellCommandRunner(environment).run("/bin/true", {}), launchFailure(EINVAL));
    }
}

TEST_F(ShellCommandRunnerLaunchTest, NoDescriptorsLeft) {
    showErrorsToSanitizers();
    // With each further descriptor the launch gets one step further before it fails.
    EXPECT_TRUE(test::holdsInForkedChild([&] {
        const rlimit enough{.rlim_cur = 256, .rlim_max = 256};
        const CommandResult expected = launchFailure(EMFILE);
        const int firstFree = ::dup(STDERR_FILENO);
        ::close(firstFree);
        for (rlim_t spare = 0; spare < 4; ++spare) {
            const rlimit limit{.rlim_cur = static_cast<rlim_t>(firstFree) + spare, .rlim_max = 256};
            ::setrlimit(RLIMIT_NOFILE, &limit);
            const CommandResult result = runner.run("/bin/true", {});
            ::setrlimit(RLIMIT_NOFILE, &enough);
            if (result != expected || test::openDescriptorCount() != descriptorsBefore) {
                return false;
            }
        }
        return runner.run("/bin/true", {}).succeeded() && test::hasNoChildren();
    }));
}

} // namespace
} // namespace zentrill
