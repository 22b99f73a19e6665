#include "controller/CancellableOperation.h"

#include <gtest/gtest.h>

#include <thread>

namespace zentrill {
namespace {

TEST(CancellableOperationTest, StartsUncancelledAndStaysCancelled) {
    CancellableOperation operation;
    EXPECT_FALSE(operation.isCancelled());
    operation.cancel();
    EXPECT_TRUE(operation.isCancelled());
    operation.cancel();
    EXPECT_TRUE(operation.isCancelled());
}

TEST(CancellableOperationTest, IsSeenByAThreadThatPolls) {
    CancellableOperation operation;
    std::thread worker([&operation] {
        while (!operation.isCancelled()) {
            std::this_thread::yield();
        }
    });
    operation.cancel();
    worker.join();
    EXPECT_TRUE(operation.isCancelled());
}

} // namespace
} // namespace zentrill
