#include "docker/DockerDataRoot.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace zentrill {
namespace {

class DockerDataRootTest : public testing::Test {
protected:
    [[nodiscard]] std::optional<std::string> root(std::vector<std::string> arguments) const {
        return localDockerDataRoot({.arguments = std::move(arguments), .displayName = "any"},
                                   folder_.path("daemon.json"));
    }

    void configure(const std::string& root) const {
        folder_.makeFile("daemon.json", R"({"log-driver": "local", "data-root": ")" + root + R"("})");
    }

    test::TemporaryDirectory folder_;
};

TEST_F(DockerDataRootTest, IsWhatTheEngineOfThisMachineIsConfiguredFor) {
    folder_.makeFile("engine/file");
    configure(folder_.path("engine"));
    EXPECT_EQ(root({"--context", "default"}), folder_.path("engine"));
    EXPECT_EQ(root({"--host", "unix:///var/run/docker.sock"}), folder_.path("engine"));
    EXPECT_EQ(root({"--host", "unix:///run/docker.sock"}), folder_.path("engine"));
}

TEST_F(DockerDataRootTest, IsNotKnownOfAnotherEngine) {
    folder_.makeFile("engine/file");
    configure(folder_.path("engine"));
    EXPECT_EQ(root({"--context", "desktop-linux"}), std::nullopt);
    EXPECT_EQ(root({"--host", "unix:///run/user/1000/docker.sock"}), std::nullopt);
    EXPECT_EQ(root({"--host", "tcp://10.0.0.1:2375"}), std::nullopt);
    EXPECT_EQ(root({"--host"}), std::nullopt);
    EXPECT_EQ(root({}), std::nullopt);
}

TEST_F(DockerDataRootTest, IsNotKnownWhereTheFolderIsNotHere) {
    configure(folder_.path("missing"));
    EXPECT_EQ(root({"--context", "default"}), std::nullopt);
    configure("."); // There, but not a path that means the same to the engine.
    EXPECT_EQ(root({"--context", "default"}), std::nullopt);
}

TEST_F(DockerDataRootTest, IsTheDefaultWithoutASetting) {
    const std::optional<std::string> byDefault = root({"--context", "default"});
    for (const char* text : {"", "{}", "[]", "nothing that can be read", R"({"data-root": 3})"}) {
        folder_.makeFile("daemon.json", text);
        EXPECT_EQ(root({"--context", "default"}), byDefault) << text;
    }
    EXPECT_THAT(byDefault, testing::AnyOf(std::nullopt, "/var/lib/docker"));
}

} // namespace
} // namespace zentrill
