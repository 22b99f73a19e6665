#include "process/CommandResult.h"

#include "platform/WhiteSpace.h"

#include <string_view>

namespace zentrill {

bool CommandResult::succeeded() const noexcept {
    return !launchError.has_value() && !timedOut && exitCode == 0;
}

std::string CommandResult::diagnostic() const {
    if (launchError.has_value()) {
        return *launchError;
    }
    if (timedOut) {
        return "Command timed out.";
    }
    for (const std::string* stream : {&stderr, &stdout}) {
        if (const std::string_view text = trimmingWhiteSpace(*stream); !text.empty()) {
            return std::string(text);
        }
    }
    return "Command exited with status " + std::to_string(exitCode) + ".";
}

bool CommandResult::operator==(const CommandResult& other) const noexcept {
    return stdout == other.stdout && stderr == other.stderr && exitCode == other.exitCode &&
           timedOut == other.timedOut && launchError == other.launchError;
}

} // namespace zentrill
