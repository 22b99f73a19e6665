#pragma once

#include "deletion/LinkedFiles.h"

#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Deletions that are planned one after the other, as they will be done: what an earlier one deals with is no
/// matter of a later one any more, and nothing is counted twice.
///
///     EarlierPlans earlier;
///     for (const std::string& path : paths) {
///         plans.push_back(engine.plan(path, options, {.earlier = &earlier}));
///     }
///
/// What an earlier deletion keeps counts as kept in the later ones, too. Paths are absolute and in any form.
class EarlierPlans {
public:
    struct Item {
        std::string_view name;
        /// Whether it will be gone, with all that it held.
        bool goes = false;
    };

    void add(std::string_view path, bool goes);

    /// Whether an earlier deletion is that of `path`, or of a folder around it.
    [[nodiscard]] bool covers(std::string_view path) const;

    /// Whether an earlier deletion takes `path` with it.
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
