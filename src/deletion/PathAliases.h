#pragma once

#include <string>
#include <string_view>

/// The three names at the root that some systems keep as links into /private: /tmp, /var and /etc.
namespace zentrill {

/// The canonical form of a path that is or begins with an alias: "/tmp/x" gives "/private/tmp/x". By the
/// text alone, whether or not such a link exists here; for comparing paths, not for reaching files.
[[nodiscard]] std::string aliasNormalized(std::string_view path);

/// Whether a link at `path` that points at `destination`, as written in the link, is one of the aliases as
/// the system makes them. Every other link on the way to a file is suspicious.
[[nodiscard]] bool isSystemAlias(std::string_view path, std::string_view destination);

} // namespace zentrill
