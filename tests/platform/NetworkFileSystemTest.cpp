#include "platform/NetworkFileSystem.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(NetworkFileSystem, KnowsTheTypesThatTravel) {
    for (const std::uint32_t type : {0x6969U, 0xFF534D42U, 0xFE534D42U, 0x65735546U, 0x01021997U}) {
        EXPECT_TRUE(isNetworkFileSystem(type)) << std::hex << type;
    }
    for (const std::uint32_t type : {0xEF53U /* ext4 */, 0x9123683EU /* btrfs */, 0x01021994U /* tmpfs */}) {
        EXPECT_FALSE(isNetworkFileSystem(type)) << std::hex << type;
    }
}

TEST(NetworkFileSystem, HoldsWhatItCannotLookUpForLocal) {
    const test::TemporaryDirectory folder;
    EXPECT_FALSE(isOnNetwork(folder.path("missing")));
    EXPECT_FALSE(isOnNetwork(""));
}

} // namespace
} // namespace zentrill
