"""The strip at the foot of a list: what there is, in which order, and a search."""

import homes
from harness.case import Case
from harness.docker_case import DockerCase


class ListCase(Case):
    """Three models whose order is another one by scan, by size and by name."""

    NAMES = ("b/beta.gguf", "c/gamma.gguf", "a/alpha-with-a-name-that-is-much-longer-than-any-row-is-wide" + "-and-longer" * 9
             + ".gguf")

    def furnish(self):
        for name, megabytes in zip(self.NAMES, (2, 7, 4)):
            homes.gguf_model(self.home, name, b"g" * megabytes * 1_000_000)
        homes.ollama_model(self.home, "llama3", "8b", config=0, layers=(4_660_000_000,))

    def names(self):
        models = self.screen.find("list", "Local models")
        return [row.name for row in models.children() if row.role == "list item"]

    def expect(self, *names):
        self.screen.until(lambda: self.names() == list(names), f"the rows {names}")


class StripOfModels(ListCase):
    """Number and sum of the models are there to read, those of each source in the tooltip; without models there is no
    strip."""

    SOURCES = ("Ollama: 1 model · 4.66 GB\nLM Studio (GGUF): 3 models · 13 MB\n"
               "Files that several models share are counted for each of them.")

    def test_totals(self):
        self.furnish()
        self.start()
        self.show_pane("models")
        totals = self.screen.wait("label", "4 models · 4.67 GB")
        self.assertEqual(totals.description, self.SOURCES)
        self.display.point(*totals.middle)
        self.screen.wait("tool tip", self.SOURCES)
        self.display.picture("strip-models")
        self.display.point(5, 5)
        self.screen.wait_gone("tool tip")
        self.press_until("Tab", "4 models · 4.67 GB")
        self.screen.wait("tool tip", self.SOURCES)
        self.close()

    def test_nothing_there(self):
        self.start()
        self.show_pane("models")
        self.screen.wait("label", "No local models detected.")
        self.display.key("ctrl+f")
        self.display.key("ctrl+4", "ctrl+2")
        self.assertIsNone(self.screen.find("text"))
        self.assertIsNone(self.screen.find("push button", "Search"))
        self.close()


class OrderOfModels(ListCase):
    """Each order is chosen by mouse, by keyboard and on the bus, and a row's button removes what the row shows."""

    def test_orders(self):
        self.furnish()
        beta, gamma, alpha, llama = *self.NAMES, "llama3:8b"
        self.start()
        self.show_pane("models")
        self.screen.until(lambda: len(self.names()) == 4, "the models")
        scanned = self.names()
        self.display.click(*self.screen.wait("radio button", "Largest").middle)
        self.expect(llama, gamma, alpha, beta)
        self.screen.wait("radio button", "Largest", states=["checked"])
        self.display.key("Right")
        self.screen.wait("radio button", "Name", states=["checked", "focused"])
        self.expect(alpha, beta, gamma, llama)
        self.display.picture("order-name")
        self.screen.wait("radio button", "As scanned").press()
        self.expect(*scanned)
        self.close()

    def test_row_keeps_its_record(self):
        self.furnish()
        beta, gamma, alpha, llama = *self.NAMES, "llama3:8b"
        before = self.disk()
        self.start()
        self.show_pane("models")
        self.screen.wait("radio button", "Largest").press()
        self.expect(llama, gamma, alpha, beta)
        # What is new on the disk changes the order as soon as the next scan finds it.
        homes.gguf_model(self.home, "d/delta.gguf", b"g" * 6_000_000)
        self.press("Scan System")
        self.expect(llama, gamma, "d/delta.gguf", alpha, beta)
        self.display.click(*self.screen.wait("push button", f"Delete {gamma}").middle)
        self.dialog(f"Delete {gamma}?")
        self.confirm("Delete Permanently")
        self.result("Model Deleted")
        self.dismiss_result()
        self.expect(llama, "d/delta.gguf", alpha, beta)
        self.close()
        gone = f".lmstudio/models/{gamma}"
        after = self.disk()
        self.assertNotIn(gone, after)
        self.assertEqual(set(before) - set(after), {gone})


class SearchOfModels(ListCase):
    """Ctrl+F and a button open the field; only what fits is shown; Escape and the button show everything again."""

    def test_by_keyboard(self):
        self.furnish()
        self.start()
        self.show_pane("models")
        self.display.key("ctrl+f")
        self.screen.wait("text", "Search local models", states=["focused"])
        self.display.type("AMMA")
        self.expect("c/gamma.gguf")
        self.screen.wait("label", "1 of 4 shown")
        self.display.picture("search-models")
        self.display.key("Return")
        self.screen.until(lambda: self.screen.focused().name == "c/gamma.gguf", "the focus on what was found")
        self.display.key("ctrl+f")
        self.screen.wait("text", "Search local models", states=["focused"])
        # What was searched for before is selected and gives way.
        self.display.type("nowhere")
        self.screen.wait("label", "No model of that name.")
        self.display.picture("search-nothing")
        self.display.key("Escape")
        self.screen.until(lambda: len(self.names()) == 4, "all models")
        self.screen.wait("label", "4 models · 4.67 GB")
        self.close()

    def test_by_mouse_and_on_the_bus(self):
        self.furnish()
        self.start()
        self.show_pane("models")
        self.display.click(*self.screen.wait("push button", "Search").middle)
        field = self.screen.wait("text", "Search local models", states=["focused"])
        self.screen.wait("list", "Local models").grab_focus()
        self.assertTrue(field.grab_focus())
        self.screen.wait("text", "Search local models", states=["focused"])
        self.display.type("beta")
        self.expect("b/beta.gguf")
        self.assertEqual(field.text, "beta")
        self.assertTrue(field.set_text("gamma"))
        self.expect("c/gamma.gguf")
        self.screen.wait("label", "1 of 4 shown")
        self.assertTrue(field.set_text("beta"))
        self.press("Scan System")
        self.wait_idle()
        self.expect("b/beta.gguf")
        self.display.click(*self.screen.wait("push button", "Show All").middle)
        self.screen.until(lambda: len(self.names()) == 4, "all models")
        self.close()


class ListsOfDocker(DockerCase):
    """Images are ordered and searched, containers searched; a count and no sum stands below them."""

    def test_images(self):
        small, large = self.engine.make_image("b-small:1"), self.engine.make_image("a-large:1")
        self.engine.run_container("job", small)
        self.start_over_engine()
        self.row("b-small:1")
        self.screen.wait("label", "1 container · 2 images")
        self.screen.wait("radio button", "Name").press()
        self.screen.until(lambda: self.names() == ["job", "a-large:1", "b-small:1"], "the order of names")
        self.display.key("ctrl+f")
        self.screen.wait("text", "Search containers and images", states=["focused"])
        self.assertTrue(self.screen.find("text", "Search containers and images").set_text("small"))
        self.screen.until(lambda: self.names() == ["b-small:1"], "what was written into the field")
        self.display.key("ctrl+a")
        self.display.type("large")
        self.screen.until(lambda: self.names() == ["a-large:1"], "what was searched for")
        self.screen.wait("label", "1 of 3 shown")
        self.screen.wait("heading", "Images (2)")
        self.display.picture("search-docker")
        self.press("Remove a-large:1")
        self.dialog("Remove Docker Image?")
        self.confirm("Remove Image")
        self.result("Docker Image Removed")
        self.assertEqual(self.engine.images(), {small})
        self.assertEqual(self.asked(), [f"DELETE /images/{large}"])
        self.dismiss_result()
        self.close()

    def names(self):
        rows = self.screen.find("list", "Docker containers and images")
        return [row.name for row in rows.children() if row.role == "list item"]


class SearchOfTheLog(Case):
    """Ctrl+F finds lines of the log, which are selected one after the other and can be copied."""

    def test_next_and_previous(self):
        self.start()
        for _ in range(14):
            self.press("Scan System")
            self.wait_idle()
        self.show_pane("console")
        self.display.key("ctrl+f")
        field = self.screen.wait("text", "Search the log", states=["focused"])
        self.display.type("scan COMPLETED")
        self.screen.wait("label", "1 of 15 lines")
        self.screen.until(lambda: self.shows("Starting system scan"), "the beginning of the log")
        self.display.picture("search-log")
        self.display.key("Return", "F3", "ctrl+g")
        self.screen.wait("label", "4 of 15 lines")
        self.display.key("shift+F3", "shift+Return")
        self.screen.wait("label", "2 of 15 lines")
        self.press("Previous Line Found")
        self.screen.wait("label", "1 of 15 lines")
        self.display.click(*self.screen.wait("push button", "Previous Line Found").middle)
        self.screen.wait("label", "15 of 15 lines")
        self.display.click(*self.screen.wait("push button", "Next Line Found").middle)
        self.screen.wait("label", "1 of 15 lines")
        self.assertTrue(field.grab_focus())
        self.screen.wait("text", "Search the log", states=["focused"])
        self.assertTrue(field.set_text("system scan"))
        self.screen.wait("label", "1 of 15 lines")
        self.display.key("ctrl+a")
        self.display.type("never said")
        self.screen.wait("label", "No line found")
        self.display.key("Escape")
        self.screen.wait("list", "Activity log", states=["focused"])
        self.screen.wait_gone("text")
        self.close()

    def shows(self, beginning):
        log = self.screen.find("list", "Activity log")
        _, top, _, height = log.extents
        return any(beginning in row.name and top <= row.extents[1] < top + height for row in log.children()
                   if row.role == "list item")
