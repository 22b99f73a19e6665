#pragma once

#include <QString>

#include <string_view>

namespace zentrill {

/// Makes readable text of any bytes: bytes that are not UTF-8 become "\xNN", control characters "\n", "\t" or
/// "\xNN", and characters that reorder the text around them or cannot be seen become like "\u202E". So the
/// name of a file can neither break a row nor look like another name.
[[nodiscard]] QString displayName(std::string_view bytes);

/// The same for whole messages: their line breaks and tabs stay.
[[nodiscard]] QString displayMessage(std::string_view bytes);

} // namespace zentrill
