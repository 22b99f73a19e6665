#include "deletion/CredentialShield.h"

#include "deletion/PathAliases.h"
#include "platform/Paths.h"

#include <algorithm>

namespace zentrill {

CredentialShield::CredentialShield(const CredentialMatcher& matcher,
                                   const std::vector<std::string>& explicitCredentials)
    : matcher_(matcher) {
    for (const std::string& path : explicitCredentials) {
        if (path.starts_with('/')) {
            explicit_.push_back(aliasNormalized(paths::standardized(path)));
        }
    }
}

bool CredentialShield::isProtected(std::string_view path) const {
    const std::string normalized = aliasNormalized(paths::standardized(path));
    return matcher_.isCredential(normalized) ||
           std::ranges::any_of(explicit_, [&normalized](const std::string& credential) {
               return paths::isSameOrBelow(normalized, credential);
           });
}

std::vector<std::string_view> CredentialShield::explicitNames(std::string_view folder) const {
    std::vector<std::string_view> names;
    const std::string normalized = aliasNormalized(folder);
    for (const std::string_view credential : explicit_) {
        if (credential != "/" && paths::parent(credential) == normalized) {
            names.push_back(paths::lastComponent(credential));
        }
    }
    return names;
}

bool CredentialShield::isProtectedName(std::string_view name,
                                       const std::vector<std::string_view>& explicitNames) const {
    return matcher_.isCredentialName(name) || std::ranges::find(explicitNames, name) != explicitNames.end();
}

} // namespace zentrill
