"""The machines that the commands are tried on: bare, and with an ordinary user and the packages present."""

import io
import os
import shutil
import subprocess
import tarfile
import tempfile
from pathlib import Path

import machine

BARE = "bare"
PREPARED = "prepared"
USER = "sam"
#: Where a container keeps what it has fetched from Debian's archive.
ARCHIVES = "/var/cache/apt/archives"
_PREPARE = f"""
set -e
useradd --create-home --shell /bin/bash {USER}
apt-get update -qq
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "$@"
"""

#: All that the README's commands need.
_GROUPS = ("build", "test-build", "test", "demo", "display")


def packages(checkout):
    """The names of the packages that a prepared machine has."""
    found = set()
    for group in _GROUPS:
        found.update((checkout / "packaging" / "packages" / f"{group}.txt").read_text().split())
    return sorted(found)


class Images:
    """Makes the images of one engine. What takes time to fetch is kept in the cache folder."""

    def __init__(self, engine, cache, packages):
        self._engine = engine
        self._cache = cache
        self._packages = packages
        self._made = set()
        self.archives = cache / "archives"
        (self.archives / "partial").mkdir(parents=True, exist_ok=True)

    def make(self, name):
        """Makes the image, unless this engine has it; the path of a log tells why it could not be made."""
        if name in self._made:
            return
        if name == BARE:
            self._make_bare()
        else:
            self.make(BARE)
            self._make_prepared()
        self._made.add(name)

    def _make_bare(self):
        root = self._cache / f"{machine.RELEASE}.tar"
        if not root.exists():
            _bootstrap(root)
        with root.open("rb") as archive:
            self._engine.docker("import", "-", "root", stdin=archive)
        container = self._engine.docker("create", "root", "/bin/true")
        self._engine.docker("cp", "-", f"{container}:/", input=_archive_of(machine.files()))
        self._engine.docker("commit", "--change", 'CMD ["/bin/bash"]', container, BARE)

    def _make_prepared(self):
        log_path = self._cache / "prepare.log"
        with log_path.open("wb") as log:
            status = self._engine.run(log, "--name", PREPARED, "--volume", f"{self.archives}:{ARCHIVES}", BARE, "/bin/sh",
                                      "-c", _PREPARE, "sh", *self._packages, timeout=1800)
        if status != 0:
            raise RuntimeError(f"the packages cannot be installed: see {log_path}")
        self._engine.docker("commit", PREPARED, PREPARED)
        self._engine.docker("rm", PREPARED)


def _bootstrap(target):
    """A root that holds the packages that every Debian has, and no more."""
    folder = Path(tempfile.mkdtemp(prefix="root-", dir=target.parent))
    try:
        # It mounts; in a namespace of its own nothing of that is left when it is interrupted.
        subprocess.run(["unshare", "--mount", "--pid", "--fork", "--kill-child", "debootstrap", "--variant=minbase",
                        machine.RELEASE, str(folder), machine.sources()[machine.RELEASE]],
                       stdout=subprocess.DEVNULL, check=True)
        unfinished = target.with_suffix(".new")
        subprocess.run(["tar", "--create", "--file", str(unfinished), "--directory", str(folder), "--numeric-owner",
                        "--exclude=./var/cache/apt/*", "--exclude=./var/lib/apt/lists/*", "--exclude=./dev/*", "."],
                       check=True)
        os.rename(unfinished, target)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def _archive_of(files):
    stream = io.BytesIO()
    with tarfile.open(fileobj=stream, mode="w") as archive:
        for path, content in files.items():
            entry = tarfile.TarInfo(path)
            entry.size = len(content)
            entry.mode = 0o644
            archive.addfile(entry, io.BytesIO(content))
    return stream.getvalue()
