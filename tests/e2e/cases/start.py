"""What the program says where it cannot start, and what it does not say where it can."""

from harness.case import Case
from harness.program import Program


class NoDisplay(Case):
    """Without a display there is one sentence, and a status that tells it."""

    def expect_refusal(self, reason, **environment):
        self.program = Program(self.session, self.cage, environment={"DISPLAY": None, **environment})
        self.addCleanup(self.program.kill)
        self.assertEqual(self.program.wait(), 1)
        self.assertEqual(self.program.errors(), f"Zentrill cannot open its window: {reason}.\n")
        self.assertEqual(self.disk(), {})

    def test_none(self):
        self.expect_refusal("there is no display")

    def test_one_that_does_not_answer(self):
        self.expect_refusal("could not connect to display :4711", DISPLAY=":4711")

    def test_one_of_an_unknown_kind(self):
        self.expect_refusal('could not find the Qt platform plugin "chalkboard"', QT_QPA_PLATFORM="chalkboard")


class QuietStart(Case):
    """What is the machine's affair and no obstacle is not the person's affair either."""

    def expect_no_words(self, **environment):
        self.start(environment=environment)
        self.close()

    def test_no_runtime_folder(self):
        self.expect_no_words(XDG_RUNTIME_DIR=None)

    def test_a_wayland_session_that_does_not_answer(self):
        self.expect_no_words(XDG_SESSION_TYPE="wayland", WAYLAND_DISPLAY="wayland-4711")


class MissingViews(Case):
    """Where a part of the toolkit is not installed, the program says which, and ends."""

    def test_module_that_is_not_installed(self):
        modules = self.display.run("qmake6", "-query", "QT_INSTALL_QML").strip()
        empty = self.cage.folder / "empty"
        empty.mkdir()
        self.cage.bind(empty, f"{modules}/QtQuick/Templates")
        self.program = Program(self.session, self.cage)
        self.addCleanup(self.program.kill)
        self.assertEqual(self.program.wait(), 1, self.program.errors())
        # What the toolkit itself says comes before.
        self.assertEqual(self.program.errors().splitlines()[-1],
                         'Zentrill cannot open its window: module "QtQuick.Templates" is not installed.')
