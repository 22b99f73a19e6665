#pragma once

#include <string>

namespace zentrill::test {

/// Makes the whole machine read-only for this process and its children, but for a fresh /tmp and /dev/shm,
/// for as long as the object lives. A test of code that deletes files runs inside, so that a fault in that
/// code costs nobody anything: a walk that climbs out of its tree as root would otherwise take the system
/// with it. Needs root.
class ReadOnlyMachine {
public:
    /// Throws when the machine cannot be protected; nothing may be deleted then.
    ReadOnlyMachine();
    ~ReadOnlyMachine();

    ReadOnlyMachine(const ReadOnlyMachine&) = delete;
    ReadOnlyMachine& operator=(const ReadOnlyMachine&) = delete;
    ReadOnlyMachine(ReadOnlyMachine&&) = delete;
    ReadOnlyMachine& operator=(ReadOnlyMachine&&) = delete;

    [[nodiscard]] static bool possible();

private:
    int outsideNamespace_ = -1;
    std::string scratch_;
};

} // namespace zentrill::test
