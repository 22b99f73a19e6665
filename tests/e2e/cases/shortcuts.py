"""The shortcuts: one key for what else takes several."""

import re

import homes
from harness.case import Case
from harness.window import PANES


class Shortcuts(Case):
    """Keys scan, show the panes, select all tools or none and close the window."""

    def furnish(self):
        self.cage.require_absent("codex", "claude")
        homes.write(self.home / ".codex/config.toml", "model = 1")
        homes.write(self.home / ".claude/settings.json", "{}")

    def test_panes_and_scan(self):
        self.start()
        for number, pane in ((2, "models"), (3, "docker"), (4, "console"), (1, "apps")):
            self.display.key(f"ctrl+{number}")
            self.screen.wait("page tab", PANES[pane], states=["selected"])
        for key in ("F5", "ctrl+r"):
            before = len(self.scans())
            self.display.key("ctrl+1", key)
            self.screen.until(lambda: len(self.scans()) == before + 1, f"the scan of {key}")
            self.wait_idle()
        self.display.key("ctrl+q")
        self.expect_end()

    def scans(self):
        return [line for line in self.log() if line.startswith("Scan completed: ")]

    def test_all_tools_and_none(self):
        self.furnish()
        self.start()
        self.display.key("ctrl+a")
        self.screen.wait("label", re.compile("^[2-9] selected$"))
        self.screen.wait("check box", "Claude Code (CLI)", states=["checked"])
        self.display.key("ctrl+a")
        self.screen.wait("label", "0 selected")
        self.display.key("ctrl+w")
        self.expect_end()


class ShortcutsBelowAModal(Case):
    """None works below a modal, and none confirms anything."""

    def test_nothing_happens(self):
        self.cage.require_absent("claude")
        homes.write(self.home / ".claude/settings.json", "{}")
        before = self.disk()
        self.start()
        lines = self.log()
        self.show_pane("apps")
        self.select_application("Claude Code (CLI)")
        self.press("Uninstall Selected")
        modal = self.dialog("Uninstall 1 Application?")
        code = self.issued_code()
        self.display.key("F5", "ctrl+r", "ctrl+2", "ctrl+4", "ctrl+a", "F1", "question", "ctrl+w", "ctrl+q")
        # What these keys could do is done before the digit behind them stands in the field.
        self.display.type("1")
        self.screen.until(lambda: self.screen.find("text").text == "1", "the digit")
        self.assertEqual((modal.name, self.issued_code()), ("Uninstall 1 Application?", code))
        self.display.key("Escape")
        self.screen.wait_gone("dialog")
        self.screen.wait("page tab", "Applications", states=["selected"])
        self.screen.wait("label", "1 selected")
        self.assertEqual(self.log(), lines)
        self.close()
        self.assert_only_gone(before, [])


class ShortcutsAreTaught(Case):
    """`?` lists all of them, and tooltips name them; a click or Escape closes the list."""

    def test_list(self):
        self.start()
        self.display.key("Down")
        focused = self.screen.until(self.screen.focused, "a focus").name
        for close in (lambda: self.display.key("Escape"), lambda: self.display.key("question"),
                      lambda: self.display.click(*self.screen.wait("heading", "Applications").middle)):
            self.display.key("question")
            panel = self.screen.wait("dialog", "Keyboard Shortcuts")
            said = [element.name for element in panel.walk() if element.role == "label"]
            for line in ("F5, Ctrl+R: Scan the system", "Ctrl+2: Show the local models"):
                self.assertIn(line, said)
            self.assertGreaterEqual(len(said), 10)
            self.display.picture("shortcuts")
            close()
            self.screen.wait_gone("dialog")
            self.assertEqual(self.screen.until(self.screen.focused, "a focus").name, focused)
        self.close()

    def test_tooltips(self):
        self.start()
        for role, name, keys in (("push button", "Scan System", "F5"), ("page tab", "Docker", "Ctrl+3")):
            self.display.point(*self.screen.wait(role, name).middle)
            self.screen.wait("tool tip", keys)
        self.close()
