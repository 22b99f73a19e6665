#pragma once

#include <cstdlib>
#include <memory>

#include <dirent.h>

namespace zentrill {

/// Releases what a C function has allocated with `malloc` for its caller.
struct MallocDeleter {
    void operator()(char* text) const noexcept {
        std::free(text); // NOLINT(cppcoreguidelines-no-malloc): the C function has used malloc
    }
};

/// A C string that the caller has to free, as `realpath` returns it.
using MallocText = std::unique_ptr<char, MallocDeleter>;

struct DirectoryCloser {
    void operator()(DIR* directory) const noexcept { ::closedir(directory); }
};

/// An open directory stream.
using DirectoryStream = std::unique_ptr<DIR, DirectoryCloser>;

} // namespace zentrill
