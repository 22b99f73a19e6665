"""What CTest's log of a run tells: how many tests passed, failed and were skipped, and why."""

import re
from collections import Counter
from dataclasses import dataclass, field

_BEGIN = re.compile(r"^\d+/\d+ Testing: (.*)$", re.MULTILINE)
# GoogleTest, and the scripts that end with CTest's status for it.
_REASON = re.compile(r"^(?:.*: Skipped\n(.+)|SKIPPED: (?:[\w.]+: )?(.+)|skipped: (.+))$", re.MULTILINE)
_NO_REASON = "no reason given"


@dataclass
class Outcomes:
    passed: int = 0
    failed: list = field(default_factory=list)
    #: Reason → number of tests.
    skipped: Counter = field(default_factory=Counter)

    def __str__(self):
        return f"{self.passed} passed, {len(self.failed)} failed, {self.skipped.total()} skipped"


def outcomes_of(log):
    """From the text of LastTest.log."""
    result = Outcomes()
    begins = list(_BEGIN.finditer(log))
    for begin, end in zip(begins, [*(found.start() for found in begins[1:]), len(log)]):
        text = log[begin.end():end]
        if re.search(r"^Test Passed\.$", text, re.MULTILINE):
            result.passed += 1
        elif re.search(r"^Test Pass Reason:\nSkip", text, re.MULTILINE):
            reason = _REASON.search(text)
            result.skipped[next(filter(None, reason.groups())) if reason else _NO_REASON] += 1
        else:
            result.failed.append(begin.group(1))
    return result
