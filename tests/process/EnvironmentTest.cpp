#include "process/Environment.h"

#include "support/Processes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string_view>

#include <unistd.h>

#ifdef __APPLE__
extern char** environ;
#endif

namespace zentrill {
namespace {

TEST(Environment, TakesAssignmentsAlone) {
    EXPECT_TRUE(test::holdsInForkedChild([] {
        std::array<char, 8> plain{"A=1"};
        std::array<char, 8> second{"A=2"};
        std::array<char, 8> equals{"B=c=d"};
        std::array<char, 8> none{"NONE"};
        std::array<char, 8> nameless{"=x"};
        std::array<char, 8> empty{"E="};
        std::array<char*, 7> entries{plain.data(),    second.data(), equals.data(), none.data(),
                                     nameless.data(), empty.data(),  nullptr};
        environ = entries.data();
        return currentEnvironment() == Environment{{"A", "1"}, {"B", "c=d"}, {"E", ""}};
    }));
}

TEST(Environment, NothingOfATerminalIsLeftToThoseStartedLater) {
    EXPECT_TRUE(test::holdsInForkedChild([] {
        for (const char* name : {"COLUMNS", "LINES", "PS_FORMAT", "PS_PERSONALITY", "CMD_ENV",
                                 "I_WANT_A_BROKEN_PS", "COLUMNS_OF_A_TEMPLE", "EMPTY"}) {
            ::setenv(name, name == std::string_view("EMPTY") ? "" : "80", 1);
        }
        Environment expected = currentEnvironment();
        const std::size_t before = expected.size();
        for (const char* name :
             {"COLUMNS", "LINES", "PS_FORMAT", "PS_PERSONALITY", "CMD_ENV", "I_WANT_A_BROKEN_PS"}) {
            expected.erase(name);
        }
        leaveTerminalBehind();
        return before == expected.size() + 6 && currentEnvironment() == expected;
    }));
}

} // namespace
} // namespace zentrill
