#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zentrill::test {

/// At which moments the processes were killed.
struct InterruptionCounts {
    std::uint64_t beforeTheFirstRemoval = 0;
    std::uint64_t midway = 0;
    std::uint64_t afterTheLastRemoval = 0;
};

/// Builds random trees, each for the deletion of a random item with the Safety Shield on, kills the process
/// that deletes at a random moment, and deletes once more. Nothing that is to stay is missing after the kill,
/// nothing outside is changed, and the second deletion finishes the first one's work, with a report that
/// equals the disk. The first complaint with its seed, or nothing.
[[nodiscard]] std::optional<std::string> runInterruptedDeletions(std::uint64_t firstSeed, std::uint64_t count,
                                                                 InterruptionCounts& counts);

/// The same for the program's removal of itself. After the kill the bundle is whole or there is no data left;
/// removing again works, or, once the bundle no longer shows what it was, changes nothing, and removing by
/// hand works.
[[nodiscard]] std::optional<std::string>
runInterruptedSelfUninstalls(std::uint64_t firstSeed, std::uint64_t count, InterruptionCounts& counts);

} // namespace zentrill::test
