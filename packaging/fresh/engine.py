"""A Docker Engine of the check's own, which leaves nothing behind."""

import contextlib
import fcntl
import os
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

_GROUPS = Path("/sys/fs/cgroup")
_PATH = "/usr/sbin:/usr/bin:/sbin:/bin"
_NAMEPLATE = "zentrill-fresh-"

# The engine keeps a few files in /run and /etc wherever its data is; here they go to layers that vanish with it.
_START = """
set -e
folder=$1
shift
mount -t tmpfs tmpfs /run
mkdir /run/etc-changes /run/etc-work
mount -t overlay overlay -o lowerdir=/etc,upperdir=/run/etc-changes,workdir=/run/etc-work /etc
exec dockerd --config-file="$folder/daemon.json" --host="unix://$folder/docker.sock" \
    --data-root="$folder/data" --exec-root="$folder/exec" --pidfile="$folder/docker.pid" \
    --exec-opt native.cgroupdriver=cgroupfs --cgroup-parent="/${folder##*/}" --userland-proxy=false "$@"
"""
# Where the engine has a network of its own, this answers for the machine's resolver.
_OWN_NETWORK = ["--dns=10.0.2.3"]
_MACHINES_NETWORK = ["--bridge=none", "--iptables=false", "--ip6tables=false", "--ip-forward=false", "--ip-masq=false"]


class EngineError(Exception):
    """Why no engine can be had."""


def obstacle():
    """Why no engine can run here, or nothing."""
    if os.geteuid() != 0:
        return "a Docker Engine of its own needs root"
    for program in ("dockerd", "docker", "unshare", "setpriv", "debootstrap"):
        if shutil.which(program, path=_PATH) is None:
            return f"{program} is not installed"
    tried = subprocess.run(["unshare", "--mount", "--pid", "--net", "--fork", "true"], capture_output=True, text=True)
    return f"no namespaces can be made here: {tried.stderr.strip()}" if tried.returncode else None


class PrivateEngine:
    """Its data is in one folder; its processes, its mounts and its network are in namespaces, so that everything that
    it started ends with it, even if this program is killed. What is left of one whose owner was killed goes when the
    next one starts."""

    def __init__(self, parent):
        parent.mkdir(parents=True, exist_ok=True)
        _remove_leftovers(parent)
        self._folder = Path(tempfile.mkdtemp(prefix=_NAMEPLATE, dir=parent))
        self._lock = _lock(self._folder)
        self._namespaces = None
        self._network = None
        #: What every container's creation takes along.
        self.container_options = []

    def __enter__(self):
        try:
            (self._folder / "tmp").mkdir()
            (self._folder / "home").mkdir()
            (self._folder / "daemon.json").write_text("{}\n")
            if not self._start_with_own_network():
                self._start(["--mount", "--pid"], _MACHINES_NETWORK)
                self.container_options = ["--network", "host"]
                self._wait_until_it_answers()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def __exit__(self, *_):
        self._stop()
        _remove(self._folder)
        os.close(self._lock)

    def docker(self, *arguments, **options):
        """Runs the client; what it printed, trimmed."""
        done = subprocess.run(["docker", *arguments], env=self._environment(), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, start_new_session=True, **options)
        if done.returncode != 0:
            raise EngineError(f"docker {arguments[0]}: {(done.stderr or done.stdout).decode(errors='replace').strip()}")
        return done.stdout.decode(errors="replace").strip()

    def run(self, log, *arguments, timeout):
        """`docker run` with these arguments, its output into the file; the status, or nothing when time ran out."""
        return self._follow(log, "run", *self.container_options, *arguments, timeout=timeout)

    def execute(self, log, *arguments, timeout):
        """The same for `docker exec`. What it started goes on when time ran out."""
        return self._follow(log, "exec", *arguments, timeout=timeout)

    def write_log(self, container, path):
        """What the container has printed, each line with its time."""
        with path.open("wb") as log:
            subprocess.run(["docker", "logs", "--timestamps", container], env=self._environment(), stdout=log, stderr=log,
                           check=False)

    def _follow(self, log, *arguments, timeout):
        with subprocess.Popen(["docker", *arguments], env=self._environment(), stdin=subprocess.DEVNULL, stdout=log,
                              stderr=log, start_new_session=True) as client:
            try:
                return client.wait(timeout)
            except subprocess.TimeoutExpired:
                return None
            finally:
                client.kill()

    def _start_with_own_network(self):
        """Containers get what a default engine gives them: addresses of their own behind a bridge. Nothing of it is
        seen on the machine, for the bridge's network reaches the world through one process."""
        if shutil.which("slirp4netns", path=_PATH) is None or not os.path.exists("/dev/net/tun"):
            return False
        first = self._start(["--mount", "--pid", "--net"], _OWN_NETWORK)
        self._network = self._spawn(["slirp4netns", "--configure", "--mtu=1400", "--disable-host-loopback", str(first),
                                     "tap0"], "network.log")
        try:
            self._wait_until_it_answers()
        except EngineError:
            self._stop()
            return False
        return True

    def _start(self, namespaces, options):
        """The process id of the namespaces' first process."""
        self._namespaces = self._spawn(["unshare", *namespaces, "--fork", "--kill-child", "--mount-proc", "/bin/sh", "-c",
                                        _START, "sh", str(self._folder), *options], "engine.log")
        for _ in range(100):
            if first := self._first_process():
                return first
            time.sleep(0.05)
        raise EngineError("no namespaces can be made here")

    def _spawn(self, command, log):
        with (self._folder / log).open("wb") as output:
            return subprocess.Popen(["setpriv", "--pdeathsig", "KILL", *command], env=self._environment(),
                                    stdin=subprocess.DEVNULL, stdout=output, stderr=output, start_new_session=True)

    def _wait_until_it_answers(self):
        for _ in range(300):
            if self._namespaces.poll() is not None:
                break
            if subprocess.run(["docker", "version"], env=self._environment(), capture_output=True).returncode == 0:
                return
            time.sleep(0.2)
        raise EngineError(f"the engine does not start: {(self._folder / 'engine.log').read_text(errors='replace')[-500:]}")

    def _first_process(self):
        pid = self._namespaces.pid
        with contextlib.suppress(OSError):
            return int(Path(f"/proc/{pid}/task/{pid}/children").read_text() or 0)
        return 0

    def _stop(self):
        _thaw(self._folder.name)
        # The first process of the namespaces is reaped when all of the others have ended.
        if self._namespaces and self._namespaces.poll() is None:
            os.kill(self._first_process() or self._namespaces.pid, signal.SIGKILL)
            self._namespaces.wait()
        if self._network:
            self._network.kill()
            self._network.wait()
        self._network = None

    def _environment(self):
        return {"PATH": _PATH, "HOME": str(self._folder / "home"), "TMPDIR": str(self._folder / "tmp"),
                "DOCKER_HOST": f"unix://{self._folder}/docker.sock"}


def _lock(folder):
    """Held for as long as the engine's owner lives."""
    descriptor = os.open(folder, os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
    fcntl.flock(descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
    return descriptor


def _remove_leftovers(parent):
    for folder in parent.glob(f"{_NAMEPLATE}*"):
        with contextlib.suppress(BlockingIOError):
            descriptor = _lock(folder)
            _remove(folder)
            os.close(descriptor)


def _groups(name):
    """What bears the engine's name in each hierarchy of control groups, where the system has several."""
    return [*_GROUPS.glob(name), *_GROUPS.glob(f"*/{name}")]


def _thaw(name):
    """Somebody may have paused a container: it could not be ended before it goes on."""
    for top in _groups(name):
        for kind, value in (("freezer.state", "THAWED"), ("cgroup.freeze", "0")):
            for state in (*top.glob(kind), *top.rglob(kind)):
                with contextlib.suppress(OSError):
                    state.write_text(value)


def _remove(folder):
    """The folder, and the control groups of its name, which outlive their processes and the engine: only who made
    them removes them."""
    for _ in range(100):
        try:
            for top in _groups(folder.name):
                for group, _, _ in os.walk(top, topdown=False):
                    os.rmdir(group)
            break
        except OSError:
            # Busy until the last of the processes is reaped.
            time.sleep(0.1)
    shutil.rmtree(folder, ignore_errors=True)
