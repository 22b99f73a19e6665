#pragma once

#include "platform/EntryStatus.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace zentrill {

/// A batch of a directory's entries. The names lie end to end in one block, so that a batch of any size
/// costs two allocations and a cleared one none.
class DirectoryListing {
public:
    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }

    /// What the names take up, in bytes.
    [[nodiscard]] std::size_t nameBytes() const noexcept { return names_.size(); }

    /// The name as the directory spells it; valid until the listing changes or goes.
    [[nodiscard]] const char* name(std::size_t index) const { return &names_[entries_[index].nameOffset]; }

    [[nodiscard]] EntryKind kind(std::size_t index) const { return entries_[index].kind; }

    void clear() noexcept {
        entries_.clear();
        names_.clear();
    }

    void add(std::string_view name, EntryKind kind) {
        entries_.push_back({names_.size(), kind});
        names_.insert(names_.end(), name.begin(), name.end());
        names_.push_back('\0');
    }

private:
    struct Entry {
        std::size_t nameOffset;
        EntryKind kind;
    };

    std::vector<Entry> entries_;
    std::vector<char> names_;
};

} // namespace zentrill
