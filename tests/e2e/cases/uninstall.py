"""Uninstalling tools that npm installed for real."""

import os

import homes
import npm
from harness import tree
from harness.case import Case


class UninstallCase(Case):
    def request_uninstall(self, display_name, shield):
        self.select_application(display_name)
        self.set_shield(shield)
        self.screen.wait(name="1 selected")
        self.press("Uninstall Selected")
        modal = self.dialog("Uninstall 1 Application?")
        ending = ("Known app runtimes will be removed. Recognized credentials and uncertain files in selected data "
                  "trees will be left for review; residual data may remain." if shield else
                  "Files inside the selected uninstall targets, including recognized nested credentials, will be "
                  "permanently removed.")
        self.assertEqual(modal.description, f"Selected: {display_name}. {ending}")
        self.assertEqual(self.disk(), self.before, "the disk while nothing is confirmed")

    def assert_kept(self, *roots):
        """Everything at and below these paths is what it was."""
        after = self.disk()
        for path in tree.below(self.before, *roots):
            self.assertEqual(after.get(path), self.before[path], path)


class ClaudeCodeCase(UninstallCase):
    def setUp(self):
        super().setUp()
        self.cage.require_absent("claude")
        npm.install("@anthropic-ai/claude-code", self.home)
        data = self.home / ".claude"
        homes.write(data / ".credentials.json", '{"token": "secret"}', 0o600)
        homes.write(data / "plugins/auth.json", "{}")
        homes.write(data / "settings.json", "{}")
        homes.write(data / "projects/one/log.jsonl", "line\n" * 1000)
        (data / "todos/empty").mkdir(parents=True)
        homes.write(self.home / "Documents/plan.md", "mine")
        homes.write(self.home / "Documents/notes/n.txt", "mine")
        homes.link(data / "projects/plan.md", "../../Documents/plan.md")
        homes.link(data / "notes", f"{self.cage.home_inside}/Documents/notes")
        homes.link(data / "lost", "/nowhere/at/all")
        homes.write(self.home / ".claude.json", "{}")
        self.before = self.disk()
        self.assertIn(".local/bin/claude", self.before)


class ShieldedUninstall(ClaudeCodeCase):
    """With the shield on the program goes and its data stay, but for empty folders."""

    def test_data_stay(self):
        self.start()
        self.request_uninstall("Claude Code (CLI)", shield=True)
        self.display.picture("confirmation-apps")
        self.confirm("Uninstall")
        self.result("Uninstallation Completed with Data Remaining")
        self.screen.wait("label", "DATA REMAINS")
        self.display.picture("result-data-remaining")
        gone = [".local/bin/claude", ".claude/todos", ".claude/todos/empty"]
        self.assertEqual(self.result_lines(), [
            f"Removed {len(gone)} filesystem items for 1 application(s).",
            "Remaining selected-app data (not deleted; review before removing manually):",
            f"Claude Code: {self.cage.home_inside}/.claude"])
        self.assertEqual(self.error_lines(), [])
        self.dismiss_result()
        self.assertIn("Data remains. Selected", self.application_row("Claude Code (CLI)").description)
        log = self.log()
        preserved = {line.removeprefix("[Safety Shield] Preserved: ") for line in log if "Preserved" in line}
        self.assertIn(f"{self.cage.home_inside}/.claude/.credentials.json", preserved)
        self.assertIn(f"{self.cage.home_inside}/.claude/lost", preserved)
        for path in preserved:
            self.assertIn(path.removeprefix(f"{self.cage.home_inside}/"), self.before)
        self.close()
        npm_logs = tree.below(self.disk(), ".npm")
        self.assert_only_gone(self.before, gone, ignoring=npm_logs)


class UnshieldedUninstall(ClaudeCodeCase):
    """With the shield off the data go whole; what links in them point to stays."""

    def test_data_go(self):
        self.start()
        self.request_uninstall("Claude Code (CLI)", shield=False)
        self.confirm("Uninstall")
        self.result("Uninstallation Completed")
        self.screen.wait("label", "COMPLETE")
        self.display.picture("result-complete")
        self.assertEqual(self.result_lines(), ["Removed 2 filesystem items for 1 application(s)."])
        self.dismiss_result()
        self.assertIn("Not found. Not selected", self.application_row("Claude Code (CLI)").description)
        self.close()
        gone = tree.below(self.before, ".claude", ".local/bin/claude")
        self.assert_only_gone(self.before, gone, ignoring=tree.below(self.disk(), ".npm"))

    def test_npm_removes_its_own_package(self):
        homes.write(self.home / ".npmrc", f"prefix={self.cage.home_inside}/.local\n")
        self.before = self.disk()
        self.start()
        self.request_uninstall("Claude Code (CLI)", shield=False)
        self.confirm("Uninstall")
        self.result("Uninstallation Completed")
        self.assertEqual(self.result_lines(), ["Removed 1 filesystem items for 1 application(s)."])
        self.dismiss_result()
        self.close()
        package = ".local/lib/node_modules/@anthropic-ai/claude-code"
        gone = tree.below(self.before, ".claude", ".local/bin/claude", package)
        self.assertTrue(tree.below(self.before, package))
        self.assert_only_gone(self.before, gone, ignoring=tree.below(self.disk(), ".npm"))


class CodexUninstall(UninstallCase):
    """The same for a tool whose data come first; other tools' data stay."""

    def test_codex_goes(self):
        self.cage.require_absent("codex")
        npm.install("@openai/codex", self.home)
        homes.write(self.home / ".codex/auth.json", "{}", 0o600)
        homes.write(self.home / ".codex/config.toml", "model = 1")
        homes.write(self.home / ".codex/sessions/1.jsonl", "{}\n" * 100)
        homes.write(self.home / "Library/Application Support/Codex/state.db", b"\0" * 4096)
        homes.write(self.home / "Library/Application Support/Codex2/state.db", b"\0" * 4096)
        homes.write(self.home / ".claude/settings.json", "{}")
        self.before = self.disk()
        self.start()
        self.show_row("Codex Tooling")
        self.request_uninstall("Codex Tooling", shield=False)
        self.confirm("Uninstall")
        self.result("Uninstallation Completed")
        self.assertEqual(self.result_lines(), ["Removed 3 filesystem items for 1 application(s)."])
        self.dismiss_result()
        self.close()
        self.assert_only_gone(self.before, tree.below(self.before, ".codex", ".local/bin/codex",
                                                      "Library/Application Support/Codex"))
        self.assert_kept(".claude", ".local/lib", "Library/Application Support/Codex2")


class UninstallOfACopiedTool(UninstallCase):
    """A tool that was copied into the home goes; of its data the shield keeps credentials and what it cannot tell
    apart."""

    def setUp(self):
        super().setUp()
        self.install_tool("openrouter", "")
        data = self.home / ".openrouter"
        homes.write(data / "api_key", "secret", 0o600)
        homes.write(data / "cache/models.json", "[]")
        homes.link(data / "latest", "cache/models.json")
        homes.write(self.home / ".openrouter2/api_key", "mine", 0o600)
        self.before = self.disk()

    def uninstall(self, shield):
        self.start()
        self.show_row("OpenRouter CLI")
        self.request_uninstall("OpenRouter CLI", shield=shield)
        self.confirm("Uninstall")

    def test_shield_on(self):
        self.uninstall(shield=True)
        self.result("Uninstallation Completed with Data Remaining")
        self.assertEqual(self.error_lines(), [])
        self.dismiss_result()
        self.close()
        self.assert_only_gone(self.before, [".local/bin/openrouter"])

    def test_shield_off(self):
        self.uninstall(shield=False)
        self.result("Uninstallation Completed")
        self.assertEqual(self.result_lines(), ["Removed 2 filesystem items for 1 application(s)."])
        self.dismiss_result()
        self.close()
        self.assert_only_gone(self.before, tree.below(self.before, ".openrouter", ".local/bin/openrouter"))


class RunningClaudeCodeCase(UninstallCase):
    def setUp(self):
        super().setUp()
        self.cage.require_absent("claude")
        homes.write(self.home / ".claude/settings.json", "{}")
        # It waits for somebody to open the pipe, and is ended with the program beside which it runs.
        os.mkfifo(self.home / "pipe")
        homes.write(self.home / ".local/bin/claude", '#!/bin/sh\nread -r line < "$HOME/pipe"\n', 0o755)
        self.before = self.disk()


class RunningToolIsRefused(RunningClaudeCodeCase):
    """A tool that runs is left alone, and the result says why."""

    def test_nothing_goes(self):
        self.start(prefix=("sh", "-c", '"$HOME"/.local/bin/* & tool=$!; "$@"; status=$?; '
                                       '{ kill $tool; wait $tool; } 2>/dev/null; exit $status', "sh"))
        self.request_uninstall("Claude Code (CLI)", shield=False)
        self.confirm("Uninstall")
        self.result("Uninstallation Completed with Errors")
        self.screen.wait("label", "ERRORS")
        self.display.picture("result-errors")
        self.assertEqual(self.error_lines(),
                         ["Claude Code is currently running. Quit Claude Code before removing it."])
        self.dismiss_result()
        self.close()
        self.assert_only_gone(self.before, [], ignoring=tree.below(self.disk(), ".npm"))
