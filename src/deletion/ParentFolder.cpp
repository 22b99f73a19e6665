#include "deletion/ParentFolder.h"

#include "deletion/PathAliases.h"
#include "platform/Paths.h"

#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

namespace zentrill {

ParentFolder ParentFolder::open(const std::string& path) {
    ParentFolder result;
    result.name = paths::lastComponent(path);
    result.error = DirectoryHandle::openRoot(result.handle);
    const std::vector<std::string_view> parts = paths::components(path);
    std::string ancestor;
    for (std::size_t i = 1; i + 1 < parts.size() && result.error == 0; ++i) {
        const std::string name(parts[i]);
        ancestor.append("/").append(name);
        DirectoryHandle next;
        result.error = result.handle.openForSearch(name.c_str(), next);
        if (result.error == 0) {
            result.handle = std::move(next);
            continue;
        }
        const std::optional<std::string> destination = result.handle.linkDestination(name.c_str());
        if (!destination) {
            break;
        }
        if (isSystemAlias(ancestor, *destination)) {
            return open(aliasNormalized(path)); // That begins with /private, which is not an alias.
        }
        result.error = ELOOP;
        result.unsafeAncestor = ancestor;
    }
    return result;
}

} // namespace zentrill
