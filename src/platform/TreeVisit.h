#pragma once

#include "platform/DirectoryStack.h"

#include <functional>
#include <string>

namespace zentrill {

/// Called for each entry of a tree while the top directory of `stack` is the one that holds it. The entry's
/// kind is known, unless the system did not tell.
using TreeVisitor = std::function<void(const DirectoryStack& stack, const DirectoryStack::Entry& entry)>;

/// Visits everything at any depth below the folder at `path`, hidden items included. Symbolic links are
/// skipped without being looked up. Entries come in the order in which the system lists them; a folder is
/// visited before what it holds, and all of that before the folder's next sibling.
///
/// A link at `path` itself is followed, none below it is; mount points are entered. Folders that cannot be
/// read count as empty, and so does the rest of a folder that is out of reach because somebody moved it.
///
/// `shouldStop`, if there is one, is asked before each folder is read; its first "yes" ends the walk.
void visitTree(const std::string& path, const TreeVisitor& visit, const std::function<bool()>& shouldStop);

} // namespace zentrill
