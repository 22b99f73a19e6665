"""What a screen reader is told."""

import homes
from harness.case import Case


class ConsoleLinesInOrder(Case):
    """A screen reader meets the lines of the log from the top down, also when rows show other lines than at first."""

    def test_after_scrolling(self):
        self.start()
        self.show_pane("console")
        for _ in range(20):
            self.press("Scan System")
            self.wait_idle()
        log = self.screen.wait("list", "Activity log")
        left, top, width, height = log.extents
        looked_at = 0
        for notches in (-40, 40, -3, 2, -40, 4, -2):
            before = [row.extents for row in log.children()]
            self.display.wheel(left + width // 2, top + height // 2, notches)
            self.screen.until(lambda: [row.extents for row in log.children()] != before, "lines that moved")
            lines = [row for row in log.children() if row.role == "list item"]
            places = [row.extents[1] for row in lines]
            self.assertGreater(len(places), 5)
            self.assertEqual(places, sorted(places), f"after {notches}: {[line.name for line in lines]}")
            looked_at += 1
        self.assertEqual(looked_at, 7)
        self.close()


class RowsInOrder(Case):
    """The same for the rows of a long list."""

    def test_after_scrolling(self):
        names = [f"model-{number:02}.gguf" for number in range(50)]
        for name in names:
            homes.gguf_model(self.home, name, b"g" * 1000)
        self.start()
        self.show_pane("models")
        models = self.screen.wait("list", "Local models")
        models.grab_focus()
        for key in ("Down", "End", "Home", "Next", "Next", "Prior"):
            before = self.screen.focused().name
            self.display.key(key)
            self.screen.until(lambda: (now := self.screen.focused()) and now.role == "list item"
                              and now.name != before, key)
            places = [row.extents[1] for row in models.children() if row.role == "list item"]
            self.assertGreater(len(places), 5)
            self.assertEqual(places, sorted(places), key)
        self.close()


class ResultOnTheBus(Case):
    """The result is a modal dialog that says what came of the operation, and is announced."""

    def test_dialog(self):
        homes.gguf_model(self.home, "foo.gguf", b"g" * 1000)
        self.start()
        self.show_pane("models")
        self.press("Delete foo.gguf")
        confirmation = self.dialog("Delete foo.gguf?")
        self.assertIn("modal", confirmation.states)
        events = self.screen.listen("object:state-changed:showing", "object:state-changed:focused")
        self.confirm("Delete Permanently")
        dialog = self.result("Model Deleted")
        self.assertEqual(dialog.description, "Removed model foo.gguf.")
        self.assertIn("modal", dialog.states)
        self.assertIn("enabled", dialog.states)
        heard = lambda kind, name: any(event == (kind, "dialog", name) for event in events())
        self.screen.until(lambda: heard("object:state-changed:showing", "Model Deleted"), "the dialog's appearance")
        self.screen.until(lambda: heard("object:state-changed:focused", "Model Deleted"), "the focus on the dialog")
        self.dismiss_result()
        self.close()


class BelowAModalOnTheBus(Case):
    """Nothing that lies below a modal reads as enabled, and all of it does again afterwards."""

    def test_states(self):
        homes.write(self.home / ".claude/settings.json", "{}")
        self.start()
        for pane in ("apps", "models", "docker", "console"):
            with self.subTest(pane=pane):
                self.show_pane(pane)
                self.press("Uninstall Zentrill")
                self.dialog("Self-Uninstall Zentrill?")
                below = list(self.below(self.screen.application()))
                self.assertGreater(len(below), 8)
                self.assertEqual([str(element) for element in below if {"enabled", "sensitive"} & element.states], [])
                self.display.key("Escape")
                self.screen.wait_gone("dialog")
                for role, name in (("heading", "Zentrill"), ("page tab list", "Panes"), ("push button", "Scan System")):
                    self.assertIn("enabled", self.screen.wait(role, name).states)
        self.close()

    def below(self, element):
        for child in element.children():
            if child.role in ("dialog",):
                continue
            if child.role not in ("frame", "application"):
                yield child
            yield from self.below(child)


class SelectingTheWholeLog(Case):
    """Ctrl+A and Ctrl+C in the log copy all lines, and the program has nothing to complain about."""

    def test_copy(self):
        self.start()
        self.show_pane("console")
        for _ in range(8):
            self.press("Scan System")
            self.wait_idle()
        log = self.screen.wait("list", "Activity log")
        log.grab_focus()
        self.screen.wait("list", "Activity log", states=["focused"])
        self.display.key("ctrl+a", "ctrl+c", "Home", "End", "Prior", "Next")
        left, top, width, height = log.extents
        self.display.wheel(left + width // 2, top + height // 2, -10)
        self.display.wheel(left + width // 2, top + height // 2, 10)
        self.press("Scan System")
        self.wait_idle()
        self.close()
