#pragma once

#include <string>
#include <vector>

namespace zentrill::confinement {

/// Gives this process mounts that it can change and nobody else sees: as root, or through a user namespace in
/// which the user keeps its own id, but has every right. The latter takes a process of one thread. Throws
/// `std::system_error` or `std::runtime_error`.
void takePrivateMounts();

/// The same, with everything but the `writable` folders read-only; what is mounted below one of these stays
/// read-only, too. /proc stays as it is, and for root the control groups do. An ordinary user has no more
/// rights than before. Some of it may be done when it throws.
void enterNamespaces(const std::vector<std::string>& writable);

} // namespace zentrill::confinement
