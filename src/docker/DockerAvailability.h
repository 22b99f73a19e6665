#pragma once

#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zentrill {

/// What one Docker scan found out: exactly one of the three cases.
struct DockerAvailability {
    /// No `docker` executable was found.
    struct MissingCLI {
        bool operator==(const MissingCLI&) const = default;
    };

    /// The tool is there, but its endpoint could not be resolved or does not answer.
    struct DaemonUnavailable {
        /// The complete text to show.
        std::string message;

        bool operator==(const DaemonUnavailable&) const = default;
    };

    /// The endpoint answered.
    struct Available {
        DockerConnection connection;
        std::vector<DockerContainer> containers;
        std::vector<DockerImage> images;
        /// A warning about doubts in the list of images, if there were any.
        std::optional<std::string> imageWarning;

        bool operator==(const Available&) const = default;
    };

    std::variant<MissingCLI, DaemonUnavailable, Available> state;

    bool operator==(const DockerAvailability&) const = default;
};

} // namespace zentrill
