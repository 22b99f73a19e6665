"""Helper processes that never outlive the test."""

import ctypes
import signal
import subprocess

_libc = ctypes.CDLL(None)
_PR_SET_PDEATHSIG = 1


def start(command, last_signal=signal.SIGKILL, **options):
    """A child that gets this signal from the system when this process ends, however that happens."""
    return subprocess.Popen(command, preexec_fn=lambda: _libc.prctl(_PR_SET_PDEATHSIG, last_signal), **options)


def end(process):
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
