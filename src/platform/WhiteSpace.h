#pragma once

#include <string_view>

namespace zentrill {

/// A UTF-8 text without the white space at both ends: every character that Unicode counts as white space,
/// line and paragraph ends among them.
[[nodiscard]] std::string_view trimmingWhiteSpace(std::string_view text) noexcept;

} // namespace zentrill
