#pragma once

#include "platform/EntryStatus.h"
#include "platform/HashCombiner.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace zentrill {

/// The files with several names that a plan has met, each until all its names have been met.
class LinkedFiles {
public:
    /// What one more name adds to the counts.
    struct Count {
        /// Whether no earlier name of the file had the same end.
        bool firstOfItsEnd = true;
        /// Whether all names of the file have been met and all of them are to go.
        bool lastLinkGoes = false;
    };

    /// Notes a name that leads to the file and meets `end`, a number below 8; `goes` if the name is to go.
    /// Memory is needed only for files of several names.
    [[nodiscard]] Count add(const EntryStatus& file, unsigned end, bool goes);

    [[nodiscard]] std::size_t size() const noexcept { return files_.size(); }

private:
    struct File {
        std::uint64_t met = 0;
        std::uint64_t going = 0;
        /// One bit for each end of its names so far.
        std::uint8_t ends = 0;
    };

    struct Hash {
        std::size_t operator()(const FileIdentity& identity) const noexcept {
            return HashCombiner().add(identity.device).add(identity.inode).value();
        }
    };

    std::unordered_map<FileIdentity, File, Hash> files_;
};

} // namespace zentrill
