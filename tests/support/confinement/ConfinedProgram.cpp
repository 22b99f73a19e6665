// Compiled into every test program, benchmark and fuzz target: confines it before anything else of it runs.

#include "support/confinement/Confinement.h"

#include <string_view>

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
    if (!onlyListsTests(argc, argv)) {
        zentrill::confinement::confineOrEnd();
    }
}

} // namespace
