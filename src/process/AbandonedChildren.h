#pragma once

#include <sys/types.h>

/// Children that even SIGKILL did not end in time, because the kernel holds them in a call that cannot be
/// interrupted. They are reaped whenever they get free, so that none stays as a zombie.
namespace zentrill::abandoned_children {

/// Remembers a killed child that nobody else will reap.
void add(pid_t pid);

/// Reaps those that have ended meanwhile; never waits.
void reapEnded();

} // namespace zentrill::abandoned_children
