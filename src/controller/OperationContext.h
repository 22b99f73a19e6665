#pragma once

#include "catalog/AppInfo.h"
#include "deletion/DeletionProgress.h"
#include "deletion/SafeDeletionEngine.h"
#include "docker/DockerExecutableLocating.h"
#include "process/CommandExecuting.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {

/// What the body of one operation works with on the worker: copies and shared collaborators, never the
/// controller itself.
struct OperationContext {
    std::shared_ptr<CommandExecuting> commandRunner;
    std::shared_ptr<const SafeDeletionEngine> deletionEngine;
    /// Where the engine says how far it has come.
    std::shared_ptr<const DeletionProgress> deletionProgress;
    std::shared_ptr<const DockerExecutableLocating> dockerLocator;
    /// Returns once programs may be started, see `ApplicationHooks`; may be empty.
    std::function<void()> awaitFirstFrame;
    /// The application list as it was when the operation began.
    std::vector<AppInfo> apps;
    /// Appends to the activity log; returns at once.
    std::function<void(std::string)> log;
    /// Whether the user asked this operation to stop. False once the controller is gone.
    std::function<bool()> isCancelled;
    /// Whether the controller is gone, so that nothing more should be begun.
    std::function<bool()> isAbandoned;

    /// Whether the engine has removed anything in this operation.
    [[nodiscard]] bool hasRemoved() const {
        return deletionProgress != nullptr && deletionProgress->removedCount() > 0;
    }
};

} // namespace zentrill
