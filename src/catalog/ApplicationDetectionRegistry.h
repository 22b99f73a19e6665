#pragma once

#include "catalog/ApplicationDetectionRule.h"

#include <string_view>
#include <vector>

/// Looks up the rules of the known tools. Safe from any thread.
namespace zentrill::ApplicationDetectionRegistry {

/// The whole catalog in its own order, built on first use and never changed.
[[nodiscard]] const std::vector<ApplicationDetectionRule>& rules();

/// The rule of exactly that name. An unknown name is a programming error: it stops the program.
[[nodiscard]] const ApplicationDetectionRule& rule(std::string_view named);

} // namespace zentrill::ApplicationDetectionRegistry
