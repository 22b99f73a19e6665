"""Both clipboards of the display, owned by another program."""

import subprocess

from . import processes
from .waiting import wait_for

SELECTIONS = ("clipboard", "primary")


class Clipboards:
    """Both hold the text for as long as this lives."""

    def __init__(self, display, text):
        self._owners = [self._own(display, selection, text) for selection in SELECTIONS]
        for selection in SELECTIONS:
            wait_for(lambda: self._content(display, selection) == text, f"the {selection}")

    def stop(self):
        for owner in self._owners:
            processes.end(owner)

    @staticmethod
    def _own(display, selection, text):
        owner = processes.start(["xclip", "-display", display.name, "-selection", selection, "-in", "-quiet"],
                                stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, text=True)
        owner.stdin.write(text)
        owner.stdin.close()
        return owner

    @staticmethod
    def _content(display, selection):
        return subprocess.run(["xclip", "-display", display.name, "-selection", selection, "-out"],
                              capture_output=True, text=True, check=False).stdout


def copied(display, target="UTF8_STRING"):
    """The bytes that the clipboard offers as that target."""
    return subprocess.run(["xclip", "-display", display.name, "-selection", "clipboard", "-out", "-target", target],
                          capture_output=True, check=False).stdout
