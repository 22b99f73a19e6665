#!/usr/bin/env python3
"""Puts small faults into the sources, one at a time, and sees whether the tests notice: run.py [--check] [NAME ...]

The lists next to this file hold them, one list for each folder of the sources; a name is a list's, or that of a single
fault ("models/7"). Prints a line for each fault. Ends with 0 when every fault was noticed but those of which the list
says why they change nothing; where there can be no container, nothing is tried. With --check it only sees that every
fault fits the sources.
"""

import os
import signal
import sys
import time
from collections import Counter
from pathlib import Path

sys.dont_write_bytecode = True

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "fresh"))

# pylint: disable=wrong-import-position
from engine import EngineError, PrivateEngine, obstacle
from faults import ListError, read_lists
from images import Images, packages
from workshop import Workshop, WorkshopError

CHECKOUT = HERE.parents[1]
RESULTS = CHECKOUT / "build" / "mutants"
#: The images' packages are the same as for the bare machines.
CACHE = CHECKOUT / "build" / "fresh" / "cache"


def tell(word, name, remark, details=()):
    print(f"{word:9}{name:15}{remark}".rstrip(), flush=True)
    for line in details:
        print(f"         {line}", flush=True)


def try_all(faults):
    """How many faults of each folder had which fate."""
    fates = {fault.folder: Counter() for fault in faults}
    # As they are now, whatever somebody writes meanwhile.
    contents = {fault.file: (CHECKOUT / fault.file).read_text() for fault in faults}
    CACHE.mkdir(parents=True, exist_ok=True)
    with PrivateEngine(RESULTS) as engine:
        workshop = Workshop(engine, RESULTS)
        workshop.open(Images(engine, CACHE, packages(CHECKOUT)), CHECKOUT)
        for fault in faults:
            for tests in fault.tests:
                if told := workshop.prepare(tests):
                    tell("ready", tests, told)
            fates[fault.folder][try_one(workshop, fault, contents[fault.file])] += 1
    return fates


def try_one(workshop, fault, content):
    where = f"{fault.file}:{fault.line(content)}"
    begin = time.monotonic()
    try:
        noticed = workshop.try_fault(fault, content)
    except WorkshopError as error:
        tell("BROKEN", fault.name, f"{where}: {error}")
        return "broken"
    seconds = f"{time.monotonic() - begin:4.0f} s"
    if noticed:
        tell("noticed", fault.name, f"{seconds}  {where}: {noticed}")
        if fault.changes_nothing:
            tell("", "", f"although it is said to change nothing: {fault.changes_nothing}")
        return "noticed"
    if fault.changes_nothing:
        tell("accepted", fault.name, f"{seconds}  {where}: {fault.changes_nothing}")
        return "accepted"
    tell("SURVIVED", fault.name, f"{seconds}  {where}", [*(f"- {line}" for line in fault.text.splitlines()),
                                                       *(f"+ {line}" for line in fault.replacement.splitlines())])
    return "survived"


def tell_totals(fates):
    """Whether nothing survived."""
    total = Counter()
    for folder, counts in fates.items():
        total += counts
        tell("in all", folder, _sum(counts))
    if len(fates) > 1:
        tell("in all", "", _sum(total))
    return total["survived"] + total["broken"] == 0


def _sum(counts):
    return (f"{counts.total()} faults, {counts['noticed']} noticed ({counts['noticed'] / counts.total():.0%}), "
            f"{counts['accepted']} accepted, {counts['survived']} survived, {counts['broken']} broken")


def give_back():
    """What root has written belongs to whoever called for root."""
    if owner := os.environ.get("SUDO_UID"):
        for results in (RESULTS, CACHE):
            for folder, _, names in os.walk(results):
                for path in (folder, *(os.path.join(folder, name) for name in names)):
                    os.lchown(path, int(owner), int(os.environ.get("SUDO_GID", "-1")))


def main():
    names = [name for name in sys.argv[1:] if name != "--check"]
    try:
        faults = read_lists(HERE, CHECKOUT, names)
    except ListError as error:
        print(error, file=sys.stderr)
        return 2
    if len(names) < len(sys.argv) - 1:
        print(f"{len(faults)} faults fit the sources")
        return 0
    if reason := obstacle():
        tell("skipped", " ".join(names), reason)
        return 0
    # So that everything is put away in these cases as well.
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda number, _: sys.exit(128 + number))
    try:
        return 0 if tell_totals(try_all(faults)) else 1
    except (EngineError, WorkshopError, RuntimeError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    finally:
        give_back()


try:
    status = main()
except KeyboardInterrupt:
    status = 130
sys.exit(status)
