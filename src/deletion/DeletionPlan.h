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
    /// Told while the plan is made what was found since the last time: of a deletion that finds something at
    /// once, then a few times a second, in the end the rest. On several threads, but never on two at once.
    /// What is told adds up to the counts and sums of the plan; the paths come as threads meet them, at least
    /// as many as the plan lists.
    std::function<void(const std::string& item, const DeletionPlan& news)>
        progress{}; // NOLINT(readability-redundant-member-init): GCC warns
    /// The deletions that come first, which this one is added to; null where it is the only one.
    EarlierPlans* earlier = nullptr;
};

/// What a deletion would do, with nothing touched. The word for each item is that of the report which the
/// deletion gives afterwards, if nobody changes the tree in between; paths have the report's form and order.
struct DeletionPlan {
    struct Item {
        std::string path;
        /// Logical size in bytes; of a folder that goes, what goes with it, under whatever names.
        std::int64_t logicalBytes = 0;
        bool isFolder = false;

        bool operator==(const Item&) const = default;
    };

    /// Items that meet the same end.
    struct Items {
        std::uint64_t count = 0;
        /// Logical sizes in bytes, folders left out. A file with several names here counts once. What cannot
        /// be looked up counts as nothing.
        std::int64_t logicalBytes = 0;
        /// The first ones that the walk meets, a folder after what it holds.
        std::vector<Item> listed;

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

    /// Whether the engine refuses the item as a whole; the reason is the one failure.
    bool itemRefused = false;
    /// Whether the item itself would be gone.
    bool itemGoes = false;
    /// Whether `shouldStop` ended the plan: it covers only what was seen till then.
    bool stopped = false;

    /// Whether there is nothing that a deletion would find.
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
