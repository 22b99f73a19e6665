#include "deletion/CredentialMatcher.h"

#include "platform/Paths.h"

#include <algorithm>
#include <array>

namespace zentrill {

namespace {

constexpr std::array<std::string_view, 3> sensitiveSuffixes{".key", ".token", ".lic"};

/// U+212A KELVIN SIGN, the only letter outside ASCII whose lower case is an ASCII letter.
constexpr std::string_view kelvinSign = "\xE2\x84\xAA";

bool holdsKelvinSign(std::string_view text) {
    return text.find(kelvinSign) != std::string_view::npos;
}

std::string withoutKelvinSigns(std::string_view text) {
    std::string result(text);
    for (std::size_t at = result.find(kelvinSign); at != std::string::npos;
         at = result.find(kelvinSign, at)) {
        result.replace(at, kelvinSign.size(), 1, 'k');
    }
    return result;
}

constexpr char lowered(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool endsWithLowered(std::string_view name, std::string_view suffix) {
    return name.size() >= suffix.size() &&
           std::equal(suffix.begin(), suffix.end(), name.end() - static_cast<std::ptrdiff_t>(suffix.size()),
                      [](char expected, char byte) { return expected == lowered(byte); });
}

bool containsLowered(const std::set<std::string, std::less<>>& names, std::string_view name) {
    std::array<char, 32> buffer{};
    if (name.size() > buffer.size()) {
        return false; // Longer than every listed name.
    }
    std::ranges::transform(name, buffer.begin(), lowered);
    return names.contains(std::string_view(buffer.data(), name.size()));
}

} // namespace

CredentialMatcher::CredentialMatcher()
    : exactNames_{".env",        "auth.json",    "oauth_creds.json", "credentials.json",
                  "credentials", "keys.txt",     "api_key",          "api-key",
                  "token",       "access_token", "refresh_token"},
      sensitiveDirectoryNames_{".ssh", ".gnupg"} {}

bool CredentialMatcher::isCredential(std::string_view path) const {
    if (holdsKelvinSign(path)) {
        return isCredential(withoutKelvinSigns(path));
    }
    if (isCredentialName(paths::lastComponent(path))) {
        return true;
    }
    const std::vector<std::string_view> parts = paths::components(path);
    return std::ranges::any_of(
        parts, [this](std::string_view part) { return containsLowered(sensitiveDirectoryNames_, part); });
}

bool CredentialMatcher::isCredentialName(std::string_view name) const {
    if (holdsKelvinSign(name)) {
        return isCredentialName(withoutKelvinSigns(name));
    }
    return containsLowered(exactNames_, name) ||
           std::ranges::any_of(sensitiveSuffixes,
                               [name](std::string_view suffix) { return endsWithLowered(name, suffix); }) ||
           containsLowered(sensitiveDirectoryNames_, name);
}

} // namespace zentrill
