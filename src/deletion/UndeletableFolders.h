#pragma once

#include "platform/EntryStatus.h"

#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// The folders that nobody may delete: the root, the home folder, and every folder around the home folder.
class UndeletableFolders {
public:
    /// Reads where the home folder is now.
    UndeletableFolders();

    /// Why the item at the standardized `path` must stay, or nothing.
    [[nodiscard]] std::optional<std::string> refusal(const std::string& path) const;

    /// Whether the folder is one of them, even under another name, such as a bind mount or a different case.
    [[nodiscard]] bool contains(const FileIdentity& folder) const;

private:
    /// The path of the home folder, as it is given and with all links resolved.
    std::vector<std::string> homes_;
    std::vector<FileIdentity> identities_;
};

} // namespace zentrill
