#pragma once

#include "ImageID.h"
#include "docker/DockerScanner.h"
#include "support/FakeCommandRunner.h"
#include "support/FixedDockerLocator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace zentrill::test {

inline std::string containerLine(const std::string& id) {
    return R"({"ID":")" + id + R"(","Names":"name-)" + id +
           R"(","Image":"tool:one","Status":"Up 3 minutes"})" + "\n";
}

inline std::string imageLine(char digit, const std::string& tag) {
    return R"({"ID":")" + imageID(digit) + R"(","Repository":"tool","Tag":")" + tag +
           R"(","Size":"1.24GB"})" + "\n";
}

/// A daemon whose answers a test can change one by one.
class DockerScannerFixture : public testing::Test {
protected:
    CommandResult context = ok("default\n");
    CommandResult inspectedContext = failed(1, "no configuration");
    CommandResult version = ok("28.2.2\n");
    CommandResult containers = ok();
    CommandResult images = ok();
    CommandResult usage = ok();
    Environment environment;
    std::shared_ptr<FakeCommandRunner> commands = std::make_shared<FakeCommandRunner>(
        [this](const FakeCommandRunner::Call& call) { return answer(call); });

    DockerAvailability scan() {
        return DockerScanner(commands, std::make_shared<FixedDockerLocator>("/opt/docker"), environment)
            .scan();
    }

    DockerAvailability::Available available() {
        const DockerAvailability result = scan();
        const auto* state = std::get_if<DockerAvailability::Available>(&result.state);
        EXPECT_NE(state, nullptr);
        return state != nullptr ? *state : DockerAvailability::Available{};
    }

    std::string unavailable() {
        const DockerAvailability result = scan();
        const auto* state = std::get_if<DockerAvailability::DaemonUnavailable>(&result.state);
        EXPECT_NE(state, nullptr);
        return state != nullptr ? state->message : std::string();
    }

    static std::vector<DockerImageUsage> usages(const DockerAvailability::Available& result) {
        std::vector<DockerImageUsage> all;
        for (const DockerImage& image : result.images) {
            all.push_back(image.usage);
        }
        return all;
    }

private:
    CommandResult answer(const FakeCommandRunner::Call& call) const {
        if (call.arguments.front() == "context" && call.arguments.at(1) == "inspect") {
            return inspectedContext;
        }
        for (const auto& [word, result] :
             {std::pair{"show", &context}, std::pair{"version", &version},
              std::pair{"container", &containers}, std::pair{"image", &images}}) {
            if (testing::Value(call.arguments, testing::Contains(word)) &&
                !testing::Value(call.arguments, testing::Contains("inspect"))) {
                return *result;
            }
        }
        return usage;
    }
};

} // namespace zentrill::test
