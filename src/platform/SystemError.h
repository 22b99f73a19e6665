#pragma once

#include <string>
#include <system_error>

namespace zentrill {

/// The system's description of an error number: "Permission denied".
[[nodiscard]] inline std::string systemDescription(int error) {
    return std::generic_category().message(error);
}

} // namespace zentrill
