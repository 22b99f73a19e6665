"""Keys that are held or pressed twice count once, and where they were meant to count."""

import homes
from harness.case import Case

# The shield keeps the data, so that the tool stays selected.
_RESULT = "Uninstallation Completed with Data Remaining"
_CHECKED = "object:state-changed:checked"
_FIELD = "Type the eight digit confirmation code manually"


class KeysCase(Case):
    def setUp(self):
        super().setUp()
        homes.write(self.home / ".claude/settings.json", "{}")
        homes.write(self.home / ".ollama/history", "")
        self.before = self.disk()
        self.start()

    def row(self, name):
        return self.screen.wait("check box", name)

    def focus(self, element):
        element.grab_focus()
        self.screen.until(lambda: "focused" in element.states, f"the focus on {element.name}")

    def selected(self):
        return [label.name for label in self.screen.find_all("label") if label.name.endswith(" selected")]

    def hold(self, key, repeats=8):
        self.display.press_key(key, repeats)
        self.display.release_key(key)

    def settle(self):
        """The window has read all keys so far: the next one, which moves the focus, did its work."""
        focused = self.screen.focused().name
        self.display.key("Down")
        self.screen.until(lambda: (now := self.screen.focused()) and now.name != focused, "the next row")
        self.display.key("Up")
        self.screen.until(lambda: (now := self.screen.focused()) and now.name == focused, "the row before")


class HeldKeyOnARow(KeysCase):
    """Space or Return toggles a row once, however long it is held."""

    def test_space_and_return(self):
        row = self.row("Claude Code (CLI)")
        self.focus(row)
        for key, checked in (("space", True), ("Return", False), ("space", True), ("KP_Enter", False)):
            with self.subTest(key=key):
                changes = self.screen.listen(_CHECKED)
                self.hold(key)
                self.settle()
                self.assertEqual("checked" in row.states, checked)
                # An even number of them leaves the row as one does.
                self.screen.until(changes, "the change of the row")
                self.assertEqual(len(changes()), 1, changes())
        self.close()


class ReturnTwiceInAConfirmation(KeysCase):
    """What is typed for a modal ends with it: a second Return, or one that is held, neither changes the selection
    below nor dismisses the result that comes next."""

    def confirm_uninstallation(self):
        """Of the tool about which npm is asked."""
        self.focus(self.row("Claude Code (CLI)"))
        self.display.key("space")
        self.screen.wait("check box", "Claude Code (CLI)", states=["checked"])
        self.press("Uninstall Selected")
        self.dialog("Uninstall 1 Application?")
        self.screen.wait("text", _FIELD, states=["focused"])
        self.display.type(self.issued_code())
        self.screen.wait("push button", "Uninstall", states=["enabled"])

    def expect_result_and_dismiss(self):
        self.result(_RESULT)
        self.screen.wait("push button", "OK", states=["focused"])
        # Still there after everything that was typed.
        self.assertIsNotNone(self.screen.find("dialog", _RESULT))
        self.display.key("Return")
        self.screen.wait_gone("dialog")
        self.settle()
        self.assertEqual(self.selected(), ["1 selected"])

    def test_twice(self):
        self.confirm_uninstallation()
        self.display.key("Return", "Return")
        self.expect_result_and_dismiss()
        self.close()

    def test_many_times(self):
        self.confirm_uninstallation()
        self.display.key(*["Return"] * 12)
        self.expect_result_and_dismiss()
        self.close()

    def test_held(self):
        self.confirm_uninstallation()
        self.display.press_key("Return")
        self.result(_RESULT)
        self.screen.wait("push button", "OK", states=["focused"])
        self.display.wait_for_repeats(8)
        self.assertIsNotNone(self.screen.find("dialog", _RESULT))
        self.display.release_key("Return")
        self.expect_result_and_dismiss()
        self.close()


class ReturnTwiceOnAResult(KeysCase):
    """The second Return does not reach the row that the focus comes back to."""

    def test_dismissal(self):
        row = self.row("Ollama")
        self.focus(row)
        self.display.key("space")
        self.screen.wait("check box", "Ollama", states=["checked"])
        self.press("Uninstall Selected")
        self.dialog("Uninstall 1 Application?")
        self.display.type(self.issued_code())
        self.screen.wait("push button", "Uninstall", states=["enabled"])
        self.press("Uninstall")
        self.result(_RESULT)
        self.screen.wait("push button", "OK", states=["focused"])
        self.display.key("Return", "Return")
        self.screen.wait_gone("dialog")
        self.settle()
        self.assertEqual(self.selected(), ["1 selected"])
        self.close()


class KeyHeldWhileAModalCloses(KeysCase):
    """A key that is held while a confirmation closes does nothing below; pressed anew it does."""

    def test_return_and_space(self):
        row = self.row("Claude Code (CLI)")
        for held in ("Return", "space"):
            with self.subTest(key=held):
                self.focus(row)
                self.press("Uninstall Zentrill")
                self.dialog("Self-Uninstall Zentrill?")
                self.screen.wait("text", _FIELD, states=["focused"])
                self.display.press_key(held, repeats=1)
                changes = self.screen.listen(_CHECKED)
                self.press("Cancel")
                self.screen.wait_gone("dialog")
                self.display.wait_for_repeats(8)
                self.display.release_key(held)
                self.settle()
                self.assertEqual(self.selected(), ["0 selected"])
                self.assertEqual(changes(), [])
        self.display.key("space")
        self.screen.wait("check box", "Claude Code (CLI)", states=["checked"])
        self.close()
