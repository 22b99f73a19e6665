"""What the window says without being asked twice."""

import re

import homes
from cases.stopping import ClaudeCodeStoppingCase
from harness.case import Case

_NOTHING = "Nothing to remove: none of these tools is installed here, and none has left data behind."


class NothingToRemove(Case):
    """Said in one line above the list, until a scan finds something."""

    def test_line(self):
        self.start()
        for row in self.screen.find_all("check box", re.compile("^(?!Safety)")):
            if "Not found" not in row.description:
                self.skipTest(f"{row.name} is installed on this machine")
        line = self.screen.wait("label", _NOTHING)
        first = self.screen.wait("check box", "Ollama")
        self.assertLess(line.extents[1], first.extents[1])
        self.display.picture("nothing-to-remove")
        homes.write(self.home / ".claude/settings.json", "{}")
        self.press("Scan System")
        self.wait_idle()
        self.screen.wait_gone("label", _NOTHING)
        self.close()


class TooltipsThatExplain(Case):
    """"Data remains" tells which paths and how large, and the product's name its version."""

    def furnish(self):
        self.cage.require_absent("claude")
        homes.write(self.home / ".claude/settings.json", "{}")
        homes.write(self.home / ".claude/projects/a.jsonl", "x" * 4998)
        return f"What remains:\n{self.cage.home_inside}/.claude · 5 KB"

    def test_remaining_paths_by_mouse(self):
        remains = self.furnish()
        self.start()
        row = self.screen.wait("check box", "Claude Code (CLI)")
        left, top, width, height = row.extents
        # The status stands at the row's right end.
        self.display.point(left + width - 50, top + height // 2)
        self.screen.wait("tool tip", remains)
        self.display.picture("data-remains")
        self.close()

    def test_remaining_paths_by_keyboard(self):
        remains = self.furnish()
        self.start()
        self.display.key("ctrl+1")
        self.press_until("Down", "Claude Code (CLI)")
        self.screen.wait("tool tip", remains)
        self.close()

    def test_remaining_paths_on_the_bus(self):
        remains = self.furnish()
        self.start()
        row = self.screen.wait("check box", "Claude Code (CLI)")
        self.assertNotIn("What remains", row.description)
        row.grab_focus()
        self.screen.wait("check box", "Claude Code (CLI)", description=re.compile(re.escape(remains) + "$"))
        self.close()

    def test_version(self):
        self.start()
        self.display.point(*self.screen.wait("heading", "Zentrill").middle)
        tip = self.screen.wait("tool tip", re.compile(r"^Version [0-9]+\.[0-9]+\.[0-9]+$")).name
        self.display.key("question")
        self.screen.wait("label", tip.replace("Version", "Zentrill, version"))
        self.close()


class CancelAnswers(ClaudeCodeStoppingCase):
    """"Cancel" says that it was heard, and takes no second press."""

    def test_once(self):
        self.start()
        self.begin("Claude Code (CLI)")
        self.screen.until(self.started.exists, "npm at work")
        cancel = self.screen.wait("push button", "Cancel", states=["enabled"])
        cancel.press()
        self.screen.wait("push button", "Cancel", description="Cancelling…")
        self.assertNotIn("enabled", self.screen.find("push button", "Cancel").states)
        self.display.click(*self.screen.find("push button", "Cancel").middle)
        self.display.picture("cancelling")
        with open(self.pipe, "w") as pipe:
            pipe.write("\n")
        self.result("Uninstallation Completed with Errors")
        self.dismiss_result()
        self.assertEqual(self.log().count("Cancellation requested by user."), 1)
        self.close()
