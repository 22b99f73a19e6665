#pragma once

#include "catalog/AppInfo.h"
#include "controller/OperationContext.h"
#include "controller/ResultAlert.h"

#include <string_view>
#include <vector>

namespace zentrill {

/// How a line of the log begins if it names a path that the Safety Shield has kept.
inline constexpr std::string_view preservedPathMark = "[Safety Shield] Preserved: ";

/// The applications that an uninstall of the selection removes: those of `apps` that are selected and
/// detected.
[[nodiscard]] std::vector<AppInfo> detectedSelection(const std::vector<AppInfo>& apps);

/// Uninstalls `targets` one after the other, until the user cancels, and sums up what came of it. Logs every
/// step and every path that the Safety Shield (`preserveCredentials`) kept. Runs on the worker.
[[nodiscard]] ResultAlert uninstallApps(const OperationContext& context, const std::vector<AppInfo>& targets,
                                        bool preserveCredentials);

} // namespace zentrill
