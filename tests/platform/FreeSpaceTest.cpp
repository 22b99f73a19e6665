#include "platform/FreeSpace.h"

#include "support/MemoryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace zentrill {
namespace {

TEST(FreeSpaceTest, IsThatOfTheFoldersFileSystem) {
    const std::string path = test::memoryFolder();
    DirectoryHandle folder;
    ASSERT_EQ(DirectoryHandle::open(path, FinalLink::follow, folder), 0);
    const std::optional<std::int64_t> bytes = freeSpace(folder);
    ASSERT_TRUE(bytes);
    const auto space = std::filesystem::space(path);
    EXPECT_LE(*bytes, static_cast<std::int64_t>(space.capacity));
    // Others write at the same time.
    EXPECT_NEAR(static_cast<double>(*bytes), static_cast<double>(space.available),
                static_cast<double>(space.capacity) / 20);
}

TEST(FreeSpaceTest, IsNotToldOfWhatHasNoSize) {
    DirectoryHandle folder;
    EXPECT_FALSE(freeSpace(folder));
    if (DirectoryHandle::open("/proc/self", FinalLink::follow, folder) != 0) {
        GTEST_SKIP() << "no /proc";
    }
    EXPECT_FALSE(freeSpace(folder));
}

} // namespace
} // namespace zentrill
