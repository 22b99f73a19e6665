"""What every case of the code's field begins with."""

import homes

from .case import Case

_MODEL = "org/foo.gguf"
_BUTTON = "Delete Permanently"


class CodeFieldCase(Case):
    """A confirmation is open; nothing goes in the end."""

    def setUp(self):
        super().setUp()
        homes.gguf_model(self.home, _MODEL, b"g" * 2_000_000)
        self.before = self.disk()
        self.start()
        self.show_pane("models")
        self.code = self.open()

    def open(self):
        """Opens the confirmation; the code that it shows."""
        self.press(f"Delete {_MODEL}")
        self.dialog(f"Delete {_MODEL}?")
        return self.issued_code()

    def cancel(self):
        self.press("Cancel")
        self.screen.wait_gone("dialog")

    def field(self):
        return self.screen.wait("text", "Type the eight digit confirmation code manually", states=["showing"])

    def expect(self, text):
        self.screen.until(lambda: self.field().text == text, f"{text!r} in the field")

    def expect_nothing_new(self, text=""):
        """The field holds `text` as before. A key pressed after everything else shows what came before it."""
        self.display.key("7")
        self.expect(text + "7")
        self.display.key("BackSpace")
        self.expect(text)

    def enabled(self):
        return "enabled" in self.screen.wait("push button", _BUTTON).states

    def expect_enabled(self, wanted):
        self.screen.until(lambda: self.enabled() == wanted, f"a button that is {'' if wanted else 'not '}enabled")

    def finish(self):
        """The field works, and nothing was removed."""
        self.expect("")
        self.display.type(self.code)
        self.expect_enabled(True)
        self.cancel()
        self.close()
        self.assert_only_gone(self.before, [])
