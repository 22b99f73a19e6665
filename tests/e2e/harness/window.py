"""What a person sees and does in the program's window."""

import re

PANES = {"apps": "Applications", "models": "Local Models", "docker": "Docker", "console": "Activity Console"}
_CODE = re.compile(r"^[0-9]{8}$")
_LOG_TIME = re.compile(r"^\[\d\d:\d\d:\d\d\] ")


class Window:
    """Who derives from it has a `screen` to read the window from and a `display` with its keyboard."""

    def wait_idle(self):
        """Until nothing runs."""
        self.screen.until(lambda: self.screen.find("push button", "Scan System") is not None
                          and self.screen.find("push button", "Cancel") is None, "an idle program")

    def show_pane(self, pane):
        """"apps", "models", "docker" or "console", by a press on its tab."""
        self.screen.wait(name=PANES[pane], role="page tab").press()
        self.screen.wait("page tab", PANES[pane], states=["selected"])

    def application_row(self, display_name):
        return self.screen.wait("check box", display_name)

    def show_row(self, display_name):
        """Moves down the list until that row is in sight."""
        self.screen.wait("list", "Applications").grab_focus()
        self.display.key("Home")

        def in_sight():
            if self.screen.find("check box", display_name):
                return True
            self.display.key("Down")
            return False

        self.screen.until(in_sight, f"the row {display_name}")

    def select_application(self, display_name):
        row = self.application_row(display_name)
        row.press()
        self.screen.wait("check box", display_name, states=["checked"])

    def set_shield(self, on):
        """The Safety Shield switch, by a press where it stands otherwise."""
        shield = re.compile("^Safety Shield")
        switch = self.screen.wait("check box", shield)
        if ("checked" in switch.states) != on:
            switch.press()
        self.screen.until(lambda: ("checked" in self.screen.find("check box", shield).states) == on, "the shield")

    def press(self, name):
        self.screen.wait("push button", name, states=["enabled"]).press()

    def press_until(self, key, name, role=None):
        """Presses the key until the focus is there."""
        for _ in range(40):
            focused = self.screen.until(self.screen.focused, "a focus")
            if focused.name == name and role in (None, focused.role):
                return
            self.display.key(key)
        raise AssertionError(f"{key} does not lead to {name}\n{self.screen.describe()}")

    def dialog(self, title):
        """The modal of that title, as soon as it is shown."""
        return self.screen.wait("dialog", title)

    def issued_code(self):
        return self.screen.wait(name="Confirmation code", description=_CODE).description

    def confirm(self, action_title):
        """Types the code that the modal shows with real key presses and presses the button."""
        self.display.type(self.issued_code())
        self.press(action_title)

    def result(self, title):
        """The result modal of that title, once it is shown."""
        return self.dialog(title)

    def result_lines(self):
        """The message of the shown result, line by line."""
        return self._lines("Message")

    def error_lines(self):
        return self._lines("Errors")

    def dismiss_result(self):
        self.press("OK")
        self.screen.wait_gone("push button", "OK")

    def log(self):
        """The activity log without its times; shows the console's pane. Only the rows near those in sight exist on
        the bus, so this is for logs of up to some thirty lines."""
        self.show_pane("console")
        return [_LOG_TIME.sub("", line) for line in self._lines("Activity log")]

    def _lines(self, list_name):
        shown = self.screen.find("list", list_name)
        return [row.name for row in shown.children() if row.role == "list item"] if shown else []
