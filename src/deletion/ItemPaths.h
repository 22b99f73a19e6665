#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zentrill {

/// The paths of an item and of what lies below it, in the two forms that a deletion needs.
///
/// `below` is what leads from the item to something inside it: empty for the item itself, or a slash and
/// names.
class ItemPaths {
public:
    /// `reported` is the item's path as reports are to call it, `standardized` the same standardized.
    ItemPaths(std::string reported, std::string standardized);

    /// The item's name in its parent.
    [[nodiscard]] std::string name() const;

    [[nodiscard]] std::string reported(std::string_view below) const;

    /// The reported path of the entry `name` in the folder at `below`.
    [[nodiscard]] std::string reported(std::string_view below, std::string_view name) const;

    /// The path in the form that the shield compares.
    [[nodiscard]] std::string standardized(std::string_view below) const;

private:
    std::string reported_;
    /// Without the slashes at the end, which are not repeated before what lies below.
    std::size_t reportedLength_;
    std::string standardized_;
};

} // namespace zentrill
