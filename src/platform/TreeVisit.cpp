#include "platform/TreeVisit.h"

#include "platform/DirectoryHandle.h"
#include "platform/Text.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace zentrill {

namespace {

/// Model stores are four folders deep, so that none has to be opened again. Several walks run at once, in a
/// process that may open 256 files.
constexpr std::size_t openDirectories = 8;

} // namespace

void visitTree(const std::string& path, const TreeVisitor& visit, const std::function<bool()>& shouldStop) {
    const auto stopRequested = [&shouldStop] { return shouldStop && shouldStop(); };
    DirectoryHandle base;
    // The system would end a path at its NUL and read another folder.
    if (hasNul(path) || stopRequested() || DirectoryHandle::open(path, FinalLink::follow, base) != 0) {
        return;
    }
    DirectoryStack stack(std::move(base), Mounts::enter, openDirectories);
    while (true) {
        std::optional<DirectoryStack::Entry> entry = stack.nextEntry();
        if (!entry) {
            if (stack.depth() == 1) {
                return;
            }
            stack.leave();
            continue;
        }
        (void)stack.directory().completeKind(entry->name, entry->kind);
        if (entry->kind == EntryKind::link) {
            continue;
        }
        visit(stack, *entry);
        if (entry->kind != EntryKind::directory) {
            continue;
        }
        if (stopRequested()) {
            return;
        }
        (void)stack.enter(entry->name);
    }
}

} // namespace zentrill
