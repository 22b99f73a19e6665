#pragma once

#include "deletion/CredentialMatcher.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Why an item counts as a credential.
enum class CredentialReason : std::uint8_t {
    /// It does not.
    none,
    /// The matcher recognises it.
    recognized,
    /// The caller named it, or a folder around it.
    listed,
};

/// What counts as a credential during one deletion: what the matcher recognises, and the paths that the
/// caller named, with everything inside them.
class CredentialShield {
public:
    /// `explicitCredentials` are absolute paths; an entry that is not protects nothing.
    CredentialShield(const CredentialMatcher& matcher, const std::vector<std::string>& explicitCredentials);

    [[nodiscard]] bool isProtected(std::string_view path) const {
        return reason(path) != CredentialReason::none;
    }

    /// Why `path` is protected; `recognized` if both reasons apply.
    [[nodiscard]] CredentialReason reason(std::string_view path) const;

    /// Names of the items directly inside `folder`, standardized, that the caller named as credentials.
    [[nodiscard]] std::vector<std::string_view> explicitNames(std::string_view folder) const;

    [[nodiscard]] bool hasExplicitCredentials() const noexcept { return !explicit_.empty(); }

    /// `isProtected` for the item `name` of a folder that is not protected itself and has these
    /// `explicitNames`.
    [[nodiscard]] bool isProtectedName(std::string_view name,
                                       const std::vector<std::string_view>& explicitNames) const {
        return reasonForName(name, explicitNames) != CredentialReason::none;
    }

    /// `reason` under the same conditions.
    [[nodiscard]] CredentialReason reasonForName(std::string_view name,
                                                 const std::vector<std::string_view>& explicitNames) const;

private:
    const CredentialMatcher& matcher_;
    /// Standardized and alias-normalized.
    std::vector<std::string> explicit_;
};

} // namespace zentrill
