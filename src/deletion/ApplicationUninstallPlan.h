#pragma once

#include "deletion/DeletionPlan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zentrill {

/// What the removal of one tool would do, found out without changing anything: each path of the tool that
/// exists, and what becomes of it.
struct ApplicationUninstallPlan {
    enum class Part : std::uint8_t {
        /// An executable or a bundle, of which the Safety Shield keeps only credentials.
        installation,
        /// Data, of which the Safety Shield keeps every file.
        data,
        /// Data of the tool that its removal does not touch.
        remainingData,
    };

    struct Item {
        /// Absolute, as the report calls it.
        std::string path;
        Part part = Part::installation;
        /// The size of all of it, whatever becomes of it, in bytes. Folders inside that the shield keeps
        /// whole count as 0.
        std::int64_t logicalBytes = 0;
        /// The other tools of the catalog that it, or a part of it, belongs to, in the catalog's order.
        std::vector<std::string> sharedWith{}; // NOLINT(readability-redundant-member-init): GCC warns
        /// Empty for what the removal does not touch.
        DeletionPlan plan{};

        bool operator==(const Item&) const = default;
    };

    /// In the order of the removal, then what remains. Leaves out what does not exist and what an earlier
    /// item or plan covers.
    std::vector<Item> items;
    /// Whether an executable or a bundle would still be there, which the removal reports as a failure.
    bool staysInstalled = false;
    /// Whether `shouldStop` ended the plan, which then covers only what was seen until that moment.
    bool stopped = false;

    /// The logical size of what goes, in bytes.
    [[nodiscard]] std::int64_t removedBytes() const;

    /// What the disk gets back, in bytes.
    [[nodiscard]] std::int64_t freedBytes() const;

    bool operator==(const ApplicationUninstallPlan&) const = default;
};

} // namespace zentrill
