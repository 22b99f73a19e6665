"""Homes that are not what they should be: the window opens all the same."""

import plistlib

import homes
from harness.case import Case

_PROPERTY_LIST = "Library/Preferences/com.user.Zentrill.plist"
_KEY = "NSWindow Frame MainWindow"


class OddHomeCase(Case):
    def expect_working_window(self, **options):
        self.start(**options)
        self.screen.wait("check box", "Ollama")
        for pane in ("models", "docker", "console"):
            self.show_pane(pane)
        self.move_window()
        self.close()

    def move_window(self):
        self.display.move_window(70, 80)


class HomeOfTheAccount(OddHomeCase):
    """Where the environment names no home, the account's own is looked at; it must not be a real person's here."""

    def setUp(self):
        super().setUp()
        if not self.cage.hides_machine:
            self.skipTest("looks into the account's own home, which only namespaces can hide")

    def test_home_unset(self):
        self.expect_working_window(environment={"HOME": None})
        self.assertEqual(self.disk(), {})

    def test_home_that_is_no_path(self):
        self.expect_working_window(environment={"HOME": "person"})
        self.assertEqual(self.disk(), {})


class OddHomes(OddHomeCase):
    """A home that cannot be written to, that does not exist, or in which things are not what they should be."""

    def test_read_only_home(self):
        homes.write(self.home / ".claude/settings.json", "{}")
        before = self.disk()
        self.cage.home_is_read_only = True
        self.expect_working_window()
        self.assert_only_gone(before, [])

    def test_uninstall_in_a_read_only_home(self):
        self.cage.require_absent("ollama", "Ollama.app")
        homes.write(self.home / ".ollama/history", "hello")
        before = self.disk()
        self.cage.home_is_read_only = True
        self.start()
        self.select_application("Ollama")
        self.set_shield(False)
        self.press("Uninstall Selected")
        self.confirm("Uninstall")
        self.result("Uninstallation Completed with Errors")
        self.assertTrue(any(self.cage.read_only_refusal in line for line in self.error_lines()), self.error_lines())
        self.dismiss_result()
        self.close()
        self.assert_only_gone(before, [])

    def test_home_that_does_not_exist(self):
        self.expect_working_window(environment={"HOME": "/nowhere/at/all"})
        self.assertEqual(self.disk(), {})

    def test_corrupt_property_list(self):
        for content in (b"", b"\0" * 100, b"bplist00\xff\xff", b"<plist><dict><key>NSWindow Frame MainWindow</key>",
                        plistlib.dumps({_KEY: "1e99 nan -5 0 x"}), plistlib.dumps({_KEY: 5}), plistlib.dumps([1])):
            with self.subTest(content=content):
                homes.write(self.home / _PROPERTY_LIST, content)
                self.start()
                frame = self.screen.find("frame").extents
                self.assertGreaterEqual(frame[2:], (900, 650))
                self.close()

    def test_property_list_that_is_a_folder(self):
        (self.home / _PROPERTY_LIST).mkdir(parents=True)
        before = self.disk()
        self.expect_working_window()
        self.assert_only_gone(before, [])


class KeptFrame(Case):
    """The window comes back where it was, and what others keep in the same list stays."""

    def test_frame_comes_back(self):
        homes.write(self.home / _PROPERTY_LIST, plistlib.dumps({"Other": "kept"}))
        self.start()
        self.move_window_until_kept(lambda: _KEY in plistlib.loads((self.home / _PROPERTY_LIST).read_bytes()))
        self.close()
        kept = plistlib.loads((self.home / _PROPERTY_LIST).read_bytes())
        self.assertEqual(kept["Other"], "kept")
        x, y, width, height = map(int, kept[_KEY].split()[:4])
        self.start()
        self.assertEqual(self.screen.find("frame").extents[2:], (width, height))
        self.assertEqual(self.screen.find("frame").extents[0], x)
        self.close()
        self.assertEqual(plistlib.loads((self.home / _PROPERTY_LIST).read_bytes()), kept)
