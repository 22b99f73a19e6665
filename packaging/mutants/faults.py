"""The lists of small faults, one for each folder of the sources."""

import tomllib
from dataclasses import dataclass
from pathlib import Path


class ListError(Exception):
    """What is wrong with a list."""


@dataclass(frozen=True)
class Fault:
    """Text of one file, which is there once, and what stands in its place while the fault is in."""

    folder: str
    #: From 1, in its list.
    number: int
    #: Below the checkout.
    file: str
    text: str
    replacement: str
    #: The folders below tests/ that are to notice it.
    tests: tuple
    #: Why nobody could notice it; empty where somebody has to.
    changes_nothing: str = ""

    @property
    def name(self):
        return f"{self.folder}/{self.number}"

    def apply(self, content):
        """The file's content with the fault in it."""
        occurrences = content.count(self.text)
        if occurrences != 1:
            times = "not there" if occurrences == 0 else f"there {occurrences} times"
            raise ListError(f"{self.name}: its text is {times} in {self.file}:\n{self.text}")
        return content.replace(self.text, self.replacement)

    def line(self, content):
        """The number of the line in which it begins."""
        return content[:content.index(self.text)].count("\n") + 1


_REQUIRED = {"file", "text", "replacement"}
_OPTIONAL = {"tests", "changes_nothing"}


def read_list(path, checkout):
    """The faults of one list, each of which fits the checkout as it is."""
    try:
        entries = tomllib.loads(path.read_text())["fault"]
    except (OSError, KeyError, tomllib.TOMLDecodeError) as error:
        raise ListError(f"{path.name}: {error}") from error
    faults, wrong = [], []
    for number, entry in enumerate(entries, 1):
        try:
            faults.append(_fault(path.stem, number, entry, checkout))
        except ListError as error:
            wrong.append(str(error))
    if wrong:
        raise ListError("\n".join(wrong))
    return faults


def _fault(folder, number, entry, checkout):
    name = f"{folder}/{number}"
    if not _REQUIRED <= entry.keys() <= _REQUIRED | _OPTIONAL:
        raise ListError(f"{name}: has {', '.join(sorted(entry))}; needs {', '.join(sorted(_REQUIRED))}")
    fault = Fault(folder=folder, number=number, file=f"src/{folder}/{entry['file']}", text=entry["text"],
                  replacement=entry["replacement"], tests=tuple(entry.get("tests", [folder])),
                  changes_nothing=entry.get("changes_nothing", ""))
    if fault.text == fault.replacement:
        raise ListError(f"{name}: replaces a text by itself")
    for tests in fault.tests:
        if not (checkout / "tests" / tests / "CMakeLists.txt").exists():
            raise ListError(f"{name}: there are no tests in tests/{tests}")
    try:
        fault.apply((checkout / fault.file).read_text())
    except OSError as error:
        raise ListError(f"{name}: {fault.file}: {error.strerror}") from error
    return fault


def read_lists(folder, checkout, names=()):
    """The faults of these lists in the folder, or of all of them; "list/7" stands for a single one. Tells of everything
    that is wrong at once."""
    there = {path.stem: path for path in sorted(Path(folder).glob("*.toml"))}
    faults, wrong = [], []
    for name in names or there:
        folder_name, single, _ = name.partition("/")
        if folder_name not in there:
            wrong.append(f"there is no list {folder_name}; there are: {' '.join(there)}")
            continue
        try:
            found = [fault for fault in read_list(there[folder_name], checkout) if not single or fault.name == name]
            if not found:
                wrong.append(f"there is no fault {name}")
            faults += found
        except ListError as error:
            wrong.append(str(error))
    if wrong:
        raise ListError("\n".join(wrong))
    return faults
