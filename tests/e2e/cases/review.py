"""What a removal would do, looked at beforehand: it removes nothing, and it comes true."""

import re

import homes
from harness.case import Case
from harness.docker_case import DockerCase

_SHIELD = re.compile("^Safety Shield")


class ReviewCase(Case):
    def panel(self, name):
        self.screen.wait("dialog", f"Review: {name}")
        self.wait_computed()

    def wait_computed(self):
        self.screen.until(lambda: self.screen.find("heading", re.compile("^Review: "))
                          and not self.screen.find("animation", "In progress"), "a complete review")

    def lines(self):
        """What is listed: name → fate and size."""
        below = self.screen.wait("list", "What goes and what stays")
        return {line.name: line.description for line in below.children() if line.role == "list item"}

    def totals(self):
        return [label.name for label in self.screen.find_all("label")
                if label.name.startswith(("Goes: ", "Comes free: "))]

    def expect_closed(self):
        self.screen.wait_gone("dialog", re.compile("^Review"))

    def expect_focus(self, name):
        self.screen.until(lambda: (focused := self.screen.focused()) and focused.name == name, f"the focus on {name}")


class ReviewOfATool(ReviewCase):
    """The panel says what goes and what is kept, with the shield and without, and so it happens."""

    def setUp(self):
        super().setUp()
        self.cage.require_absent("gemini")
        data = self.home / ".gemini"
        homes.write(data / "oauth_creds.json", '{"token": "secret"}', 0o600)
        homes.write(data / "tmp/history.log", "x" * 5000)
        homes.write(data / "settings.json", "{}")
        self.inside = self.cage.home_inside
        self.before = self.disk()

    def test_truth(self):
        self.start()
        self.show_row("Gemini")
        self.select_application("Gemini")
        # By mouse.
        self.display.click(*self.screen.wait("push button", "Review selected", states=["enabled"]).middle)
        self.panel("Gemini")
        kept = self.lines()
        self.assertEqual(kept, {
            f"{self.inside}/.gemini": "Kept, 5 KB",
            "oauth_creds.json": "Kept: recognized credential, 19 bytes",
            "settings.json": "Kept: listed credential, 2 bytes",
            "tmp/history.log": "Kept: uncertain data, 5 KB",
        })
        self.assertEqual(self.totals(), ["Goes: 0 bytes", "Comes free: 0 bytes"])
        self.display.picture("review-shielded")

        # It follows the shield.
        switch = next(found for found in self.screen.find_all("check box", _SHIELD) if "enabled" in found.states)
        self.display.click(*switch.middle)
        self.screen.until(lambda: self.lines().get("settings.json") == "Goes, 2 bytes", "what goes without the shield")
        self.wait_computed()
        without = self.lines()
        self.assertEqual({fate.split(",")[0] for fate in without.values()}, {"Goes"})
        self.assertIn("Goes: 5 KB", self.totals())
        self.display.picture("review-unshielded")
        self.assertEqual(self.disk(), self.before, "the disk after a review")

        # Nothing below it can be pressed.
        self.assertNotIn("enabled", self.screen.find("push button", "Uninstall Selected").states)
        self.display.key("Escape")
        self.expect_closed()

        self.press("Uninstall Selected")
        self.dialog("Uninstall 1 Application?")
        self.confirm("Uninstall")
        self.result("Uninstallation Completed")
        self.dismiss_result()
        gone = [".gemini" if name.startswith("/") else f".gemini/{name}" for name in without]
        self.assert_only_gone(self.before, gone)
        self.close()

    def test_by_keyboard(self):
        self.start()
        self.show_row("Gemini")
        row = self.application_row("Gemini")
        row.grab_focus()
        self.expect_focus("Gemini")
        for keys in ("Menu", "shift+F10"):
            self.display.key(keys)
            self.screen.wait("menu item", "Review", states=["focused"])
            self.display.key("Escape")
            self.screen.wait_gone("menu item", "Review")
            self.expect_focus("Gemini")
        self.display.key("Menu")
        self.screen.wait("menu item", "Review", states=["focused"])
        self.display.key("Return")
        self.panel("Gemini")
        self.display.key("Down")
        self.expect_focus(f"{self.inside}/.gemini")
        self.display.key("Tab")
        self.expect_focus("Close")
        self.display.key("Escape")
        self.expect_closed()
        self.expect_focus("Gemini")
        self.assertEqual(self.disk(), self.before)
        self.close()

    def test_on_the_bus(self):
        self.start()
        self.assertNotIn("enabled", self.screen.find("push button", "Review selected").states)
        self.show_row("Gemini")
        self.select_application("Gemini")
        self.press("Review selected")
        self.panel("Gemini")
        self.press("Close")
        self.expect_closed()
        self.close()


class ReviewOfManyEntries(ReviewCase):
    """The first entries are listed; more when the line with the number of the others is pressed."""

    def setUp(self):
        super().setUp()
        self.cage.require_absent("gemini")
        for number in range(2300):
            homes.write(self.home / f".gemini/tmp/{number:04}.log")
        self.start()
        self.show_row("Gemini")
        self.select_application("Gemini")
        self.press("Review selected")
        self.panel("Gemini")

    def to_the_end(self):
        """Moves to the last line, which says how many more there are; returns it."""
        self.screen.wait("list", "What goes and what stays").grab_focus()
        self.display.key("End")
        return self.screen.wait("list item", re.compile("^and "), description="Kept: uncertain data")

    def expect_more(self):
        self.wait_computed()
        self.display.key("End")
        self.screen.wait("list item", "and 300 more")

    def test_by_mouse(self):
        more = self.to_the_end()
        self.assertEqual(more.name, "and 2,100 more")
        self.display.picture("review-more")
        self.display.click(*more.middle)
        self.expect_more()
        self.close()

    def test_by_keyboard(self):
        self.to_the_end()
        self.expect_focus("and 2,100 more")
        before = self.screen.focused().extents
        self.display.key("Return")
        # What comes in its place is the next line.
        self.screen.until(lambda: self.screen.find("list item", "and 2,100 more") is None, "more lines")
        self.wait_computed()
        self.display.key("Down")
        self.screen.until(lambda: self.screen.focused().name.startswith("tmp/")
                          and self.screen.focused().extents == before, "the focus on a new line")
        self.expect_more()
        # As many as fit are all that there are.
        self.display.key("space")
        self.screen.wait_gone("list item", re.compile("^and "))
        self.close()

    def test_on_the_bus(self):
        self.to_the_end()
        self.press("List More")
        self.expect_more()
        self.close()


class ReviewOfAModel(ReviewCase):
    """Space and the right button lead to it; it names what stays elsewhere."""

    def test_space_and_right_button(self):
        homes.gguf_model(self.home, "org/Foo/foo.gguf", b"g" * 2_000_000)
        before = self.disk()
        self.start()
        self.show_pane("models")
        row = self.screen.wait("list item", "org/Foo/foo.gguf")
        row.grab_focus()
        self.display.key("space")
        self.panel("org/Foo/foo.gguf")
        model = f"{self.cage.home_inside}/.lmstudio/models/org/Foo/foo.gguf"
        self.assertEqual(self.lines(), {model: "Goes, 2 MB"})
        self.assertEqual(self.totals(), ["Goes: 2 MB", "Comes free: 2 MB"])
        self.assertFalse([found for found in self.screen.find_all("check box", _SHIELD) if "enabled" in found.states])
        self.display.key("Escape")
        self.expect_closed()
        self.expect_focus("org/Foo/foo.gguf")
        self.display.click(*row.middle, button=3)
        self.display.click(*self.screen.wait("menu item", "Review").middle)
        self.panel("org/Foo/foo.gguf")
        self.press("Close")
        self.expect_closed()
        # Its button keeps Space.
        self.display.key("Tab")
        self.expect_focus("Delete org/Foo/foo.gguf")
        self.display.key("space")
        self.dialog("Delete org/Foo/foo.gguf?")
        self.display.key("Escape")
        self.assertEqual(self.disk(), before)
        self.close()


class DockerReviewCase(ReviewCase, DockerCase):
    """A running container, its image and another one."""

    def setUp(self):
        super().setUp()
        self.used = self.engine.make_image("service:1")
        self.spare = self.engine.make_image("spare:1")
        self.engine.start_container("job", "service:1")
        self.start_over_engine()

    def remarks(self):
        return [line for line in self.lines() if line.endswith(".")]

    def expect_untouched(self):
        self.assertEqual(self.engine.images(), {self.used, self.spare})
        self.assertEqual(self.engine.containers(), {"job": "running"})
        self.assertEqual(self.asked(), [])
        self.close()


class ReviewOfAContainer(DockerReviewCase):
    """It goes with what was written in it, its image stays, and a look asks nothing of the engine."""

    def test_by_mouse(self):
        self.display.click(*self.screen.wait("list item", "job").middle, button=3)
        self.display.click(*self.screen.wait("menu item", "Review").middle)
        self.panel("job")
        self.assertEqual(self.lines()["job"], "Goes, once it is stopped")
        self.assertIn("Its image service:1 and its volumes stay.", self.remarks())
        self.assertEqual(self.totals(), ["Goes: Not known", "Comes free: Not known"])
        self.display.picture("review-container")
        self.display.click(*self.screen.wait("push button", "Close", states=["enabled"]).middle)
        self.expect_closed()
        self.expect_untouched()


class ReviewOfAnImage(DockerReviewCase):
    """One that a container uses would be refused; another goes, and how much comes free only Docker knows."""

    def size_of(self, name):
        return re.search("[0-9.]+MB", self.row(name)).group()

    def test_by_keyboard(self):
        size = self.size_of("spare:1")
        self.screen.wait("list item", "spare:1").grab_focus()
        self.expect_focus("spare:1")
        self.display.key("Menu")
        self.screen.wait("menu item", "Review", states=["focused"])
        self.display.key("Return")
        self.panel("spare:1")
        self.assertEqual(self.lines()[f"spare:1 ({self.spare[7:19]})"], f"Goes, {size}")
        self.assertEqual(self.totals(), [f"Goes: {size}", "Comes free: Not known"])
        self.assertTrue(any(line.startswith("Layers that other images share stay") for line in self.remarks()))
        self.display.picture("review-image")
        self.display.key("Escape")
        self.expect_closed()
        self.expect_focus("spare:1")
        self.expect_untouched()

    def test_on_the_bus(self):
        size = self.size_of("service:1")
        self.screen.wait("list item", "service:1").grab_focus()
        self.display.key("shift+F10")
        self.screen.wait("menu item", "Review", states=["enabled"]).press()
        self.panel("service:1")
        self.assertEqual(self.lines()[f"service:1 ({self.used[7:19]})"], f"Refused: a container uses it, {size}")
        self.assertEqual(self.totals(), ["Goes: Nothing", "Comes free: Not known"])
        self.press("Close")
        self.expect_closed()
        self.expect_untouched()


class MenuOfARowThatMoves(ReviewCase):
    """A menu is about the row for which it was asked: it goes when the rows change."""

    def test_rescan(self):
        homes.gguf_model(self.home, "org/Foo/foo.gguf", b"g" * 2000)
        self.start()
        self.show_pane("models")
        self.screen.wait("list item", "org/Foo/foo.gguf").grab_focus()
        self.display.key("Menu")
        self.screen.wait("menu item", "Review", states=["focused"])
        homes.gguf_model(self.home, "org/Bar/bar.gguf", b"g" * 2000)
        self.press("Scan System")
        self.screen.wait("list item", "org/Bar/bar.gguf")
        self.screen.wait_gone("menu item", "Review")
        self.close()
