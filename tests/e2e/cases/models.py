"""Deleting models: each store in its own way."""

import homes
from harness import tree
from harness.case import Case


class ModelCase(Case):
    def delete(self, name, size):
        self.start()
        self.show_pane("models")
        self.press(f"Delete {name}")
        modal = self.dialog(f"Delete {name}?")
        self.assertEqual(modal.description, f"Permanently delete {name} ({size})? This operation cannot be undone.")
        self.confirm("Delete Permanently")


class LMStudioModelDeletion(ModelCase):
    """A GGUF file goes alone; its folder and its neighbours stay."""

    def test_file_goes_and_nothing_else(self):
        homes.gguf_model(self.home, "org/Foo/foo.gguf", b"g" * 2_000_000)
        homes.gguf_model(self.home, "org/Foo/bar.gguf", b"h" * 1_000_000)
        before = self.disk()
        self.delete("org/Foo/foo.gguf", "2 MB")
        self.result("Model Deleted")
        self.assertEqual(self.result_lines(), ["Removed model org/Foo/foo.gguf."])
        self.display.picture("result-model")
        self.dismiss_result()
        self.screen.wait_gone("list item", "org/Foo/foo.gguf")
        self.close()
        self.assert_only_gone(before, [".lmstudio/models/org/Foo/foo.gguf"])
