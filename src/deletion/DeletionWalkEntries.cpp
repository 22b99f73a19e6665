// How a deletion deals with a single entry; DeletionWalk.cpp goes from one to the next.

#include "deletion/DeletionWalk.h"

#include <cerrno>
#include <string>

namespace zentrill {

namespace {

/// How often an entry is tried again because somebody keeps turning it from a file into a folder and back.
constexpr int kindChangeLimit = 8;

bool isNotEmpty(int error) {
    return error == ENOTEMPTY || error == EEXIST;
}

bool isNoDirectory(int error) {
    return error == ENOTDIR || error == ELOOP;
}

} // namespace

void DeletionWalk::remove(const char* name, EntryKind kind) {
    for (int attempt = 0; attempt < kindChangeLimit; ++attempt) {
        if (const int error = stack_.directory().completeKind(name, kind); error != 0) {
            if (error != ENOENT) {
                fail(name, error);
            }
            return;
        }
        const Step step = kind == EntryKind::directory ? enter(name) : removeLeaf(name);
        if (step == Step::done) {
            return;
        }
        kind = EntryKind::unknown;
    }
    fail(name, EBUSY);
}

DeletionWalk::Step DeletionWalk::removeLeaf(const char* name) {
    if (rules_.preserveUnrecognized) {
        if (folder().lookUpError == 0) {
            recordPreserved(name);
        } else {
            fail(name, folder().lookUpError);
        }
        return Step::done;
    }
    if (!mayRemove(name)) {
        folder().left = true;
        return Step::done;
    }
    const int error = stack_.directory().removeFile(name);
    if (error == 0) {
        recordRemoved(name);
        return Step::done;
    }
    if (error == ENOENT) {
        return Step::done;
    }
    if (error == EISDIR || error == EPERM) {
        // Which error unlink gives for a directory depends on the system.
        EntryStatus status;
        if (stack_.directory().lookUp(name, status) == 0 && status.kind == EntryKind::directory) {
            return Step::kindChanged;
        }
    }
    fail(name, error);
    return Step::done;
}

DeletionWalk::Step DeletionWalk::enter(const char* name) {
    if (!mayRemove(name)) {
        folder().left = true;
        return Step::done;
    }
    const int error = stack_.enter(name);
    if (error == 0) {
        begin();
        return Step::done;
    }
    if (error == ENOENT) {
        return Step::done;
    }
    if (isNoDirectory(error)) {
        return Step::kindChanged;
    }
    if (error != EXDEV && rules_.shield == nullptr) {
        return removeUnread(name, error);
    }
    fail(name, error == EXDEV ? EBUSY : error); // EBUSY is the error for removing a mount point.
    return Step::done;
}

/// A folder that must not be read may still be empty.
DeletionWalk::Step DeletionWalk::removeUnread(const char* name, int openingError) {
    const int error = stack_.directory().removeDirectory(name);
    if (error == ENOTDIR) {
        return Step::kindChanged;
    }
    if (error == 0) {
        recordRemoved(name);
    } else if (error != ENOENT) {
        fail(name, isNotEmpty(error) ? openingError : error);
    }
    return Step::done;
}

} // namespace zentrill
