#pragma once

#include <optional>
#include <string_view>

namespace zentrill {

/// The kind of tool that a catalog entry stands for.
enum class AppCategory { desktop, terminal };

/// The label of the category, by which it is also stored: "Desktop Application" or "Terminal / CLI Tool".
[[nodiscard]] std::string_view rawValue(AppCategory category) noexcept;

/// The category of exactly that label; case matters.
[[nodiscard]] std::optional<AppCategory> appCategory(std::string_view rawValue) noexcept;

} // namespace zentrill
