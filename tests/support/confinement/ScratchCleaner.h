#pragma once

#include "support/confinement/Scratch.h"

#include <functional>

namespace zentrill::confinement {

/// Starts a process that removes the scratch when the last process that holds the returned descriptor has
/// ended, in whatever way. It is no child of this one and holds no descriptor of it. What it finds in the
/// folders it removes in a process of its own, after `confine` has kept that one to these folders; itself it
/// removes but the folders, which are empty then, and the canary.
///
/// The descriptor is closed in programs that this process starts. Throws `std::system_error`.
[[nodiscard]] int startScratchCleaner(const Scratch& scratch, const std::function<void()>& confine);

} // namespace zentrill::confinement
