"""Waiting for a condition, never for a time."""

import time

# Longer than anything takes, under a sanitizer on a busy machine as well; reaching it is a failure.
DEADLINE = 60.0
INTERVAL = 0.02


class Overdue(AssertionError):
    """What was waited for did not come."""


def wait_for(condition, what, seconds=DEADLINE):
    """The first truthy value of `condition()`, or Overdue."""
    end = time.monotonic() + seconds
    while True:
        begin = time.monotonic()
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Overdue(f"not within {seconds:g} s: {what}")
        # At most half of the time is spent with looking: the rest is for what is waited for.
        time.sleep(max(INTERVAL, time.monotonic() - begin))
