#pragma once

#include <string>

namespace zentrill::test {

/// A folder in memory where there is one, in which a test with very many files is quick; otherwise the one
/// for temporary files.
[[nodiscard]] std::string memoryFolder();

} // namespace zentrill::test
