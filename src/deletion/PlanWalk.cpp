#include "deletion/PlanWalk.h"

#include "platform/ByteSum.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace zentrill {

namespace {

EntryStatus folderOf(std::int64_t logicalBytes) {
    return {.kind = EntryKind::directory, .identity = {}, .size = logicalBytes};
}

} // namespace

PlanWalk::PlanWalk(const DeletionRules& rules, const PlanOptions& options, std::string path,
                   std::string standardizedPath, DirectoryHandle parent)
    : rules_(rules),
      options_(options),
      paths_(std::move(path), std::move(standardizedPath)),
      itemName_(paths_.name()),
      stack_(std::move(parent)),
      linkedFiles_(options.earlier != nullptr ? options.earlier->linkedFiles() : ownLinkedFiles_) {
    folders_.push_back({.forecast = RemovalForecast(stack_.directory())});
}

DeletionPlan PlanWalk::run() {
    walk();
    plan_.itemGoes = !plan_.stopped && !folder().left && plan_.removed.count > 0;
    return std::move(plan_);
}

void PlanWalk::walk() {
    if (rules_.shield != nullptr) {
        const CredentialReason reason = rules_.shield->reason(paths_.standardized(""));
        if (reason != CredentialReason::none) {
            keep(itemName_.c_str(), reason);
            return;
        }
    }
    plan(itemName_.c_str(), EntryKind::unknown);
    while (stack_.depth() > 1) {
        if (options_.shouldStop && options_.shouldStop()) {
            plan_.stopped = true;
            return;
        }
        if (const auto entry = stack_.nextEntry()) {
            handle(entry->name, entry->kind);
        } else if (const int error = stack_.takeListingError(); error != 0) {
            if (error != ENOENT) {
                failHere(error);
            }
        } else {
            leave();
        }
    }
}

void PlanWalk::handle(const char* name, EntryKind kind) {
    const auto earlier = std::ranges::find(folder().earlierItems, name, &EarlierPlans::Item::name);
    if (earlier != folder().earlierItems.end()) {
        folder().left = folder().left || !earlier->goes;
        return;
    }
    if (rules_.shield != nullptr) {
        const CredentialReason reason = rules_.shield->reasonForName(name, folder().explicitNames);
        if (reason != CredentialReason::none) {
            keep(name, reason);
            return;
        }
    }
    plan(name, kind);
}

void PlanWalk::plan(const char* name, EntryKind kind) {
    if (kind == EntryKind::unknown) {
        EntryStatus status;
        const int error = stack_.directory().lookUp(name, status);
        if (error == ENOENT) {
            return;
        }
        if (error != 0) {
            fail(name, error);
            return;
        }
        kind = status.kind;
    }
    if (kind == EntryKind::directory) {
        enter(name);
    } else {
        planLeaf(name);
    }
}

void PlanWalk::planLeaf(const char* name) {
    EntryStatus status;
    int removalError = 0;
    const int error = folder().forecast.lookUp(stack_.directory(), name, status, removalError);
    if (rules_.preserveUnrecognized) {
        if (folder().lookUpError == 0) {
            count(name, End::uncertainData, status);
        } else {
            fail(name, folder().lookUpError);
        }
    } else if (!mayRemove(name)) {
        count(name, End::refused, status);
    } else if (error != 0) {
        if (error != ENOENT) {
            fail(name, error);
        }
    } else if (removalError != 0) {
        fail(name, removalError, status);
    } else {
        count(name, End::removed, status);
    }
}

void PlanWalk::enter(const char* name) {
    if (!mayRemove(name)) {
        count(name, End::refused, folderOf(0));
        return;
    }
    const int error = stack_.enter(name);
    if (error == 0) {
        begin();
    } else if (error == ENOTDIR || error == ELOOP) {
        planLeaf(name); // Somebody has just put it in the folder's place.
    } else if (error != ENOENT) {
        // EBUSY is what the system says of removing a mount point.
        fail(name, error == EXDEV ? EBUSY : errorOfUnread(name, error), folderOf(0));
    }
}

/// A folder that must not be read may turn out to be empty, and then go; nobody can see that beforehand.
int PlanWalk::errorOfUnread(const char* name, int openingError) const {
    EntryStatus status;
    int removalError = 0;
    const bool isTried = rules_.shield == nullptr;
    return isTried && folders_.back().forecast.lookUp(stack_.directory(), name, status, removalError) == 0 &&
                   removalError != 0
               ? removalError
               : openingError;
}

/// Gathers what there is to know of the directory just entered.
void PlanWalk::begin() {
    Folder entered{.forecast = RemovalForecast(stack_.directory())};
    if (options_.earlier != nullptr) {
        entered.earlierItems = options_.earlier->itemsIn(paths_.standardized(below()));
    }
    if (rules_.shield != nullptr && rules_.shield->hasExplicitCredentials()) {
        entered.explicitNames = rules_.shield->explicitNames(paths_.standardized(below()));
    }
    if (rules_.preserveUnrecognized) {
        EntryStatus ignored;
        entered.lookUpError = stack_.directory().lookUp(".", ignored);
    }
    folders_.push_back(std::move(entered));
}

void PlanWalk::leave() {
    const std::string name = stack_.nameOfTop();
    const Folder left = std::move(folder());
    folders_.pop_back();
    if (!stack_.leave()) {
        // Somebody moved it: the folder around it is out of reach, with whatever it still holds.
        failHere(ESTALE);
    } else if (left.left) {
        folder().left = true;
    } else if (const int error = folder().forecast.removalError(left.forecast); error != 0) {
        fail(name.c_str(), error, folderOf(0));
    } else {
        count(name.c_str(), End::removed, folderOf(left.logicalBytes));
        addBytes(folder().logicalBytes, left.logicalBytes);
    }
}

void PlanWalk::keep(const char* name, CredentialReason reason) {
    const End end =
        reason == CredentialReason::recognized ? End::recognizedCredential : End::listedCredential;
    EntryStatus status;
    (void)stack_.directory().lookUp(name, status);
    count(name, end, status.kind == EntryKind::directory ? folderOf(0) : status);
}

bool PlanWalk::mayRemove(const char* name) const {
    return !rules_.mayRemove || rules_.mayRemove(pathOf(name));
}

std::string_view PlanWalk::below() const {
    return stack_.relativePath().substr(itemName_.size());
}

std::string PlanWalk::pathOf(const char* name) const {
    return stack_.depth() == 1 ? paths_.reported("") : paths_.reported(below(), name);
}

DeletionPlan::Items& PlanWalk::items(End end) {
    switch (end) {
    case End::removed:
        return plan_.removed;
    case End::recognizedCredential:
        return plan_.recognizedCredentials;
    case End::listedCredential:
        return plan_.listedCredentials;
    case End::uncertainData:
        return plan_.uncertainData;
    case End::refused:
        return plan_.refused;
    case End::failing:
        break;
    }
    return plan_.failing;
}

void PlanWalk::count(const char* name, End end, const EntryStatus& status) {
    const bool isFolder = status.kind == EntryKind::directory;
    DeletionPlan::Items& counted = items(end);
    ++counted.count;
    if (counted.listed.size() < options_.listedItems) {
        // No path is made for the others: there may be a million.
        counted.listed.push_back({.path = pathOf(name), .logicalBytes = status.size, .isFolder = isFolder});
    }
    folder().left = folder().left || end != End::removed;
    if (isFolder) {
        return;
    }
    const LinkedFiles::Count link = linkedFiles_.add(status, static_cast<unsigned>(end), end == End::removed);
    if (link.firstOfItsEnd) {
        addBytes(counted.logicalBytes, status.size);
        addBytes(folder().logicalBytes, status.size);
    }
    if (link.lastLinkGoes) {
        addBytes(plan_.freedBytes, status.allocatedSize);
    }
}

void PlanWalk::fail(const char* name, int error, const EntryStatus& status) {
    recordFailure(pathOf(name), error);
    count(name, End::failing, status);
}

/// For the top directory itself, whose entries are not all known.
void PlanWalk::failHere(int error) {
    const std::string path = paths_.reported(below());
    recordFailure(path, error);
    ++plan_.failing.count;
    if (plan_.failing.listed.size() < options_.listedItems) {
        plan_.failing.listed.push_back({.path = path, .isFolder = true});
    }
}

/// With the shield a line for each failure; otherwise one in all, which names the first.
void PlanWalk::recordFailure(const std::string& path, int error) {
    folder().left = true;
    if (rules_.shield != nullptr) {
        if (plan_.failures.size() < options_.listedItems) {
            plan_.failures.push_back(path + ": " + systemDescription(error));
        }
    } else if (plan_.failures.empty()) {
        const std::string item = paths_.reported("");
        plan_.failures.push_back(item + ": " + systemDescription(error) +
                                 (path == item ? "" : " (at " + path + ")"));
    }
}

} // namespace zentrill
