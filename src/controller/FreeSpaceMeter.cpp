#include "controller/FreeSpaceMeter.h"

#include "platform/ByteCountFormatter.h"
#include "platform/ByteSum.h"
#include "platform/FileSystem.h"
#include "platform/FreeSpace.h"
#include "platform/Paths.h"

#include <algorithm>
#include <utility>

namespace zentrill {

namespace {

struct Change {
    std::int64_t before = 0;
    std::int64_t after = 0;
};

/// Opens the folder or, if only its owner may do so, the folder around it if that is on the same file system.
bool openOnItsFileSystem(const std::string& path, DirectoryHandle& folder) {
    if (DirectoryHandle::open(path, FinalLink::follow, folder) == 0) {
        return true;
    }
    EntryStatus status;
    const std::string name(paths::lastComponent(path));
    return DirectoryHandle::open(std::string(paths::parent(path)), FinalLink::follow, folder) == 0 &&
           folder.lookUp(name.c_str(), status) == 0 && status.kind == EntryKind::directory &&
           status.identity.device == folder.identity().device;
}

} // namespace

FreeSpaceMeter::FreeSpaceMeter(Measure measure) : measure_(std::move(measure)) {}

std::optional<std::int64_t> FreeSpaceMeter::measured(const DirectoryHandle& folder) {
    return freeSpace(folder);
}

void FreeSpaceMeter::watchItem(const std::string& path) {
    // The target of a link stays, and so does a mounted folder.
    if (FileSystem::shared().itemExistsWithoutFollowingSymlink(path)) {
        watchFolder(std::string(paths::parent(path)));
    }
}

void FreeSpaceMeter::watchFolder(const std::string& path) {
    Volume volume;
    if (!openOnItsFileSystem(path, volume.folder)) {
        return;
    }
    const dev_t device = volume.folder.identity().device;
    if (std::ranges::any_of(volumes_,
                            [&](const Volume& known) { return known.folder.identity().device == device; })) {
        return;
    }
    const std::optional<std::int64_t> bytes = measure_(volume.folder);
    if (bytes && std::ranges::find(volumes_, *bytes, &Volume::before) == volumes_.end()) {
        volume.before = *bytes;
        volumes_.push_back(std::move(volume));
    }
}

std::string FreeSpaceMeter::text() const {
    std::vector<Change> changes;
    for (const Volume& volume : volumes_) {
        if (const std::optional<std::int64_t> bytes = measure_(volume.folder)) {
            changes.push_back({.before = volume.before, .after = *bytes});
        }
    }
    if (changes.empty()) {
        return {};
    }
    const auto isUnchanged = [](const Change& change) { return change.before == change.after; };
    if (std::ranges::all_of(changes, isUnchanged)) {
        changes.resize(1); // The first is the one that the operation named first.
    } else {
        std::erase_if(changes, isUnchanged);
    }
    Change sum;
    for (const Change& change : changes) {
        addBytes(sum.before, change.before);
        addBytes(sum.after, change.after);
    }
    const std::string where =
        changes.size() == 1 ? "" : " on " + std::to_string(changes.size()) + " file systems";
    return "Free space" + where + ": " + formattedByteCount(sum.before) + " \u2192 " +
           formattedByteCount(sum.after);
}

} // namespace zentrill
