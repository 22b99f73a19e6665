#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zentrill {

/// How a plan is to be made.
struct PlanOptions {
    /// How many paths and failures of each kind are listed; the others are only counted.
    std::size_t listedPaths = 100;
    /// Asked before each entry; its first "yes" ends the plan.
    std::function<bool()> shouldStop{}; // NOLINT(readability-redundant-member-init): GCC warns
};

/// What a deletion would do, with nothing touched. The word for each item is that of the report which the
/// deletion gives afterwards, if nobody changes the tree in between; paths have the report's form and order.
struct DeletionPlan {
    /// Items that meet the same end.
    struct Items {
        std::uint64_t count = 0;
        /// Logical sizes in bytes, folders left out. A file with several names here counts once. What cannot
        /// be looked up counts as nothing.
        std::int64_t logicalBytes = 0;
        /// The first ones that the walk meets, a folder after what it holds.
        std::vector<std::string> paths;

        bool operator==(const Items&) const = default;
    };

    /// Folders go only if all that they hold does.
    Items removed;
    /// What the disk gets back from the removed files, in bytes: what they occupy, as long as no name
    /// remains that leads to them. Folders are left out.
    std::int64_t freedBytes = 0;

    /// What the Safety Shield keeps. A folder kept whole is one item without a size, since nobody looks into
    /// it.
    Items recognizedCredentials;
    Items listedCredentials;
    Items uncertainData;
    /// What the engine's predicate refuses, which no report mentions; folders are not looked into either.
    Items refused;
    /// What would fail, as far as it can be foreseen.
    Items failing;
    /// The lines that the report would have under its failures, refusals of the whole item included.
    std::vector<std::string> failures;

    /// Whether the item itself would be gone.
    bool itemGoes = false;
    /// Whether `shouldStop` ended the plan: it covers only what was seen till then.
    bool stopped = false;

    bool operator==(const DeletionPlan&) const = default;
};

} // namespace zentrill
