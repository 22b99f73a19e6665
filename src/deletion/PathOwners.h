#pragma once

#include "catalog/ApplicationDetectionRule.h"
#include "catalog/PathExpander.h"

#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Which tools of the catalog list a path, among what their removal deletes or among their other data.
class PathOwners {
public:
    /// Expands the patterns of the rules, as the removal does.
    PathOwners(const std::vector<ApplicationDetectionRule>& rules, const PathExpander& pathExpander);

    /// The names of the tools other than `tool` that list the absolute `path`, something in it or a folder
    /// around it, in the order of the rules.
    [[nodiscard]] std::vector<std::string> othersThan(std::string_view tool, std::string_view path) const;

private:
    struct Tool {
        std::string name;
        /// Standardized.
        std::vector<std::string> paths;
    };

    std::vector<Tool> tools_;
};

} // namespace zentrill
