#include "catalog/ApplicationDetectionRegistry.h"
#include "deletion/ApplicationUninstallService.h"
#include "platform/FileDescriptor.h"
#include "platform/Paths.h"
#include "support/FakeCommandRunner.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <memory>
#include <string>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<test::FakeCommandRunner> answering(CommandResult result) {
    return std::make_shared<test::FakeCommandRunner>(
        [result = std::move(result)](const test::FakeCommandRunner::Call&) { return result; });
}

bool isAlive(const CommandResult& listing, const std::vector<std::string>& names) {
    return ApplicationUninstallService::liveProcessAliveChecker(answering(listing))(names);
}

struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        for (const int end : ends) {
            EXPECT_EQ(::fcntl(end, F_SETFD, FD_CLOEXEC), 0);
        }
        readEnd = FileDescriptor(ends[0]);
        writeEnd = FileDescriptor(ends[1]);
    }

    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

/// A process of the test's own that waits under the name given until the object goes, or the test with it.
class WaitingProcess {
public:
    explicit WaitingProcess(std::string name) {
        Pipe started;
        std::string command = "-c";
        std::string script = "read -r line";
        std::string notUtf8 = "\xff";
        const std::array<char*, 5> arguments{name.data(), command.data(), script.data(), notUtf8.data(),
                                             nullptr};
        process_ = ::fork();
        if (process_ == 0) {
            ::dup2(input_.readEnd.get(), STDIN_FILENO);
            ::execv("/bin/sh", arguments.data());
            ::_exit(127);
        }
        // The child's copy closes when it has become the other program.
        started.writeEnd.reset();
        char byte = 0;
        EXPECT_EQ(::read(started.readEnd.get(), &byte, 1), 0);
    }

    ~WaitingProcess() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

    WaitingProcess(const WaitingProcess&) = delete;
    WaitingProcess& operator=(const WaitingProcess&) = delete;
    WaitingProcess(WaitingProcess&&) = delete;
    WaitingProcess& operator=(WaitingProcess&&) = delete;

private:
    Pipe input_;
    pid_t process_ = -1;
};

TEST(ProcessAliveChecker, AsksForTheListingOfAllProcessesWithTheirArguments) {
    const auto commands = answering(test::ok("Finder\n"));
    EXPECT_FALSE(ApplicationUninstallService::liveProcessAliveChecker(commands)({"Claude"}));
    EXPECT_THAT(commands->calls(),
                ElementsAre(test::FakeCommandRunner::Call{
                    .executable = "/bin/ps", .arguments = {"-axo", "comm,args="}, .timeoutSeconds = 5.0}));
}

TEST(ProcessAliveChecker, WithoutNamesNoCommandRuns) {
    const auto commands = answering(test::ok("anything"));
    const auto checker = ApplicationUninstallService::liveProcessAliveChecker(commands);
    EXPECT_FALSE(checker({}));
    const test::TemporaryDirectory folder;
    const ApplicationUninstallService service(std::make_shared<SafeDeletionEngine>(), InstallationDetector(),
                                              checker);
    const auto result =
        service.uninstall(ApplicationDetectionRegistry::rule("Ollama"), false,
                          [&folder](const std::string& path) { return folder.path("root/" + path); });
    EXPECT_TRUE(result.succeeded());
    EXPECT_THAT(commands->calls(), IsEmpty());
}

TEST(ProcessAliveChecker, FindsAnyNameAnywhereInTheListing) {
    const CommandResult listing = test::ok("COMMAND\nzsh -zsh\nvim vim notes on Claude.txt\n");
    EXPECT_TRUE(isAlive(listing, {"Claude"}));
    EXPECT_TRUE(isAlive(listing, {"missing", "on Claude"}));
    EXPECT_FALSE(isAlive(listing, {"claude"}));
    EXPECT_FALSE(isAlive(listing, {"missing", "Claude Code"}));
}

TEST(ProcessAliveChecker, AListingThatFailedCountsAsEmpty) {
    CommandResult listing = test::ok("Claude\n");
    listing.exitCode = 1;
    EXPECT_FALSE(isAlive(listing, {"Claude"}));
    listing = test::ok("Claude\n");
    listing.timedOut = true;
    EXPECT_FALSE(isAlive(listing, {"Claude"}));
    listing = test::ok("Claude\n");
    listing.launchError = "No such file or directory";
    EXPECT_FALSE(isAlive(listing, {"Claude"}));
}

TEST(ProcessAliveChecker, AListingThatIsNotWholeRulesNothingOut) {
    CommandResult listing = test::ok();
    listing.stdoutIsWhole = false;
    EXPECT_TRUE(isAlive(listing, {"Claude"}));
    EXPECT_FALSE(isAlive(listing, {}));
    listing.stdout = "Finder\n";
    EXPECT_TRUE(isAlive(listing, {"Claude"}));
    listing.exitCode = 1;
    EXPECT_FALSE(isAlive(listing, {"Claude"})) << "one that failed counts as empty all the same";
}

TEST(ProcessAliveChecker, SeesARealProcessAsLongAsItRuns) {
    const test::TemporaryDirectory folder;
    const std::string name = "Zentrill Test Tool " + std::string(paths::lastComponent(folder.path()));
    const std::string file = folder.makeFile("tool");
    ApplicationDetectionRule rule;
    rule.name = "Tool";
    rule.installedPaths = {file};
    rule.uninstallPaths = {file};
    rule.processNames = {"no process of that name", name};
    const auto unchanged = [](const std::string& path) { return path; };
    const ApplicationUninstallService service;
    {
        const WaitingProcess process(name);
        const ApplicationUninstallResult result = service.uninstall(rule, false, unchanged);
        EXPECT_THAT(result.deletionReport.failures,
                    ElementsAre("Tool is currently running. Quit Tool before removing it."));
        EXPECT_TRUE(FileSystem::shared().fileExists(file));
    }
    const ApplicationUninstallResult result = service.uninstall(rule, false, unchanged);
    EXPECT_THAT(result.deletionReport.removed, ElementsAre(file));
    EXPECT_TRUE(result.succeeded());
}

} // namespace
} // namespace zentrill
