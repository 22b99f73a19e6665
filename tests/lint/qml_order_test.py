#!/usr/bin/env python3
"""Reads made-up QML."""

import contextlib
import io
import sys
import tempfile
import textwrap
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "packaging" / "lint"))

from qml_order import GROUPS, complaints, main  # pylint: disable=wrong-import-position

#: A member of each group, in the order of the groups.
_MEMBERS = (
    "    id: row\n",
    "    required property int index\n",
    "    readonly property bool current: ListView.isCurrentItem\n",
    "    signal chosen\n",
    "    function choose() {\n        chosen();\n    }\n",
    "    Accessible.name: qsTr(\"Row\")\n",
    "    Keys.onSpacePressed: choose()\n",
    "    Icon {\n        id: sign\n    }\n",
)


def _file(*members):
    return "import QtQuick\n\n// A row.\nItem {\n" + "\n".join(members) + "}\n"


class OrderTest(unittest.TestCase):
    def test_members_in_order_are_fine(self):
        self.assertEqual(complaints(_file(*_MEMBERS)), [])

    def test_of_any_two_that_are_swapped_the_later_one_is_told(self):
        self.assertEqual(len(_MEMBERS), len(GROUPS))
        for early, one in enumerate(_MEMBERS):
            for late in range(early + 1, len(_MEMBERS)):
                (number, what), = complaints(_file(_MEMBERS[late], one))
                self.assertEqual(number, 6 + _MEMBERS[late].count("\n"))
                self.assertTrue(what.startswith(f"{GROUPS[early]} after {GROUPS[late]}: "), what)

    def test_what_goes_on_over_several_lines_is_one_member(self):
        self.assertEqual(complaints(_file(
            "    readonly property color tint: chosen\n        ? WarmPalette.copper\n        : WarmPalette.paper\n",
            "    model: [\n        {\n            id: 1\n        }\n    ]\n",
            "    onChosen: if (open)\n        close();\n    else {\n        id: 2\n    }\n    // Said.\n",
            "    Component.onCompleted: choose()\n")), [])

    def test_an_inner_object_has_an_order_of_its_own(self):
        inner = "    Icon {\n        size: 2\n        id: sign\n    }\n"
        self.assertEqual([number for number, _ in complaints(_file(_MEMBERS[-1], inner))], [11])
        self.assertEqual([number for number, _ in complaints(_file(inner, "    width: 2\n"))], [7, 10])

    def test_what_is_given_an_object_stands_with_the_children(self):
        for given in ("delegate: Icon", "T.ScrollBar.vertical: T.ScrollBar", "Behavior on x", "component Sign: Icon"):
            member = f"    {given} {{\n        size: 2\n    }}\n"
            self.assertEqual(complaints(_file("    onChosen: close()\n", member, _MEMBERS[-1], member)), [], given)
            self.assertEqual(len(complaints(_file(member, "    onChosen: close()\n"))), 1, given)

    def test_functions_of_connections_are_handlers(self):
        function = "    function onChosen() {\n        close();\n    }\n"
        connected = "    Connections {\n        target: row\n\n" + textwrap.indent(function, "    ") + "    }\n"
        self.assertEqual(complaints(_file(connected)), [])
        self.assertEqual(len(complaints(_file("    target: row\n", function))), 1)

    def test_what_it_does_not_understand_is_told(self):
        self.assertEqual(complaints(_file("    what is this\n")), [(5, "neither a member nor further in: what is this")])

    def test_each_complaint_names_its_file_and_line(self):
        with tempfile.TemporaryDirectory() as folder:
            good, bad = Path(folder, "Good.qml"), Path(folder, "Bad.qml")
            good.write_text(_file(*_MEMBERS))
            bad.write_text(_file(_MEMBERS[1], _MEMBERS[0]))
            with contextlib.redirect_stdout(io.StringIO()) as told:
                self.assertEqual(main([str(good), str(bad)]), 1)
                self.assertEqual(main([str(good)]), 0)
        self.assertEqual(told.getvalue(), f"{bad}:7: id after required property: id: row\n")


unittest.main()
