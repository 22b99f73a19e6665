#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// How an operation ended; the badge of its result.
enum class ResultOutcome { complete, dataRemaining, errors, unknown };

/// "COMPLETE", "DATA REMAINS", "ERRORS" or "RESULT — REVIEW DETAILS".
[[nodiscard]] std::string_view statusLabel(ResultOutcome outcome) noexcept;

/// The outcome of an application uninstall. Failures outweigh remaining data; `remainingData` maps an
/// application's name to the paths left in place.
[[nodiscard]] ResultOutcome
applicationOutcome(const std::vector<std::string>& failures,
                   const std::map<std::string, std::vector<std::string>>& remainingData) noexcept;

/// "1 retained path — review before removing manually"; nothing for a count below 1 and for the outcomes
/// that leave nothing to review.
[[nodiscard]] std::optional<std::string> remainingSummary(ResultOutcome outcome, std::int64_t count);

} // namespace zentrill
