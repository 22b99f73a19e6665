#pragma once

#include "deletion/LinkedFiles.h"

#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Deletions that are planned in the order in which they will run: what an earlier one covers is left out of
/// the later ones, and nothing is counted twice.
///
///     EarlierPlans earlier;
///     for (const std::string& path : paths) {
///         plans.push_back(engine.plan(path, options, {.earlier = &earlier}));
///     }
///
/// What an earlier deletion keeps also counts as kept in the later ones. Paths are absolute, in any form.
class EarlierPlans {
public:
    struct Item {
        std::string_view name;
        /// Whether it will be gone, with everything in it.
        bool goes = false;
    };

    void add(std::string_view path, bool goes);

    /// Whether `path`, or a folder around it, is the item of an earlier deletion.
    [[nodiscard]] bool covers(std::string_view path) const;

    /// Whether an earlier deletion removes `path`.
    [[nodiscard]] bool removes(std::string_view path) const;

    /// The earlier deletions' items directly inside `folder`; valid until the next `add`.
    [[nodiscard]] std::vector<Item> itemsIn(std::string_view folder) const;

    /// The files with several names, some of which an earlier deletion may have met.
    [[nodiscard]] LinkedFiles& linkedFiles() noexcept { return linkedFiles_; }

private:
    struct Deletion {
        std::string path;
        bool goes = false;
    };

    std::vector<Deletion> deletions_;
    LinkedFiles linkedFiles_;
};

} // namespace zentrill
