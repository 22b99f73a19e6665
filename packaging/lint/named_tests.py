#!/usr/bin/env python3
"""Sees that every unit has a test of its name, or says which tests stand for it: named_tests.py [CHECKOUT]

A unit is a header below src/ with a source file of its name next to it. The tests of its name are a file below tests/ or
a suite in one. The others stand in a table of CONTRIBUTING.md, each in backticks in the first column. Prints a line for
each unit without either, and for each name of the table that is no unit, and ends with 1 when there is any.
"""

import re
import sys
from pathlib import Path

_ROW = re.compile(r"^\| (`.*?) \|", re.MULTILINE)
_SUITE = re.compile(r"^(?:TEST|TEST_F|TEST_P|TYPED_TEST)\(\s*(\w+?)(?:Test)?,", re.MULTILINE)


def units_of(checkout):
    """The names of the units, each with its file."""
    return {source.stem: source.relative_to(checkout) for source in sorted((checkout / "src").rglob("*"))
            if source.suffix in (".cpp", ".mm") and source.with_suffix(".h").exists()}


def tested_names(checkout):
    """What the files and the suites of tests are called, without "Test" at the end."""
    names = set()
    for file in (checkout / "tests").rglob("*.cpp"):
        names.add(file.stem.removesuffix("Test"))
        names.update(_SUITE.findall(file.read_text()))
    return names


def complaints(checkout):
    units = units_of(checkout)
    listed = {name for row in _ROW.findall((checkout / "CONTRIBUTING.md").read_text())
              for name in re.findall(r"`(\w+)`", row)}
    headers = {header.stem for header in (checkout / "src").rglob("*.h")}
    tested = tested_names(checkout)
    return ([f"{file}: no test has its name, and CONTRIBUTING.md does not say what stands for it"
             for name, file in units.items() if name not in tested | listed] +
            [f"CONTRIBUTING.md: {name} is no unit" for name in sorted(listed - headers)])


def main(arguments):
    told = complaints(Path(arguments[0] if arguments else "."))
    for line in told:
        print(line)
    return 1 if told else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
