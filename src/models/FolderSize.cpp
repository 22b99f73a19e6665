#include "models/FolderSize.h"

#include "platform/ByteSum.h"
#include "platform/TreeVisit.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <system_error>
#include <thread>

namespace zentrill {

namespace {

/// Limits the descriptors that are open at once; a process on a Mac may have 256.
constexpr unsigned mostThreads = 16;

} // namespace

std::int64_t folderSize(const std::string& path, const std::function<bool()>& shouldStop) {
    std::int64_t total = 0;
    visitTree(
        path,
        [&total](const DirectoryStack& stack, const DirectoryStack::Entry& entry) {
            EntryStatus status;
            if (stack.directory().lookUp(entry.name, status) == 0) {
                addBytes(total, status.size);
            }
        },
        shouldStop);
    return total;
}

std::vector<std::int64_t> folderSizes(const std::vector<std::string>& paths,
                                      const std::function<bool()>& shouldStop) {
    std::vector<std::int64_t> sizes(paths.size());
    std::atomic<std::size_t> nextFolder = 0;
    const auto work = [&] {
        for (std::size_t index = nextFolder++; index < paths.size(); index = nextFolder++) {
            sizes[index] = folderSize(paths[index], shouldStop);
        }
    };
    const std::size_t threadCount =
        std::min<std::size_t>(std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads), paths.size());
    std::vector<std::thread> helpers;
    helpers.reserve(threadCount);
    try {
        while (helpers.size() + 1 < threadCount) {
            helpers.emplace_back(work);
        }
    } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch)
        // No more threads can be started: those that run, and this one, do the work.
    }
    work();
    for (std::thread& helper : helpers) {
        helper.join();
    }
    return sizes;
}

} // namespace zentrill
