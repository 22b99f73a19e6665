#pragma once

#include <set>
#include <string>
#include <string_view>

namespace zentrill {

/// Tells from the text of a path alone whether it looks like a credential. The file is never opened.
/// Immutable, safe from any thread.
class CredentialMatcher {
public:
    CredentialMatcher();

    /// Whether the absolute `path` names a key, token, login or secret store, or lies inside a folder of
    /// them. Compared by whole components after ASCII lower-casing.
    [[nodiscard]] bool isCredential(std::string_view path) const;

    /// The same for an item called `name` in a folder that is not a credential itself. A walk asks this about
    /// each entry, so that the path above it is not checked again.
    [[nodiscard]] bool isCredentialName(std::string_view name) const;

private:
    std::set<std::string, std::less<>> exactNames_;
    std::set<std::string, std::less<>> sensitiveDirectoryNames_;
};

} // namespace zentrill
