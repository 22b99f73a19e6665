#!/usr/bin/env python3
"""Reads made-up lists of faults."""

import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
PACKAGING = Path(__file__).resolve().parents[2] / "packaging"
sys.path[:0] = [str(PACKAGING / "mutants"), str(PACKAGING / "fresh")]

from faults import ListError, read_lists  # pylint: disable=wrong-import-position
from workshop import first_failure, slow_tests  # pylint: disable=wrong-import-position

_SOURCE = "int zero() {\n    return 0;\n}\n\nint one() {\n    return 1;\n}\n"


class ListsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()  # pylint: disable=consider-using-with
        self.addCleanup(folder.cleanup)
        self.checkout = Path(folder.name)
        self.write("src/numbers/Numbers.cpp", _SOURCE)
        self.write("tests/numbers/CMakeLists.txt", "")
        self.write("tests/sums/CMakeLists.txt", "")

    def write(self, path, text):
        (self.checkout / path).parent.mkdir(parents=True, exist_ok=True)
        (self.checkout / path).write_text(text)

    def read(self, text, names=()):
        self.write("lists/numbers.toml", text)
        return read_lists(self.checkout / "lists", self.checkout, names)

    def complaint(self, text, names=()):
        with self.assertRaises(ListError) as raised:
            self.read(text, names)
        return str(raised.exception)

    def test_a_fault_is_put_in_where_its_text_is(self):
        fault, = self.read("[[fault]]\nfile = 'Numbers.cpp'\ntext = 'return 1'\nreplacement = 'return 2'\n")
        self.assertEqual((fault.name, fault.file, fault.tests), ("numbers/1", "src/numbers/Numbers.cpp", ("numbers",)))
        self.assertEqual(fault.line(_SOURCE), 6)
        self.assertEqual(fault.apply(_SOURCE), _SOURCE.replace("return 1", "return 2"))

    def test_other_folders_tests_can_be_named(self):
        fault, = self.read("[[fault]]\nfile = 'Numbers.cpp'\ntext = '1'\nreplacement = '2'\ntests = ['sums']\n")
        self.assertEqual(fault.tests, ("sums",))
        self.assertIn("no tests in tests/products", self.complaint(
            "[[fault]]\nfile = 'Numbers.cpp'\ntext = '1'\nreplacement = '2'\ntests = ['products']\n"))

    def test_a_text_has_to_be_there_once(self):
        entry = "[[fault]]\nfile = 'Numbers.cpp'\ntext = '{}'\nreplacement = ''\n"
        told = self.complaint(entry.format("return 3") + entry.format("return 1") + entry.format("two"))
        self.assertIn("numbers/3: its text is not there", told)
        self.assertIn("numbers/1: its text is not there in src/numbers/Numbers.cpp", told)
        self.assertIn("is there 2 times", self.complaint(entry.format("return")))

    def test_a_single_fault_can_be_named(self):
        lists = "".join(f"[[fault]]\nfile = 'Numbers.cpp'\ntext = 'return {n}'\nreplacement = ''\n" for n in (0, 1))
        self.assertEqual([fault.name for fault in self.read(lists, ("numbers/2",))], ["numbers/2"])
        self.assertEqual([fault.name for fault in self.read(lists, ("numbers",))], ["numbers/1", "numbers/2"])
        self.assertEqual("there is no fault numbers/3", self.complaint(lists, ("numbers/3",)))

    def test_everything_else_that_is_wrong_is_told(self):
        self.assertIn("No such file", self.complaint("[[fault]]\nfile = 'Sums.cpp'\ntext = 'a'\nreplacement = 'b'\n"))
        self.assertIn("by itself", self.complaint("[[fault]]\nfile = 'Numbers.cpp'\ntext = '1'\nreplacement = '1'\n"))
        self.assertIn("needs", self.complaint("[[fault]]\nfile = 'Numbers.cpp'\ntext = '1'\n"))
        self.assertIn("numbers.toml", self.complaint("[[fault]"))
        self.assertIn("there is no list sums; there are: numbers", self.complaint("", ("sums",)))


class CTestTest(unittest.TestCase):
    def test_the_test_that_failed_is_named(self):
        line = "12/43 Test #7: A.b ......................***{}   0.02 sec\n"
        self.assertEqual(first_failure(line.format("Failed")), "A.b")
        self.assertEqual(first_failure(line.format("Timeout")), "A.b (time-out)")
        self.assertEqual(first_failure(line.format("Exception: SegFault")), "A.b")
        self.assertEqual(first_failure("12/43 Test #7: A.b ...Subprocess aborted***Exception:   0.02 sec\n"), "A.b")
        self.assertEqual(first_failure("1/1 Test #7: A.b ......   Passed    0.02 sec\n"), None)

    def test_tests_that_take_long_are_found_in_the_table_of_costs(self):
        costs = "A.quick 1 0.1\nA.slow/0 1 7.5\nB.slow 2 9\n---\nA.failed\n"
        self.assertEqual(slow_tests(costs, {"A.quick", "A.slow/0"}), "^(A\\.slow/0)$")
        self.assertEqual(slow_tests(costs, {"A.quick"}), "")


unittest.main()
