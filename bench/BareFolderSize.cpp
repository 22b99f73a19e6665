#include "BareFolderSize.h"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::bench {

namespace {

/// As much as the C library asks for at a time.
constexpr std::size_t blockSize = 32768;

/// Calls `visit(name, type)` for each entry of the open directory.
template <typename Visit>
void forEachEntry(int directory, const Visit& visit) {
    const std::unique_ptr<char[]> block(new char[blockSize]); // NOLINT(modernize-avoid-c-arrays)
    for (ssize_t length = 0; (length = ::getdents64(directory, block.get(), blockSize)) > 0;) {
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(length);) {
            const char* record = block.get() + offset;
            decltype(dirent64::d_reclen) recordLength = 0;
            std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
            offset += recordLength;
            const char* name = record + offsetof(dirent64, d_name);
            if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) {
                visit(name, static_cast<unsigned char>(record[offsetof(dirent64, d_type)]));
            }
        }
    }
}

std::int64_t sizeBelow(int parent, const char* folder) {
    const int directory = ::openat(parent, folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    std::int64_t total = 0;
    forEachEntry(directory, [&](const char* name, unsigned char type) {
        if (type == DT_LNK) {
            return;
        }
        struct statx status{};
        if (::statx(directory, name, AT_SYMLINK_NOFOLLOW, STATX_SIZE, &status) == 0) {
            total += static_cast<std::int64_t>(status.stx_size);
        }
        if (type == DT_DIR) {
            total += sizeBelow(directory, name);
        }
    });
    ::close(directory);
    return total;
}

} // namespace

std::int64_t bareSizeOfFolders(const std::string& path) {
    const int top = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    std::vector<std::string> folders;
    forEachEntry(top, [&](const char* name, unsigned char type) {
        if (type == DT_DIR) {
            folders.emplace_back(name);
        }
    });
    std::atomic<std::size_t> next = 0;
    std::atomic<std::int64_t> total = 0;
    const auto work = [&] {
        for (std::size_t index = next++; index < folders.size(); index = next++) {
            total += sizeBelow(top, folders[index].c_str());
        }
    };
    std::vector<std::thread> helpers;
    while (helpers.size() + 1 < std::thread::hardware_concurrency()) {
        helpers.emplace_back(work);
    }
    work();
    for (std::thread& helper : helpers) {
        helper.join();
    }
    ::close(top);
    return total;
}

} // namespace zentrill::bench
