"""Where faults are put in and tried: a checkout in a default container without a network."""

import re
import time

from cases import archive_checkout
from images import PREPARED
from outcomes import outcomes_of

_NAME = "mutants"
# A first process that reaps what nobody else does.
_IDLE = ("sh", "-c", "sleep infinity & wait")
_CHECKOUT = "/root/zentrill"
_LOG = "build/release/Testing/Temporary/LastTest.log"
_COSTS = "build/release/Testing/Temporary/CTestCostData.txt"
_FAILED = re.compile(r"^ *\d+/\d+ Test +#\d+: (.*?) \.*(?:[A-Z][a-z ]+)?\**\*\*\*(Failed|Timeout|Exception)", re.MULTILINE)
_BUILD_LIMIT = 1800
# A fault may have a test collect things for as long as it is let.
_MEMORY = "4g"
#: Seconds that a test may take to be run before the others.
_QUICK = 0.5
#: How much longer than without a fault the tests may take.
_PATIENCE = 5


class WorkshopError(Exception):
    """Why nothing can be tried."""


class Workshop:
    """The tests confine themselves in there as everywhere else, so a fault in what removes files meets two walls."""

    def __init__(self, engine, results):
        self._engine = engine
        self._results = results
        self._limits = {}
        self._slow = {}

    def open(self, images, checkout):
        archive = self._results / "checkout.tar"
        archive_checkout(checkout, archive)
        images.make(PREPARED)
        self._engine.docker("run", "--detach", "--name", _NAME, "--network", "none", "--memory", _MEMORY,
                            "--workdir", _CHECKOUT, "--volume", f"{archive}:/checkout.tar:ro", PREPARED, *_IDLE)
        self._must("tar", "--extract", "--file", "/checkout.tar", "--no-same-owner")
        self._must("cmake", "--preset", "release", "-DZENTRILL_BUILD_TESTS=ON")

    def prepare(self, tests):
        """Builds the tests and runs them without a fault; what came of them. Once for each folder of tests."""
        if tests in self._limits:
            return None
        if not self._build([tests]):
            raise WorkshopError(f"the tests in tests/{tests} cannot be built: see {self._results}/build.log")
        begin = time.monotonic()
        status, output = self._run(_BUILD_LIMIT, *_ctest(tests))
        seconds = time.monotonic() - begin
        found = outcomes_of(self._read(_LOG))
        if status != 0 or found.passed == 0:
            raise WorkshopError(f"the tests in tests/{tests} do not pass without a fault: {found}\n{output[-2000:]}")
        self._limits[tests] = 60 + _PATIENCE * seconds
        self._slow[tests] = slow_tests(self._read(_COSTS), _names(self._must(*_ctest(tests), "--show-only")))
        return f"{found} in {seconds:.0f} s"

    def try_fault(self, fault, content):
        """The test that noticed it, or nothing; `content` is the file's without the fault."""
        self._write(fault.file, fault.apply(content))
        try:
            if not self._build(fault.tests):
                raise WorkshopError(f"{fault.name} cannot be built: see {self._results}/build.log")
            for tests in fault.tests:
                if noticed := self._noticed(tests):
                    return noticed
            return None
        finally:
            self._write(fault.file, content)

    def _noticed(self, tests):
        slow = self._slow[tests]
        parts = [("--exclude-regex", slow), ("--tests-regex", slow)] if slow else [()]
        for part in parts:
            status, output = self._run(self._limits[tests], *_ctest(tests), "--stop-on-failure", *part)
            if status is None:
                # What hangs goes with the container's processes.
                self._engine.docker("restart", "--time", "0", _NAME)
                return "all of them, which took too long"
            if status != 0:
                return first_failure(output) or output[-200:]
        return None

    def _build(self, tests):
        status, output = self._run(_BUILD_LIMIT, "cmake", "--build", "--preset", "release", "--target",
                                   *(f"tests-{folder}" for folder in tests))
        (self._results / "build.log").write_text(output)
        return status == 0

    def _must(self, *command):
        return self._engine.docker("exec", _NAME, *command)

    def _read(self, path):
        return self._must("cat", path)

    def _write(self, path, content):
        self._engine.docker("exec", "--interactive", _NAME, "sh", "-c", 'cat > "$1"', "sh", path, input=content.encode())

    def _run(self, limit, *command):
        """The status and the output; no status when time ran out."""
        path = self._results / "output.log"
        with path.open("wb") as log:
            status = self._engine.execute(log, _NAME, *command, timeout=limit)
        return status, path.read_text(errors="replace")


def first_failure(output):
    """What CTest's output calls the first test that failed, or nothing."""
    failed = _FAILED.search(output)
    return f"{failed[1]}{' (time-out)' if failed[2] == 'Timeout' else ''}" if failed else None


def slow_tests(costs, names):
    """A regular expression for those of the tests that take long, from CTest's own table of names, runs and seconds;
    empty when there are none."""
    slow = []
    for line in costs.split("\n---", 1)[0].splitlines():
        name, _, seconds = line.rsplit(" ", 2)
        if name in names and float(seconds) > _QUICK:
            slow.append(name)
    return f"^({'|'.join(re.escape(name) for name in slow)})$" if slow else ""


def _ctest(tests):
    return ("ctest", "--preset", "release", "--label-regex", f"^{tests}$")


def _names(listing):
    return set(re.findall(r"^ *Test +#\d+: (.*)$", listing, re.MULTILINE))
