#include "DockerScannerFixture.h"
#include "ImageID.h"
#include "support/FakeCommandRunner.h"
#include "support/FixedDockerLocator.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <variant>

namespace zentrill {
namespace {

using test::containerLine;
using test::failed;
using test::FixedDockerLocator;
using test::imageID;
using test::imageLine;
using test::ok;
using testing::ElementsAre;
using testing::IsEmpty;

using DockerScannerTest = test::DockerScannerFixture;

constexpr const char* couldNotReadOneContainer =
    "Could not read 1 container record; image removal is disabled until the next successful scan.";

TEST_F(DockerScannerTest, WithoutContainersEveryImageIsUnused) {
    images = ok(imageLine('a', "one"));
    EXPECT_THAT(usages(available()), ElementsAre(DockerImageUsage::unused));
    EXPECT_EQ(commands->calls().size(), 4U) << "there is nothing to inspect";
}

TEST_F(DockerScannerTest, AFailedImageListingKeepsTheContainers) {
    containers = ok(containerLine("c1"));
    images = failed(1, "disk on fire");
    usage = ok(imageID('a'));
    const DockerAvailability::Available result = available();
    EXPECT_EQ(result.containers.size(), 1U);
    EXPECT_THAT(result.images, IsEmpty());
    EXPECT_EQ(result.imageWarning, "Image inventory failed: disk on fire");
}

TEST_F(DockerScannerTest, MalformedImagesAreANoticeOnly) {
    images = ok(imageLine('a', "one") + "broken\n");
    DockerAvailability::Available result = available();
    EXPECT_EQ(result.imageWarning, "Ignored 1 malformed image record.");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unused));
    images = ok("broken\n{}\n");
    result = available();
    EXPECT_EQ(result.imageWarning, "Ignored 2 malformed image records.");
}

TEST_F(DockerScannerTest, OneUnreadableContainerMakesEveryUsageUnknown) {
    containers = ok("broken\n");
    images = ok(imageLine('a', "one"));
    DockerAvailability::Available result = available();
    EXPECT_EQ(result.imageWarning,
              "Could not read 1 container record; image removal is disabled until the next successful scan.");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));

    containers = ok("broken\n" + containerLine("c1") + "{}\n");
    usage = ok(imageID('a') + "\n");
    result = available();
    EXPECT_EQ(
        result.imageWarning,
        "Could not read 2 container records; image removal is disabled until the next successful scan.");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));
}

TEST_F(DockerScannerTest, AFailedInspectionMakesEveryUsageUnknown) {
    containers = ok(containerLine("c1"));
    images = ok(imageLine('a', "one") + imageLine('b', "two"));
    usage = failed(1, "No such container");
    // What was printed before the failure proves nothing.
    usage.stdout = imageID('a') + "\n";
    const DockerAvailability::Available result = available();
    EXPECT_EQ(
        result.imageWarning,
        "Could not determine which images are in use; removal is disabled until the next successful scan.");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown, DockerImageUsage::unknown));
}

TEST_F(DockerScannerTest, AnIncompleteInspectionMakesEveryUsageUnknown) {
    containers = ok(containerLine("c1") + containerLine("c2"));
    images = ok(imageLine('a', "one"));
    for (const std::string& output : {imageID('b') + "\n", imageID('b') + "\ntool:one\n", std::string(),
                                      imageID('b') + "\n" + imageID('c') + "\n" + imageID('d') + "\n"}) {
        usage = ok(output);
        const DockerAvailability::Available result = available();
        EXPECT_EQ(result.imageWarning,
                  "Docker returned incomplete container image IDs; image removal is disabled "
                  "until the next successful scan.");
        EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));
    }
}

TEST_F(DockerScannerTest, AContainerListingThatIsNoTextMakesEveryUsageUnknown) {
    // As the runner gives it: nothing at all, which alone would read as "no containers".
    containers.stdoutIsWhole = false;
    images = ok(imageLine('a', "one"));
    const DockerAvailability::Available result = available();
    EXPECT_EQ(result.imageWarning, couldNotReadOneContainer);
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));
}

TEST_F(DockerScannerTest, AContainerListingThatWasCutMakesEveryUsageUnknown) {
    containers = ok(containerLine("c1"));
    containers.stdoutIsWhole = false;
    images = ok(imageLine('a', "one") + imageLine('b', "two"));
    usage = ok(imageID('a') + "\n");
    DockerAvailability::Available result = available();
    EXPECT_EQ(result.containers.size(), 1U);
    EXPECT_EQ(result.imageWarning, couldNotReadOneContainer);
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown, DockerImageUsage::unknown));

    // A line that the cut left half is the one that could not be read.
    containers.stdout += R"({"ID":"c)";
    result = available();
    EXPECT_EQ(result.imageWarning, couldNotReadOneContainer);
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown, DockerImageUsage::unknown));
}

TEST_F(DockerScannerTest, AnImageListingThatIsNotWholeOffersNothingForRemoval) {
    containers = ok(containerLine("c1"));
    usage = ok(imageID('b') + "\n");
    for (const std::string& output : {std::string(), imageLine('a', "one")}) {
        images = ok(output);
        images.stdoutIsWhole = false;
        const DockerAvailability::Available result = available();
        EXPECT_EQ(result.containers.size(), 1U);
        EXPECT_THAT(result.images, IsEmpty());
        EXPECT_EQ(result.imageWarning,
                  "Image inventory failed: Docker's answer could not be read as a whole.");
    }
}

TEST_F(DockerScannerTest, AnInspectionThatIsNotWholeMakesEveryUsageUnknown) {
    containers = ok(containerLine("c1"));
    images = ok(imageLine('a', "one"));
    for (const std::string& output : {std::string(), imageID('b') + "\n"}) {
        usage = ok(output);
        usage.stdoutIsWhole = false;
        const DockerAvailability::Available result = available();
        EXPECT_EQ(result.imageWarning,
                  "Docker returned incomplete container image IDs; image removal is disabled "
                  "until the next successful scan.");
        EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));
    }
}

/// A real program in the place of the tool, run by the real runner.
TEST(DockerScannerWithARealTool, OneByteThatIsNoTextMakesEveryUsageUnknown) {
    const test::TemporaryDirectory folder;
    const std::string tool =
        folder.makeFile("docker", "#!/bin/sh\ncase \"$*\" in\n"
                                  "*version*) echo 20.10.24 ;;\n"
                                  "*'container ls'*) printf '{\"ID\":\"c1\",\"Names\":\"caf\\351\"}\\n' ;;\n"
                                  "*'image ls'*) echo '" +
                                      imageLine('a', "one") +
                                      "' ;;\n"
                                      "*) exit 1 ;;\nesac\n");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    const DockerAvailability result =
        DockerScanner(std::make_shared<ShellCommandRunner>(), std::make_shared<FixedDockerLocator>(tool),
                      {{"DOCKER_CONTEXT", "here"}})
            .scan();
    const auto* state = std::get_if<DockerAvailability::Available>(&result.state);
    ASSERT_NE(state, nullptr);
    ASSERT_EQ(state->images.size(), 1U);
    EXPECT_EQ(state->images.front().usage, DockerImageUsage::unknown);
    EXPECT_EQ(state->imageWarning, couldNotReadOneContainer);
}

TEST_F(DockerScannerTest, WarningsStandInOneLineInTheirOrder) {
    containers = ok("broken\n" + containerLine("c1"));
    images = ok("broken\n");
    usage = failed(1);
    EXPECT_EQ(available().imageWarning, "Ignored 1 malformed image record. Could not read 1 container "
                                        "record; image removal is disabled until "
                                        "the next successful scan. Could not determine which images are in "
                                        "use; removal is disabled until the "
                                        "next successful scan.");
}

TEST_F(DockerScannerTest, TheSpellingOfAnIDDoesNotHideItsUse) {
    containers = ok(containerLine("c1"));
    images = ok(imageLine('A', "one"));
    usage = ok(imageID('a') + "\n");
    EXPECT_THAT(usages(available()), ElementsAre(DockerImageUsage::inUse));
}

} // namespace
} // namespace zentrill
