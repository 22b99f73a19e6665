#include "docker/DockerImageRemovalService.h"

#include "support/FakeCommandRunner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace zentrill {
namespace {

using test::FakeCommandRunner;
using testing::ElementsAre;
using testing::IsEmpty;

class DockerImageRemovalServiceTest : public testing::Test {
protected:
    CommandResult answer = test::ok();
    std::shared_ptr<FakeCommandRunner> commands =
        std::make_shared<FakeCommandRunner>([this](const FakeCommandRunner::Call&) { return answer; });
    DockerImageRemovalService service{commands};
    DockerImage image{
        .imageID = "sha256:" + std::string(64, 'a'),
        .tags = {"tool:one"},
        .size = "1MB",
        .usage = DockerImageUsage::unused,
        .connection = {.arguments = {"--host", "unix:///run/other.sock"},
                       .displayName = "DOCKER_HOST override"},
    };

    DockerImageRemovalResult remove() { return service.remove(image, "/opt/docker"); }

    static DockerImageRemovalResult refused(std::string message) {
        return {.succeeded = false, .message = std::move(message)};
    }
};

TEST_F(DockerImageRemovalServiceTest, RemovesByTheFullIDThroughTheImagesOwnEndpoint) {
    EXPECT_EQ(remove(), (DockerImageRemovalResult{.succeeded = true,
                                                  .message = "Removed Docker image " + image.imageID + "."}));
    EXPECT_THAT(
        commands->calls(),
        ElementsAre(FakeCommandRunner::Call{
            "/opt/docker", {"--host", "unix:///run/other.sock", "image", "rm", "--", image.imageID}, 45}));
}

TEST_F(DockerImageRemovalServiceTest, AcceptsUpperCaseDigits) {
    image.imageID = "sha256:" + std::string(64, 'F');
    EXPECT_TRUE(remove().succeeded);
}

TEST_F(DockerImageRemovalServiceTest, RefusesAnythingButAFullID) {
    const std::string digits(64, 'a');
    for (const std::string& id :
         {digits, digits.substr(0, 12), std::string("sha256:"), std::string(), "sha256:" + digits.substr(1),
          "sha256:" + digits + "a", "sha256:" + digits.substr(1) + "g", "--force" + digits,
          "sha256:" + digits + "\n", std::string("tool:one")}) {
        SCOPED_TRACE(id);
        image.imageID = id;
        // The ID is judged first, whatever else is wrong.
        for (const DockerImageUsage usage :
             {DockerImageUsage::unused, DockerImageUsage::inUse, DockerImageUsage::unknown}) {
            image.usage = usage;
            EXPECT_EQ(remove(), refused("The selected Docker image ID is invalid; it was not removed."));
        }
    }
    EXPECT_THAT(commands->calls(), IsEmpty());
}

TEST_F(DockerImageRemovalServiceTest, RefusesAnImageThatIsOrMayBeInUse) {
    image.usage = DockerImageUsage::inUse;
    EXPECT_EQ(remove(), refused("Image " + image.imageID + " is used by a container; it was not removed."));
    image.usage = DockerImageUsage::unknown;
    EXPECT_EQ(remove(),
              refused("Image " + image.imageID + " has unknown container usage; it was not removed."));
    EXPECT_THAT(commands->calls(), IsEmpty());
}

TEST_F(DockerImageRemovalServiceTest, GivesDockersReasonForARefusal) {
    answer = test::failed(1, "Error response from daemon: conflict\n");
    EXPECT_EQ(remove(), refused("Docker refused to remove " + image.imageID +
                                ": Error response from daemon: conflict"));
    answer = {};
    answer.timedOut = true;
    EXPECT_EQ(remove(), refused("Docker refused to remove " + image.imageID + ": Command timed out."));
}

} // namespace
} // namespace zentrill
