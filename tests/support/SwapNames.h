#pragma once

#include <string>

namespace zentrill::test {

/// Makes what stands at the two paths change places in one step; false, with `errno`, where that cannot be
/// done.
bool swapNames(const std::string& one, const std::string& other);

} // namespace zentrill::test
