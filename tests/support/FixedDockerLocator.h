#pragma once

#include "docker/DockerExecutableLocating.h"

#include <optional>
#include <string>
#include <utility>

namespace zentrill::test {

/// Finds the `docker` tool that the test names, or none.
class FixedDockerLocator final : public DockerExecutableLocating {
public:
    explicit FixedDockerLocator(std::optional<std::string> path) : path_(std::move(path)) {}

    [[nodiscard]] std::optional<std::string> locate() const override { return path_; }

private:
    std::optional<std::string> path_;
};

} // namespace zentrill::test
