#pragma once

#include "process/ChildProcess.h"
#include "process/Environment.h"
#include "support/TemporaryDirectory.h"

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace zentrill::test {

/// A real Docker Engine of the test's own, with its socket and all of its data in a temporary folder. It has
/// process and mount namespaces of its own, so that it changes nothing outside of that folder and everything
/// that it started ends with it, even if the test is killed. Needs root; containers have no network.
class DockerEngine {
public:
    /// Why no engine can run here, or nothing.
    [[nodiscard]] static std::optional<std::string> obstacle();

    /// The `docker` tools of this machine, of which there may be several versions.
    [[nodiscard]] static std::vector<std::string> clients();

    /// Returns when the engine answers; throws `std::runtime_error` with the engine's log if it does not.
    DockerEngine();
    ~DockerEngine();

    DockerEngine(const DockerEngine&) = delete;
    DockerEngine& operator=(const DockerEngine&) = delete;
    DockerEngine(DockerEngine&&) = delete;
    DockerEngine& operator=(DockerEngine&&) = delete;

    /// What DOCKER_HOST would be: "unix://" and the path of the socket.
    [[nodiscard]] std::string host() const;

    /// Ends the engine with all containers and returns when they are gone; the socket's file stays behind, as
    /// after a crash.
    void stop();

    /// Runs Debian's `docker` against this engine and returns what it printed, trimmed; throws if it fails.
    std::string docker(const std::vector<std::string>& arguments);

    /// Makes an image that holds a shell as /bin/busybox, different from every other, and returns its ID. It
    /// stays untagged without a `tag`.
    std::string makeImage(const std::string& tag = {});

    /// Starts a container that runs until it is told to end, and returns its ID.
    std::string startContainer(const std::string& name, const std::string& image);

    /// Runs a container to its end, which comes at once, and returns its ID.
    std::string runContainer(const std::string& name, const std::string& image);

private:
    TemporaryDirectory folder_;
    Environment environment_;
    std::optional<ChildProcess> namespaces_;
    int imageCount_ = 0;

    pid_t start();
    void waitUntilReady(pid_t pid);
    [[nodiscard]] bool answers() const;
};

} // namespace zentrill::test
