#pragma once

#include "catalog/AppInfo.h"
#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"
#include "models/LocalModel.h"

#include <string>
#include <variant>
#include <vector>

namespace zentrill {

/// A destructive action that awaits its typed code, with exactly what its wording and its operation need. The
/// records are copies: whatever changes in the lists, this is what was confirmed.
struct PendingConfirmation {
    struct Apps {
        std::vector<AppInfo> apps;
        /// The Safety Shield's setting when the confirmation opened.
        bool preserveCredentials = true;
    };

    struct SelfUninstall {};

    using Action = std::variant<Apps, LocalModel, DockerContainer, DockerImage, SelfUninstall>;

    Action action;

    [[nodiscard]] std::string title() const;
    [[nodiscard]] std::string message() const;

    /// The label of the destructive button.
    [[nodiscard]] std::string actionTitle() const;
};

} // namespace zentrill
