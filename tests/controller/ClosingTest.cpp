#include "ControllerFixture.h"
#include "process/ShellCommandRunner.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace zentrill {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test::ControllerFixture;
using test::FakeCommandRunner;
using test::waitUntil;

class ClosingTest : public ControllerFixture {};

TEST_F(ClosingTest, EndsAtOnceWhileIdle) {
    start();
    EXPECT_TRUE(controller_->shutDown());
    EXPECT_TRUE(controller_->shutDown());
}

TEST_F(ClosingTest, EndsTheRunningCommandAndPublishesNothing) {
    test::Gate gate;
    locator_->set("/opt/docker");
    answer_ = [&gate](const FakeCommandRunner::Call&) {
        gate.pass();
        return test::failed(9);
    };
    endCommands_ = [&gate] { gate.open(); };
    home_.makeDirectory(".ollama");
    start(true);
    ASSERT_TRUE(gate.waitForArrival());
    const std::size_t lines = controller_->logs().size();

    EXPECT_TRUE(controller_->shutDown());
    EXPECT_EQ(commands_->calls().size(), 2U) << "the two ways to ask for the context, and nothing else";
    controller_->log("too late");
    bool turned = false;
    QMetaObject::invokeMethod(controller_.get(), [&turned] { turned = true; }, Qt::QueuedConnection);
    ASSERT_TRUE(waitUntil([&turned] { return turned; }));
    EXPECT_EQ(controller_->logs().size(), lines);
    EXPECT_FALSE(app("Ollama").isDetected);
    EXPECT_TRUE(controller_->isBusy());
}

TEST_F(ClosingTest, LeavesAWorkerThatDoesNotEndBehindInBoundedTime) {
    auto gate = std::make_shared<test::Gate>();
    locator_->set("/opt/docker");
    // The worker outlives this test's other objects, so it gets a runner that owns all it needs.
    auto runner = std::make_shared<FakeCommandRunner>([gate](const FakeCommandRunner::Call&) {
        gate->pass();
        return test::failed(9);
    });
    const std::weak_ptr<FakeCommandRunner> watched = runner;
    controller_ = std::make_unique<UninstallerViewModel>(std::move(runner), engine_, locator_, true, hooks());
    ASSERT_TRUE(gate->waitForArrival());

    const auto before = steady_clock::now();
    EXPECT_FALSE(controller_->shutDown());
    EXPECT_FALSE(controller_->shutDown());
    controller_.reset();
    EXPECT_LT(steady_clock::now() - before, std::chrono::seconds(1));
    EXPECT_FALSE(watched.expired());
    gate->open();
    EXPECT_TRUE(waitUntil([&watched] { return watched.expired(); }));
}

TEST_F(ClosingTest, DropsAnOperationThatHasNotBegunItsWork) {
    test::Gate gate;
    locator_->set("/opt/docker");
    answer_ = [&gate](const FakeCommandRunner::Call&) {
        gate.pass();
        return test::failed(9);
    };
    endCommands_ = [&gate] { gate.open(); };
    start(true);
    ASSERT_TRUE(gate.waitForArrival());
    const std::string model = home_.makeFile("models/a.gguf", "1");
    // Refused while the scan runs, and not kept for later either.
    controller_->deleteModel({.name = "a", .source = std::string(lmStudioSource), .path = model});
    EXPECT_TRUE(controller_->shutDown());
    EXPECT_TRUE(FileSystem::shared().fileExists(model));
}

TEST_F(ClosingTest, DeletesNothingOnceTheProcessListingWasCutShort) {
    const std::string data = home_.makeFile("Library/Application Support/Claude/file");
    test::Gate gate;
    answer_ = [&gate](const FakeCommandRunner::Call& call) {
        if (call.executable == "/bin/ps") {
            gate.pass();
        }
        return test::failed(9);
    };
    endCommands_ = [&gate] { gate.open(); };
    start();
    controller_->uninstallAppsFromConfirmation({app("Claude")}, false);
    ASSERT_TRUE(gate.waitForArrival());
    EXPECT_TRUE(controller_->shutDown());
    EXPECT_TRUE(FileSystem::shared().fileExists(data));
}

TEST_F(ClosingTest, DeletesNothingOnceTheStepBeforeWasCutShort) {
    const std::string data = home_.makeFile(".claude/history");
    test::Gate gate;
    answer_ = [&gate](const FakeCommandRunner::Call& call) {
        if (call.executable == "/usr/bin/env") {
            gate.pass();
        }
        return test::failed(9);
    };
    endCommands_ = [&gate] { gate.open(); };
    start();
    controller_->uninstallAppsFromConfirmation({app("Claude Code")}, false);
    ASSERT_TRUE(gate.waitForArrival());
    EXPECT_TRUE(controller_->shutDown());
    EXPECT_TRUE(FileSystem::shared().fileExists(data));
}

TEST_F(ClosingTest, StopsARemovalAtTheNextEntryWhetherItWasCancelledBeforeOrNot) {
    for (const bool isCancelledBefore : {false, true}) {
        SCOPED_TRACE(isCancelledBefore);
        const std::string first = home_.makeFile("Library/Application Support/VendorApp/file");
        const std::string second = home_.makeFile("Library/Caches/com.vendor.app/file");
        test::Gate gate;
        engine_ = std::make_shared<SafeDeletionEngine>(FileSystem::shared(), CredentialMatcher(),
                                                       [&](const std::string& path) {
                                                           gate.pass();
                                                           return path.starts_with(home_.path() + "/");
                                                       });
        endCommands_ = [&gate] { gate.open(); };
        start();
        controller_->uninstallAppsFromConfirmation({app("VendorApp")}, false);
        ASSERT_TRUE(gate.waitForArrival());
        if (isCancelledBefore) {
            controller_->cancelOperation();
        }
        EXPECT_TRUE(controller_->shutDown());
        EXPECT_FALSE(FileSystem::shared().fileExists(first));
        EXPECT_TRUE(FileSystem::shared().fileExists(second));
    }
}

TEST_F(ClosingTest, BeginsNoRescanAfterARemoval) {
    test::Gate gate;
    locator_->set("/opt/docker");
    answer_ = [&gate](const FakeCommandRunner::Call&) {
        gate.pass();
        return test::ok();
    };
    endCommands_ = [&gate] { gate.open(); };
    start();
    controller_->stopContainer({.id = "c0ffee", .name = "web", .status = "Up 3 minutes"});
    ASSERT_TRUE(gate.waitForArrival());
    EXPECT_TRUE(controller_->shutDown());
    EXPECT_EQ(commands_->calls().size(), 1U);
}

/// Runs commands for real and remembers which were started.
class WatchedRunner final : public CommandExecuting {
public:
    CommandResult run(const std::string& executable, const std::vector<std::string>& arguments,
                      Timeout timeout) override {
        CommandResult result = runner_.run(executable, arguments, timeout);
        if (!result.launchError) {
            const std::lock_guard guard(mutex_);
            started_.push_back(arguments.front());
        }
        return result;
    }

    [[nodiscard]] std::vector<std::string> started() const {
        const std::lock_guard guard(mutex_);
        return started_;
    }

private:
    ShellCommandRunner runner_;
    mutable std::mutex mutex_;
    std::vector<std::string> started_;
};

class ClosingDeathTest : public ControllerFixture {
protected:
    ClosingDeathTest() { ::testing::GTEST_FLAG(death_test_style) = "threadsafe"; }

    /// Scans, at the start or after a container was stopped, with a `docker` that hangs when it is asked for
    /// its context, closes in mid-scan and ends the process with status 0 if that went as it should. Runs in
    /// a process of its own: ending commands is for good.
    [[noreturn]] void closeInMidScan(bool isAfterRemoval) {
        const std::string pidFile = home_.path("docker.pid");
        locator_->set(home_.makeExecutable("docker", "#!/bin/sh\ncase $1 in container) exit 0;; esac\n"
                                                     "echo $$ > " +
                                                         pidFile + ".new\nmv " + pidFile + ".new " + pidFile +
                                                         "\nexec sleep 600\n"));
        const auto runner = std::make_shared<WatchedRunner>();
        UninstallerViewModel controller(runner, engine_, locator_, !isAfterRemoval,
                                        ApplicationHooks::ofThisProgram());
        if (isAfterRemoval) {
            controller.stopContainer({.id = "c0ffee", .name = "web", .status = "Up 3 minutes"});
        }
        const bool hangs = waitUntil([&] { return FileSystem::shared().fileExists(pidFile); });
        const auto before = steady_clock::now();
        const bool ended = controller.shutDown();
        const auto duration = std::chrono::duration_cast<milliseconds>(steady_clock::now() - before);
        pid_t pid = -1;
        std::ifstream(pidFile) >> pid;
        const bool gone = pid > 0 && ::kill(pid, 0) != 0;
        const auto expected = isAfterRemoval ? std::vector<std::string>{"container", "context"}
                                             : std::vector<std::string>{"context"};
        const bool nothingMore = runner->started() == expected;
        std::cerr << "hangs " << hangs << ", ended " << ended << " after " << duration.count() << " ms, gone "
                  << gone << ", no further command " << nothingMore << '\n';
        std::filesystem::remove_all(home_.path());
        std::_Exit(hangs && ended && gone && nothingMore && duration < std::chrono::seconds(1)
                       ? EXIT_SUCCESS
                       : EXIT_FAILURE);
    }
};

TEST_F(ClosingDeathTest, EndsPromptlyInMidScanAndLeavesNoChildBehind) {
    EXPECT_EXIT(closeInMidScan(false), ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ClosingDeathTest, EndsPromptlyInTheRescanAfterARemoval) {
    EXPECT_EXIT(closeInMidScan(true), ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

} // namespace
} // namespace zentrill
