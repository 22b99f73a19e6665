#include "platform/Precondition.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(Precondition, ThatHoldsChangesNothing) {
    precondition(true, "never told");
}

TEST(PreconditionDeathTest, ThatDoesNotHoldStopsTheProgramAndSaysWhy) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(precondition(false, "the lists differ"), "Zentrill: the lists differ");
    EXPECT_DEATH(preconditionFailure("no list is there"), "Zentrill: no list is there");
}

} // namespace
} // namespace zentrill
