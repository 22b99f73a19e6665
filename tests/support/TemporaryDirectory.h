#pragma once

#include <string>
#include <string_view>

namespace zentrill::test {

/// A fresh folder of the test's own, removed with everything in it when the test ends.
class TemporaryDirectory {
public:
    /// Below `$TMPDIR`, or /tmp without one.
    TemporaryDirectory();
    /// Below `parent`, for tests that need a certain file system.
    explicit TemporaryDirectory(const std::string& parent);
    ~TemporaryDirectory();

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    TemporaryDirectory(TemporaryDirectory&&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory&&) = delete;

    /// Absolute, free of links, without a trailing slash.
    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    /// The path of `relative` inside the folder; nothing is made.
    [[nodiscard]] std::string path(std::string_view relative) const;

    /// Makes a folder with its missing parents and returns its path.
    std::string makeDirectory(std::string_view relative) const;

    /// Writes a file, making its missing parents, and returns its path.
    std::string makeFile(std::string_view relative, std::string_view content = {}) const;

    /// Writes a file that may be executed, making its missing parents, and returns its path.
    std::string makeExecutable(std::string_view relative, std::string_view content) const;

    /// Makes a symbolic link to `target`, written as it stands, and returns the link's path.
    std::string makeLink(std::string_view relative, const std::string& target) const;

private:
    std::string path_;
};

} // namespace zentrill::test
