#include "controller/SelfUninstallFlow.h"

#include "platform/Text.h"

namespace zentrill {

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
