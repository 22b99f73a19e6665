#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace zentrill {

/// The logical size in bytes of what symbolic links at any depth in the folder at `path` lead to outside it:
/// each file once, folders with everything in them. 0 for a file. `shouldStop`, if there is one, is asked
/// before each entry; after its first "yes" the sum is incomplete.
[[nodiscard]] std::int64_t bytesLinkedElsewhere(const std::string& path,
                                                const std::function<bool()>& shouldStop = {});

} // namespace zentrill
