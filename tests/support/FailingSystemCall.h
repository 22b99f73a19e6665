#pragma once

namespace zentrill::test {

/// From here on the kernel answers every call of that number (`SYS_…`) of this process, for good, with the
/// error. False where it lets nobody ask for that. Only for a child of the test's own.
[[nodiscard]] bool makeSystemCallFail(int number, int error);

} // namespace zentrill::test
