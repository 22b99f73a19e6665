#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// What is known of an item, without following a final link.
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
/// The answer is "no" or nothing if it cannot be found out: a missing item, a folder without search
/// permission and an I/O error look alike. Virtual, so that tests can stand in for places that they must not
/// touch, such as /usr/local/bin.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// The process-wide instance over the real file system. Safe from any thread.
    static const FileSystem& shared();

    /// Whether an item exists, links followed: a dangling link counts as missing.
    [[nodiscard]] virtual bool fileExists(const std::string& path) const;

    /// Whether there is an item at the path itself, even a dangling link.
    [[nodiscard]] virtual bool itemExistsWithoutFollowingSymlink(const std::string& path) const;

    /// Where the link at `path` points, as it is written in the link; nothing if it is not a link.
    [[nodiscard]] virtual std::optional<std::string> symbolicLinkDestination(const std::string& path) const;

    [[nodiscard]] virtual std::optional<FileAttributes> attributes(const std::string& path) const;

    /// The names of a folder's entries in the order of the system, with hidden ones and without "." and "..".
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
