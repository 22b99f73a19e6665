#pragma once

#include "truth/TrialDeletion.h"

#include <optional>
#include <set>
#include <string>

namespace zentrill::test {

/// What a deletion must say and do, worked out from the tree alone, in the simplest way. Paths as on the
/// disk.
struct ExpectedReport {
    std::set<std::string> removed;
    std::set<std::string> preserved;
    /// Where permission is denied.
    std::set<std::string> failures;
    /// The link that leads to the item, when the deletion is refused for it.
    std::optional<std::string> unsafeAncestor;
    /// Whether the item is still there afterwards, or is none.
    bool left = true;
};

/// For an ordinary user who owns everything in the tree.
[[nodiscard]] ExpectedReport expectedReport(const TrialDeletion& trial);

} // namespace zentrill::test
