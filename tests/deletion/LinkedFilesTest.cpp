#include "deletion/LinkedFiles.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

EntryStatus fileOf(ino_t inode, std::uint64_t links) {
    return {.identity = {.device = 1, .inode = inode}, .linkCount = links};
}

TEST(LinkedFiles, RemembersOnlyFilesOfSeveralNamesAndOnlyUntilAllAreMet) {
    LinkedFiles files;
    EXPECT_TRUE(files.add(fileOf(1, 1), 0, true).lastLinkGoes);
    EXPECT_EQ(files.size(), 0U);
    (void)files.add(fileOf(2, 2), 0, true);
    (void)files.add(fileOf(3, 2), 0, true);
    EXPECT_EQ(files.size(), 2U);
    (void)files.add(fileOf(2, 2), 0, true);
    EXPECT_EQ(files.size(), 1U);
}

TEST(LinkedFiles, FreesAFileWithItsLastNameAndOnlyIfAllGo) {
    LinkedFiles files;
    EXPECT_FALSE(files.add(fileOf(1, 2), 0, true).lastLinkGoes);
    EXPECT_TRUE(files.add(fileOf(1, 2), 0, true).lastLinkGoes);
    EXPECT_FALSE(files.add(fileOf(2, 2), 0, true).lastLinkGoes);
    EXPECT_FALSE(files.add(fileOf(2, 2), 1, false).lastLinkGoes);
    EXPECT_FALSE(files.add(fileOf(3, 2), 1, false).lastLinkGoes);
    EXPECT_FALSE(files.add(fileOf(3, 2), 0, true).lastLinkGoes);
}

TEST(LinkedFiles, TellsTheFirstNameOfEachEnd) {
    LinkedFiles files;
    EXPECT_TRUE(files.add(fileOf(1, 4), 0, true).firstOfItsEnd);
    EXPECT_FALSE(files.add(fileOf(1, 4), 0, true).firstOfItsEnd);
    EXPECT_TRUE(files.add(fileOf(1, 4), 1, false).firstOfItsEnd);
    EXPECT_FALSE(files.add(fileOf(1, 4), 1, false).firstOfItsEnd);
}

TEST(LinkedFiles, TellsFilesOfTwoDevicesApart) {
    LinkedFiles files;
    (void)files.add(fileOf(1, 2), 0, true);
    EntryStatus elsewhere = fileOf(1, 2);
    elsewhere.identity.device = 2;
    EXPECT_FALSE(files.add(elsewhere, 0, true).lastLinkGoes);
}

} // namespace
} // namespace zentrill
