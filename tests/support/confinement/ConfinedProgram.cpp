// Compiled into every test program, benchmark and fuzz target: confines it before anything else of it runs.

#include "support/confinement/Confinement.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <unistd.h>

namespace {

constexpr int skipped = 77;
constexpr int failed = 1;

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
    using namespace zentrill::confinement;
    if (onlyListsTests(argc, argv)) {
        return;
    }
    try {
        static_cast<void>(confineThisProcess());
        if (::chdir(std::getenv("TMPDIR")) != 0) {
            std::perror("the scratch folder");
            ::_exit(failed);
        }
    } catch (const NoRung& nothing) {
        std::fprintf(stderr, "Skipped: removes files, and nothing here confines it: %s\n", nothing.what());
        ::_exit(skipped);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Cannot be confined: %s\n", error.what());
        ::_exit(failed);
    }
}

} // namespace
