#pragma once

#include "process/CommandResult.h"

#include <chrono>
#include <string>
#include <vector>

namespace zentrill {

/// Runs external programs. Services receive one, so that a test can stand in for the system.
class CommandExecuting {
public:
    /// A time-out in seconds.
    using Timeout = std::chrono::duration<double>;

    static constexpr Timeout defaultTimeout{15.0};

    virtual ~CommandExecuting() = default;

    /// Runs the program at the absolute path `executable` with `arguments`, which leave out its own name,
    /// and blocks until there is a result; never call it on the main thread. Never throws: the result tells
    /// of a failed launch and of a time-out. May be called on several threads at once.
    virtual CommandResult run(const std::string& executable, const std::vector<std::string>& arguments,
                              Timeout timeout = defaultTimeout) = 0;

protected:
    CommandExecuting() = default;
    CommandExecuting(const CommandExecuting&) = default;
    CommandExecuting(CommandExecuting&&) = default;
    CommandExecuting& operator=(const CommandExecuting&) = default;
    CommandExecuting& operator=(CommandExecuting&&) = default;
};

} // namespace zentrill
