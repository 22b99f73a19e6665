"""What the program does to the machine that it runs on."""

import re

import homes
from harness.case import Case

_WRITING = re.compile(r"O_WRONLY|O_RDWR|O_CREAT|O_TRUNC|O_APPEND|O_TMPFILE")
_NO_FILE = re.compile(r'"/dev/(null|tty|ptmx|urandom|random)"|"/proc/self/')
_SUCCEEDED = re.compile(r"= \d+")
_CALLS = ("open,openat,openat2,creat,mkdir,mkdirat,mknod,mknodat,rename,renameat,renameat2,unlink,unlinkat,rmdir,link,"
          "linkat,symlink,symlinkat,truncate,chmod,fchmodat,chown,lchown,fchownat,setxattr,lsetxattr,utimensat,socket")
_PROPERTY_LIST = "Library/Preferences/com.user.Zentrill.plist"


class Footprint(Case):
    """The program writes nothing but its window's frame, and speaks to nobody outside the machine."""

    def test_system_calls(self):
        homes.write(self.home / ".claude/settings.json", "{}")
        homes.gguf_model(self.home, "foo.gguf", b"g" * 1_000_000)
        (self.home / "Library/Preferences").mkdir(parents=True)
        before = self.disk()
        trace = self.cage.spare("trace")
        self.start_traced("-ff", "-y", "-o", f"{trace.inside}/calls", "-e", f"trace={_CALLS}")
        self.select_application("Claude Code (CLI)")
        self.set_shield(False)
        self.press("Uninstall Selected")
        self.dialog("Uninstall 1 Application?")
        self.display.key("Escape")
        self.screen.wait_gone("dialog")
        for pane in ("models", "docker", "console"):
            self.show_pane(pane)
        self.press("Clear Console")
        self.press("Scan System")
        self.wait_idle()
        self.move_window_until_kept()
        self.close()

        # A file for each process, so that no call is torn in two by another's.
        calls = [line for file in trace.outside.glob("calls.*") for line in file.read_text().splitlines()
                 if _SUCCEEDED.search(line)]
        sockets = [line for line in calls if line.startswith("socket(")]
        self.assertTrue(sockets, "the program speaks to its display at least")
        self.assertEqual([line for line in sockets if "AF_UNIX" not in line], [], "sockets to the network")
        written = [line for line in calls if line not in sockets
                   and (not line.startswith("open") or _WRITING.search(line)) and not _NO_FILE.search(line)]
        self.assertTrue(written, "the property list at least is written")
        self.assertEqual([line for line in written if "Library/Preferences" not in line], [], "what is written besides")
        after = self.disk()
        self.assertEqual(set(after) - set(before), {_PROPERTY_LIST})
        self.assertEqual({path: after[path] for path in before}, before)
