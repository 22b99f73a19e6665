#include "controller/SelfUninstallFlow.h"

#include <string_view>

namespace zentrill {

namespace {

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
    std::string text;
    for (const std::string& part : parts) {
        if (!text.empty()) {
            text += separator;
        }
        text += part;
    }
    return text;
}

} // namespace

ResultAlert selfUninstallFailure(const SelfUninstallResult& result) {
    std::string message = "Self-uninstall failed: " + joined(result.failures, "; ");
    if (!result.removedPaths.empty()) {
        message += "\nRemoved before failure: " + joined(result.removedPaths, ", ");
    }
    if (!result.remainingPaths.empty()) {
        message += "\nStill present: " + joined(result.remainingPaths, ", ");
    }
    return {.title = "Self-Uninstall Failed",
            .message = std::move(message),
            .outcome = ResultOutcome::errors,
            .retainedPathCount = 0};
}

} // namespace zentrill
