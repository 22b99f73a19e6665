#pragma once

#include "controller/UninstallerViewModel.h"
#include "support/EventLoop.h"
#include "support/FakeCommandRunner.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Found by the test framework next to the type that it prints.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace zentrill::test {

/// A locator whose answer a test can change at any time.
class FakeDockerLocator final : public DockerExecutableLocating {
public:
    [[nodiscard]] std::optional<std::string> locate() const override {
        const std::lock_guard guard(mutex_);
        return path_;
    }

    void set(std::optional<std::string> path) {
        const std::lock_guard guard(mutex_);
        path_ = std::move(path);
    }

private:
    mutable std::mutex mutex_;
    std::optional<std::string> path_;
};

/// Holds a worker at one point until the test lets it go on.
class Gate {
public:
    /// On the worker: says that it has arrived and waits. Once open, the gate stays so.
    void pass() {
        if (!std::exchange(hasArrived_, true)) {
            arrived_.set_value();
        }
        opening_.wait();
    }

    void open() { opened_.set_value(); }

    /// On the main thread, with the event loop running.
    [[nodiscard]] bool waitForArrival() {
        return waitUntil(
            [this] { return arrival_.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
    }

private:
    std::promise<void> arrived_;
    std::future<void> arrival_ = arrived_.get_future();
    std::promise<void> opened_;
    std::shared_future<void> opening_ = opened_.get_future().share();
    /// The worker's own.
    bool hasArrived_ = false;
};

/// A controller over a home of its own, with commands that the test answers, no Docker unless the test says
/// where it is, and an engine that removes nothing outside the home.
class ControllerFixture : public ::testing::Test {
protected:
    void start(bool autoScan = false) {
        controller_ = std::make_unique<UninstallerViewModel>(commands_, engine_, locator_, autoScan, hooks());
    }

    ApplicationHooks hooks() {
        ApplicationHooks hooks;
        hooks.bundleLocation = [this] { return bundle_; };
        hooks.additionalOwnedData = ownedData_;
        hooks.forgetWindowState = [this] { events_.emplace_back("window state forgotten"); };
        hooks.exitProcess = [this] { events_.emplace_back("exit"); };
        hooks.awaitFirstFrame = awaitFirstFrame_;
        hooks.endCommands = [this] { endCommands_(); };
        return hooks;
    }

    /// Runs the event loop until no operation runs and every line logged so far has arrived.
    [[nodiscard]] bool waitUntilIdle() {
        return waitUntil([this] { return !controller_->isBusy(); }) && settleLog();
    }

    /// Runs the event loop until what was logged up to now is in the log.
    [[nodiscard]] bool settleLog() {
        const std::string marker = std::string("settled ").append(std::to_string(++markers_));
        controller_->log(marker);
        return waitUntil(
            [&] { return !controller_->logs().empty() && controller_->logs().back().ends_with(marker); });
    }

    /// The log without the time stamps and the markers.
    [[nodiscard]] std::vector<std::string> messages() const {
        std::vector<std::string> messages;
        for (const std::string& entry : controller_->logs()) {
            if (std::string message = entry.substr(stampLength); !message.starts_with("settled ")) {
                messages.push_back(std::move(message));
            }
        }
        return messages;
    }

    [[nodiscard]] const AppInfo& app(const std::string& name) const {
        const auto found = std::ranges::find(controller_->apps(), name, &AppInfo::name);
        if (found == controller_->apps().end()) {
            throw std::out_of_range(name);
        }
        return *found;
    }

    static constexpr std::size_t stampLength = std::string_view("[14:03:27] ").size();

    TemporaryHome home_;
    std::function<CommandResult(const FakeCommandRunner::Call&)> answer_ = [](const auto&) { return ok(); };
    std::shared_ptr<FakeCommandRunner> commands_ = std::make_shared<FakeCommandRunner>(
        [this](const FakeCommandRunner::Call& call) { return answer_(call); });
    std::shared_ptr<const SafeDeletionEngine> engine_ = std::make_shared<SafeDeletionEngine>(
        FileSystem::shared(), CredentialMatcher(),
        [home = home_.path()](const std::string& path) { return path.starts_with(home + "/"); });
    std::shared_ptr<FakeDockerLocator> locator_ = std::make_shared<FakeDockerLocator>();
    std::string bundle_;
    std::vector<std::string> ownedData_;
    std::vector<std::string> events_;
    /// None: nothing is waited for.
    std::function<void()> awaitFirstFrame_;
    std::function<void()> endCommands_ = [] {};
    int markers_ = 0;
    std::unique_ptr<UninstallerViewModel> controller_;
};

} // namespace zentrill::test
