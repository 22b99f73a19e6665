#!/usr/bin/env python3
"""Tries the project's commands on bare Debian 12 machines: run.py [CASE ...]

Each case is a default container in which one command is the first thing that happens to a fresh checkout. Prints a
line for each. Ends with 0 when none failed; what cannot be had here is skipped.
"""

import os
import shutil
import signal
import sys
import time
from pathlib import Path

sys.dont_write_bytecode = True

from cases import CASES, Verdict, archive_checkout, attempt
from engine import EngineError, PrivateEngine, obstacle
from images import Images, packages

CHECKOUT = Path(__file__).resolve().parents[2]
RESULTS = CHECKOUT / "build" / "fresh"
CACHE = RESULTS / "cache"


def tell(word, name, seconds, remark, details=()):
    print(f"{word:8}{name:14}{seconds:6.0f} s  {remark}".rstrip(), flush=True)
    for line in details:
        print(f"          {line}", flush=True)


def try_all(names):
    failed = False
    CACHE.mkdir(parents=True, exist_ok=True)
    with PrivateEngine(RESULTS) as engine:
        images = Images(engine, CACHE, packages(CHECKOUT))
        for name in names:
            results = RESULTS / name
            shutil.rmtree(results, ignore_errors=True)
            results.mkdir()
            checkout = results / "checkout.tar"
            archive_checkout(CHECKOUT, checkout)
            begin = time.monotonic()
            try:
                verdict = attempt(CASES[name], engine, images, checkout, results)
            except (EngineError, RuntimeError, OSError) as error:
                verdict = Verdict(False, time.monotonic() - begin, str(error))
            checkout.unlink()
            failed = failed or not verdict.passed
            tell("passed" if verdict.passed else "FAILED", name, verdict.seconds, verdict.remark, verdict.details)
    return failed


def give_back():
    """What root has written belongs to whoever called for root."""
    if owner := os.environ.get("SUDO_UID"):
        for folder, _, names in os.walk(RESULTS):
            for path in (folder, *(os.path.join(folder, name) for name in names)):
                os.lchown(path, int(owner), int(os.environ.get("SUDO_GID", "-1")))


def main():
    names = sys.argv[1:] or list(CASES)
    for name in names:
        if name not in CASES:
            print(f"There is no case {name}. There are: {' '.join(CASES)}", file=sys.stderr)
            return 2
    if reason := obstacle():
        for name in names:
            tell("skipped", name, 0, reason)
        return 0
    # So that everything is put away in these cases as well.
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda number, _: sys.exit(128 + number))
    try:
        failed = try_all(names)
    except EngineError as error:
        for name in names:
            tell("skipped", name, 0, str(error))
        return 0
    finally:
        give_back()
    print(f"Logs and pictures: {RESULTS}/CASE")
    return 1 if failed else 0


try:
    status = main()
except KeyboardInterrupt:
    status = 130
sys.exit(status)
