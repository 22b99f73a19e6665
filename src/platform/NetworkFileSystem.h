#pragma once

#include <cstdint>
#include <string>

namespace zentrill {

/// Whether what is at `path`, links followed, comes over a network, or through a program that may fetch it
/// from one (FUSE), so that looking at many files can take long. False if that is not known.
[[nodiscard]] bool isOnNetwork(const std::string& path);

/// The same of a type of file system, as Linux numbers them (`f_type` of statfs).
[[nodiscard]] bool isNetworkFileSystem(std::uint32_t type) noexcept;

} // namespace zentrill
