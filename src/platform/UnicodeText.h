#pragma once

#include <optional>
#include <string>

namespace zentrill {

/// A text file's content in UTF-8 and without a byte order mark, converted from UTF-16 or UTF-32 if the mark
/// says so. Content without a mark comes back as it is. Nothing if the content is not valid in the encoding
/// of its mark.
[[nodiscard]] std::optional<std::string> withoutByteOrderMark(std::string content);

} // namespace zentrill
