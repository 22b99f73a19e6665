#include "deletion/DeletionConcurrency.h"

#include <algorithm>
#include <thread>

#include <sys/resource.h>

namespace zentrill {

namespace {

constexpr std::size_t mostThreads = 4;

/// The default of a desktop program on a Mac; four threads need about half of it.
constexpr rlim_t descriptorsForThreads = 256;

} // namespace

DeletionConcurrency DeletionConcurrency::ofThisMachine() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur < descriptorsForThreads) {
        return {};
    }
    return {.threads = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, mostThreads)};
}

} // namespace zentrill
