#pragma once

#include "platform/EntryStatus.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace zentrill {

/// A batch of a directory's entries. All names are in one block, so that a batch of any size needs two
/// allocations, and none when it is used again.
class DirectoryListing {
public:
    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }

    /// What the names take up, in bytes.
    [[nodiscard]] std::size_t nameBytes() const noexcept { return names_.size(); }

    /// The name as it is in the directory; valid until the listing changes or is destroyed.
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
