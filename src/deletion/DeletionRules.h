#pragma once

#include "deletion/CredentialShield.h"
#include "deletion/DeletionConcurrency.h"
#include "deletion/DeletionDomain.h"
#include "deletion/DeletionProgress.h"

#include <functional>
#include <string>

namespace zentrill {

/// What one deletion keeps, and how it goes about its work.
struct DeletionRules {
    /// Keeps what it protects, and makes the walk list every removal; null removes everything.
    const CredentialShield* shield = nullptr;
    /// With a shield: keeps everything that is no directory.
    bool preserveUnrecognized = false;
    /// When set, an item that it refuses stays unmentioned, with its contents and the folders above it.
    /// Called on the thread that calls `DeletionWalk::run`, which no domain holds: with it the walk takes no
    /// others but the one.
    std::function<bool(const std::string& path)> mayRemove;
    DeletionConcurrency concurrency;
    DeletionDomain domain;
    /// Told how far the deletion has come, unless null.
    DeletionProgress* progress = nullptr;
};

} // namespace zentrill
