#pragma once

namespace zentrill {

/// Ends the program with "Zentrill: " and `message` on standard error unless `holds`. For mistakes of the
/// program itself, never for what a user, a file or another program can cause.
void precondition(bool holds, const char* message) noexcept;

} // namespace zentrill
