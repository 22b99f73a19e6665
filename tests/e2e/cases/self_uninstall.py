"""The program removes itself."""

import shutil
import subprocess

import homes
from harness import tree
from harness.case import Case
from harness.settings import current

_OWN = "com.user.Zentrill"


class SelfUninstallCase(Case):
    def setUp(self):
        super().setUp()
        # What every account has, and what others keep beside the program's own.
        homes.write(self.home / "Library/Preferences/com.user.other.plist", "other")
        homes.write(self.home / f"Library/Preferences/{_OWN}.plist.backup", "mine")
        homes.write(self.home / "Library/Caches/com.user.Zentrill2/c", "other")
        homes.write(self.home / "Applications/Other.app/Contents/Info.plist", "other")
        homes.write(self.home / "Documents/plan.md", "mine")
        for folder in ("Application Support", "Logs", "Saved Application State"):
            (self.home / "Library" / folder).mkdir()
        homes.write(self.home / ".local/share/applications/com.user.other.desktop", "other")
        homes.write(self.home / ".local/share/icons/hicolor/scalable/apps/com.user.other.svg", "other")

    def leave_own_data(self):
        homes.write(self.home / f"Library/Caches/{_OWN}/a/b", "cache")
        homes.write(self.home / f"Library/Application Support/{_OWN}/state", "state")
        homes.link(self.home / f"Library/Application Support/{_OWN}/documents", f"{self.cage.home_inside}/Documents")
        homes.write(self.home / f"Library/Logs/{_OWN}/today.log", "log")
        homes.write(self.home / f"Library/Saved Application State/{_OWN}.savedState/w", "window")

    def install_in(self, folder):
        shutil.copytree(current().bundle, self.home / folder / "Zentrill.app", symlinks=True)
        self.cage.bundle = f"{self.cage.home_inside}/{folder}/Zentrill.app"

    def install_for_account(self):
        """As `./dev install` does."""
        script = current().source / "packaging/desktop/install-for-account.sh"
        subprocess.run([current().confine, "--write", self.home, "--", script, current().bundle], env={"PATH": "/usr/bin:/bin", "HOME": str(self.home)}, check=True,
                       stdout=subprocess.DEVNULL)
        self.cage.bundle = f"{self.cage.home_inside}/Applications/Zentrill.app"

    def assert_nothing_gone(self, before):
        """Nothing but the window's frame is new."""
        after = self.disk()
        self.assertEqual({path: after.get(path) for path in before}, before)
        self.assertEqual(set(after) - set(before), tree.below(after, f"Library/Preferences/{_OWN}.plist"))

    def request(self):
        self.press("Uninstall Zentrill")
        modal = self.dialog("Self-Uninstall Zentrill?")
        self.assertEqual(modal.description,
                         "Permanently remove the installed Zentrill app plus its preferences, cache, application "
                         "support, logs, and saved window state? macOS backups and system logs are outside the "
                         "app's control.")
        self.display.picture("confirmation-self-uninstall")
        # The sidebar's entry has the same name, but lies below the modal.
        self.display.type(self.issued_code())
        self.screen.wait("push button", "Uninstall Zentrill", states=["enabled"]).press_to_end()


class SelfUninstall(SelfUninstallCase):
    """A home that the program was installed in and removed itself from is the home that it was before."""

    def test_nothing_of_the_program_is_left(self):
        before = self.disk()
        self.install_for_account()
        self.assertLess({f".local/share/applications/{_OWN}.desktop",
                         f".local/share/icons/hicolor/scalable/apps/{_OWN}.svg"}, set(self.disk()) - set(before))
        self.leave_own_data()
        self.start()
        self.move_window_until_kept()
        self.close()
        self.start()
        self.display.move_window(60, 70)
        self.request()
        self.expect_end()
        self.assertEqual(self.disk(), before)


class SelfUninstallRefused(SelfUninstallCase):
    """A bundle that cannot be removed stays whole, with all its data, and the program runs on."""

    def test_failure_leaves_everything(self):
        self.cage.bundle = "/Applications/Zentrill.app"
        self.cage.bind(current().bundle, self.cage.bundle)
        self.leave_own_data()
        before = self.disk()
        self.start()
        self.request()
        self.result("Self-Uninstall Failed")
        self.display.picture("result-self-uninstall-failed")
        message = "\n".join(self.result_lines())
        self.assertIn("Self-uninstall failed: ", message)
        self.assertIn("The app is on a read-only volume. Install it in Applications first.", message)
        self.assertIn("The Applications directory is not writable.", message)
        self.assertIn("Still present: /Applications/Zentrill.app", message)
        self.assertNotIn("Removed before failure", message)
        self.assertEqual(self.disk(), before)
        self.dismiss_result()
        self.show_pane("models")
        self.close()
        self.assert_nothing_gone(before)


class SelfUninstallElsewhere(SelfUninstallCase):
    """A bundle that stands where no applications are installed stays, with all its data."""

    def test_failure_leaves_everything(self):
        self.install_in("Downloads")
        self.leave_own_data()
        before = self.disk()
        self.start()
        self.request()
        self.result("Self-Uninstall Failed")
        message = "\n".join(self.result_lines())
        self.assertIn("Self-uninstall is limited to a direct child of an approved Applications directory.", message)
        self.assertIn(f"Still present: {self.cage.bundle}", message)
        self.assertNotIn("Removed before failure", message)
        self.dismiss_result()
        self.close()
        self.assert_nothing_gone(before)
