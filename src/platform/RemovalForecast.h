#pragma once

#include "platform/DirectoryHandle.h"
#include "platform/EntryStatus.h"

#include <sys/types.h>

namespace zentrill {

/// What can be known beforehand, by looking alone, of the removal of a directory's entries: permissions, a
/// sticky folder, a file system that is read only, what was made immutable, files that something is mounted
/// on. Access control that only acts on the removal itself cannot be known.
///
/// Errors are the system's numbers, 0 for success, as the removal would give them.
class RemovalForecast {
public:
    /// For `directory` as it is now, which may be open for looking up names only.
    explicit RemovalForecast(const DirectoryHandle& directory);

    /// Looks up the entry `name` of that directory, and says in `removalError` why it could not be removed.
    /// An error means that it could not be looked up; neither value is set then.
    [[nodiscard]] int lookUp(const DirectoryHandle& directory, const char* name, EntryStatus& status,
                             int& removalError) const;

    /// Why an entry of that directory, the empty directory of `inner`, could not be removed.
    [[nodiscard]] int removalError(const RemovalForecast& inner) const;

private:
    /// Of a file or directory, as far as its removal depends on it.
    struct Traits {
        uid_t owner = 0;
        /// Immutable, or such that it can only grow.
        bool fixed = false;
        bool mountPoint = false;
    };

    /// An empty `name` stands for the directory itself.
    [[nodiscard]] static int examine(const DirectoryHandle& directory, const char* name, EntryStatus& status,
                                     Traits& traits, bool& sticky);
    [[nodiscard]] int removalError(const Traits& entry) const;

    /// Why nothing at all can be removed from the directory.
    int error_ = 0;
    bool sticky_ = false;
    Traits traits_;
};

} // namespace zentrill
