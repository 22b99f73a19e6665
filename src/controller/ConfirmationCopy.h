#pragma once

#include <string>
#include <vector>

namespace zentrill {

/// The wording of the application-uninstall confirmation.
class ConfirmationCopy {
public:
    ConfirmationCopy() = delete;

    /// What is about to be removed and what the Safety Shield's position means for it. `names` are the
    /// display names in list order.
    [[nodiscard]] static std::string applications(const std::vector<std::string>& names,
                                                  bool preserveCredentials);
};

} // namespace zentrill
