#pragma once

#include <optional>
#include <string>

namespace zentrill {

/// Finds the `docker` command-line tool.
class DockerExecutableLocating {
public:
    virtual ~DockerExecutableLocating() = default;

    /// The absolute path of a usable executable, or nothing. Called for every scan and removal, so that a
    /// tool installed in between is found.
    [[nodiscard]] virtual std::optional<std::string> locate() const = 0;

protected:
    DockerExecutableLocating() = default;
    DockerExecutableLocating(const DockerExecutableLocating&) = default;
    DockerExecutableLocating(DockerExecutableLocating&&) = default;
    DockerExecutableLocating& operator=(const DockerExecutableLocating&) = default;
    DockerExecutableLocating& operator=(DockerExecutableLocating&&) = default;
};

} // namespace zentrill
