#include "platform/RegularFile.h"

#include "platform/FileDescriptor.h"
#include "platform/Paths.h"
#include "platform/Text.h"

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {

namespace {

constexpr mode_t ownerOnlyFile = S_IRUSR | S_IWUSR;
constexpr mode_t ownerOnlyFolder = S_IRWXU;

bool makeFolderWithParents(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        if (::mkdir(path.substr(0, slash).c_str(), ownerOnlyFolder) != 0 && errno != EEXIST) {
            return false;
        }
    }
    return ::mkdir(path.c_str(), ownerOnlyFolder) == 0 || errno == EEXIST;
}

bool writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            content.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    return true;
}

/// A new, empty file in `folder` with a unique name.
FileDescriptor makeTemporaryFile(int folder, std::string& name) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        name = ".zentrill-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp";
        FileDescriptor file(::openat(folder, name.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ownerOnlyFile));
        if (file || errno != EEXIST) {
            return file;
        }
    }
    return {};
}

bool mayBeReplaced(int folder, const std::string& name) {
    struct stat status{};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT;
    }
    return S_ISREG(status.st_mode);
}

} // namespace

FileReading readRegularFile(const std::string& path, std::size_t limit, FinalLink finalLink) {
    if (hasNul(path)) {
        return {};
    }
    // With O_NONBLOCK, opening a pipe without a writer returns; it has no effect on regular files.
    const int noFollow = finalLink == FinalLink::refuse ? O_NOFOLLOW : 0;
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | noFollow));
    if (!file) {
        return {.content = std::nullopt, .missing = errno == ENOENT};
    }
    struct stat status{};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {};
    }
    std::string content;
    std::array<char, 65536> buffer{};
    while (true) {
        const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
        if (count < 0 && errno != EINTR) {
            return {};
        }
        if (count == 0) {
            return {.content = std::move(content), .missing = false};
        }
        if (count > 0) {
            content.append(buffer.data(), static_cast<std::size_t>(count));
        }
        if (content.size() > limit) {
            return {};
        }
    }
}

bool replaceRegularFile(const std::string& path, std::string_view content) {
    if (hasNul(path) || !path.starts_with('/') || path.ends_with('/')) {
        return false;
    }
    const std::string folderPath(paths::parent(path));
    const std::string name(paths::lastComponent(path));
    if (!makeFolderWithParents(folderPath)) {
        return false;
    }
    const FileDescriptor folder(::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder || !mayBeReplaced(folder.get(), name)) {
        return false;
    }
    std::string temporaryName;
    FileDescriptor file = makeTemporaryFile(folder.get(), temporaryName);
    if (!file) {
        return false;
    }
    // Without the sync a crash shortly after the rename could leave an empty file under the final name.
    const bool replaced = writeAll(file.get(), content) && ::fsync(file.get()) == 0 &&
                          ::close(file.release()) == 0 &&
                          ::renameat(folder.get(), temporaryName.c_str(), folder.get(), name.c_str()) == 0;
    if (!replaced) {
        ::unlinkat(folder.get(), temporaryName.c_str(), 0);
    } else {
        ::fsync(folder.get());
    }
    return replaced;
}

} // namespace zentrill
