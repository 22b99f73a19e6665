"""The paths behind rows and results: copied byte for byte, and shown by the desktop's file manager."""

import os
import re
import urllib.parse

import homes
from harness import clipboards, file_manager
from harness.case import Case

_MODELS = ".lmstudio/models"


class PathsCase(Case):
    def start_file_manager(self):
        manager = file_manager.FileManager(self.session)
        self.addCleanup(manager.stop)
        return manager

    def inside(self, path):
        return os.fsencode(f"{self.cage.home_inside}/{path}")

    def uri(self, path):
        return "file://" + urllib.parse.quote(self.inside(path), safe="/")

    def expect_copied(self, expected, target="UTF8_STRING"):
        self.screen.until(lambda: clipboards.copied(self.display, target) == expected, f"a clipboard with {expected}")

    def expect_shown(self, manager, *paths):
        self.screen.until(lambda: manager.shown() == [self.uri(path) for path in paths], f"{paths} in the file manager")

    def choose(self, entry):
        self.display.click(*self.screen.wait("menu item", entry, states=["enabled"]).middle)
        self.screen.wait_gone("menu item")

    def expect_focus(self, name):
        self.screen.until(lambda: (focused := self.screen.focused()) and focused.name == name, f"the focus on {name}")

    def entries(self):
        return [entry.name for entry in self.screen.find_all("menu item")]


class PathOfAModel(PathsCase):
    """The menu of a model copies its path and shows it, by mouse, by keyboard and on the bus."""

    FOO = f"{_MODELS}/org/Foo 100%/foo.gguf"

    def open(self):
        homes.gguf_model(self.home, "org/Foo 100%/foo.gguf", b"g" * 1000)
        homes.gguf_model(self.home, "org/bar.gguf", b"g" * 1000)
        before = self.disk()
        self.start()
        self.show_pane("models")
        return before, self.screen.wait("list item", "org/Foo 100%/foo.gguf")

    def test_by_mouse(self):
        manager = self.start_file_manager()
        before, row = self.open()
        self.display.click(*row.middle, button=3)
        self.screen.wait("menu item", "Show in Folder", states=["enabled"])
        self.assertEqual(self.entries(), ["Review", "Copy Path", "Show in Folder"])
        self.display.picture("menu-model")
        self.choose("Copy Path")
        self.expect_copied(self.inside(self.FOO))
        self.display.click(*row.middle, button=3)
        self.choose("Show in Folder")
        self.expect_shown(manager, self.FOO)
        self.assertEqual(self.disk(), before)
        self.close()

    def test_by_keyboard(self):
        manager = self.start_file_manager()
        _, row = self.open()
        row.grab_focus()
        self.expect_focus(row.name)
        self.display.key("Menu")
        self.expect_focus("Review")
        self.display.key("Down")
        self.expect_focus("Copy Path")
        self.display.key("Return")
        self.expect_focus(row.name)
        self.expect_copied(self.inside(self.FOO))
        self.display.key("shift+F10")
        self.screen.wait("menu item", "Show in Folder", states=["enabled"])
        self.display.key("Down", "Down")
        self.expect_focus("Show in Folder")
        self.display.key("Return")
        self.expect_shown(manager, self.FOO)
        self.close()

    def test_on_the_bus(self):
        manager = self.start_file_manager()
        _, row = self.open()
        row.act("ShowMenu")
        self.screen.wait("menu item", "Copy Path", states=["enabled"]).press()
        self.expect_copied(self.inside(self.FOO))
        row.act("ShowMenu")
        self.screen.wait("menu item", "Show in Folder", states=["enabled"]).press()
        self.expect_shown(manager, self.FOO)
        self.close()


class CopyKeyInLists(PathsCase):
    """Ctrl+C copies the path of the row at hand, or its name where it has none."""

    def test_models_and_tools(self):
        self.cage.require_absent("gemini", "codex")
        homes.gguf_model(self.home, "org/foo.gguf", b"g" * 1000)
        homes.write(self.home / ".gemini/settings.json", "{}")
        self.start()
        self.show_row("Gemini")
        self.application_row("Gemini").grab_focus()
        self.expect_focus("Gemini")
        self.display.key("ctrl+c")
        self.expect_copied(self.inside(".gemini"))
        self.display.key("Menu")
        self.screen.wait("menu item", "Copy Path")
        self.display.key("Escape")
        self.screen.wait_gone("menu item")
        self.show_row("Hermes")
        self.application_row("Hermes").grab_focus()
        self.expect_focus("Hermes")
        self.display.key("ctrl+c")
        self.expect_copied(b"Hermes")
        self.display.key("Menu")
        self.screen.wait("menu item", "Review")
        self.assertEqual(self.entries(), ["Review"])
        self.display.key("Escape")
        self.show_pane("models")
        self.screen.wait("list item", "org/foo.gguf").grab_focus()
        self.expect_focus("org/foo.gguf")
        self.display.key("ctrl+c")
        self.expect_copied(self.inside(f"{_MODELS}/org/foo.gguf"))
        self.display.key("space")
        self.screen.wait("dialog", "Review: org/foo.gguf")
        self.display.key("Down")
        self.expect_focus(f"{self.cage.home_inside}/{_MODELS}/org/foo.gguf")
        self.display.key("Escape")
        self.close()


class PathOfOtherBytes(PathsCase):
    """A name that is no text is copied and shown byte for byte."""

    NAME = os.fsdecode(b"caf\xe9 \xff.gguf")

    def test_bytes(self):
        manager = self.start_file_manager()
        homes.gguf_model(self.home, self.NAME, b"g" * 1000)
        path = f"{_MODELS}/{self.NAME}"
        self.start()
        self.show_pane("models")
        row = self.screen.wait("list item", re.compile("^caf"))
        row.grab_focus()
        self.expect_focus(row.name)
        self.display.key("ctrl+c")
        self.expect_copied(self.inside(path))
        self.expect_copied(self.inside(path), "text/plain")
        self.expect_copied((self.uri(path) + "\r\n").encode(), "text/uri-list")
        self.display.click(*row.middle, button=3)
        self.choose("Show in Folder")
        self.expect_shown(manager, path)
        self.close()


class NoFileManager(PathsCase):
    """Without one the entry is there, and disabled."""

    def test_disabled(self):
        if file_manager.can_be_started():
            self.skipTest("the session's bus can start a file manager of the machine")
        homes.gguf_model(self.home, "foo.gguf", b"g" * 1000)
        self.start()
        self.show_pane("models")
        row = self.screen.wait("list item", "foo.gguf")
        self.display.click(*row.middle, button=3)
        self.assertNotIn("enabled", self.screen.wait("menu item", "Show in Folder").states)
        self.display.picture("menu-no-file-manager")
        self.display.key("Down", "Down", "Down")
        self.expect_focus("Copy Path")
        self.display.key("Escape")
        self.screen.wait_gone("menu item")
        # One that comes later is found by the next menu.
        manager = self.start_file_manager()
        self.display.click(*row.middle, button=3)
        self.choose("Show in Folder")
        self.expect_shown(manager, f"{_MODELS}/foo.gguf")
        self.close()


class RetainedPaths(PathsCase):
    """Each path that a result says was left in place can be copied and shown; the result stays until it is dismissed."""

    def open(self):
        self.cage.require_absent("gemini", "ollama")
        homes.write(self.home / ".gemini/settings.json", "{}")
        homes.write(self.home / ".ollama/history", "")
        self.start()
        for name in ("Ollama", "Gemini"):
            self.show_row(name)
            self.select_application(name)
        self.press("Uninstall Selected")
        self.dialog("Uninstall 2 Applications?")
        self.confirm("Uninstall")
        self.result("Uninstallation Completed with Data Remaining")
        self.screen.wait("push button", "OK", states=["focused"])
        return self.disk(), self.screen.wait("list", "Message")

    def line(self, path):
        return self.screen.wait("list item", re.compile(f": {re.escape(os.fsdecode(self.inside(path)))}$"))

    def finish(self, after):
        self.dismiss_result()
        self.close()
        self.assertEqual(self.disk(), after)

    def test_by_mouse(self):
        manager = self.start_file_manager()
        after, _ = self.open()
        self.display.click(*self.line(".ollama").middle, button=3)
        self.screen.wait("menu item", "Show in Folder", states=["enabled"])
        self.display.picture("menu-retained")
        self.choose("Copy Path")
        self.expect_copied(self.inside(".ollama"))
        self.display.click(*self.line(".gemini").middle, button=3)
        self.choose("Show in Folder")
        self.expect_shown(manager, ".gemini")
        # Nothing is offered for what is no path.
        self.display.click(*self.screen.wait("list item", re.compile("^Removed ")).middle, button=3)
        self.display.click(*self.line(".gemini").middle, button=3)
        self.assertEqual(self.screen.until(self.entries, "a menu"), ["Copy Path", "Show in Folder", "Next Path"])
        self.display.key("Escape")
        self.screen.wait_gone("menu item")
        self.finish(after)

    def test_by_keyboard(self):
        manager = self.start_file_manager()
        after, _ = self.open()
        self.press_until("Tab", "Message")
        self.display.key("Menu")
        self.expect_focus("Copy Path")
        self.display.key("Return")
        self.expect_focus("Message")
        self.expect_copied(self.inside(".gemini"))
        self.display.key("shift+F10")
        self.screen.wait("menu item", "Show in Folder", states=["enabled"])
        self.display.key("Down", "Down")
        self.expect_focus("Next Path")
        self.display.key("Return")
        self.screen.until(lambda: self.entries() == ["Copy Path", "Show in Folder"], "the menu of the last path")
        self.display.picture("menu-retained-next")
        self.display.key("Down")
        self.expect_focus("Show in Folder")
        self.display.key("Return")
        self.expect_shown(manager, ".ollama")
        self.expect_focus("Message")
        # Escape closes the menu alone.
        self.display.key("Menu")
        self.expect_focus("Copy Path")
        self.display.key("Escape")
        self.expect_focus("Message")
        self.finish(after)

    def test_on_the_bus(self):
        manager = self.start_file_manager()
        after, message = self.open()
        message.act("ShowMenu")
        self.screen.wait("menu item", "Copy Path", states=["enabled"]).press()
        self.expect_copied(self.inside(".gemini"))
        message.act("ShowMenu")
        self.screen.wait("menu item", "Show in Folder", states=["enabled"]).press()
        self.expect_shown(manager, ".gemini")
        self.finish(after)
