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

CredentialReason CredentialShield::reason(std::string_view path) const {
    const std::string normalized = aliasNormalized(paths::standardized(path));
    if (matcher_.isCredential(normalized)) {
        return CredentialReason::recognized;
    }
    const bool listed = std::ranges::any_of(explicit_, [&normalized](const std::string& credential) {
        return paths::isSameOrBelow(normalized, credential);
    });
    return listed ? CredentialReason::listed : CredentialReason::none;
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

CredentialReason CredentialShield::reasonForName(std::string_view name,
                                                 const std::vector<std::string_view>& explicitNames) const {
    if (matcher_.isCredentialName(name)) {
        return CredentialReason::recognized;
    }
    return std::ranges::find(explicitNames, name) != explicitNames.end() ? CredentialReason::listed
                                                                         : CredentialReason::none;
}

} // namespace zentrill
