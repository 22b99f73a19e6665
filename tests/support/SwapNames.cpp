#include "support/SwapNames.h"

#include <cstdio>

#include <fcntl.h>

namespace zentrill::test {

bool swapNames(const std::string& one, const std::string& other) {
#ifdef __APPLE__
    return ::renamex_np(one.c_str(), other.c_str(), RENAME_SWAP) == 0;
#else
    return ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0;
#endif
}

} // namespace zentrill::test
