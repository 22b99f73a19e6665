#include "support/ReadOnlyMachine.h"

#include <gtest/gtest.h>

#include <optional>

namespace zentrill::test {
namespace {

/// Every test of this program deletes files for a living; none runs on a machine that it could harm.
class SafeSurroundings : public testing::Environment {
public:
    void SetUp() override {
        if (ReadOnlyMachine::possible()) {
            machine_.emplace();
        }
    }

    void TearDown() override { machine_.reset(); }

private:
    std::optional<ReadOnlyMachine> machine_;
};

[[maybe_unused]] const testing::Environment* const surroundings =
    testing::AddGlobalTestEnvironment(new SafeSurroundings);

} // namespace
} // namespace zentrill::test
