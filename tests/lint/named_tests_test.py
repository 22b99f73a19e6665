#!/usr/bin/env python3
"""Looks for the tests of made-up units."""

import contextlib
import io
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "packaging" / "lint"))

from named_tests import complaints, main  # pylint: disable=wrong-import-position

_TABLE = "# Contributing\n\n| Unit | Tests |\n|---|---|\n"


class NamedTestsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()  # pylint: disable=consider-using-with
        self.addCleanup(folder.cleanup)
        self.checkout = Path(folder.name)
        self.write("src/sums/Sum.h")
        self.write("src/sums/Sum.cpp")
        self.write("CONTRIBUTING.md", _TABLE)

    def write(self, path, text=""):
        file = self.checkout / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def told(self):
        return "\n".join(complaints(self.checkout))

    def test_a_unit_without_a_test_is_told(self):
        self.assertIn("src/sums/Sum.cpp: no test", self.told())

    def test_a_file_of_tests_will_do(self):
        self.write("tests/sums/SumTest.cpp")
        self.assertEqual(self.told(), "")

    def test_a_suite_will_do_whatever_its_kind(self):
        for line in ("TEST(Sum, Adds) {}", "TEST_F(SumTest, Adds) {}", "TEST_P(\n    SumTest, Adds) {}"):
            self.write("tests/sums/Numbers.cpp", f"{line}\n")
            self.assertEqual(self.told(), "", line)

    def test_a_test_of_another_name_is_none(self):
        self.write("tests/sums/SumOfManyTest.cpp", "TEST(SummaryTest, Adds) {}\n")
        self.assertIn("Sum.cpp: no test", self.told())

    def test_the_table_says_what_stands_for_a_unit(self):
        self.write("CONTRIBUTING.md", _TABLE + "| `Product`, `Sum` | `Other` |\n")
        self.write("src/sums/Product.h")
        self.assertEqual(self.told(), "")

    def test_the_second_column_names_no_units(self):
        self.write("CONTRIBUTING.md", _TABLE + "| `Sum` | `Gone` |\n")
        self.assertEqual(self.told(), "")

    def test_a_name_in_the_table_that_is_no_unit_is_told(self):
        self.write("CONTRIBUTING.md", _TABLE + "| `Sum`, `Gone` | `Other` |\n")
        self.assertEqual(self.told(), "CONTRIBUTING.md: Gone is no unit")

    def test_records_and_second_files_of_a_class_need_none(self):
        self.write("tests/sums/SumTest.cpp")
        self.write("src/sums/Record.h")
        self.write("src/sums/SumOfMany.cpp")
        self.assertEqual(self.told(), "")

    def test_a_mac_s_unit_needs_one_too(self):
        self.write("tests/sums/SumTest.cpp")
        self.write("src/sums/Window.h")
        self.write("src/sums/Window.mm")
        self.assertIn("Window.mm: no test", self.told())

    def test_the_status_tells_whether_anything_was_found(self):
        with contextlib.redirect_stdout(io.StringIO()) as output:
            self.assertEqual(main([str(self.checkout)]), 1)
            self.write("tests/sums/SumTest.cpp")
            self.assertEqual(main([str(self.checkout)]), 0)
        self.assertEqual(output.getvalue().count("\n"), 1)


unittest.main()
