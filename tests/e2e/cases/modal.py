"""A modal has the window to itself."""

import homes
from gi.repository import GLib
from harness.case import Case

_FIELD = "Type the eight digit confirmation code manually"


class ModalCase(Case):
    def setUp(self):
        super().setUp()
        homes.write(self.home / ".claude/settings.json", "{}")
        homes.gguf_model(self.home, "foo.gguf", b"g" * 1_000_000)
        self.before = self.disk()

    def open_model_confirmation(self):
        """By keyboard, from the model's own button."""
        self.show_pane("models")
        self.screen.wait("push button", "Delete foo.gguf").grab_focus()
        self.expect_focus("Delete foo.gguf")
        self.display.key("space")
        self.dialog("Delete foo.gguf?")
        self.expect_focus(_FIELD)

    def expect_focus(self, name):
        self.screen.until(lambda: (focused := self.screen.focused()) and focused.name == name, f"the focus on {name}")

    def expect_no_modal(self):
        self.screen.wait_gone("dialog")

    def outside(self):
        """Everything on the bus but what belongs to the modal."""

        def walk(element):
            yield element
            children = element.children()
            self.assertFalse(children and element.role in element.leaves, f"{element} holds something")
            for child in children:
                if child.role != "dialog":
                    yield from walk(child)

        return list(walk(self.screen.application()))


class ModalFocus(ModalCase):
    """The focus goes into the code field and comes back to where it was; Escape cancels a confirmation and
    dismisses a result."""

    def test_escape_and_cancel_return_the_focus(self):
        self.start()
        for leave in (lambda: self.display.key("Escape"), lambda: self.press("Cancel")):
            self.open_model_confirmation()
            self.display.type(self.issued_code())
            self.screen.wait("push button", "Delete Permanently", states=["enabled"])
            leave()
            self.expect_no_modal()
            self.expect_focus("Delete foo.gguf")
        self.close()
        self.assert_only_gone(self.before, [])

    def test_every_opening_is_fresh(self):
        self.start()
        codes = []
        for _ in range(3):
            self.open_model_confirmation()
            codes.append(self.issued_code())
            self.assertNotIn("enabled", self.screen.find("push button", "Delete Permanently").states)
            self.display.type(codes[-1])
            self.screen.wait("push button", "Delete Permanently", states=["enabled"])
            self.display.key("Escape")
            self.expect_no_modal()
        self.assertTrue(all(one != next_one for one, next_one in zip(codes, codes[1:])), codes)
        self.close()
        self.assert_only_gone(self.before, [])

    def test_return_confirms_only_what_matches(self):
        self.start()
        self.open_model_confirmation()
        code = self.issued_code()
        wrong = str((int(code[7]) + 1) % 10)
        for typed in ([], code[:7], [wrong]):
            for digit in typed:
                self.display.key(digit)
            self.display.key("Return", "KP_Enter")
            self.assertNotIn("enabled", self.screen.wait("push button", "Delete Permanently").states)
        self.assertEqual(self.issued_code(), code)
        self.assertEqual(self.disk(), self.before)
        self.display.key("BackSpace", code[7])
        self.screen.wait("push button", "Delete Permanently", states=["enabled"])
        self.display.key("Return")
        self.result("Model Deleted")
        self.expect_focus("OK")
        self.display.key("Escape")
        self.expect_no_modal()
        # Nothing is left where the focus was; the keyboard must still lead somewhere.
        self.display.key("Tab")
        self.screen.until(self.screen.focused, "a focus")
        self.close()
        self.assert_only_gone(self.before, [".lmstudio/models/foo.gguf"])


class BelowAModalCase(ModalCase):
    """While a modal is open nothing else of the window takes a click, a key, the focus or an assistive action."""

    def setUp(self):
        super().setUp()
        self.start()
        self.select_application("Claude Code (CLI)")
        self.press("Uninstall Selected")
        self.dialog("Uninstall 1 Application?")
        self.expect_focus(_FIELD)
        self.code = self.issued_code()

    def expect_untouched(self):
        self.screen.until(self.is_untouched, "a window that is what it was")

    def is_untouched(self):
        """By one walk: this is asked many times."""
        shown = {(element.role, element.name): element for element in self.screen.find_all()}
        codes = [element.description for (_, name), element in shown.items() if name == "Confirmation code"]
        return (codes == [self.code]
                and "selected" in shown["page tab", "Applications"].states
                and "checked" in shown["check box", "Claude Code (CLI)"].states
                and ("label", "1 selected") in shown
                and ("label", "ON · retains recognized credentials and uncertain data for review.") in shown
                and "focused" in shown["text", _FIELD].states)

    def settle(self):
        """The window has read everything that was sent to it before: a digit that came after it is in the field."""
        for key, text in (("7", "7"), ("BackSpace", "")):
            self.display.key(key)
            self.screen.until(lambda: self.screen.wait("text", _FIELD).text == text, f"{text!r} in the field")

    def leave(self):
        self.display.key("Escape")
        self.expect_no_modal()
        self.close()
        self.assert_only_gone(self.before, [])


class NoAssistiveActionBelowAModal(BelowAModalCase):
    """Neither an action nor the focus reaches what lies below a modal."""

    def test_assistive_actions(self):
        tried = 0
        for element in self.outside():
            if element.role in ("push button", "check box", "page tab"):
                self.assertNotIn("enabled", element.states, element.name)
            for action in element.actions:
                tried += 1
                try:
                    element.act(action)
                except GLib.Error:
                    pass  # Refused, which is as good.
                self.expect_untouched()
            element.grab_focus()
            self.expect_untouched()
        self.assertGreater(tried, 0)
        self.leave()


class NoClickBelowAModal(BelowAModalCase):
    """No button of the mouse reaches what lies below a modal."""

    def test_clicks(self):
        left, top, width, height = self.dialog("Uninstall 1 Application?").extents
        targets = [element for element in self.outside()
                   if element.role in ("push button", "check box", "page tab", "list") and "showing" in element.states]
        self.assertGreater(len(targets), 10)
        for element in targets:
            x, y = element.middle
            if not (left <= x < left + width and top <= y < top + height):
                for button in (1, 2, 3, 4, 5):
                    self.display.click(x, y, button)
        self.settle()
        self.expect_untouched()
        self.leave()


class NoKeyBelowAModal(BelowAModalCase):
    """The keyboard stays in the modal."""

    def test_keys(self):
        names = set()
        for _ in range(8):
            self.display.key("Tab")
            names.add(self.screen.until(self.screen.focused, "a focus").name)
        # The button that is disabled as long as the code does not match is passed over.
        self.assertEqual(names, {_FIELD, "Cancel"})
        self.screen.find("text", _FIELD).grab_focus()
        self.expect_focus(_FIELD)
        self.display.key("Up", "Down", "Prior", "Next", "Home", "End", "space", "alt+u", "ctrl+r", "F5",
                         "ctrl+a", "Menu", "ctrl+w", "ctrl+q")
        self.settle()
        self.expect_untouched()
        self.leave()
