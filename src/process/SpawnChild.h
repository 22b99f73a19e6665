#pragma once

#include "process/ChildProcess.h"
#include "process/Environment.h"

#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace zentrill {

/// Either a child or the reason why there is none.
struct SpawnedChild {
    std::optional<ChildProcess> child;
    std::error_code error;
};

/// Starts the program at `executable` as the leader of a new process group. It gets its own name as argument
/// zero, `arguments`, exactly `environment`, the null device as standard input and the two descriptors as
/// standard output and standard error. It inherits no other descriptor, and no signal is ignored or blocked.
/// A file that the system cannot run is never handed to a shell. Both descriptors must be above standard
/// error.
[[nodiscard]] SpawnedChild spawnChild(const std::string& executable,
                                      const std::vector<std::string>& arguments,
                                      const Environment& environment, int output, int errorOutput);

} // namespace zentrill
