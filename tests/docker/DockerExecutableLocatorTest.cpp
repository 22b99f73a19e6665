#include "docker/DockerExecutableLocator.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <ranges>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace zentrill {
namespace {

/// Places that no test may write to: which files are executable there, and which are links to where.
class PlayedFileSystem final : public FileSystem {
public:
    std::set<std::string> executables;
    std::map<std::string, std::string> links;

    [[nodiscard]] bool isExecutableFile(const std::string& path) const override {
        const auto link = links.find(path);
        return executables.contains(link == links.end() ? path : link->second);
    }

    [[nodiscard]] std::optional<std::string> resolvingSymlinks(const std::string& path) const override {
        const auto link = links.find(path);
        return link == links.end() ? path : link->second;
    }
};

/// The real file system below one folder; what the machine itself has installed is out of sight.
class FileSystemBelow final : public FileSystem {
public:
    explicit FileSystemBelow(std::string folder) : folder_(std::move(folder)) {}

    [[nodiscard]] bool isExecutableFile(const std::string& path) const override {
        return path.starts_with(folder_) && FileSystem::isExecutableFile(path);
    }

private:
    std::string folder_;
};

class DockerExecutableLocatorTest : public testing::Test {
protected:
    PlayedFileSystem files;
    DockerExecutableLocator locator{files, "/home/someone", {"/extra/first/docker", "/extra/second/docker"}};
};

TEST_F(DockerExecutableLocatorTest, FindsNothingWhereNothingIs) {
    EXPECT_EQ(locator.locate(), std::nullopt);
}

TEST_F(DockerExecutableLocatorTest, TriesTheCandidatesInOrder) {
    const std::vector<std::string> order{
        "/usr/local/bin/docker",
        "/opt/homebrew/bin/docker",
        "/home/someone/.local/bin/docker",
        "/home/someone/.docker/bin/docker",
        "/Applications/Docker.app/Contents/Resources/bin/docker",
        "/extra/first/docker",
        "/extra/second/docker",
    };
    // From the last to the first: each one found so far must give way to the one before it.
    for (const std::string& candidate : std::views::reverse(order)) {
        files.executables.insert(candidate);
        EXPECT_EQ(locator.locate(), candidate);
    }
}

TEST_F(DockerExecutableLocatorTest, KnowsNoOtherPlaces) {
    files.executables = {"/usr/bin/docker", "/bin/docker", "docker", "/.local/bin/docker",
                         "/.docker/bin/docker"};
    EXPECT_EQ(locator.locate(), std::nullopt);
    EXPECT_EQ(DockerExecutableLocator(files, "").locate(), std::nullopt) << "no home folder is not the root";
}

TEST_F(DockerExecutableLocatorTest, GivesTheTargetOfALink) {
    const std::string bundled = "/Applications/Docker.app/Contents/Resources/bin/docker";
    files.executables = {bundled};
    files.links = {{"/usr/local/bin/docker", bundled}};
    EXPECT_EQ(locator.locate(), bundled);
}

TEST_F(DockerExecutableLocatorTest, PassesOverADanglingLink) {
    files.executables = {"/opt/homebrew/bin/docker"};
    files.links = {{"/usr/local/bin/docker", "/gone/docker"}};
    EXPECT_EQ(locator.locate(), "/opt/homebrew/bin/docker");
}

TEST_F(DockerExecutableLocatorTest, PassesOverALinkWhoseTargetHasChangedMeanwhile) {
    files.executables = {"/cellar/docker", "/opt/homebrew/bin/docker"};
    files.links = {{"/usr/local/bin/docker", "/cellar/docker"}, {"/cellar/docker", "/gone/docker"}};
    EXPECT_EQ(locator.locate(), "/opt/homebrew/bin/docker");
}

TEST_F(DockerExecutableLocatorTest, FindsOnTheRealFileSystemWhatIsInstalledMeanwhile) {
    const test::TemporaryDirectory home;
    const std::string last = home.path("last");
    const FileSystemBelow homeAlone(home.path());
    const DockerExecutableLocator own(homeAlone, home.path(), {last});
    EXPECT_EQ(own.locate(), std::nullopt);
    home.makeFile("last", "#!/bin/sh\n");
    EXPECT_EQ(own.locate(), std::nullopt) << "not executable";
    home.makeExecutable("last", "#!/bin/sh\n");
    EXPECT_EQ(own.locate(), last);
    home.makeDirectory(".docker/bin/docker");
    EXPECT_EQ(own.locate(), last) << "a folder is no program";
    const std::string cellar = home.makeExecutable("cellar/28.2/docker", "#!/bin/sh\n");
    home.makeLink("opt", "cellar/28.2");
    home.makeLink(".local/bin/docker", "../../opt/./docker");
    EXPECT_EQ(own.locate(), cellar);
}

} // namespace
} // namespace zentrill
