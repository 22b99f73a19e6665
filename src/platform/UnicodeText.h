#pragma once

#include <optional>
#include <string>

namespace zentrill {

/// A text file's content in UTF-8 and without a byte order mark, converted from UTF-16 or UTF-32 where the
/// mark says so. What begins with no mark comes back as it is, whatever it is. Nothing where the content is
/// not of the form that its mark tells.
[[nodiscard]] std::optional<std::string> withoutByteOrderMark(std::string content);

} // namespace zentrill
