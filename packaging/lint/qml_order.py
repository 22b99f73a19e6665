#!/usr/bin/env python3
"""Sees that the members of every QML object stand in one order: qml_order.py FILE ...

The order is that of `GROUPS`. Prints a line for each member that stands behind one of a later group, and ends with 1
when there is any. What belongs to which object is told by the indentation, four spaces a level.
"""

import re
import sys
from pathlib import Path

#: An object that a property is given counts as a child, and so does a component that is declared in place. A
#: function of `Connections` is a handler.
GROUPS = ("id", "required property", "property", "signal", "function", "binding", "handler", "child")

INDENT = 4

_TYPE = r"(?:[A-Za-z]\w*\.)*[A-Z]\w*"
_OBJECT = re.compile(rf"(?:component \w+: |[\w.]+: )?(?P<type>{_TYPE})(?: on [\w.]+)? \{{(?P<end>\}})?$")
_MEMBERS = (
    ("id", re.compile(r"id: ")),
    ("required property", re.compile(r"required (default )?property ")),
    ("property", re.compile(r"(default |readonly )*property ")),
    ("signal", re.compile(r"signal ")),
    ("function", re.compile(r"function ")),
    ("handler", re.compile(rf"({_TYPE}\.)?on[A-Z]\w*: ")),
    ("binding", re.compile(r"[\w.]+: ")),
)
#: What goes on with the member above it although it is not further in.
_CONTINUED = re.compile(r"[\])}]|else\b|/?\*")


def group_of(line, type_around):
    """The group of a member that begins with this line; None where it is no member."""
    if line.startswith("function ") and type_around == "Connections":
        return "handler"
    kind = next((name for name, start in _MEMBERS if start.match(line)), None)
    # A property remains one with an object for its value.
    if kind in (None, "binding") and _OBJECT.match(line):
        return "child"
    return kind


class _Object:
    def __init__(self, type_name):
        self.type = type_name
        self.last = 0


def complaints(text):
    """Pairs of a line's number and what is wrong with it."""
    found = []
    # The file's own level holds its one object.
    around = [_Object("")]
    for number, whole in enumerate(text.splitlines(), 1):
        line = whole.strip()
        depth = (len(whole) - len(whole.lstrip(" "))) // INDENT
        if not line or line.startswith("//") or depth >= len(around):
            continue
        del around[depth + 1 :]
        if _CONTINUED.match(line) or re.match(r"(import|pragma) ", line):
            continue
        holder = around[depth]
        kind = group_of(line, holder.type)
        if kind is None:
            found.append((number, f"neither a member nor further in: {line}"))
            continue
        place = GROUPS.index(kind)
        if place < holder.last:
            found.append((number, f"{kind} after {GROUPS[holder.last]}: {line}"))
        holder.last = max(holder.last, place)
        opened = _OBJECT.match(line)
        if opened and not opened["end"]:
            around.append(_Object(opened["type"]))
    return found


def main(files):
    told = [f"{file}:{number}: {what}" for file in files for number, what in complaints(Path(file).read_text())]
    for line in told:
        print(line)
    return 1 if told else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
