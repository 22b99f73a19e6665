#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// What one look at an item without following a final link tells.
struct FileAttributes {
    bool isDirectory = false;
    bool isSymbolicLink = false;
    bool isRegularFile = false;
    bool volumeIsReadOnly = false;
    /// Logical size in bytes.
    std::int64_t size = 0;

    bool operator==(const FileAttributes&) const = default;
};

/// Questions to the file system. It never changes anything; removal belongs to the deletion engine.
///
/// Every question answers "no" or nothing where the answer cannot be had: a missing item, a folder without
/// search permission and an I/O error look alike. Virtual so that places which no test may touch (the
/// machine's own /usr/local/bin) can be played by a test.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// The process-wide instance over the real file system. Safe from any thread.
    static const FileSystem& shared();

    /// Whether an item exists, links followed: a dangling link counts as missing.
    [[nodiscard]] virtual bool fileExists(const std::string& path) const;

    /// Whether something stands at the path itself, a dangling link included.
    [[nodiscard]] virtual bool itemExistsWithoutFollowingSymlink(const std::string& path) const;

    /// Where the link at `path` points, as it is written there; nothing if it is no link.
    [[nodiscard]] virtual std::optional<std::string> symbolicLinkDestination(const std::string& path) const;

    [[nodiscard]] virtual std::optional<FileAttributes> attributes(const std::string& path) const;

    /// Names of a folder's entries in the order the system gives them, hidden ones included, "." and ".."
    /// not.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> entryNames(const std::string& path) const;

    /// Whether this process may write to the item, by its effective user.
    [[nodiscard]] virtual bool isWritable(const std::string& path) const;

    /// Whether the path leads, through links, to a regular file that this process may execute.
    [[nodiscard]] virtual bool isExecutableFile(const std::string& path) const;

    /// The path with every link on it resolved, "." and ".." removed; nothing if it leads nowhere.
    [[nodiscard]] virtual std::optional<std::string> resolvingSymlinks(const std::string& path) const;

protected:
    FileSystem() = default;
    FileSystem(const FileSystem&) = default;
    FileSystem(FileSystem&&) = default;
    FileSystem& operator=(const FileSystem&) = default;
    FileSystem& operator=(FileSystem&&) = default;
};

} // namespace zentrill
