"""The cage itself, in whatever form it has here."""

import os
import random
import subprocess

import homes
from harness import processes, tree
from harness.case import Case
from harness.waiting import wait_for

# Every way in which something can be changed, in the folder that is named first.
_ATTEMPTS = """
cd "$1" || exit
rm -f file
rm -rf folder
rmdir empty
mv file renamed
mv file "$HOME/taken"
mv "$HOME/own" brought
ln file "$HOME/linked"
ln file linked
ln -s nowhere symbolic
mkdir new
mkfifo pipe
touch touched
: > file
echo more >> file
truncate -s 0 file
cp "$HOME/own" copied
"""


class CageHolds(Case):
    """Nothing outside can be changed, everything in the home can."""

    def furnish(self, folder):
        homes.write(folder / "file", "kept")
        homes.write(folder / "folder/file", "kept")
        (folder / "empty").mkdir()

    def attempt(self, folder):
        command, descriptors = self.cage.command("sh", "-c", _ATTEMPTS, "sh", folder)
        subprocess.run(command, pass_fds=descriptors, env=self.cage.environment(), stderr=subprocess.DEVNULL,
                       check=False)
        for descriptor in descriptors:
            os.close(descriptor)

    def test_outside(self):
        canary = self.cage.folder / "canary"
        self.furnish(canary)
        homes.write(self.home / "own", "mine")
        before, outside = self.disk(), tree.listing(canary)
        # A link in the home is as good as a path.
        homes.link(self.home / "way", canary)
        self.attempt(str(canary))
        self.attempt(f"{self.cage.home_inside}/way")
        self.assertEqual(tree.listing(canary), outside)
        self.assertEqual({path: entry for path, entry in self.disk().items() if path != "way"}, before)
        self.assertEqual((canary / "file").stat().st_nlink, 1)

    def test_inside(self):
        self.furnish(self.home / "folder")
        homes.write(self.home / "own", "mine")
        self.attempt(f"{self.cage.home_inside}/folder")
        left = set(self.disk())
        self.assertEqual(left & {"folder/folder", "folder/empty", "folder/file", "own"}, {"folder/file"})
        self.assertLessEqual({"folder/brought", "folder/symbolic", "folder/new", "folder/pipe"}, left)

    def test_read_only_home(self):
        self.furnish(self.home / "folder")
        before = self.disk()
        self.cage.home_is_read_only = True
        self.attempt(f"{self.cage.home_inside}/folder")
        self.assertEqual(self.disk(), before)


class CageEndsProcesses(Case):
    """What a program leaves behind is told, and ended with it, wherever it went."""

    def setUp(self):
        super().setUp()
        # Nobody else sleeps that long.
        first = random.randrange(10**7, 10**8)
        self.lengths = [first, first + 1, first + 2]
        self.script = "sleep {} & setsid sh -c 'sleep {} & sleep {}' &".format(*self.lengths)

    def start_in_cage(self, script):
        command, descriptors = self.cage.supervised("sh", "-c", script)
        process = processes.start(command, pass_fds=descriptors, env=self.cage.environment(), text=True,
                                  stdout=subprocess.PIPE)
        self.addCleanup(process.stdout.close)
        self.addCleanup(processes.end, process)
        for descriptor in descriptors:
            os.close(descriptor)
        return process

    def sleepers(self):
        listing = subprocess.run(["ps", "-eo", "args="], capture_output=True, text=True, check=True).stdout.splitlines()
        return [length for length in self.lengths if f"sleep {length}" in listing]

    def test_what_is_left(self):
        asleep = " && ".join(f"pgrep -fx 'sleep {length}'" for length in self.lengths)
        process = self.start_in_cage(f"{self.script} until {asleep}; do :; done; exit 3")
        listed = process.stdout.read()
        self.assertEqual(process.wait(), 3)
        for length in self.lengths:
            self.assertRegex(listed, rf"(?m)^ *\d+ \S+ +sleep {length}$")
        wait_for(lambda: not self.sleepers(), "the end of the sleepers", 10)

    def test_end_from_outside(self):
        process = self.start_in_cage(f"{self.script} wait")
        wait_for(lambda: self.sleepers() == self.lengths, "the sleepers")
        processes.end(process)
        wait_for(lambda: not self.sleepers(), "the end of the sleepers", 10)
