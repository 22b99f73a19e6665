#include "controller/ResultOutcome.h"

namespace zentrill {

std::string_view statusLabel(ResultOutcome outcome) noexcept {
    switch (outcome) {
    case ResultOutcome::complete:
        return "COMPLETE";
    case ResultOutcome::dataRemaining:
        return "DATA REMAINS";
    case ResultOutcome::errors:
        return "ERRORS";
    case ResultOutcome::unknown:
        break;
    }
    return "RESULT \u2014 REVIEW DETAILS";
}

ResultOutcome
applicationOutcome(const std::vector<std::string>& failures,
                   const std::map<std::string, std::vector<std::string>>& remainingData) noexcept {
    if (!failures.empty()) {
        return ResultOutcome::errors;
    }
    return remainingData.empty() ? ResultOutcome::complete : ResultOutcome::dataRemaining;
}

std::optional<std::string> remainingSummary(ResultOutcome outcome, std::int64_t count) {
    const bool reviewable = outcome == ResultOutcome::dataRemaining || outcome == ResultOutcome::errors;
    if (!reviewable || count < 1) {
        return std::nullopt;
    }
    return std::to_string(count) + " retained path" + (count == 1 ? "" : "s") +
           " \u2014 review before removing manually";
}

} // namespace zentrill
