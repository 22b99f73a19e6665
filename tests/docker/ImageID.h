#pragma once

#include <string>

namespace zentrill::test {

/// An image's whole ID.
inline std::string imageID(char digit) {
    return "sha256:" + std::string(64, digit);
}

} // namespace zentrill::test
