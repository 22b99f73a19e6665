#pragma once

#include <QString>

#include <string_view>

namespace zentrill {

/// Text for people out of bytes that need not be text: bytes that are not UTF-8 become "\xNN", control
/// characters "\n", "\t" or "\xNN", and characters that reorder the text around them or are not seen
/// "\u202E". A file's name can so neither break a row nor pass for another name.
[[nodiscard]] QString displayName(std::string_view bytes);

/// The same for whole messages: their line breaks and tabs stay.
[[nodiscard]] QString displayMessage(std::string_view bytes);

} // namespace zentrill
