"""How this machine reaches Debian's archive and the rest of the world: what a bare one needs to do so, too."""

import os
import re
import subprocess
from pathlib import Path

RELEASE = "bookworm"
_ARCHIVE = "http://deb.debian.org/debian"
_SECURITY = "http://deb.debian.org/debian-security"
_CERTIFICATES = Path("/usr/local/share/ca-certificates")
_SETTING = re.compile(r"^Acquire::(?:https?::|Check-)(?!.*(?:Auto-?Detect|Proxy-Auto))")
_PROXY = re.compile(r"^(https?_proxy|no_proxy)$", re.IGNORECASE)


def sources():
    """Suite → address, as apt knows them here, otherwise as Debian publishes them."""
    found = {RELEASE: _ARCHIVE, f"{RELEASE}-updates": _ARCHIVE, f"{RELEASE}-security": _SECURITY}
    for line in _output("apt-get", "indextargets", "--format", "$(SUITE) $(CODENAME) $(REPO_URI) $(COMPONENT)",
                        "Created-By: Packages", "Origin: Debian").splitlines():
        _, codename, address, component = line.split()
        if codename in found and component == "main" and address.startswith(("http:", "https:")):
            found[codename] = address.rstrip("/")
    return found


def files():
    """Path → content of what a bare machine gets to reach what this one reaches."""
    lists = "".join(f"deb {address} {suite} main\n" for suite, address in sources().items())
    settings = "".join(f"{line}\n" for line in _output("apt-config", "dump", "--no-empty").splitlines()
                       if _SETTING.match(line))
    result = {"etc/apt/sources.list": lists.encode(), "etc/apt/apt.conf.d/90machine": settings.encode(),
              # So it is in every published image of Debian.
              "etc/dpkg/dpkg.cfg.d/docker-apt-speedup": b"force-unsafe-io\n"}
    for certificate in sorted(_CERTIFICATES.glob("*.crt")):
        result[str(certificate.relative_to("/"))] = certificate.read_bytes()
    return result


def environment():
    """The proxies that programs are told of by variables."""
    return {name: value for name, value in os.environ.items() if _PROXY.match(name)}


def _output(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout
    except (OSError, subprocess.CalledProcessError):
        return ""
