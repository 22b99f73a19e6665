#pragma once

#include "process/CommandExecuting.h"

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace zentrill::test {

/// Records every command and answers it with a function of the test's own; nothing is started.
///
///     FakeCommandRunner commands([](const FakeCommandRunner::Call& call) { return ok("done\n"); });
class FakeCommandRunner final : public CommandExecuting {
public:
    struct Call {
        std::string executable;
        std::vector<std::string> arguments;
        double timeoutSeconds = 0;

        bool operator==(const Call&) const = default;
    };

    using Answer = std::function<CommandResult(const Call&)>;

    explicit FakeCommandRunner(Answer answer) : answer_(std::move(answer)) {}

    CommandResult run(const std::string& executable, const std::vector<std::string>& arguments,
                      Timeout timeout) override {
        Call call{executable, arguments, timeout.count()};
        {
            const std::lock_guard lock(mutex_);
            calls_.push_back(call);
        }
        return answer_(call);
    }

    [[nodiscard]] std::vector<Call> calls() const {
        const std::lock_guard lock(mutex_);
        return calls_;
    }

private:
    Answer answer_;
    mutable std::mutex mutex_;
    std::vector<Call> calls_;
};

/// A command that ended well.
inline CommandResult ok(std::string output = {}) {
    CommandResult result;
    result.stdout = std::move(output);
    result.exitCode = 0;
    return result;
}

/// A command that ended with `exitCode`.
inline CommandResult failed(std::int32_t exitCode, std::string errorOutput = {}) {
    CommandResult result;
    result.stderr = std::move(errorOutput);
    result.exitCode = exitCode;
    return result;
}

} // namespace zentrill::test
