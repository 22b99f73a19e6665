#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

namespace zentrill::test {

/// Runs `body` in a child as an ordinary user who owns nothing; false if an expectation failed. Needs root.
[[nodiscard]] bool passesAsOrdinaryUser(const std::function<void()>& body);

/// The same with mounts that nobody else sees. Needs root.
[[nodiscard]] bool passesWithPrivateMounts(const std::function<void()>& body);

/// A folder in memory where the system has one, where a test with very many files is quick.
[[nodiscard]] std::string memoryFolder();

/// The user and group that `passesAsOrdinaryUser` runs as.
constexpr uid_t ordinaryUser = 65534;

/// A child that runs `body` over and over until the object goes.
class BackgroundLoop {
public:
    explicit BackgroundLoop(const std::function<void()>& body);
    ~BackgroundLoop();

    BackgroundLoop(const BackgroundLoop&) = delete;
    BackgroundLoop& operator=(const BackgroundLoop&) = delete;
    BackgroundLoop(BackgroundLoop&&) = delete;
    BackgroundLoop& operator=(BackgroundLoop&&) = delete;

private:
    pid_t child_ = -1;
};

} // namespace zentrill::test
