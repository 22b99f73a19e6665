#pragma once

#include "ControllerFixture.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace zentrill::test {

/// A controller, and an engine whose answers a test gives.
class RemovalFlowsFixture : public ControllerFixture {
protected:
    RemovalFlowsFixture() {
        answer_ = [this](const FakeCommandRunner::Call& call) {
            // The rescan that follows: an endpoint that does not answer leaves the lists empty.
            if (::testing::Value(call.arguments, ::testing::Contains("context"))) {
                return failed(1, "no context\n");
            }
            return result_(call);
        };
    }

    void expectResult(const char* title, const std::string& message, ResultOutcome outcome) {
        EXPECT_TRUE(controller_->showResultAlert());
        EXPECT_EQ(controller_->resultAlertTitle().toStdString(), title);
        EXPECT_EQ(controller_->resultAlertMessage().toStdString(), message);
        EXPECT_EQ(controller_->resultAlertOutcome(), outcome);
        EXPECT_EQ(controller_->resultAlertRetainedPathCount(), 0);
        EXPECT_FALSE(controller_->isBusy());
    }

    /// The calls of the operation itself, without those of the rescan.
    [[nodiscard]] std::vector<FakeCommandRunner::Call> operationCalls() const {
        std::vector<FakeCommandRunner::Call> calls = commands_->calls();
        std::erase_if(calls, [](const auto& call) {
            return ::testing::Value(call.arguments, ::testing::Contains("context"));
        });
        return calls;
    }

    [[nodiscard]] static DockerContainer container(const std::string& status) {
        return {
            .id = "c0ffee", .name = "web", .image = "nginx", .status = status, .connection = connection()};
    }

    [[nodiscard]] static DockerConnection connection() {
        return {.arguments = {"--context", "desktop"}, .displayName = "desktop"};
    }

    [[nodiscard]] static DockerImage image(DockerImageUsage usage) {
        return {.imageID = "sha256:0123456789abcdef" + std::string(48, '0'),
                .tags = {"web:1"},
                .size = "10MB",
                .usage = usage,
                .connection = connection()};
    }

    std::function<CommandResult(const FakeCommandRunner::Call&)> result_ = [](const auto&) { return ok(); };
};

} // namespace zentrill::test
