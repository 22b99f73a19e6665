#include "platform/Precondition.h"

#include <cstdio>
#include <cstdlib>

namespace zentrill {

namespace {

[[noreturn]] void fail(const char* message) noexcept {
    (void)std::fprintf(stderr, "Zentrill: %s\n", message);
    std::abort();
}

} // namespace

void precondition(bool holds, const char* message) noexcept {
    if (!holds) {
        fail(message);
    }
}

void preconditionFailure(const std::string& message) noexcept {
    fail(message.c_str());
}

} // namespace zentrill
