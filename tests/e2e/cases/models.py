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
        self.display.picture(f"confirmation-model-{type(self).__name__}")
        self.confirm("Delete Permanently")

    def expect_result(self, title, message):
        self.result(title)
        self.assertEqual(self.result_lines(), [message])
        self.display.picture(f"result-model-{type(self).__name__}")
        self.dismiss_result()


class LMStudioModelDeletion(ModelCase):
    """A GGUF file goes alone; its folder and its neighbours stay."""

    def test_file_goes_and_nothing_else(self):
        homes.gguf_model(self.home, "org/Foo/foo.gguf", b"g" * 2_000_000)
        homes.gguf_model(self.home, "org/Foo/bar.gguf", b"h" * 1_000_000)
        homes.write(self.home / ".cache/lm-studio/models/org/Foo/foo.gguf", b"i" * 1_000_000)
        before = self.disk()
        self.delete("org/Foo/bar.gguf", "1 MB")
        self.expect_result("Model Deleted", "Removed model org/Foo/bar.gguf.")
        self.screen.wait_gone("list item", "org/Foo/bar.gguf")
        self.assertEqual(len(self.screen.find_all("list item", "org/Foo/foo.gguf")), 2)
        self.close()
        self.assert_only_gone(before, [".lmstudio/models/org/Foo/bar.gguf"])


class HubModelDeletion(ModelCase):
    """A hub folder goes whole, its links as links."""

    def test_folder_goes_and_nothing_that_it_links_to(self):
        folder = homes.hub_model(self.home, "org", "one", b"w" * 2_000_000)
        homes.hub_model(self.home, "org", "two", b"w" * 1_000_000)
        homes.write(self.home / ".cache/huggingface/token", "secret")
        homes.write(self.home / "Documents/weights/mine.safetensors", b"m" * 1000)
        homes.link(folder / "snapshots/c0ffee/elsewhere", "../../../../../../Documents/weights")
        homes.link(folder / "snapshots/c0ffee/lost", "/nowhere")
        before = self.disk()
        self.delete("org/one", "2 MB")
        self.expect_result("Model Deleted", "Removed model org/one.")
        self.close()
        self.assert_only_gone(before, tree.below(before, ".cache/huggingface/hub/models--org--one"))


class OllamaCase(ModelCase):
    """A stand-in for `ollama`, which writes down what it is called with."""

    def setUp(self):
        super().setUp()
        self.notes = self.cage.spare("notes")

    def install_ollama(self, then=""):
        self.install_tool("ollama", f"""printf '%s\\n' "$@" > {self.notes.inside}/arguments\n{then}""")

    def arguments(self):
        return (self.notes.outside / "arguments").read_text().split("\n")


class OllamaModelDeletion(OllamaCase):
    """`ollama` removes its model; the program only clears a manifest away that it left."""

    def setUp(self):
        super().setUp()
        self.manifest = homes.ollama_model(self.home, "llama3", "8b", config=0, layers=(4_660_000_000,))
        homes.ollama_model(self.home, "llama3", "latest", config=0, layers=(4_660_000_000,))
        homes.write(self.home / ".ollama/models/blobs/sha256-1", b"b" * 1000)
        self.gone = [str(self.manifest.relative_to(self.home))]

    def test_tool_removes_the_manifest(self):
        self.install_ollama(f'rm "$HOME/{homes.OLLAMA_LIBRARY}/llama3/8b"\n')
        before = self.disk()
        self.delete("llama3:8b", "4.66 GB")
        self.expect_result("Model Deleted", "Removed llama3:8b from Ollama.")
        self.close()
        self.assertEqual(self.arguments(), ["rm", "llama3:8b", ""])
        self.assert_only_gone(before, self.gone)

    def test_tool_leaves_the_manifest(self):
        self.install_ollama()
        before = self.disk()
        self.delete("llama3:8b", "4.66 GB")
        self.expect_result("Model Deleted", "Removed llama3:8b from Ollama.")
        self.close()
        self.assertEqual(self.arguments(), ["rm", "llama3:8b", ""])
        self.assert_only_gone(before, self.gone)


class OllamaRefusal(OllamaCase):
    """What `ollama` refuses to remove stays, and the result says what it said."""

    def test_nothing_goes(self):
        self.install_ollama("echo 'Error: model not found' >&2\nexit 1\n")
        homes.ollama_model(self.home, "llama3", "8b")
        before = self.disk()
        self.delete("llama3:8b", "0 MB")
        self.expect_result("Model Deletion Failed", "Ollama could not remove llama3:8b: Error: model not found")
        self.screen.wait("list item", "llama3:8b")
        self.close()
        self.assert_only_gone(before, [])
