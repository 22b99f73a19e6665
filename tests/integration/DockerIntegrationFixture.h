#pragma once

#include "docker/DockerImageRemovalService.h"
#include "docker/DockerScanner.h"
#include "support/DockerEngine.h"
#include "support/FixedDockerLocator.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zentrill::test {

/// A real engine, seen through each `docker` tool of the machine by a user with a home folder of his own.
class DockerIntegrationFixture : public testing::TestWithParam<std::string> {
protected:
    TemporaryDirectory home;
    std::optional<DockerEngine> engine;
    Environment environment;

    void SetUp() override {
        if (const std::optional<std::string> obstacle = DockerEngine::obstacle()) {
            GTEST_SKIP() << *obstacle;
        }
        engine.emplace();
        environment = ShellCommandRunner::defaultEnvironment();
        environment["HOME"] = home.path();
        for (const char* variable : {"DOCKER_HOST", "DOCKER_CONTEXT", "DOCKER_CONFIG"}) {
            environment.erase(variable);
        }
    }

    [[nodiscard]] std::shared_ptr<CommandExecuting> commands() const {
        return std::make_shared<ShellCommandRunner>(environment);
    }

    [[nodiscard]] DockerAvailability scan() const {
        return DockerScanner(commands(), std::make_shared<FixedDockerLocator>(GetParam()), environment)
            .scan();
    }

    [[nodiscard]] DockerAvailability::Available available() const {
        DockerAvailability result = scan();
        if (const auto* failure = std::get_if<DockerAvailability::DaemonUnavailable>(&result.state)) {
            ADD_FAILURE() << failure->message;
        }
        auto* state = std::get_if<DockerAvailability::Available>(&result.state);
        return state != nullptr ? std::move(*state) : DockerAvailability::Available{};
    }

    [[nodiscard]] CommandResult docker(const std::vector<std::string>& arguments) const {
        return commands()->run(GetParam(), arguments, std::chrono::seconds(60));
    }

    /// Tells the tool about the engine under the name "mine"; it is not the active context yet.
    void createContext() const {
        const CommandResult created =
            docker({"context", "create", "mine", "--docker", "host=" + engine->host()});
        ASSERT_TRUE(created.succeeded()) << created.diagnostic();
    }

    [[nodiscard]] DockerImageRemovalResult remove(const DockerImage& image) const {
        return DockerImageRemovalService(commands()).remove(image, GetParam());
    }

    static DockerImage imageNamed(const DockerAvailability::Available& inventory, const std::string& id) {
        const auto found = std::ranges::find(inventory.images, id, &DockerImage::imageID);
        EXPECT_NE(found, inventory.images.end()) << id;
        return found == inventory.images.end() ? DockerImage{} : *found;
    }

    static DockerContainer containerNamed(const DockerAvailability::Available& inventory,
                                          const std::string& name) {
        const auto found = std::ranges::find(inventory.containers, name, &DockerContainer::name);
        EXPECT_NE(found, inventory.containers.end()) << name;
        return found == inventory.containers.end() ? DockerContainer{} : *found;
    }

    static std::vector<std::string> imageIDs(const DockerAvailability::Available& inventory) {
        std::vector<std::string> ids;
        for (const DockerImage& image : inventory.images) {
            ids.push_back(image.imageID);
        }
        return ids;
    }
};

} // namespace zentrill::test
