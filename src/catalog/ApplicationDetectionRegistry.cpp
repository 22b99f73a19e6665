#include "catalog/ApplicationDetectionRegistry.h"

#include "catalog/ApplicationDetectionCatalog.h"
#include "platform/Precondition.h"

#include <algorithm>
#include <string>

namespace zentrill::ApplicationDetectionRegistry {

const std::vector<ApplicationDetectionRule>& rules() {
    static const std::vector<ApplicationDetectionRule> catalog = applicationDetectionCatalog();
    return catalog;
}

const ApplicationDetectionRule& rule(std::string_view named) {
    const auto found = std::ranges::find(rules(), named, &ApplicationDetectionRule::name);
    if (found == rules().end()) {
        preconditionFailure("no detection rule is named \"" + std::string(named) + "\"");
    }
    return *found;
}

} // namespace zentrill::ApplicationDetectionRegistry
