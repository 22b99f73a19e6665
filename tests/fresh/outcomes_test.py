#!/usr/bin/env python3
"""Reads logs as CTest writes them."""

import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "packaging" / "fresh"))

from outcomes import outcomes_of  # pylint: disable=wrong-import-position

_PASSED = "Test Passed."
_SKIPPED = "Test Pass Reason:\nSkip regular expression found in output. Regex=[\\[  SKIPPED \\]]"
_SKIPPED_BY_STATUS = "Test Pass Reason:\nSkip return code met requirement"
_FAILED = "Test Failed."


def log(*tests):
    """The log of tests, each a name, its output and the verdict."""
    text = "Start testing: Nov 21 12:34 UTC\n" + "-" * 58 + "\n"
    for number, (name, output, verdict) in enumerate(tests, 7):
        text += (f"{number}/99 Testing: {name}\n{number}/99 Test: {name}\nCommand: \"/x/{name}\"\n"
                 f"\"{name}\" start time: Nov 21 12:34 UTC\nOutput:\n{'-' * 58}\n{output}\n<end of output>\n"
                 f"Test time =   0.00 sec\n{'-' * 58}\n{verdict}\n\"{name}\" end time: Nov 21 12:34 UTC\n{'-' * 58}\n\n")
    return text + "End testing: Nov 21 12:35 UTC\n"


class OutcomesTest(unittest.TestCase):
    def test_each_verdict_is_counted(self):
        found = outcomes_of(log(("A.passes", "[       OK ] A.passes", _PASSED), ("A.fails", "wrong", _FAILED),
                                ("A.ends", "", "Exception: SegFault"), ("e2e.Passes", "OK", _PASSED)))
        self.assertEqual(found.passed, 2)
        self.assertEqual(found.failed, ["A.fails", "A.ends"])
        self.assertEqual(str(found), "2 passed, 2 failed, 0 skipped")

    def test_reasons_are_counted(self):
        mounts = "tests/MountTest.cpp:52: Skipped\nneeds root to mount\n\n[  SKIPPED ] A (0 ms)"
        found = outcomes_of(log(("A.a", mounts, _SKIPPED), ("A.b", mounts, _SKIPPED),
                                ("e2e.C", "SKIPPED: no cage can be made here", _SKIPPED_BY_STATUS),
                                ("e2e.D", "SKIPPED: cases.d.D.test_x: no registry", _SKIPPED_BY_STATUS),
                                ("demo.e", "nothing", _SKIPPED_BY_STATUS)))
        self.assertEqual(dict(found.skipped), {"needs root to mount": 2, "no cage can be made here": 1,
                                               "no registry": 1, "no reason given": 1})

    def test_a_failure_in_which_something_was_skipped_is_a_failure(self):
        found = outcomes_of(log(("e2e.F", "SKIPPED: cases.f.F.test_y: no registry", _FAILED)))
        self.assertEqual(found.failed, ["e2e.F"])

    def test_nothing_ran(self):
        self.assertEqual(str(outcomes_of("Start testing: now\n")), "0 passed, 0 failed, 0 skipped")


unittest.main()
