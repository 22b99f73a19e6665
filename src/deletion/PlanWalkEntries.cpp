// How a plan deals with a single entry; PlanWalk.cpp goes from one to the next.

#include "deletion/PlanWalk.h"
#include "platform/ByteSum.h"
#include "platform/SystemError.h"

#include <cerrno>

namespace zentrill {

namespace {

EntryStatus folderOf(std::int64_t logicalBytes) {
    return {.kind = EntryKind::directory, .identity = {}, .size = logicalBytes};
}

} // namespace

void PlanWalk::plan(const char* name, EntryKind kind) {
    if (const int error = stack_.directory().completeKind(name, kind); error != 0) {
        if (error != ENOENT) {
            fail(name, error);
        }
        return;
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
        planLeaf(name); // Somebody has just put something else in the folder's place.
    } else if (error != ENOENT) {
        // EBUSY is the error for removing a mount point.
        fail(name, error == EXDEV ? EBUSY : errorOfUnread(name, error), folderOf(0));
    }
}

/// A folder that cannot be read may be empty, and then it goes; nobody can see that beforehand.
int PlanWalk::errorOfUnread(const char* name, int openingError) const {
    EntryStatus status;
    int removalError = 0;
    const bool isTried = rules_.shield == nullptr;
    return isTried && folders_.back().forecast.lookUp(stack_.directory(), name, status, removalError) == 0 &&
                   removalError != 0
               ? removalError
               : openingError;
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

DeletionPlan::Items& PlanWalk::items(DeletionPlan& plan, End end) {
    switch (end) {
    case End::removed:
        return plan.removed;
    case End::recognizedCredential:
        return plan.recognizedCredentials;
    case End::listedCredential:
        return plan.listedCredentials;
    case End::uncertainData:
        return plan.uncertainData;
    case End::refused:
        return plan.refused;
    case End::failing:
        break;
    }
    return plan.failing;
}

void PlanWalk::count(const char* name, End end, const EntryStatus& status) {
    list(name, end, status);
    folder().left = folder().left || end != End::removed;
    if (status.kind == EntryKind::directory) {
        return;
    }
    addBytes(folder().logicalBytes, status.size);
    const LinkedFiles::Count link = meet(status, end);
    for (DeletionPlan* plan : {&record_.current().plan, &news_.plan}) {
        if (link.firstOfItsEnd) {
            addBytes(items(*plan, end).logicalBytes, status.size);
        }
        if (link.lastLinkGoes) {
            addBytes(plan->freedBytes, status.allocatedSize);
        }
    }
}

void PlanWalk::list(const char* name, End end, const EntryStatus& status) {
    DeletionPlan::Items& counted = items(record_.current().plan, end);
    DeletionPlan::Items& news = items(news_.plan, end);
    ++counted.count;
    ++news.count;
    if (counted.listed.size() >= options_.listedItems) {
        return; // The others get no path: there may be a million of them.
    }
    counted.listed.push_back({.path = name != nullptr ? pathOf(name) : paths_.reported(below()),
                              .logicalBytes = status.size,
                              .isFolder = status.kind == EntryKind::directory});
    if (shared_.teller.isWanted()) {
        news.listed.push_back(counted.listed.back());
    }
}

LinkedFiles::Count PlanWalk::meet(const EntryStatus& file, End end) {
    const bool goes = end == End::removed;
    if (file.linkCount <= 1) {
        return {.firstOfItsEnd = true, .lastLinkGoes = goes};
    }
    const std::lock_guard lock(shared_.linkedFilesMutex);
    return shared_.linkedFiles.add(file, static_cast<unsigned>(end), goes);
}

void PlanWalk::fail(const char* name, int error, const EntryStatus& status) {
    if (listsFailures()) {
        listFailure(pathOf(name), error);
    }
    count(name, End::failing, status);
}

/// For the top directory itself, of which some entries could not be read.
void PlanWalk::failHere(int error) {
    folder().left = true;
    if (listsFailures()) {
        listFailure(paths_.reported(below()), error);
    }
    list(nullptr, End::failing, folderOf(0));
}

bool PlanWalk::listsFailures() {
    return record_.current().plan.failures.size() < record_.current().listedFailures;
}

void PlanWalk::listFailure(const std::string& path, int error) {
    std::vector<std::string>& failures = record_.current().plan.failures;
    if (rules_.shield != nullptr) {
        failures.push_back(path + ": " + systemDescription(error));
    } else {
        failures.push_back(shared_.item + ": " + systemDescription(error) +
                           (path == shared_.item ? "" : " (at " + path + ")"));
    }
    if (shared_.teller.isWanted()) {
        news_.plan.failures.push_back(failures.back());
    }
}

} // namespace zentrill
