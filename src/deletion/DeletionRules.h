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
    /// If set, an item that it refuses stays without being reported, and so do its contents and the folders
    /// above it. It is called on the thread that calls `DeletionWalk::run`, which is never restricted. With
    /// it the walk uses no further threads but the held one.
    std::function<bool(const std::string& path)> mayRemove;
    DeletionConcurrency concurrency;
    DeletionDomain domain;
    /// Where the deletion says how far it has come; may be null.
    DeletionProgress* progress = nullptr;
};

} // namespace zentrill
