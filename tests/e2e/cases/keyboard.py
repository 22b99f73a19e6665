"""The program from the keyboard alone."""

import homes
from harness import tree
from harness.case import Case


class KeyboardAlone(Case):
    """Choosing a tool, confirming its removal and dismissing the result take no mouse."""

    def test_whole_way(self):
        self.cage.require_absent("codex")
        homes.write(self.home / ".codex/config.toml", "model = 1")
        homes.write(self.home / ".claude/settings.json", "{}")
        before = self.disk()
        self.start()
        self.assertEqual(self.screen.until(self.screen.focused, "a focus").role, "list")

        self.press_until("Down", "Codex Tooling")
        self.display.key("space")
        self.screen.wait("check box", "Codex Tooling", states=["checked"])
        self.press_until("Tab", "Safety Shield, retains recognized credentials and uncertain data when on")
        self.display.key("space")
        self.screen.wait("label", "OFF · selected targets, including nested credentials, may be removed.")
        self.press_until("Tab", "Uninstall Selected")
        self.display.key("Return")

        self.dialog("Uninstall 1 Application?")
        self.display.type(self.issued_code())
        self.screen.wait("push button", "Uninstall", states=["enabled"])
        self.display.key("Return")
        self.result("Uninstallation Completed")
        self.screen.wait("push button", "OK", states=["focused"])
        self.display.key("Return")
        self.screen.wait_gone("dialog")

        self.press_until("Tab", "Applications", role="page tab")
        for pane in ("Local Models", "Docker", "Activity Console"):
            self.display.key("Down")
            self.screen.wait("page tab", pane, states=["selected", "focused"])
        self.close()
        self.assert_only_gone(before, tree.below(before, ".codex"))
