#pragma once

#include <string>
#include <vector>

/// The wording of the application-uninstall confirmation.
namespace zentrill::ConfirmationCopy {

/// What is about to be removed and what the Safety Shield's position means for it. `names` are the display
/// names in list order.
[[nodiscard]] std::string applications(const std::vector<std::string>& names, bool preserveCredentials);

} // namespace zentrill::ConfirmationCopy
