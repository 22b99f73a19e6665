"""Helper processes that never outlive the test."""

import ctypes
import signal
import subprocess

_libc = ctypes.CDLL(None)
_PR_SET_PDEATHSIG = 1


def _end_with_the_test():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)


def start(command, **options):
    """A child that the system ends when this process ends, however that happens."""
    return subprocess.Popen(command, preexec_fn=_end_with_the_test, **options)


def end(process):
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
