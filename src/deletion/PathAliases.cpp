#include "deletion/PathAliases.h"

#include "platform/Paths.h"

#include <algorithm>
#include <array>

namespace zentrill {

namespace {

struct Alias {
    std::string_view name;
    std::string_view canonical;
};

constexpr std::array<Alias, 3> aliases{{
    {.name = "/tmp", .canonical = "/private/tmp"},
    {.name = "/var", .canonical = "/private/var"},
    {.name = "/etc", .canonical = "/private/etc"},
}};

} // namespace

std::string aliasNormalized(std::string_view path) {
    for (const auto& [name, canonical] : aliases) {
        if (paths::isSameOrBelow(path, name)) {
            return std::string(canonical).append(path.substr(name.size()));
        }
    }
    return std::string(path);
}

bool isSystemAlias(std::string_view path, std::string_view destination) {
    if (std::ranges::none_of(aliases, [path](const Alias& alias) { return alias.name == path; })) {
        return false;
    }
    const std::string target = destination.starts_with('/')
                                   ? std::string(destination)
                                   : paths::appending(paths::parent(path), destination);
    return aliasNormalized(paths::standardized(target)) == aliasNormalized(path);
}

} // namespace zentrill
