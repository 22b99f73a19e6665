#include "models/FolderWalk.h"

#include "platform/FileDescriptor.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace zentrill {

namespace {

/// Folders above the current one that stay open. Hub folders are four deep, so they never reopen one.
constexpr std::size_t openAncestors = 8;

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

struct DirectoryCloser {
    void operator()(DIR* directory) const noexcept { ::closedir(directory); }
};

using Directory = std::unique_ptr<DIR, DirectoryCloser>;

constexpr char directoryMark = 'd';
constexpr char otherMark = '-';

/// A folder on the way from the walk's own to the current one.
struct Level {
    /// Closed while the walk is far below.
    Directory directory;
    /// Set when the folder is closed, to recognise it on the way back.
    dev_t device = 0;
    ino_t inode = 0;
    /// Each entry as a mark, the name and a NUL.
    std::string entries;
    std::size_t nextEntry = 0;
    std::size_t pathLength = 0;
};

Directory openDirectory(int parent, const char* name, int extraFlags) {
    FileDescriptor descriptor(::openat(parent, name, folderFlags | extraFlags));
    if (!descriptor) {
        return nullptr;
    }
    Directory directory(::fdopendir(descriptor.get()));
    if (directory) {
        static_cast<void>(descriptor.release());
    }
    return directory;
}

/// All zeros when the system does not tell.
struct stat statusOf(const Directory& directory) {
    struct stat status{};
    if (const int descriptor = ::dirfd(directory.get()); descriptor >= 0) {
        ::fstat(descriptor, &status);
    }
    return status;
}

/// Nothing for an item that the walk leaves out.
std::optional<char> markOf(int folder, const dirent& entry) {
    const std::string_view name(static_cast<const char*>(entry.d_name));
    if (entry.d_type == DT_LNK || name == "." || name == "..") {
        return std::nullopt;
    }
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR ? directoryMark : otherMark;
    }
    struct stat status{};
    if (::fstatat(folder, static_cast<const char*>(entry.d_name), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return otherMark;
    }
    if (S_ISLNK(status.st_mode)) {
        return std::nullopt;
    }
    return S_ISDIR(status.st_mode) ? directoryMark : otherMark;
}

class Walk {
public:
    explicit Walk(std::string path) : path_(std::move(path)) {}

    void run(const std::function<void(const WalkEntry&)>& visit, const std::function<bool()>& shouldStop) {
        if (shouldStop && shouldStop()) {
            return;
        }
        enter(openDirectory(AT_FDCWD, path_.c_str(), 0));
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.nextEntry == level.entries.size()) {
                leave();
                continue;
            }
            const bool isDirectory = level.entries[level.nextEntry] == directoryMark;
            const char* name = level.entries.data() + level.nextEntry + 1;
            const std::size_t nameLength = std::string_view(name).size();
            level.nextEntry += nameLength + 2;
            const int folder = ::dirfd(level.directory.get());
            visit({.folder = folder, .folderPath = path_, .name = name, .isDirectory = isDirectory});
            if (!isDirectory) {
                continue;
            }
            if (shouldStop && shouldStop()) {
                return;
            }
            if (Directory child = openDirectory(folder, name, O_NOFOLLOW)) {
                path_.append("/").append(name, nameLength);
                enter(std::move(child));
            }
        }
    }

private:
    void enter(Directory directory) {
        if (!directory) {
            return;
        }
        const int folder = ::dirfd(directory.get());
        Level level;
        level.pathLength = path_.size();
        while (const dirent* entry = ::readdir(directory.get())) {
            if (const std::optional<char> mark = markOf(folder, *entry)) {
                const char* name = static_cast<const char*>(entry->d_name);
                level.entries += *mark;
                level.entries.append(name).push_back('\0');
            }
        }
        level.directory = std::move(directory);
        levels_.push_back(std::move(level));
        if (levels_.size() > openAncestors + 1) {
            closeFolder(levels_[levels_.size() - openAncestors - 2]);
        }
    }

    static void closeFolder(Level& level) {
        if (!level.directory) {
            return;
        }
        const struct stat status = statusOf(level.directory);
        level.device = status.st_dev;
        level.inode = status.st_ino;
        level.directory.reset();
    }

    void leave() {
        const Directory left = std::move(levels_.back().directory);
        levels_.pop_back();
        if (levels_.empty()) {
            return;
        }
        Level& level = levels_.back();
        path_.resize(level.pathLength);
        if (!level.directory && !reopenFolder(level, ::dirfd(left.get()))) {
            levels_.clear();
        }
    }

    /// A folder is closed only when one was opened through its child, so the child may be searched and ".."
    /// is allowed; it leads elsewhere only if somebody moved the child.
    static bool reopenFolder(Level& level, int child) {
        level.directory = openDirectory(child, "..", 0);
        if (!level.directory) {
            return false;
        }
        const struct stat status = statusOf(level.directory);
        return status.st_dev == level.device && status.st_ino == level.inode;
    }

    std::string path_;
    std::vector<Level> levels_;
};

} // namespace

void walkFolder(const std::string& path, const std::function<void(const WalkEntry&)>& visit,
                const std::function<bool()>& shouldStop) {
    // The system would end such a path at its NUL and read another folder.
    if (path.find('\0') == std::string::npos) {
        Walk(path).run(visit, shouldStop);
    }
}

} // namespace zentrill
