#pragma once

#include <string>
#include <vector>

namespace zentrill::confinement {

/// Gives this process mounts of its own in which everything but the `writable` folders is read-only; what is
/// mounted below one of these stays read-only, too. /proc stays as it is, and for root the control groups do.
/// Without the right to do so it goes through a user namespace, in which the user keeps its own id and is
/// left no right that it did not have; that takes a process of one thread. Throws `std::system_error` or
/// `std::runtime_error`; some of it may be done then.
void enterNamespaces(const std::vector<std::string>& writable);

} // namespace zentrill::confinement
