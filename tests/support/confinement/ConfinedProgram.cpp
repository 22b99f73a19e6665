// Compiled into every test program, benchmark and fuzz target: confines it before anything else of it runs.

#include "support/confinement/Confinement.h"

#include <array>
#include <climits>
#include <string_view>

#include <unistd.h>

namespace {

/// For CTest, which then reads the list; nothing of a test runs.
bool onlyListsTests([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#ifdef ZENTRILL_LISTS_TESTS
    for (int index = 1; index < argc; ++index) {
        if (std::string_view(argv[index]) == "--gtest_list_tests") {
            return true;
        }
    }
#endif
    return false;
}

/// Before the program's own objects are made.
constexpr int first = 101;

[[gnu::constructor(first)]] void confine(int argc, char** argv, char** /*environment*/) {
    if (onlyListsTests(argc, argv)) {
        return;
    }
    zentrill::confinement::confineOrEnd();
    // The current folder is another one now; the framework starts the program anew for tests of its death.
    static std::array<char, PATH_MAX> self;
    if (::readlink("/proc/self/exe", self.data(), self.size() - 1) > 0) {
        argv[0] = self.data();
    }
}

} // namespace
