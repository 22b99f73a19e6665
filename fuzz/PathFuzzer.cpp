// The functions on path texts: they must not crash, and what they promise must hold for any bytes.

#include "deletion/CredentialMatcher.h"
#include "deletion/CredentialShield.h"
#include "deletion/PathAliases.h"
#include "platform/Paths.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace zentrill;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void checkStandardized(const std::string& path) {
    const std::string once = paths::standardized(path);
    require(paths::standardized(once) == once);
    require(once.starts_with('/') == path.starts_with('/'));
    require(once == "/" || !once.ends_with('/'));
    require(once.find("//") == std::string::npos);
    require(once.empty() == path.empty());
    for (const std::string_view part : paths::components(once)) {
        require(part != "." || once == ".");
        require(part != ".." || !path.starts_with('/'));
    }
}

void checkParts(const std::string& path) {
    std::string joined;
    for (const std::string_view part : paths::components(path)) {
        require(!part.empty());
        require(part == "/" || part.find('/') == std::string_view::npos);
        joined = joined.empty() ? std::string(part) : paths::appending(joined, part);
    }
    require(paths::components(joined) == paths::components(path));
    const std::string_view last = paths::lastComponent(path);
    require(path.empty() == last.empty());
    require(last == "/" || last.find('/') == std::string_view::npos);
    require(last.ends_with(paths::extension(path)));
    const std::string_view parent = paths::parent(path);
    require(path.starts_with(parent));
    const std::string standardized = paths::standardized(path);
    if (standardized.starts_with('/')) {
        require(paths::isSameOrBelow(standardized, paths::parent(standardized)));
        require(paths::isSameOrBelow(standardized, "/"));
    }
    require(paths::expandingTilde(path, "~") == path);
}

void checkAliases(const std::string& path, const std::string& other) {
    const std::string once = aliasNormalized(path);
    require(aliasNormalized(once) == once);
    require(once.ends_with(path));
    require(once == path || once == "/private" + path);
    if (isSystemAlias(path, other)) {
        require(path == "/tmp" || path == "/var" || path == "/etc");
    }
    // Comparing by either form comes to the same.
    const std::string standardized = paths::standardized(path);
    require(aliasNormalized(standardized) == paths::standardized(aliasNormalized(standardized)));
}

void checkMatcher(const std::string& path, const std::string& other) {
    const CredentialMatcher matcher;
    const bool credential = matcher.isCredential(path);
    std::string upper = path;
    for (char& byte : upper) {
        byte = byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
    }
    require(matcher.isCredential(upper) == credential);
    require(matcher.isCredential(path + "/") == credential || path.empty());
    if (const std::string_view last = paths::lastComponent(path); matcher.isCredentialName(last)) {
        require(credential);
    }
    require(matcher.isCredential(path + "/.ssh/x"));
    // What a walk finds out name by name is what the whole path says.
    const std::string standardized = paths::standardized("/" + path);
    const CredentialShield shield(matcher, {other});
    const std::string parent(paths::parent(standardized));
    // The root itself is never walked.
    if (parent != "/" && !shield.isProtected(parent)) {
        require(shield.isProtected(standardized) ==
                shield.isProtectedName(paths::lastComponent(standardized), shield.explicitNames(parent)));
    }
    if (other.starts_with('/')) {
        require(shield.isProtected(other));
        require(shield.isProtected(paths::standardized(other) + "/inside"));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The first line is one path, the rest another.
    const std::string input(data, data + size);
    const std::size_t end = input.find('\n');
    const std::string path = input.substr(0, end);
    const std::string other = end == std::string::npos ? std::string() : input.substr(end + 1);
    checkStandardized(path);
    checkParts(path);
    checkAliases(path, other);
    checkMatcher(path, other);
    (void)paths::isSameOrBelow(path, other);
    return 0;
}
