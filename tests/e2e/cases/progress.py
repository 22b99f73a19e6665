"""How far a removal is while it goes on, and what came of it."""

import re

import homes
from cases.stopping import ClaudeCodeStoppingCase, StoppingCase
from harness.case import Case

_COUNTED = re.compile(r"^[0-9,]+ items? · [0-9]+:[0-9]{2}$")


def _count(text):
    return int(text.split(" ")[0].replace(",", ""))


class ProgressInABigTree(StoppingCase):
    """The header counts what has gone, and tells the path at hand in a tooltip."""

    def setUp(self):
        super().setUp()
        self.furnish_big_tree()
        self.begin_slow_deletion()

    def counted(self):
        return self.screen.wait("label", _COUNTED)

    def at_hand(self):
        return re.compile(f"^{re.escape(self.cage.home_inside)}/.codex/sessions/[0-9]{{4}}")

    def test_count_is_that_of_the_disk(self):
        said = _count(self.counted().name)
        # What is said has gone, and the folders between count as well.
        self.assertLessEqual(said, 20 * 200 - self.count_entries() + 20)
        self.assertGreater(said, 0)
        later = self.screen.until(lambda: (now := _count(self.screen.find("label", _COUNTED).name)) > said and now,
                                  "a higher count")
        self.assertLessEqual(later, 20 * 200 - self.count_entries() + 20)
        self.result("Uninstallation Completed")
        self.assertIsNone(self.screen.find("label", _COUNTED))
        self.dismiss_result()
        self.assertFalse([line for line in self.log() if "items" in line and "·" in line])
        self.close()

    def test_by_mouse(self):
        self.display.point(*self.counted().middle)
        self.screen.wait("tool tip", self.at_hand())
        self.display.picture("progress")
        self.close()

    def test_by_keyboard(self):
        self.counted()
        self.press_until("shift+Tab", "Cancel")
        self.screen.wait("tool tip", self.at_hand())
        self.close()

    def test_on_the_bus(self):
        heard = self.screen.listen("object:property-change:accessible-name")
        self.screen.wait("label", _COUNTED, description=self.at_hand())
        self.result("Uninstallation Completed")
        said = [name for _, role, name in heard() if role == "label" and _COUNTED.match(name)]
        times = [name.split(" · ")[1] for name in said]
        self.assertEqual(len(times), len(set(times)), f"names of one second: {said}")
        self.dismiss_result()
        self.close()


class ProgressOfACommand(ClaudeCodeStoppingCase):
    """Where nothing is counted, the time is all that is said."""

    def test_time_alone(self):
        self.start()
        self.begin("Claude Code (CLI)")
        self.screen.until(self.started.exists, "npm at work")
        self.screen.wait("label", re.compile("^0:0[1-9]$"))
        with open(self.pipe, "w") as pipe:
            pipe.write("\n")
        self.result("Uninstallation Completed")
        self.dismiss_result()
        self.close()


_FREE_SPACE = re.compile("^Free space: [0-9.]+ [MG]B → [0-9.]+ [MG]B$")


class FreeSpaceInTheResult(Case):
    """Beside OK stands what the file system had free before and after; where nothing went, nothing does."""

    def delete_model(self):
        self.press("Delete pub/large.gguf")
        self.confirm("Delete Permanently")

    def test_after_a_removal(self):
        homes.gguf_model(self.home, "pub/large.gguf", b"g" * 60_000_000)
        self.start()
        self.show_pane("models")
        self.delete_model()
        self.result("Model Deleted")
        line = self.screen.wait("label", _FREE_SPACE)
        button = self.screen.find("push button", "OK")
        self.assertLess(line.extents[0] + line.extents[2], button.extents[0])
        self.assertLess(abs(line.middle[1] - button.middle[1]), 4)
        self.display.picture("result-free-space")
        self.dismiss_result()
        self.assertFalse([said for said in self.log() if "Free space" in said])
        self.close()

    def test_not_where_nothing_went(self):
        model = homes.gguf_model(self.home, "pub/large.gguf", b"g" * 1_000_000)
        self.start()
        self.show_pane("models")
        # Somebody else was quicker.
        model.unlink()
        self.delete_model()
        self.screen.wait("push button", "OK")
        self.assertIsNone(self.screen.find("label", _FREE_SPACE))
        self.dismiss_result()
        self.close()
