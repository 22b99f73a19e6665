#include "controller/FreeSpaceMeter.h"

#include "support/MemoryFolder.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

namespace zentrill {
namespace {

/// A meter that is told the free space of each file system, by the device's number.
class FreeSpaceMeterTest : public testing::Test {
protected:
    [[nodiscard]] static dev_t deviceOf(const std::string& path) {
        DirectoryHandle folder;
        EXPECT_EQ(DirectoryHandle::open(path, FinalLink::follow, folder), 0);
        return folder.identity().device;
    }

    void setSpace(const std::string& path, std::int64_t bytes) { space_[deviceOf(path)] = bytes; }

    /// A folder on another file system than the test's, or an empty text.
    [[nodiscard]] std::string elsewhere() const {
        for (const std::string& path : {test::memoryFolder(), std::string("/proc"), std::string("/")}) {
            if (deviceOf(path) != deviceOf(folder_.path())) {
                return path;
            }
        }
        return {};
    }

    test::TemporaryDirectory folder_;
    std::map<dev_t, std::int64_t> space_;
    FreeSpaceMeter meter_{[this](const DirectoryHandle& folder) -> std::optional<std::int64_t> {
        const auto found = space_.find(folder.identity().device);
        return found == space_.end() ? std::nullopt : std::optional(found->second);
    }};
};

TEST_F(FreeSpaceMeterTest, SaysWhatWasAndWhatIs) {
    folder_.makeFile("item");
    setSpace(folder_.path(), 41'200'000'000);
    meter_.watchItem(folder_.path("item"));
    setSpace(folder_.path(), 41'100'000'000); // Another program writes.
    meter_.watchItem(folder_.path("item"));   // Once for each file system.
    setSpace(folder_.path(), 46'800'000'000);
    EXPECT_EQ(meter_.text(), "Free space: 41.2 GB → 46.8 GB");
}

/// As an engine's folder, which its owner alone may read.
TEST_F(FreeSpaceMeterTest, LooksAroundAFolderThatMayNotBeOpened) {
    folder_.makeFile("around/closed/file");
    const std::string closed = folder_.path("around/closed");
    test::giveToOrdinaryUser(folder_.path("around"));
    std::filesystem::permissions(folder_.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(closed, std::filesystem::perms::none);
    setSpace(folder_.path(), 1'000'000'000);
    EXPECT_TRUE(test::passesAsOrdinaryUser([&] {
        meter_.watchFolder(closed);
        EXPECT_EQ(meter_.text(), "Free space: 1 GB → 1 GB");
    }));
    std::filesystem::permissions(closed, std::filesystem::perms(0755));
}

TEST_F(FreeSpaceMeterTest, SaysNothingOfWhatIsNotThere) {
    setSpace(folder_.path(), 1'000'000'000);
    meter_.watchItem(folder_.path("missing"));
    meter_.watchFolder(folder_.path("missing"));
    EXPECT_EQ(meter_.text(), "");
}

TEST_F(FreeSpaceMeterTest, SaysNothingWhereNothingCanBeMeasured) {
    folder_.makeFile("item");
    meter_.watchItem(folder_.path("item"));
    EXPECT_EQ(meter_.text(), "");
}

TEST_F(FreeSpaceMeterTest, OutlivesTheFolderThatItMeasures) {
    folder_.makeFile("gone/item");
    setSpace(folder_.path(), 1'000'000'000);
    meter_.watchItem(folder_.path("gone/item"));
    std::filesystem::remove_all(folder_.path("gone"));
    setSpace(folder_.path(), 2'000'000'000);
    EXPECT_EQ(meter_.text(), "Free space: 1 GB → 2 GB");
}

TEST_F(FreeSpaceMeterTest, MeasuresWhereTheLinkIsAndNotWhatItLeadsTo) {
    const std::string other = elsewhere();
    if (other.empty()) {
        GTEST_SKIP() << "no second file system";
    }
    folder_.makeLink("link", other);
    setSpace(folder_.path(), 3'000'000'000);
    setSpace(other, 5'000'000'000);
    meter_.watchItem(folder_.path("link"));
    EXPECT_EQ(meter_.text(), "Free space: 3 GB → 3 GB");
}

TEST_F(FreeSpaceMeterTest, AddsUpTheFileSystemsThatChanged) {
    const std::string other = elsewhere();
    if (other.empty()) {
        GTEST_SKIP() << "no second file system";
    }
    setSpace(folder_.path(), 10'000'000'000);
    setSpace(other, 1'000'000'000);
    meter_.watchFolder(folder_.path());
    meter_.watchFolder(other);
    EXPECT_EQ(meter_.text(), "Free space: 10 GB → 10 GB"); // None has: the first speaks for itself.
    setSpace(other, 3'000'000'000);
    EXPECT_EQ(meter_.text(), "Free space: 1 GB → 3 GB");
    setSpace(folder_.path(), 10'500'000'000);
    EXPECT_EQ(meter_.text(), "Free space on 2 file systems: 11 GB → 13.5 GB");
}

TEST_F(FreeSpaceMeterTest, CountsAPoolOnce) {
    const std::string other = elsewhere();
    if (other.empty()) {
        GTEST_SKIP() << "no second file system";
    }
    setSpace(folder_.path(), 7'000'000'000);
    setSpace(other, 7'000'000'000);
    meter_.watchFolder(folder_.path());
    meter_.watchFolder(other);
    setSpace(folder_.path(), 8'000'000'000);
    setSpace(other, 8'000'000'000);
    EXPECT_EQ(meter_.text(), "Free space: 7 GB → 8 GB");
}

} // namespace
} // namespace zentrill
