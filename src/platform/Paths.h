#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Pure functions on path texts. Paths are byte strings: nothing here decodes them, folds their case or
/// looks at the disk.
namespace zentrill::paths {

/// Removes "." and "..", doubled and trailing slashes, by the text alone: links are not resolved. ".." at
/// the root stays at the root. A relative path keeps its leading ".." parts; an empty one stays empty.
[[nodiscard]] std::string standardized(std::string_view path);

/// The parts between the slashes. For an absolute path the first one is "/"; empty parts are left out.
[[nodiscard]] std::vector<std::string_view> components(std::string_view path);

/// The last part without trailing slashes; "/" for the root, empty for the empty path.
[[nodiscard]] std::string_view lastComponent(std::string_view path);

/// Everything before the last part: "/" for a child of the root and for the root itself.
[[nodiscard]] std::string_view parent(std::string_view path);

/// What follows the last dot of the last part; empty for a leading dot ("/a/.app") or none.
[[nodiscard]] std::string_view extension(std::string_view path);

/// `directory` and `name` with exactly one slash between them.
[[nodiscard]] std::string appending(std::string_view directory, std::string_view name);

/// Whether `path` equals `ancestor` or lies below it. Both standardized; compared by whole parts.
[[nodiscard]] bool isSameOrBelow(std::string_view path, std::string_view ancestor);

/// Replaces a leading "~" ("~" alone or "~/…") by `home`; "~name" and all else stay as they are. So does
/// everything when `home` is empty: "~/Library" must never come to mean "/Library".
[[nodiscard]] std::string expandingTilde(std::string_view path, std::string_view home);

} // namespace zentrill::paths
