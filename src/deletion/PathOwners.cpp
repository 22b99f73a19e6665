#include "deletion/PathOwners.h"

#include "deletion/UninstallTargets.h"
#include "platform/Paths.h"

#include <algorithm>

namespace zentrill {

PathOwners::PathOwners(const std::vector<ApplicationDetectionRule>& rules, const PathExpander& pathExpander) {
    for (const ApplicationDetectionRule& rule : rules) {
        Tool& tool = tools_.emplace_back(Tool{.name = rule.name, .paths = {}});
        for (const std::vector<std::string>* entries : {&rule.uninstallPaths, &rule.residualDataPaths}) {
            for (const std::string& entry : *entries) {
                for (const std::string& target : uninstallTargets(entry, pathExpander(entry))) {
                    tool.paths.push_back(paths::standardized(target));
                }
            }
        }
    }
}

std::vector<std::string> PathOwners::othersThan(std::string_view tool, std::string_view path) const {
    std::vector<std::string> names;
    const std::string standardized = paths::standardized(path);
    for (const Tool& other : tools_) {
        const bool claims = std::ranges::any_of(other.paths, [&standardized](const std::string& claimed) {
            return paths::isSameOrBelow(standardized, claimed) || paths::isSameOrBelow(claimed, standardized);
        });
        if (claims && other.name != tool) {
            names.push_back(other.name);
        }
    }
    return names;
}

} // namespace zentrill
