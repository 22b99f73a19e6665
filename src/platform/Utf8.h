#pragma once

#include <cstddef>
#include <string_view>

namespace zentrill {

/// Whether `bytes` is strictly valid UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF, no
/// sequence cut short. Empty text is valid.
[[nodiscard]] bool isValidUtf8(std::string_view bytes) noexcept;

/// How many bytes at the end of `bytes` begin a character without completing it: 0 to 3. A text that was cut
/// at an arbitrary byte is whole again without them.
[[nodiscard]] std::size_t incompleteUtf8TailLength(std::string_view bytes) noexcept;

} // namespace zentrill
