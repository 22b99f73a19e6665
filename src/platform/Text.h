#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Whether the text contains a zero byte. C functions end a text there, so that a path would become a shorter
/// one.
[[nodiscard]] inline bool hasNul(std::string_view text) noexcept {
    return text.find('\0') != std::string_view::npos;
}

/// The texts one after the other, with the separator between two of them.
[[nodiscard]] std::string joined(const std::vector<std::string>& texts, std::string_view separator);

} // namespace zentrill
