#pragma once

#include "platform/DirectoryHandle.h"
#include "platform/EntryStatus.h"

#include <sys/types.h>

namespace zentrill {

/// Foresees, without changing anything, whether the entries of a directory could be removed: permissions, a
/// sticky folder, a read-only file system, immutable files, files that something is mounted on. Access
/// control that acts only on the removal itself cannot be foreseen.
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
    /// What the removal of a file or directory depends on.
    struct Traits {
        uid_t owner = 0;
        /// Immutable, or append-only.
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
