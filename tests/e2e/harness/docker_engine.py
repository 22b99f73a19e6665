"""A real Docker Engine of the case's own."""

import io
import os
import re
import shutil
import signal
import subprocess
import tarfile
import tempfile
from pathlib import Path

from . import processes
from .waiting import wait_for

DAEMON = "/usr/sbin/dockerd"
CLIENT = "/usr/bin/docker"
SHELL = "/bin/busybox"
_GROUPS = Path("/sys/fs/cgroup")
# In the cage.
SOCKET_FOLDER = "/run/engine"
HOST = f"unix://{SOCKET_FOLDER}/docker.sock"

# The engine keeps a few files in /run and /etc wherever its data is; here they go to layers that vanish with it.
_START = """
set -e
mount -t tmpfs tmpfs /run
mkdir /run/etc-changes /run/etc-work
mount -t overlay overlay -o lowerdir=/etc,upperdir=/run/etc-changes,workdir=/run/etc-work /etc
exec dockerd --debug --config-file="$1/daemon.json" --host="unix://$1/socket/docker.sock" \
    --data-root="$1/data" --exec-root="$1/exec" --pidfile="$1/docker.pid" \
    --storage-driver=vfs --exec-opt native.cgroupdriver=cgroupfs --cgroup-parent="/${1##*/}" \
    --bridge=none --userland-proxy=false \
    --iptables=false --ip6tables=false --ip-forward=false --ip-masq=false
"""
# What `_START` and the engine's containers need beside the programs.
_MOUNTS = """
set -e
test -w /sys/fs/cgroup || { echo "the control groups are read-only" >&2; exit 1; }
mount -t tmpfs tmpfs /run
mkdir /run/changes /run/work
mount -t overlay overlay -o lowerdir=/etc,upperdir=/run/changes,workdir=/run/work /etc
"""
_IN_NAMESPACES = ("unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "/bin/sh", "-c")
_REQUEST = re.compile(r'msg="Calling (GET|HEAD|POST|DELETE) /v[0-9.]+(/\S*)"')
# Ends when it is told to, unless it is made to be stubborn.
_LOOP = f"{SHELL} echo ready; while :; do {SHELL} sleep 0.05; done"


def obstacle():
    """Why no engine can run here, or nothing."""
    if os.geteuid() != 0:
        return "a Docker Engine runs only as root"
    absent = [path for path in (DAEMON, CLIENT, SHELL) if not os.access(path, os.X_OK)]
    if absent:
        return f"{absent[0]} is missing (packages docker.io and busybox-static)"
    tried = subprocess.run([*_IN_NAMESPACES, _MOUNTS], capture_output=True, text=True)
    return f"no Docker Engine can run here: {tried.stderr.strip()}" if tried.returncode else None


class DockerEngine:
    """Its socket and all of its data are in a temporary folder. It has process and mount namespaces of its own, so
    that everything that it started ends with it, even if the test is killed. Containers have no network."""

    def __init__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="e2e-engine-"))
        self.socket_folder = self.folder / "socket"
        for name in ("socket", "home", "tmp"):
            (self.folder / name).mkdir()
        (self.folder / "daemon.json").write_text("{}\n")
        self._log = self.folder / "log"
        self._images = 0
        with self._log.open("wb") as log:
            self._namespaces = processes.start(
                [*_IN_NAMESPACES, _START, "sh", str(self.folder)],
                env={**self._environment(), "PATH": "/usr/sbin:/usr/bin:/sbin:/bin",
                     "TMPDIR": str(self.folder / "tmp")},
                stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        wait_for(self._answers, "the Docker Engine", 60)

    def stop(self):
        """Ends the engine with all containers; the socket's file stays behind, as after a crash."""
        if self._namespaces.poll() is None:
            pid = self._namespaces.pid
            # The first process of the namespace is reaped when all of the others have ended.
            for first in Path(f"/proc/{pid}/task/{pid}/children").read_text().split():
                os.kill(int(first), signal.SIGKILL)
            self._namespaces.wait(30)

    def remove(self):
        self.stop()
        wait_for(self._removes_groups, "the end of the containers' control groups")
        shutil.rmtree(self.folder, ignore_errors=True)

    def docker(self, *arguments, check=True, **options):
        """Debian's client against this engine; what it printed, trimmed."""
        done = subprocess.run([CLIENT, *arguments], env=self._environment(), capture_output=True, check=False,
                              timeout=60, **options)
        if check and done.returncode != 0:
            raise RuntimeError(f"docker {' '.join(arguments)}: {done.stderr.decode()}")
        return done.stdout.decode().strip()

    def make_image(self, tag=None):
        """An image that is different from every other; its full ID."""
        self._images += 1
        archive = io.BytesIO()
        with tarfile.open(fileobj=archive, mode="w") as tar:
            tar.add(SHELL, arcname="bin/busybox")
            name = tarfile.TarInfo("name")
            name.size = len(content := f"image {self._images}".encode())
            tar.addfile(name, io.BytesIO(content))
        return self.docker("import", "-", *([tag] if tag else []), input=archive.getvalue())

    def start_container(self, name, image, stubborn=False, patience=10):
        """One that runs until it is told to end; its ID. A stubborn one is only ended by force, after `patience`
        seconds of the engine's."""
        trap = "trap '' TERM" if stubborn else "trap exit TERM"
        container = self.docker("run", "--detach", "--network", "none", "--stop-timeout", str(patience), "--name", name,
                                image, SHELL, "sh", "-c", f"{trap}; {_LOOP}")
        wait_for(lambda: "ready" in self.docker("logs", container), f"the container {name}")
        return container

    def run_container(self, name, image):
        """One that has ended at once; its ID."""
        self.docker("run", "--network", "none", "--name", name, image, SHELL, "true")
        return self.docker("container", "inspect", "--format", "{{.Id}}", name)

    def containers(self):
        """Name → state of every container."""
        lines = self.docker("container", "ls", "-a", "--format", "{{.Names}}={{.State}}").splitlines()
        return dict(line.split("=") for line in lines)

    def images(self):
        """The full IDs of all images."""
        return set(self.docker("image", "ls", "-a", "-q", "--no-trunc").split())

    def changes(self):
        """What was asked of the engine so far that changes something, in order: "DELETE /containers/…"."""
        return [f"{method} {path}" for method, path in _REQUEST.findall(self._log.read_text(errors="replace"))
                if method in ("POST", "DELETE")]

    def _removes_groups(self):
        """They would outlive their processes and the engine: only who made them removes them. They bear the name of
        the folder, in each hierarchy where the system has several."""
        try:
            for pattern in (self.folder.name, f"*/{self.folder.name}"):
                for top in _GROUPS.glob(pattern):
                    for group, _, _ in os.walk(top, topdown=False):
                        os.rmdir(group)
            return True
        except OSError:
            return False

    def _environment(self):
        return {"PATH": "/usr/bin:/bin", "HOME": str(self.folder / "home"),
                "DOCKER_HOST": f"unix://{self.socket_folder}/docker.sock"}

    def _answers(self):
        if self._namespaces.poll() is not None:
            raise RuntimeError(f"the Docker Engine does not start:\n{self._log.read_text(errors='replace')}")
        done = subprocess.run([CLIENT, "version"], env=self._environment(), capture_output=True, check=False)
        return done.returncode == 0
