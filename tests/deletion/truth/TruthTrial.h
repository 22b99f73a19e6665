#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace zentrill::test {

/// Builds a random tree below `folder`, plans the deletion of a random item of it in a random way, deletes
/// it, and compares the plan with the report and the disk, and the report with what really changed on the
/// disk, with what was to be expected, and with what one thread alone reports of the same tree. The same seed
/// makes the same trial.
///
/// A complaint, or nothing when all agree. Runs as an ordinary user, so that permissions bind.
[[nodiscard]] std::optional<std::string> runTruthTrial(std::uint64_t seed, const std::string& folder);

/// Runs the trials from `firstSeed` on; as root in a child of an ordinary user. The first complaint with its
/// seed, or nothing.
[[nodiscard]] std::optional<std::string> runTruthTrials(std::uint64_t firstSeed, std::uint64_t count);

} // namespace zentrill::test
