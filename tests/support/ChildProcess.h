#pragma once

#include <functional>

#include <sys/types.h>

namespace zentrill::test {

/// Runs `body` in a child process, where it may give up rights that the test program still needs. True when
/// the child ended by itself and none of its expectations failed; they are printed as usual.
///
///     EXPECT_TRUE(passesInChild([&] {
///         becomeOrdinaryUser();
///         EXPECT_FALSE(files.isWritable(folder));
///     }));
[[nodiscard]] bool passesInChild(const std::function<void()>& body);

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
