"""Tools as their makers ship them: installed by npm from its registry, once for all cases."""

import fcntl
import os
import re
import shutil
import subprocess
import unittest

from harness.cages import make_cage
from harness.settings import current

_UNREACHABLE = re.compile(r"ENOTFOUND|EAI_AGAIN|ECONNREFUSED|ECONNRESET|ETIMEDOUT|ENETUNREACH|network|CERT_|certificate")
_PASSED_ON = re.compile(r"^(https?_proxy|no_proxy|npm_config_.*|node_extra_ca_certs|ssl_cert_(file|dir))$", re.IGNORECASE)


def install(package, home):
    """What `npm install -g --prefix ~/.local PACKAGE` leaves in a home folder, put into this one."""
    shutil.copytree(_fetched(package), home / ".local", symlinks=True)


def _fetched(package):
    kept = current().cache / package.replace("/", "_")
    # Cases run side by side; the first fetches for all.
    with open(f"{kept}.lock", "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not kept.exists():
            _fetch(package, kept)
    return kept


def _fetch(package, kept):
    if shutil.which("npm") is None:
        raise unittest.SkipTest("npm is not installed (packages nodejs and npm)")
    cage = make_cage()
    try:
        cage.shares_network = True
        command, descriptors = cage.command("npm", "install", "-g", "--prefix", f"{cage.home_inside}/.local", package)
        environment = {**cage.environment(),
                       **{name: value for name, value in os.environ.items() if _PASSED_ON.match(name)}}
        outcome = subprocess.run(command, pass_fds=descriptors, env=environment, capture_output=True, text=True)
        for descriptor in descriptors:
            os.close(descriptor)
        if outcome.returncode != 0 and _UNREACHABLE.search(outcome.stderr):
            raise unittest.SkipTest("npm's registry cannot be reached")
        if outcome.returncode != 0:
            raise RuntimeError(f"npm could not install {package}: {outcome.stderr}")
        shutil.copytree(cage.home / ".local", f"{kept}.new", symlinks=True, dirs_exist_ok=True)
        os.rename(f"{kept}.new", kept)
    finally:
        cage.remove()
