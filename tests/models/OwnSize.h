#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include <sys/stat.h>

namespace zentrill::test {

/// The bytes of what stands at the path itself: of a folder or link without what it leads to.
inline std::int64_t ownSize(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status.st_size;
}

} // namespace zentrill::test
