#pragma once

#include "deletion/CredentialShield.h"
#include "deletion/DeletionConcurrency.h"

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
    /// Called from the thread of `DeletionWalk::run` alone: with it the walk takes no others.
    std::function<bool(const std::string& path)> mayRemove;
    DeletionConcurrency concurrency;
};

} // namespace zentrill
