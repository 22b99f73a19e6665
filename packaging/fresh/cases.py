"""The cases: which command is the first one on which machine."""

import os
import re
import subprocess
import time
from dataclasses import dataclass, field

from engine import EngineError
from images import ARCHIVES, BARE, PREPARED, USER
from machine import environment
from outcomes import outcomes_of

_CHECKOUT = "/checkout.tar"
# The processor time tells more than the seconds, which depend on what else the machine does.
_FIRST_COMMAND = f"""
mkdir ~/zentrill && cd ~/zentrill && tar --extract --file {_CHECKOUT} --no-same-owner || exit 99
"$@"
status=$?
echo "processor time:" && times
exit $status
"""
_HOUR = 3600
_PICTURE_OF_PACKAGE = "/tmp/Zentrill.png"
# Those that a command leaves to be looked at; the icon is drawn in many sizes.
_PICTURE = re.compile(r"^[AC] (/\S*/zentrill/build/(?!\S*/(?:packaging|_CPack_Packages)/)\S+\.png)$", re.MULTILINE)
# The shell's own time, then that of what it called.
_PROCESSOR_TIME = re.compile(r"^processor time:\n.*\n(\d+)m([\d.]+)s (\d+)m([\d.]+)s$", re.MULTILINE)

#: What an ordinary desktop allows everybody: namespaces. A container's default is to forbid them.
_DESKTOP = ["--security-opt", "seccomp=unconfined", "--security-opt", "apparmor=unconfined", "--security-opt",
            "systempaths=unconfined"]


@dataclass(frozen=True)
class Case:
    name: str
    command: str
    image: str
    user: str = "root"
    options: tuple = ()
    #: At least this many pictures are left by the command.
    pictures: int = 0
    #: What the command makes is tried by this script of the folder in a second container, bare like the first.
    then: str = ""

    @property
    def checkout(self):
        """Where the command finds its checkout."""
        return f"{'/root' if self.user == 'root' else f'/home/{self.user}'}/zentrill"


@dataclass
class Verdict:
    passed: bool
    seconds: float
    #: What to say behind it, and below it.
    remark: str = ""
    details: list = field(default_factory=list)


def _cases():
    for command, pictures in (("run", 1), ("test", 0), ("demo", 6)):
        yield Case(f"root-{command}", command, BARE, pictures=pictures)
        yield Case(f"user-{command}", command, PREPARED, user=USER, pictures=pictures)
        yield Case(f"desktop-{command}", command, PREPARED, user=USER, options=tuple(_DESKTOP), pictures=pictures)
    yield Case("deb", "package", BARE, then="deb-installed.sh")


CASES = {case.name: case for case in _cases()}


def attempt(case, engine, images, checkout, results):
    """Runs the case; its log and its pictures go to the folder `results`."""
    images.make(case.image)
    volumes = [f"{checkout}:{_CHECKOUT}:ro", f"{images.archives}:{ARCHIVES}"]
    begin = time.monotonic()
    status = _run(case, engine, case.name, volumes, results / "log", "./dev", case.command)
    seconds = time.monotonic() - begin
    try:
        verdict = _judge(case, engine, results, status, seconds)
        engine.write_log(case.name, results / "log")
        if case.then and verdict.passed:
            engine.docker("cp", f"{case.name}:{case.checkout}/build/packages/.", str(results / "packages"))
            _try_packages(case, engine, volumes, results, verdict)
        return verdict
    finally:
        engine.docker("rm", "--force", case.name)


def _run(case, engine, name, volumes, log_path, *command):
    """Has a container of that name do this in a fresh checkout first; the status, or nothing when time ran out."""
    options = ["--name", name, "--user", case.user, *case.options]
    for volume in volumes:
        options += ["--volume", volume]
    for variable, value in environment().items():
        options += ["--env", f"{variable}={value}"]
    with log_path.open("wb") as log:
        return engine.run(log, *options, case.image, "/bin/sh", "-c", _FIRST_COMMAND, "sh", *command, timeout=_HOUR)


def _try_packages(case, engine, volumes, results, verdict):
    name = f"{case.name}-then"
    package = next((results / "packages").glob("*.deb"))
    try:
        status = _run(case, engine, name, [*volumes, f"{package}:/packages/{package.name}:ro"], results / "log-then",
                      f"packaging/fresh/{case.then}", f"/packages/{package.name}", _PICTURE_OF_PACKAGE)
        text = (results / "log-then").read_text(errors="replace")
        verdict.details += re.findall(r"^deb: (.*)$", text, re.MULTILINE)
        if status != 0:
            verdict.passed = False
            verdict.details += text.splitlines()[-5:]
        else:
            engine.docker("cp", f"{name}:{_PICTURE_OF_PACKAGE}", str(results))
    finally:
        engine.docker("rm", "--force", name)


def _judge(case, engine, results, status, seconds):
    text = (results / "log").read_text(errors="replace")
    verdict = Verdict(status == 0, seconds)
    remarks = []
    if status != 0:
        remarks.append("did not end within an hour" if status is None else f"status {status}")
        verdict.details += text.splitlines()[-5:]
    if case.command == "test" and _fetch(engine, case, "build/release/Testing/Temporary/LastTest.log", results):
        outcomes = outcomes_of((results / "LastTest.log").read_text(errors="replace"))
        remarks.append(str(outcomes))
        verdict.details += [f"failed: {name}" for name in outcomes.failed]
        verdict.details += [f"{count:4} skipped: {why}" for why, count in outcomes.skipped.most_common()]
    taken = _fetch_pictures(engine, case, results)
    if case.pictures or taken:
        remarks.append(f"{taken} picture{'' if taken == 1 else 's'}")
    if taken < case.pictures:
        verdict.passed = False
    if used := _PROCESSOR_TIME.search(text):
        minutes, seconds, system_minutes, system_seconds = map(float, used.groups())
        remarks.append(f"{(minutes + system_minutes) * 60 + seconds + system_seconds:.0f} s of processor time")
    verdict.remark = ", ".join(remarks)
    return verdict


def _fetch_pictures(engine, case, results):
    # Not those that CMake and CTest bring along, and each folder's only once.
    return sum(_fetch(engine, case, os.path.relpath(path, case.checkout), results)
               for path in _PICTURE.findall(engine.docker("diff", case.name)))


def _fetch(engine, case, path, results):
    try:
        engine.docker("cp", f"{case.name}:{case.checkout}/{path}", str(results / os.path.basename(path)))
        return True
    except EngineError:
        return False


def archive_checkout(folder, target):
    """What a fresh clone would hold, and what has been changed and added since."""
    names = subprocess.run(["git", "-c", f"safe.directory={folder}", "-C", str(folder), "ls-files", "-z", "--cached",
                            "--others", "--exclude-standard"], stdout=subprocess.PIPE, check=True).stdout
    there = b"\0".join(name for name in names.split(b"\0") if name and os.path.lexists(os.path.join(os.fsencode(folder), name)))
    subprocess.run(["tar", "--create", "--file", str(target), "--directory", str(folder), "--null", "--verbatim-files-from",
                    "--files-from", "-"], input=there, check=True)
