"""The disk as it is: everything below a folder, with what it holds."""

import functools
import hashlib
import os
import stat


def listing(folder):
    """Path relative to `folder` → what stands there: ("folder", mode), ("link", target) or ("file", mode, content's
    hash, length). Links are not followed."""
    found = {}
    for parent, folders, files in os.walk(folder):
        for name in folders + files:
            path = os.path.join(parent, name)
            found[os.path.relpath(path, folder)] = _entry(path)
    return found


def _entry(path):
    status = os.lstat(path)
    mode = stat.S_IMODE(status.st_mode)
    if stat.S_ISLNK(status.st_mode):
        return ("link", os.readlink(path))
    if stat.S_ISDIR(status.st_mode):
        return ("folder", mode)
    if stat.S_ISREG(status.st_mode):
        return ("file", mode, _content_hash(path, status), status.st_size)
    return ("other", mode)


def _content_hash(path, status):
    if status.st_size < _LARGE:
        return _hash(path)
    return _hash_of_large(path, status.st_dev, status.st_ino, status.st_size, status.st_mtime_ns, status.st_ctime_ns)


# A program of a hundred megabytes is looked at several times in a case. No content changes without its file's time of
# change, which nobody can set.
_LARGE = 1 << 20


@functools.lru_cache
def _hash_of_large(path, *_):
    return _hash(path)


def _hash(path):
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").hexdigest()


def below(entries, *roots):
    """The paths that are one of the roots or lie below one."""
    return {path for path in entries if any(path == root or path.startswith(root + "/") for root in roots)}
