"""How much comes free, told before anything is removed."""

import hashlib
import json
import re

import homes
from harness.case import Case

_SHIELD = re.compile("^Safety Shield")
_GOES = re.compile(" would go$")


class SizeOfTheSelection(Case):
    """Beneath the number of selected tools stands how much of them would go; it follows the selection and the
    shield, and it comes true."""

    def setUp(self):
        super().setUp()
        for tool in ("gemini", "codex"):
            self.cage.require_absent(tool)
        homes.write(self.home / ".gemini/oauth_creds.json", "{}", 0o600)
        homes.write(self.home / ".gemini/tmp/history.log", "x" * 4998)
        # Two entries of the list share this folder.
        homes.write(self.home / ".codex/history.jsonl", "x" * 2000)

    def expect(self, text):
        self.screen.wait("label", text)
        self.assertEqual([label.name for label in self.screen.find_all("label", _GOES)], [text])

    def test_by_mouse(self):
        self.start()
        before = self.disk()
        self.assertIsNone(self.screen.find("label", _GOES))
        number = self.screen.wait("label", "0 selected").extents
        self.show_row("Gemini")
        self.display.click(*self.application_row("Gemini").middle)
        self.expect("0 bytes would go")
        self.display.click(*self.screen.wait("check box", _SHIELD).middle)
        self.expect("5 KB would go")
        self.assertEqual(self.screen.wait("label", "1 selected").extents[1], number[1], "the number's place")
        self.display.picture("size-of-the-selection")
        # The whole of it leads to the review, which has the same figure.
        self.display.click(*self.screen.wait("label", "5 KB would go").middle)
        self.screen.wait("dialog", "Review: Gemini")
        self.screen.wait("label", "Goes: 5 KB")
        self.display.key("Escape")
        self.screen.wait_gone("dialog", "Review: Gemini")
        self.press("Uninstall Selected")
        self.dialog("Uninstall 1 Application?")
        self.confirm("Uninstall")
        self.result("Uninstallation Completed")
        self.dismiss_result()
        self.screen.wait_gone("label", _GOES)
        self.close()
        self.assert_only_gone(before, [path for path in before if path.startswith(".gemini")])

    def test_by_keyboard(self):
        self.start()
        before = self.disk()
        self.set_shield(False)
        self.show_row("Gemini")
        self.application_row("Gemini").grab_focus()
        self.display.key("space")
        self.expect("5 KB would go")
        # All that were found, two of which share a folder.
        self.display.key("ctrl+a")
        self.expect("7 KB would go")
        more = homes.write(self.home / ".gemini/tmp/more.log", "x" * 1000)
        self.display.key("F5")
        self.expect("8 KB would go")
        self.display.key("ctrl+a")
        self.screen.wait_gone("label", _GOES)
        more.unlink()
        self.close()
        self.assert_only_gone(before, [])

    def test_on_the_bus(self):
        self.start()
        self.show_row("Gemini")
        self.select_application("Gemini")
        self.expect("0 bytes would go")
        self.set_shield(False)
        self.expect("5 KB would go")
        self.application_row("Gemini").press()
        self.screen.wait_gone("label", _GOES)
        self.close()


class SizeThatExplainsItself(Case):
    """A model of which something stays says so in its tooltip: how much comes free, and who needs the rest."""

    SHARED = re.compile(r"^Deleting it frees [0-9.]+ (bytes|KB)\.\n9\.5 KB of it stay, shared with llama3:latest\.$")
    ELSEWHERE = re.compile(r"^Deleting it frees [0-9.]+ (bytes|KB)\.\n9\.5 MB lie elsewhere, behind links in its "
                           r"folder, and stay\.$")

    def ollama_model(self, tag, weights):
        digest = hashlib.sha256(weights).hexdigest()
        homes.write(self.home / f".ollama/models/blobs/sha256-{digest}", weights)
        homes.write(self.home / homes.OLLAMA_LIBRARY / "llama3" / tag, json.dumps(
            {"config": {"digest": "sha256:" + "0" * 64, "size": 0},
             "layers": [{"digest": f"sha256:{digest}", "size": len(weights)}]}))

    def furnish(self):
        self.ollama_model("8b", b"w" * 9500)
        self.ollama_model("latest", b"w" * 9500)
        self.ollama_model("own", b"o" * 9500)
        # The layout in which all accounts share the weights.
        homes.write(self.home / "weights/model.safetensors", b"w" * 9_500_000)
        folder = self.home / ".cache/huggingface/hub/models--org--shared"
        homes.write(folder / "refs/main", "c0ffee")
        homes.link(folder / "snapshots/c0ffee/model.safetensors", f"{self.cage.home_inside}/weights/model.safetensors")

    def model_row(self, name):
        return self.screen.wait("list item", name)

    def test_by_mouse(self):
        self.furnish()
        self.start()
        self.show_pane("models")
        shared = self.model_row("org/shared")
        self.assertEqual(shared.description, "HuggingFace / vLLM, 0 MB")
        self.display.point(*shared.middle)
        tip = self.screen.wait("tool tip", self.ELSEWHERE).extents
        self.assertGreaterEqual(tip[1], shared.extents[1] + shared.extents[3], "the tooltip lies over the row")
        self.display.picture("size-elsewhere")
        self.display.point(*self.model_row("llama3:8b").middle)
        self.screen.wait("tool tip", self.SHARED)
        self.display.picture("size-shared")
        # Of what goes whole there is nothing to say.
        self.display.point(*self.model_row("llama3:own").middle)
        self.screen.wait_gone("tool tip")
        self.close()

    def test_by_keyboard(self):
        self.furnish()
        self.start()
        self.display.key("ctrl+2", "Home")
        self.press_until("Down", "org/shared")
        self.screen.wait("tool tip", self.ELSEWHERE)
        # Found out anew after a scan, with the focus where it was.
        homes.write(self.home / "weights/model.safetensors", b"w" * 1_000_000)
        self.display.key("F5")
        self.screen.wait("tool tip", re.compile("\n1 MB lie elsewhere"))
        self.close()

    def test_on_the_bus(self):
        self.furnish()
        self.start()
        self.show_pane("models")
        self.model_row("llama3:8b").grab_focus()
        self.screen.wait("list item", "llama3:8b",
                         description=re.compile(r"^Ollama, 0 MB\. Deleting it frees .*\n9\.5 KB of it stay, shared with "
                                                r"llama3:latest\.$"))
        self.close()
