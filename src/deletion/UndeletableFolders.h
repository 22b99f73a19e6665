#pragma once

#include "platform/EntryStatus.h"

#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// The folders that no caller may delete whatever the reason: the root, the home folder, and every folder
/// that the home folder lies in.
class UndeletableFolders {
public:
    /// Reads where the home folder is now.
    UndeletableFolders();

    /// Why the item at the standardized `path` must stay, or nothing.
    [[nodiscard]] std::optional<std::string> refusal(const std::string& path) const;

    /// Whether the folder is one of them under another name: a bind mount, a spelling in other letter case.
    [[nodiscard]] bool contains(const FileIdentity& folder) const;

private:
    /// The home folder as it is named and as it is with every link on its path resolved.
    std::vector<std::string> homes_;
    std::vector<FileIdentity> identities_;
};

} // namespace zentrill
