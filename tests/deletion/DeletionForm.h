#pragma once

#include "deletion/SafeDeletionEngine.h"
#include "platform/FileSystem.h"

#include <utility>

namespace zentrill::test {

/// How the engines of a test program delete. The same cases are linked into several programs, each of which
/// has one of `forms/`.
struct DeletionForm {
    DeletionConcurrency concurrency;
    DeletionDomain domain;
};

/// That of this program.
[[nodiscard]] DeletionForm deletionForm();

/// An engine of this program's form.
[[nodiscard]] inline SafeDeletionEngine newEngine(SafeDeletionEngine::DeletionPredicate mayRemove = {},
                                                  const FileSystem& files = FileSystem::shared()) {
    DeletionForm form = deletionForm();
    return SafeDeletionEngine(files, {}, std::move(mayRemove), form.concurrency, std::move(form.domain));
}

/// One with as many threads in every form.
[[nodiscard]] inline SafeDeletionEngine newEngine(const DeletionConcurrency& concurrency,
                                                  SafeDeletionEngine::DeletionPredicate mayRemove = {}) {
    return SafeDeletionEngine(FileSystem::shared(), {}, std::move(mayRemove), concurrency,
                              deletionForm().domain);
}

} // namespace zentrill::test
