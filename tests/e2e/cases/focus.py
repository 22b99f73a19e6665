"""Where the keyboard's focus is, whatever happens to what had it."""

import homes
from harness.case import Case

_SHIELD = "Safety Shield, retains recognized credentials and uncertain data when on"


class FocusCase(Case):
    def expect_focus(self, name, role=None):
        self.screen.until(lambda: (focused := self.screen.focused()) and focused.name == name
                          and role in (None, focused.role), f"the focus on {name}")

    def focused(self):
        return self.screen.until(self.screen.focused, "a focus")


class FirstTab(FocusCase):
    """The keyboard starts in the list; the switch that turns the protection off comes last."""

    def test_from_a_fresh_start(self):
        homes.write(self.home / ".claude/settings.json", "{}")
        self.start()
        self.display.key("Tab")
        self.display.key("space")
        # Whatever the first Tab led to, the shield was not turned off.
        self.screen.wait("check box", _SHIELD, states=["checked"])
        self.assertNotEqual(self.focused().name, _SHIELD)
        self.close()

    def test_order(self):
        homes.write(self.home / ".claude/settings.json", "{}")
        self.start()
        self.display.key("Tab")
        self.expect_focus("Ollama")
        row = self.screen.wait("check box", "Claude Code (CLI)")
        row.grab_focus()
        self.expect_focus("Claude Code (CLI)")
        self.display.key("space")
        self.screen.wait("check box", "Claude Code (CLI)", states=["checked"])
        self.display.key("Tab")
        self.expect_focus("Review selected")
        self.display.key("Tab")
        self.expect_focus("Uninstall Selected")
        self.display.key("Tab")
        self.expect_focus(_SHIELD)
        self.display.key("shift+Tab", "shift+Tab", "shift+Tab")
        self.expect_focus("Claude Code (CLI)")
        # A screen reader meets them in the same order.
        wanted = ["Applications", "1 selected", "Uninstall Selected", _SHIELD]
        met = [element.name for element in self.screen.find_all() if element.name in wanted
               and element.role != "page tab" and element.role != "heading"]
        self.assertEqual(met, wanted)
        self.close()


class RowsThatWereNotFound(FocusCase):
    """The arrow keys stop at every tool, found or not; one that was not found cannot be selected."""

    def test_arrows(self):
        self.start()
        self.screen.wait("list", "Applications").grab_focus()
        self.display.key("Home")
        seen = []
        for _ in range(3):
            focused = self.screen.until(lambda: (now := self.screen.focused()) and now.role == "check box"
                                        and now.name not in seen and now, "the next row")
            seen.append(focused.name)
            self.assertNotIn("enabled", focused.states)
            self.display.key("space", "Return", "Down")
        self.assertNotIn("checked", {state for row in self.screen.find_all("check box") if row.name != _SHIELD
                                     for state in row.states})
        self.close()


class FocusAfterADeletion(FocusCase):
    """When the row that had the focus is gone, the list has it, and the arrow keys go on from there."""

    def test_next_row_takes_it(self):
        for letter in "abcd":
            homes.gguf_model(self.home, f"{letter}.gguf", b"g" * 1000)
        self.start()
        self.show_pane("models")
        names = [row.name for row in self.screen.wait("list", "Local models").children() if row.role == "list item"]
        self.assertEqual(len(names), 4)
        # One in the middle, whose follower takes its place, and the last one.
        for gone, following in ((names[1], names[2]), (names[3], names[2])):
            button = self.screen.wait("push button", f"Delete {gone}", states=["enabled"])
            self.display.click(*button.middle)
            self.dialog(f"Delete {gone}?")
            self.display.type(self.issued_code())
            self.screen.wait("push button", "Delete Permanently", states=["enabled"])
            self.display.key("Return")
            self.result("Model Deleted")
            self.expect_focus("OK")
            self.display.key("Return")
            self.screen.wait_gone("dialog")
            self.screen.wait_gone("list item", gone)
            self.expect_focus(following, "list item")
        self.display.key("Up")
        self.expect_focus(names[0], "list item")
        self.close()

    def test_empty_list_takes_it(self):
        homes.gguf_model(self.home, "only.gguf", b"g" * 1000)
        self.start()
        self.show_pane("models")
        self.screen.wait("push button", "Delete only.gguf", states=["enabled"]).grab_focus()
        self.display.key("space")
        self.dialog("Delete only.gguf?")
        self.confirm("Delete Permanently")
        self.result("Model Deleted")
        self.dismiss_result()
        self.screen.wait(name="No local models detected.")
        self.expect_focus("Local models", "list")
        self.close()


class FocusAfterClearing(FocusCase):
    """"Clear Console" disables itself; the empty log takes the focus."""

    def test_by_key_and_by_click(self):
        self.start()
        self.show_pane("console")
        clear = self.screen.wait("push button", "Clear Console", states=["enabled"])
        clear.grab_focus()
        self.expect_focus("Clear Console")
        self.display.key("space")
        self.screen.wait(name="Awaiting activity...")
        self.expect_focus("Activity log", "list")
        self.press("Scan System")
        self.wait_idle()
        clear = self.screen.wait("push button", "Clear Console", states=["enabled"])
        self.display.click(*clear.middle)
        self.screen.wait(name="Awaiting activity...")
        self.expect_focus("Activity log", "list")
        self.close()


class FocusWhileScanning(FocusCase):
    """"Scan System" is disabled while it works, and what is hidden with its pane has no focus either."""

    def test_pane_changes(self):
        homes.gguf_model(self.home, "a.gguf", b"g" * 1000)
        self.start()
        self.show_pane("models")
        self.screen.wait("push button", "Delete a.gguf", states=["enabled"]).grab_focus()
        self.expect_focus("Delete a.gguf")
        self.show_pane("console")
        self.expect_focus("Activity log", "list")
        self.show_pane("models")
        self.screen.until(lambda: (now := self.screen.focused()) and "showing" in now.states
                          and now.name in ("Local models", "a.gguf", "Delete a.gguf"), "the focus in the models' pane")
        self.close()
