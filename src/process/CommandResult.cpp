#include "process/CommandResult.h"

#include <string_view>

namespace zentrill {

namespace {

std::string trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return std::string(text.substr(begin, text.find_last_not_of(blanks) + 1 - begin));
}

} // namespace

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
    if (std::string text = trimmed(stderr); !text.empty()) {
        return text;
    }
    if (std::string text = trimmed(stdout); !text.empty()) {
        return text;
    }
    return "Command exited with status " + std::to_string(exitCode) + ".";
}

bool CommandResult::operator==(const CommandResult& other) const noexcept {
    return stdout == other.stdout && stderr == other.stderr && exitCode == other.exitCode &&
           timedOut == other.timedOut && launchError == other.launchError;
}

} // namespace zentrill
