#pragma once

#include <functional>
#include <string>

namespace zentrill {

/// One item met by `walkFolder`. Valid only during the visit.
struct WalkEntry {
    /// Open descriptor of the folder that holds the item; closed by the walk.
    int folder;
    /// The path of that folder: the walk's own, then the names below it.
    const std::string& folderPath;
    /// Ends with a NUL.
    const char* name;
    bool isDirectory;
};

/// Visits everything at any depth below the folder at `path`, hidden items included and symbolic links left
/// out: they cost nothing, not even a look at them. Entries come in the order in which the system lists
/// them; a folder is visited before what it holds, and all of that before the folder's next sibling.
///
/// A link at `path` itself is followed, none below it is. Folders that cannot be read count as empty. The
/// walk takes a fixed number of descriptors and no stack, however deep the tree and however long its paths.
/// A tree that is moved elsewhere in the meantime gives what was seen until then.
///
/// `shouldStop`, if there is one, is asked before each folder is read; its first "yes" ends the walk.
void walkFolder(const std::string& path, const std::function<void(const WalkEntry&)>& visit,
                const std::function<bool()>& shouldStop);

} // namespace zentrill
