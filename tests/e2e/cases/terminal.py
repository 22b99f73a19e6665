"""Started from a terminal whose shell exports what it knows about it."""

import os

import homes
from harness.case import Case

# Longer than the width of any terminal, as the paths of real installations easily are.
_LONG_FOLDER = "venv/lib/python3.11/site-packages"

# What makes the process listing shorter, or fail: the width of a terminal, the habits of another system.
_TERMINALS = {
    "width": {"COLUMNS": "80", "LINES": "24"},
    "personality": {"PS_PERSONALITY": "hpux"},
    "command environment": {"CMD_ENV": "hpux"},
}


class RunningToolSeenFromATerminalCase(Case):
    def setUp(self):
        super().setUp()
        # It waits for somebody to open the pipe, and is ended with the program beside which it runs.
        os.mkfifo(self.home / "pipe")
        tool = f".hermes/hermes-agent/{_LONG_FOLDER}/gateway"
        homes.write(self.home / tool, '#!/bin/sh\nread -r line < "$HOME/pipe"\n', 0o755)
        homes.write(self.home / "start",
                    f'#!/bin/sh\nexec "$HOME/{tool}" --profile of-the-person -m hermes_cli.main\n', 0o755)
        homes.write(self.home / ".hermes/.env", "KEY=1")
        self.before = self.disk()

    def assert_refused(self, terminal):
        self.start(environment=_TERMINALS[terminal],
                   prefix=("sh", "-c", '"$HOME/start" & tool=$!; "$@"; status=$?; '
                                       '{ kill $tool; wait $tool; } 2>/dev/null; exit $status', "sh"))
        self.show_row("Hermes")
        self.select_application("Hermes")
        self.set_shield(False)
        self.press("Uninstall Selected")
        self.confirm("Uninstall")
        self.result("Uninstallation Completed with Errors")
        self.assertEqual(self.error_lines(), ["Hermes is currently running. Quit Hermes before removing it."])
        self.dismiss_result()
        self.close()
        self.assert_only_gone(self.before, [])


class RunningToolBeyondTheTerminalsWidth(RunningToolSeenFromATerminalCase):
    """What a tool that runs is known by stands at the end of a line that is longer than the terminal is wide."""

    def test_nothing_goes(self):
        self.assert_refused("width")


class RunningToolWithForeignHabits(RunningToolSeenFromATerminalCase):
    """The listing is the same where the shell asks the system's tools to behave like those of another system."""

    def test_personality(self):
        self.assert_refused("personality")

    def test_command_environment(self):
        self.assert_refused("command environment")
