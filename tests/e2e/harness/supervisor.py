#!/usr/bin/env python3
"""supervisor.py [--without-network] -- COMMAND [ARGUMENT …]: what a process namespace does, where there is none.

Runs the command, prints which processes that descend from it still run when it ends (process ID, state and arguments),
ends them, and ends with its status. Asked to end, or left behind by who started it, it ends all of them as well.
"""

import ctypes
import os
import signal
import struct
import subprocess
import sys
from pathlib import Path

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_PR_SET_NO_NEW_PRIVS = 38
_CREATE_RULESET = 444
_RESTRICT_SELF = 446
_BIND_AND_CONNECT_TCP = 3
_CLEANER = "zentrill-clean"
# The first version of Landlock that knows the network.
_NETWORK_VERSION = 4

_libc = ctypes.CDLL(None, use_errno=True)


def deny_network():
    """Takes TCP away from this process and its children, as far as the kernel can."""
    if _libc.syscall(_CREATE_RULESET, None, 0, 1) < _NETWORK_VERSION:
        return
    rules = ctypes.create_string_buffer(struct.pack("QQ", 0, _BIND_AND_CONNECT_TCP), 16)
    ruleset = _libc.syscall(_CREATE_RULESET, rules, 16, 0)
    _libc.prctl(_PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0)
    if ruleset < 0 or _libc.syscall(_RESTRICT_SELF, ruleset, 0) != 0:
        raise OSError(ctypes.get_errno(), "Landlock")
    os.close(ruleset)


def descendants():
    """Process ID → state of everything below this process, but for what clears the launcher's temporary folder away:
    it ends by itself, after all others."""
    states, children = {}, {}
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                # The name stands in brackets and may hold anything.
                name, _, rest = (entry / "stat").read_text(errors="replace").partition("(")[2].rpartition(")")
            except (FileNotFoundError, ProcessLookupError):
                continue
            if name == _CLEANER:
                continue
            state, parent = rest.split()[:2]
            states[int(entry.name)] = state
            children.setdefault(int(parent), []).append(int(entry.name))
    found, waiting = {}, [os.getpid()]
    while waiting:
        for child in children.get(waiting.pop(), []):
            found[child] = states[child]
            waiting.append(child)
    return found


def arguments(pid):
    try:
        return Path(f"/proc/{pid}/cmdline").read_bytes().rstrip(b"\0").replace(b"\0", b" ").decode(errors="replace")
    except (FileNotFoundError, ProcessLookupError):
        return ""


def end_all():
    """Ends and reaps everything below this process. Whose parent ends becomes a child of this process."""
    while True:
        for pid in descendants():
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        try:
            os.waitpid(-1, 0)
        except ChildProcessError:
            return


def end_at_once(*_):
    end_all()
    os._exit(128 + signal.SIGTERM)


def main():
    options, command = sys.argv[1:sys.argv.index("--")], sys.argv[sys.argv.index("--") + 1:]
    _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
    signal.signal(signal.SIGTERM, end_at_once)

    def prepare():
        _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)
        if "--without-network" in options:
            deny_network()

    process = subprocess.Popen(command, preexec_fn=prepare, stdout=subprocess.DEVNULL, cwd="/", start_new_session=True)
    status = process.wait()
    for pid, state in descendants().items():
        print(pid, state, arguments(pid))
    sys.stdout.flush()
    end_all()
    os._exit(status if status >= 0 else 128 - status)


main()
