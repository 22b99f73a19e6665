#pragma once

#include "platform/ByteSum.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zentrill {

class EarlierPlans;
struct DeletionPlan;

/// How a plan is to be made.
struct PlanOptions {
    /// How many items and failures of each kind are listed; the others are only counted.
    std::size_t listedItems = 100;
    /// Asked before each entry, on several threads at once; its first "yes" ends the plan.
    std::function<bool()> shouldStop{}; // NOLINT(readability-redundant-member-init): GCC warns
    /// Called while the plan is made with what was found since the last call: as soon as the item is found,
    /// then several times a second, and at the end. It may be called on any thread of the plan, but never on
    /// two at once. All calls add up to the counts and sums of the plan. Paths come in the order in which the
    /// threads meet them, at least as many as the plan lists.
    std::function<void(const std::string& item, const DeletionPlan& news)>
        progress{}; // NOLINT(readability-redundant-member-init): GCC warns
    /// The deletions before this one, to which it is added; null if it is the only one.
    EarlierPlans* earlier = nullptr;
};

/// What a deletion would do, found out without changing anything. As long as nobody changes the tree in
/// between, the report of the deletion says the same of each item. Paths have the report's form and order.
struct DeletionPlan {
    struct Item {
        std::string path;
        /// Logical size in bytes; for a folder that goes, the sum of what goes with it.
        std::int64_t logicalBytes = 0;
        bool isFolder = false;

        bool operator==(const Item&) const = default;
    };

    /// Items that share a fate.
    struct Items {
        std::uint64_t count = 0;
        /// Logical sizes in bytes, without folders. A file with several names among these items counts once;
        /// what cannot be looked up counts as 0.
        std::int64_t logicalBytes = 0;
        /// The first ones in the order of the walk, a folder after what it holds.
        std::vector<Item> listed;

        bool operator==(const Items&) const = default;
    };

    /// Folders go only if all that they hold does.
    Items removed;
    /// What the disk gets back from the removed files, in bytes: what they occupy, unless another name of
    /// them remains. Folders are left out.
    std::int64_t freedBytes = 0;

    /// What the Safety Shield keeps. A folder that is kept whole is one item without a size, because its
    /// contents are not looked at.
    Items recognizedCredentials;
    Items listedCredentials;
    Items uncertainData;
    /// What the engine's predicate refuses, which no report mentions. The contents of such a folder are not
    /// looked at either.
    Items refused;
    /// What would fail, as far as it can be foreseen.
    Items failing;
    /// What the report would list as failures, the refusal of the whole item included.
    std::vector<std::string> failures;

    /// Whether the engine refuses the item as a whole; the reason is the one failure.
    bool itemRefused = false;
    /// Whether the item itself would be gone.
    bool itemGoes = false;
    /// Whether `shouldStop` ended the plan, which then covers only what was seen until that moment.
    bool stopped = false;

    /// Whether a deletion would find nothing.
    [[nodiscard]] bool isEmpty() const { return *this == DeletionPlan{}; }

    /// The size of all items, whatever becomes of them.
    [[nodiscard]] std::int64_t logicalBytes() const {
        std::int64_t bytes = 0;
        for (const Items* items :
             {&removed, &recognizedCredentials, &listedCredentials, &uncertainData, &refused, &failing}) {
            addBytes(bytes, items->logicalBytes);
        }
        return bytes;
    }

    bool operator==(const DeletionPlan&) const = default;
};

} // namespace zentrill
