"""Many paths that the Safety Shield kept are one line of the console until it is opened."""

import re

import homes
from harness.case import Case

_PATHS = 300
_FOLD = re.compile(rf"^\[\d\d:\d\d:\d\d\] \[Safety Shield\] {_PATHS} paths preserved…$")


class FoldCase(Case):
    def setUp(self):
        super().setUp()
        self.cage.require_absent("openrouter")
        for number in range(_PATHS):
            homes.write(self.home / f".openrouter/projects/{number:03}.jsonl", "{}")
        self.start()
        self.show_row("OpenRouter CLI")
        self.select_application("OpenRouter CLI")
        self.set_shield(True)
        self.press("Uninstall Selected")
        self.confirm("Uninstall")
        self.result("Uninstallation Completed with Data Remaining")
        self.dismiss_result()
        self.show_pane("console")

    def fold(self, description="Folded"):
        return self.screen.wait("push button", _FOLD, description=description)

    def lines(self):
        """The paths that are shown one by one."""
        return self.screen.find_all("list item", re.compile("Preserved: .*/projects/"), showing=False)

    def expect_open(self):
        self.fold("Unfolded")
        self.screen.until(self.lines, "the lines")

    def expect_folded(self):
        self.fold("Folded")
        self.screen.until(lambda: not self.lines(), "no line of the fold")


class FoldInTheConsole(FoldCase):
    """Mouse, keyboard and assistive tools open and close it, a search opens it, and who copies gets all lines."""

    def test_by_mouse(self):
        self.expect_folded()
        self.display.picture("console-folded")
        for expect in (self.expect_open, self.expect_folded):
            fold = self.screen.wait("push button", _FOLD)
            self.display.click(*fold.middle)
            expect()
            self.display.picture(f"console-{expect.__name__}")
        self.close()

    def test_by_keyboard(self):
        self.screen.wait("list", "Activity log").grab_focus()
        self.press_until("Tab", self.fold().name, "push button")
        for key, expect in (("Return", self.expect_open), ("space", self.expect_folded)):
            self.display.key(key)
            expect()
            self.assertRegex(self.screen.until(self.screen.focused, "a focus").name, _FOLD)
        self.display.picture("console-fold-focused")
        self.close()

    def test_on_the_bus(self):
        for expect in (self.expect_open, self.expect_folded):
            self.screen.wait("push button", _FOLD).press()
            expect()
        self.close()

    def test_search_opens_it(self):
        self.display.key("ctrl+f")
        self.screen.wait("text", "Search the log", states=["focused"])
        self.display.type("projects/234")
        self.screen.wait("list item", re.compile("/projects/234.jsonl$"))
        self.display.picture("console-fold-search")
        self.close()

    def test_copy(self):
        self.screen.wait("list", "Activity log").grab_focus()
        self.display.key("ctrl+a", "ctrl+c")
        copied = self.screen.until(lambda: self.display.run("xclip", "-selection", "clipboard", "-out"),
                                   "the copy").splitlines()
        paths = [line for line in copied if "[Safety Shield] Preserved: " in line]
        self.assertEqual(len(paths), _PATHS)
        self.assertIn("Starting system scan", copied[0])
        self.assertFalse([line for line in copied if "paths preserved" in line])
        self.expect_folded()
        self.close()
