#pragma once

#include <cstdint>
#include <cstdio> // Some systems make `stdout` and `stderr` macros there; every user must see the same names.
#include <optional>
#include <string>

namespace zentrill {

/// What came of running one command.
struct CommandResult {
    /// Everything written to standard output; empty if nothing was, or if it was not valid UTF-8.
    std::string stdout;
    /// The same for standard error.
    std::string stderr;
    /// The exit status, or the signal's number for a child that a signal ended; -1 when the child could not
    /// be launched or still ran when the runner gave up.
    std::int32_t exitCode = -1;
    /// Whether the time ran out before the child ended.
    bool timedOut = false;
    /// The system's description of a failed launch; absent when the launch succeeded.
    std::optional<std::string> launchError;

    /// Whether `stdout` is everything that the command wrote there: false if that was not valid UTF-8, or
    /// more than the runner keeps. Check it before you conclude anything from what is *missing* in a text.
    /// `==` leaves it out.
    bool stdoutIsWhole = true;
    /// The same for `stderr`.
    bool stderrIsWhole = true;

    [[nodiscard]] bool succeeded() const noexcept;

    /// The one-line text for messages and the activity log: the launch error, "Command timed out.", the
    /// trimmed standard error, the trimmed standard output or the exit status in words, whichever of them
    /// comes first and is not empty.
    [[nodiscard]] std::string diagnostic() const;

    /// Compares the texts, the exit code, the time-out and the launch error.
    bool operator==(const CommandResult& other) const noexcept;
};

} // namespace zentrill
