"""Stopping in the middle of an uninstallation."""

import os
import time

import homes
from harness import tree
from harness.case import Case
from harness.waiting import wait_for

# A sanitizer looks over everything before a program may end.
_PROMPT = 10.0 if "ASAN_OPTIONS" in os.environ or "TSAN_OPTIONS" in os.environ else 1.0

class StoppingCase(Case):
    def furnish_big_tree(self):
        """Many files, in front of what the same tool has besides."""
        self.cage.require_absent("codex")
        homes.big_tree(self.home / ".codex/sessions")
        homes.write(self.home / ".local/bin/codex", "#!/bin/sh\n", 0o755)
        homes.write(self.home / "Library/Application Support/Codex/state.db", "state")
        homes.write(self.home / "Documents/plan.md", "mine")

    def begin(self, *display_names):
        """Confirms the uninstallation of these in the program, which has been started."""
        for name in display_names:
            self.show_row(name)
            self.select_application(name)
        self.set_shield(False)
        self.press("Uninstall Selected")
        self.confirm("Uninstall")

    def expect_cancelled(self, *other_errors):
        self.result("Uninstallation Completed with Errors")
        self.assertEqual(self.error_lines(), ["Operation cancelled.", *other_errors])
        self.display.picture(f"result-{type(self).__name__}")
        self.dismiss_result()
        log = self.log()
        self.assertEqual(log.count("Operation cancelled."), 1, log)
        self.assertEqual(log.count("Cancellation requested by user."), 1, log)
        self.assertLess(log.index("Cancellation requested by user."), log.index("Operation cancelled."))

    def begin_slow_deletion(self):
        """Returns in the middle of the removal of the big tree, on a disk that takes a millisecond for a file."""
        entries = self.count_entries()
        self.start_traced("-e", "trace=unlinkat", "-e", "inject=unlinkat:delay_exit=1000")
        self.begin("Codex Tooling")
        wait_for(lambda: self.count_entries() < entries, "a deletion under way")

    def count_entries(self):
        return sum(len(files) for _, _, files in os.walk(self.home / ".codex/sessions"))

    def close_promptly(self):
        window = self.display.window()
        begun = time.monotonic()
        self.close(window)
        self.assertLess(time.monotonic() - begun, _PROMPT, "seconds from the closing to the program's end")

    def assert_whole(self, before):
        """What is left is as it was; nothing is new."""
        after = self.disk()
        for path, entry in after.items():
            self.assertEqual(entry, before.get(path), path)


class CancelInABigTree(StoppingCase):
    """The deletion that has begun is finished; what comes after it stays, and the log says so once."""

    def test_rest_stays(self):
        self.furnish_big_tree()
        before = self.disk()
        self.begin_slow_deletion()
        self.press("Cancel")
        self.expect_cancelled("Codex Tooling still has installed runtime evidence after cleanup.")
        self.close()
        self.assert_only_gone(before, tree.below(before, ".codex"))


class ClaudeCodeStoppingCase(StoppingCase):
    """An npm that says that it was started, and waits until somebody writes into a pipe."""

    def setUp(self):
        super().setUp()
        self.cage.require_absent("claude", "codex")
        notes = self.cage.spare("notes")
        self.install_tool("npm", f"echo started > {notes.inside}/started\nread -r line < {notes.inside}/pipe\n")
        self.started, self.pipe = notes.outside / "started", notes.outside / "pipe"
        os.mkfifo(self.pipe)
        homes.write(self.home / ".claude/settings.json", "{}")
        homes.write(self.home / ".codex/config.toml", "{}")


class CancelBetweenTools(ClaudeCodeStoppingCase):
    """A cancellation while the first tool's package manager works leaves both tools as they were."""

    def test_nothing_goes(self):
        before = self.disk()
        self.start()
        self.begin("Claude Code (CLI)", "Codex Tooling")
        self.screen.until(self.started.exists, "npm at work")
        self.display.picture("operation-running")
        self.press("Cancel")
        self.screen.wait("push button", "Cancel")
        with open(self.pipe, "w") as pipe:
            pipe.write("\n")
        self.expect_cancelled()
        self.close()
        self.assert_only_gone(before, [])


class CloseInABigTree(StoppingCase):
    """A closed window ends the program at once, in the middle of a deletion too."""

    def test_ends_promptly(self):
        self.furnish_big_tree()
        before = self.disk()
        self.begin_slow_deletion()
        self.close_promptly()
        self.assert_whole(before)
        left = self.disk()
        self.assertIn(".codex", left, "the program was closed in the middle")
        for path in (".local/bin/codex", "Library/Application Support/Codex/state.db", "Documents/plan.md"):
            self.assertIn(path, left)


class CloseWhileACommandRuns(ClaudeCodeStoppingCase):
    """A closed window ends the programs that were started as well."""

    def test_no_child_is_left(self):
        before = self.disk()
        self.start()
        self.begin("Claude Code (CLI)")
        self.screen.until(self.started.exists, "npm at work")
        self.close_promptly()
        self.assertEqual(self.disk(), before)
