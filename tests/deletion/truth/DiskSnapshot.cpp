#include "truth/DiskSnapshot.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::test {

namespace {

std::string bytesOf(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::array<char, 256> buffer{};
    const ssize_t length = ::read(file, buffer.data(), buffer.size());
    ::close(file);
    return {buffer.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
}

std::string targetOf(const std::string& path) {
    std::array<char, 4096> buffer{};
    const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
    return {buffer.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
}

timespec modificationTime(const struct stat& status) {
#ifdef __APPLE__
    return status.st_mtimespec;
#else
    return status.st_mtim;
#endif
}

void add(DiskSnapshot& snapshot, const std::string& path) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0) {
        return;
    }
    DiskItem item{status.st_mode, status.st_ino, {}, 0};
    if (S_ISREG(status.st_mode)) {
        item.content = bytesOf(path);
    }
    if (S_ISLNK(status.st_mode)) {
        item.content = targetOf(path);
    }
    if (!S_ISDIR(status.st_mode)) {
        const timespec modified = modificationTime(status);
        item.modified = (modified.tv_sec * 1'000'000'000) + modified.tv_nsec;
    }
    snapshot.emplace(path, item);
    if (!S_ISDIR(status.st_mode)) {
        return;
    }
    DIR* directory = ::opendir(path.c_str());
    if (directory == nullptr) {
        throw std::runtime_error("cannot read " + path);
    }
    while (const dirent* entry = ::readdir(directory)) {
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            add(snapshot, path + "/" + name);
        }
    }
    ::closedir(directory);
}

} // namespace

bool DiskItem::isDirectory() const {
    return S_ISDIR(mode);
}

DiskSnapshot takeSnapshot(const std::string& path) {
    DiskSnapshot snapshot;
    add(snapshot, path);
    return snapshot;
}

} // namespace zentrill::test
