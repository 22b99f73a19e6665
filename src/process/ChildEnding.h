#pragma once

#include "process/ChildEndNotice.h"
#include "process/ChildProcess.h"
#include "process/OutputPump.h"

/// The ways to end a child that goes on for too long. The pump keeps reading meanwhile, so that nobody who is
/// asked politely is stuck in a full pipe.
namespace zentrill::child_ending {

/// Ends the child and its group: SIGTERM, SIGKILL a little later, then up to a second for the child to end.
void endGroup(ChildProcess& child, OutputPump& pump);

/// Ends a child that has no group of its own: SIGTERM, and SIGKILL if it still runs half a second later.
void endAlone(ChildProcess& child, OutputPump& pump);

/// Kills the child and its group without a grace period.
void endAtOnce(ChildProcess& child, const ChildEndNotice& childEnd);

} // namespace zentrill::child_ending
