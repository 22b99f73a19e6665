#include "catalog/AppCategory.h"

namespace zentrill {

std::string_view rawValue(AppCategory category) noexcept {
    return category == AppCategory::desktop ? "Desktop Application" : "Terminal / CLI Tool";
}

std::optional<AppCategory> appCategory(std::string_view rawValue) noexcept {
    for (const AppCategory category : {AppCategory::desktop, AppCategory::terminal}) {
        if (rawValue == zentrill::rawValue(category)) {
            return category;
        }
    }
    return std::nullopt;
}

} // namespace zentrill
