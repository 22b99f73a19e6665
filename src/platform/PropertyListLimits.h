#pragma once

#include <string_view>

namespace zentrill {

/// Whether a property list in XML or binary form is within the limits of a parser that recurses and copies. A
/// few hundred bytes can describe a tree too deep for any stack, or, where a binary list refers to the same
/// object again and again, too large for any memory. Data in neither form pass: a parser refuses them at
/// once.
[[nodiscard]] bool isWithinPropertyListLimits(std::string_view data);

} // namespace zentrill
