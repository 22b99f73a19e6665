// The test framework captures stderr in a file below /tmp, wherever the folder for temporary files is. That
// file has to lie in the program's own scratch folder.

// The two names that the function has are to be defined here as they are, not one in place of the other.
#undef _FILE_OFFSET_BITS

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <fcntl.h>

namespace {

constexpr std::string_view frameworksPattern = "/tmp/gtest_captured_stream.XXXXXX";

int scratchFolder() {
    static const int folder = ::open(std::getenv("TMPDIR"), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return folder;
}

int openAt(char* pattern) {
    if (pattern == frameworksPattern) {
        // No longer than the one that it replaces, however long the folder's own path is.
        std::snprintf(pattern, frameworksPattern.size() + 1, "/proc/self/fd/%d/out.XXXXXX", scratchFolder());
    }
    return ::mkostemp(pattern, 0);
}

} // namespace

// These take the place of the C library's.
extern "C" {

int mkstemp(char* pattern) {
    return openAt(pattern);
}

int mkstemp64(char* pattern) {
    return openAt(pattern);
}
}
