#pragma once

#include "deletion/DeletionPlan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zentrill {

/// What the removal of one tool would do, found out by looking alone: each path of the tool that exists and
/// what becomes of it.
struct ApplicationUninstallPlan {
    enum class Part : std::uint8_t {
        /// An executable or a bundle, of which the Safety Shield keeps credentials alone.
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
        /// The size of the whole, whatever becomes of it, in bytes. Folders that the shield keeps whole
        /// inside of it count as nothing.
        std::int64_t logicalBytes = 0;
        /// The other tools of the catalog to which it belongs as well, or a part of it, in the catalog's
        /// order.
        std::vector<std::string> sharedWith{}; // NOLINT(readability-redundant-member-init): GCC warns
        /// Empty for what the removal does not touch.
        DeletionPlan plan{};

        bool operator==(const Item&) const = default;
    };

    /// In the order of the removal, then what remains. What does not exist is left out, and what an earlier
    /// item, or an earlier plan, deals with already.
    std::vector<Item> items;
    /// Whether an executable or a bundle would still be there, which the removal reports as a failure.
    bool staysInstalled = false;
    /// Whether `shouldStop` ended the plan: it covers only what was seen till then.
    bool stopped = false;

    /// The logical size of what goes, in bytes.
    [[nodiscard]] std::int64_t removedBytes() const;

    /// What the disk gets back, in bytes.
    [[nodiscard]] std::int64_t freedBytes() const;

    bool operator==(const ApplicationUninstallPlan&) const = default;
};

} // namespace zentrill
