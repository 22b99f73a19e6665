#include "models/LinkedElsewhere.h"

#include "models/FolderSize.h"
#include "platform/ByteSum.h"
#include "platform/DirectoryStack.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace zentrill {

namespace {

/// Where the links in the folder lead outside of it, each place once.
std::set<std::string> placesElsewhere(const std::string& folder, const std::function<bool()>& shouldStop) {
    const FileSystem& fileManager = FileSystem::shared();
    std::set<std::string> places;
    const std::optional<std::string> inside = fileManager.resolvingSymlinks(folder);
    DirectoryHandle base;
    if (!inside || DirectoryHandle::open(folder, FinalLink::refuse, base) != 0) {
        return places;
    }
    DirectoryStack stack(std::move(base));
    while (!shouldStop || !shouldStop()) {
        std::optional<DirectoryStack::Entry> entry = stack.nextEntry();
        if (!entry) {
            if (stack.depth() == 1) {
                break;
            }
            stack.leave();
            continue;
        }
        (void)stack.directory().completeKind(entry->name, entry->kind);
        if (entry->kind == EntryKind::directory) {
            (void)stack.enter(entry->name);
        } else if (entry->kind == EntryKind::link) {
            const std::string below = paths::appending(*inside, stack.relativePath());
            std::optional<std::string> place =
                fileManager.resolvingSymlinks(paths::appending(below, entry->name));
            if (place && !paths::isSameOrBelow(*place, *inside)) {
                places.insert(std::move(*place));
            }
        }
    }
    return places;
}

} // namespace

std::int64_t bytesLinkedElsewhere(const std::string& path, const std::function<bool()>& shouldStop) {
    std::int64_t total = 0;
    std::vector<std::string> folders;
    // A folder comes before what it holds.
    for (const std::string& place : placesElsewhere(path, shouldStop)) {
        const bool isCounted = std::ranges::any_of(
            folders, [&place](const std::string& folder) { return paths::isSameOrBelow(place, folder); });
        const std::optional<FileAttributes> attributes = FileSystem::shared().attributes(place);
        if (isCounted || !attributes) {
            continue;
        }
        if (attributes->isDirectory) {
            folders.push_back(place);
            addBytes(total, folderSize(place, shouldStop));
        } else {
            addBytes(total, attributes->size);
        }
    }
    return total;
}

} // namespace zentrill
