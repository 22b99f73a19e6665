#include "catalog/ApplicationDetectionRegistry.h"

#include "catalog/ApplicationDetectionCatalog.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace zentrill::ApplicationDetectionRegistry {

const std::vector<ApplicationDetectionRule>& rules() {
    static const std::vector<ApplicationDetectionRule> catalog = applicationDetectionCatalog();
    return catalog;
}

const ApplicationDetectionRule& rule(std::string_view named) {
    const auto found = std::ranges::find(rules(), named, &ApplicationDetectionRule::name);
    if (found == rules().end()) {
        std::cerr << "Zentrill: no detection rule is named \"" << named << "\".\n";
        std::abort();
    }
    return *found;
}

} // namespace zentrill::ApplicationDetectionRegistry
