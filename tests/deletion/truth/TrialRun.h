#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace zentrill::test {

/// Makes a trial of its own in `folder`, the same for the same seed; a complaint, or nothing.
using Trial = std::function<std::optional<std::string>(std::uint64_t seed, const std::string& folder)>;

/// Runs the trials from `firstSeed` on, as an ordinary user, so that permissions bind; as root in a child of
/// an ordinary user. The first complaint with its seed, or nothing.
[[nodiscard]] std::optional<std::string> runTrials(std::uint64_t firstSeed, std::uint64_t count,
                                                   const Trial& trial);

} // namespace zentrill::test
