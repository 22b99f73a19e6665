#include "docker/DockerDataRoot.h"

#include "support/FakeCommandRunner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include <sys/utsname.h>

namespace zentrill {
namespace {

using test::FakeCommandRunner;
using testing::ElementsAre;

/// A tool whose context and engine answer as the test says.
class DockerDataRootTest : public testing::Test {
protected:
    DockerDataRootTest() {
        utsname machine{};
        ::uname(&machine);
        info_ = test::ok(std::string(static_cast<const char*>(machine.nodename)) + " /var/lib/docker\n");
    }

    [[nodiscard]] std::optional<std::string> root(const DockerConnection& connection) {
        return localDockerDataRoot(commands_, "/opt/docker", connection);
    }

    CommandResult context_ = test::ok("unix:///var/run/docker.sock\n");
    CommandResult info_;
    FakeCommandRunner commands_{[this](const FakeCommandRunner::Call& call) {
        return testing::Value(call.arguments, testing::Contains("info")) ? info_ : context_;
    }};
    DockerConnection desktop_{.arguments = {"--context", "desktop"}, .displayName = "desktop"};
};

TEST_F(DockerDataRootTest, IsToldByTheEngineOfAContext) {
    EXPECT_EQ(root(desktop_), "/var/lib/docker");
    EXPECT_THAT(commands_.calls(),
                ElementsAre(FakeCommandRunner::Call{"/opt/docker",
                                                    {"context", "inspect", "--format",
                                                     "{{.Endpoints.docker.Host}}", "desktop"},
                                                    3.0},
                            FakeCommandRunner::Call{
                                "/opt/docker",
                                {"--context", "desktop", "info", "--format", "{{.Name}} {{.DockerRootDir}}"},
                                3.0}));
}

TEST_F(DockerDataRootTest, IsToldByTheEngineOfASocket) {
    EXPECT_EQ(root({.arguments = {"--host", "unix:///run/docker.sock"}, .displayName = "override"}),
              "/var/lib/docker");
    EXPECT_EQ(commands_.calls().size(), 1U);
}

TEST_F(DockerDataRootTest, IsNotKnownOfAnEngineFarAway) {
    EXPECT_EQ(root({.arguments = {"--host", "tcp://10.0.0.1:2375"}, .displayName = "override"}),
              std::nullopt);
    context_ = test::ok("ssh://me@far\n");
    EXPECT_EQ(root(desktop_), std::nullopt);
    context_ = test::failed(1);
    EXPECT_EQ(root(desktop_), std::nullopt);
    EXPECT_EQ(commands_.calls().size(), 2U);
}

TEST_F(DockerDataRootTest, IsNotKnownOfAnEngineInAVirtualMachine) {
    info_ = test::ok("docker-desktop /var/lib/docker\n");
    EXPECT_EQ(root(desktop_), std::nullopt);
}

TEST_F(DockerDataRootTest, IsNotKnownWhereTheAnswerIsNone) {
    info_.exitCode = 1;
    EXPECT_EQ(root(desktop_), std::nullopt);
    info_ = test::ok("");
    EXPECT_EQ(root(desktop_), std::nullopt);
}

} // namespace
} // namespace zentrill
