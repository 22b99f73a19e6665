#include "deletion/DeletionConcurrency.h"

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include <sys/resource.h>

namespace zentrill {
namespace {

TEST(DeletionConcurrency, TakesTheProcessorsThatThereAreUpToFour) {
    const std::size_t processors = std::thread::hardware_concurrency();
    EXPECT_EQ(DeletionConcurrency::ofThisMachine().threads, std::clamp<std::size_t>(processors, 1, 4));
}

TEST(DeletionConcurrency, StaysAloneWhereFewFilesMayBeOpen) {
    EXPECT_TRUE(test::passesInChild([] {
        const rlimit limit{64, 64};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        EXPECT_EQ(DeletionConcurrency::ofThisMachine().threads, 1U);
    }));
}

} // namespace
} // namespace zentrill
