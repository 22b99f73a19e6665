#include "platform/FileSystem.h"

#include "platform/CResources.h"
#include "platform/Text.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace zentrill {

namespace {

class RealFileSystem final : public FileSystem {};

} // namespace

const FileSystem& FileSystem::shared() {
    static const RealFileSystem instance;
    return instance;
}

bool FileSystem::fileExists(const std::string& path) const {
    struct stat status{};
    return !hasNul(path) && ::stat(path.c_str(), &status) == 0;
}

bool FileSystem::itemExistsWithoutFollowingSymlink(const std::string& path) const {
    struct stat status{};
    return !hasNul(path) && ::lstat(path.c_str(), &status) == 0;
}

std::optional<std::string> FileSystem::symbolicLinkDestination(const std::string& path) const {
    if (hasNul(path)) {
        return std::nullopt;
    }
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    if (length < 0) {
        return std::nullopt;
    }
    return std::string(target.data(), static_cast<std::size_t>(length));
}

std::optional<FileAttributes> FileSystem::attributes(const std::string& path) const {
    struct stat status{};
    if (hasNul(path) || ::lstat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    FileAttributes result{
        .isDirectory = S_ISDIR(status.st_mode),
        .isSymbolicLink = S_ISLNK(status.st_mode),
        .isRegularFile = S_ISREG(status.st_mode),
        .size = status.st_size,
    };
    // A link's volume is the one that holds the link; statvfs would follow it.
    const std::string volumeItem =
        result.isSymbolicLink ? path.substr(0, path.find_last_of('/') + 1) + "." : path;
    struct statvfs volume{};
    if (::statvfs(volumeItem.c_str(), &volume) == 0) {
        result.volumeIsReadOnly = (volume.f_flag & ST_RDONLY) != 0;
    }
    return result;
}

std::optional<std::vector<std::string>> FileSystem::entryNames(const std::string& path) const {
    if (hasNul(path)) {
        return std::nullopt;
    }
    const DirectoryStream directory(::opendir(path.c_str()));
    if (!directory) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(directory.get())) {
        const std::string_view name(static_cast<const char*>(entry->d_name));
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
    }
    return names;
}

bool FileSystem::isWritable(const std::string& path) const {
    return !hasNul(path) && ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

bool FileSystem::isExecutableFile(const std::string& path) const {
    struct stat status{};
    return !hasNul(path) && ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

std::optional<std::string> FileSystem::resolvingSymlinks(const std::string& path) const {
    if (hasNul(path)) {
        return std::nullopt;
    }
    const MallocText resolved(::realpath(path.c_str(), nullptr));
    if (!resolved) {
        return std::nullopt;
    }
    return std::string(resolved.get());
}

} // namespace zentrill
