#include "platform/WhiteSpace.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace zentrill {

namespace {

/// The characters with the property White_Space of the Unicode Character Database.
constexpr std::array<std::string_view, 25> whiteSpace{
    "\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\xC2\x85", "\u00A0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",   "\u2007", "\u2008",
    "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

/// The length in bytes of the white space for which `matches` holds, or 0.
template <typename Predicate>
std::size_t lengthWhere(Predicate matches) noexcept {
    const auto* const found = std::ranges::find_if(whiteSpace, matches);
    return found == whiteSpace.end() ? 0 : found->size();
}

} // namespace

std::string_view trimmingWhiteSpace(std::string_view text) noexcept {
    const auto begins = [&text](std::string_view space) { return text.starts_with(space); };
    while (const std::size_t length = lengthWhere(begins)) {
        text.remove_prefix(length);
    }
    const auto ends = [&text](std::string_view space) { return text.ends_with(space); };
    while (const std::size_t length = lengthWhere(ends)) {
        text.remove_suffix(length);
    }
    return text;
}

} // namespace zentrill
