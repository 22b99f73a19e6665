#!/usr/bin/env python3
"""Runs one end-to-end case: run.py --bundle … --source … --pictures … --cache … --programs … --confine … CASE [test]

Ends with 0 when it passed, 1 when it failed and 77 when what it needs cannot be had here.
"""

import argparse
import importlib
import os
import pwd
import shutil
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True

SKIPPED = 77


def missing():
    """Why nothing can run here, or nothing."""
    for tool, package in {"Xvfb": "xvfb", "dbus-daemon": "dbus", "xdotool": "xdotool",
                          "import": "imagemagick", "xclip": "xclip"}.items():
        if shutil.which(tool) is None:
            return f"{tool} is not installed (package {package})"
    try:
        import gi
        gi.require_version("Atspi", "2.0")
    except (ImportError, ValueError):
        return "the accessibility library is not installed (package python3-pyatspi)"
    try:
        pwd.getpwuid(os.getuid())
    except KeyError:
        return f"user {os.getuid()} has no name, without which no message bus starts"
    sockets = "/tmp/.X11-unix"
    if os.path.exists(sockets) and not os.access(sockets, os.W_OK):
        return f"no display can be made here: {sockets} is not writable"
    from harness import cages
    return cages.obstacle()


def find_case(name):
    for path in sorted((Path(__file__).parent / "cases").glob("*.py")):
        # The others need not be compiled for this one.
        if f"\nclass {name}(" in path.read_text():
            return getattr(importlib.import_module(f"cases.{path.stem}"), name)
    sys.exit(f"There is no case {name}.")


def main():
    parser = argparse.ArgumentParser()
    for option in ("bundle", "source", "pictures", "cache", "programs"):
        parser.add_argument(f"--{option}", required=True)
    parser.add_argument("--confine", default="zentrill-confine")
    parser.add_argument("case")
    parser.add_argument("test", nargs="?")
    arguments = parser.parse_args()

    from harness import settings
    settings.configure(bundle=arguments.bundle, source=arguments.source, pictures=arguments.pictures,
                       cache=arguments.cache, programs=arguments.programs, confine=arguments.confine)
    reason = missing()
    if reason:
        print(f"SKIPPED: {reason}")
        return SKIPPED

    from harness.session import Session
    case = find_case(arguments.case)
    suite = (unittest.TestSuite([case(arguments.test)]) if arguments.test
             else unittest.defaultTestLoader.loadTestsFromTestCase(case))
    try:
        outcome = unittest.TextTestRunner(stream=sys.stdout, verbosity=2).run(suite)
    finally:
        Session.end_shared()
    for test, why in outcome.skipped:
        print(f"SKIPPED: {test.id()}: {why}")
    if not outcome.wasSuccessful() or outcome.testsRun == 0:
        return 1
    return SKIPPED if outcome.skipped else 0


sys.exit(main())
