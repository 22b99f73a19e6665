#pragma once

#include <string>

namespace zentrill {

/// Ends the program with "Zentrill: " and `message` on standard error unless `holds`. For mistakes of the
/// program itself, never for what a user, a file or another program can cause.
void precondition(bool holds, const char* message) noexcept;

/// The same where it is known not to hold, and the message has to be put together.
[[noreturn]] void preconditionFailure(const std::string& message) noexcept;

} // namespace zentrill
