"""What a person sees, measured on the screen."""

import plistlib

import homes
from harness.case import Case

_DOCKER = """#!/bin/sh
case "$*" in
*"context show"*) echo desktop ;;
*version*) echo 24.0 ;;
*stop*) cat "$HOME/answer" >&2; exit 1 ;;
*"container ls"*) echo '{"ID":"c1","Names":"web","Image":"web:1","Status":"Up 3 minutes","State":"running"}' ;;
esac
"""
_MARGIN = 8
_MINIMUM = (900, 650)
_SCREEN = (1280, 900)


class AppearanceCase(Case):
    scale = 1

    def open(self, scale=1):
        self.scale = scale
        self.start(environment={"QT_SCALE_FACTOR": str(scale)})

    def place(self, element):
        """Where it is on the screen, in pixels. What the bus tells is in the program's own points, as is the
        window's own place."""
        return [round(number * self.scale) for number in element.extents]

    def point_at(self, x, y):
        """Moves the mouse as a hand does, which is more than one step."""
        for step in (2, 1, 0):
            self.display.run("xdotool", "mousemove", str(round(x) - step), str(round(y) - step))

    def pixels(self, x, y, width, height):
        """The rows of a part of the screen, each a list of (red, green, blue)."""
        path = self.cage.folder / "pixels"
        self.display.run("import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "+repage",
                         "-depth", "8", f"rgb:{path}")
        data = path.read_bytes()
        self.assertEqual(len(data), 3 * width * height)
        return [[tuple(data[3 * at:3 * at + 3]) for at in range(row * width, (row + 1) * width)]
                for row in range(height)]

    def window(self):
        return self.place(self.screen.wait("frame"))

    def inked(self, x, y, width, height, brightness=150):
        """The first and last row of that part of the screen that hold letters."""
        rows = self.pixels(x, y, width, height)
        found = [index for index, row in enumerate(rows) if sum(1 for pixel in row if max(pixel) > brightness) > 2]
        self.assertTrue(found, "no letters")
        return found[0], found[-1]


class LargeText(AppearanceCase):
    """On a desktop with larger text the whole window is larger by as much, so that no text is cut."""

    def sizes_at(self, dots_per_inch):
        self.display.set_resources(f"Xft.dpi:\t{dots_per_inch}\n")
        self.start()
        size = self.display.window_size()
        self.display.picture(f"text-at-{dots_per_inch}")
        letters = self.inked(*self.place_at(dots_per_inch / 96, self.screen.wait("heading", "Applications")))
        self.close()
        return size, letters[1] - letters[0] + 1

    def place_at(self, scale, element):
        self.scale = scale
        return self.place(element)

    def test_a_sixth_larger(self):
        size, letters = self.sizes_at(96)
        # As large as fits the screen with some room around it.
        larger_size, larger_letters = self.sizes_at(112)
        for plain, larger in zip((*size, letters), (*larger_size, larger_letters)):
            self.assertAlmostEqual(larger, plain * 112 / 96, delta=2)


class TooltipCase(AppearanceCase):
    """Two models whose names do not fit."""

    long = "-".join(["a-model-with-quite-a-long-name"] * 6) + ".gguf"
    deep = "pub/" + "a" * 120 + "/" + "b" * 200 + ".gguf"

    def setUp(self):
        super().setUp()
        homes.gguf_model(self.home, self.long, b"g" * 2_000_000)
        homes.gguf_model(self.home, self.deep, b"g" * 1_000_000)

    def open_models(self, scale=1):
        self.open(scale)
        self.show_pane("models")

    def point_at_name(self, name):
        x, y, width, height = self.place(self.screen.wait("list item", name))
        self.point_at(x + width * 0.3, y + height * 0.3)
        return y + height * 0.3


class Tooltips(TooltipCase):
    """The plate of a tooltip holds its text, stays in the window and does not cover what it belongs to."""

    def check_at(self, scale):
        self.open_models(scale)
        for name in (self.long, self.deep):
            pointer = self.point_at_name(name)
            x, y, width, height = self.place(self.screen.wait("tool tip", name))
            left, top, window_width, window_height = self.window()
            margin = _MARGIN * scale - 2
            self.assertGreaterEqual(x, left + margin)
            self.assertGreaterEqual(y, top + margin)
            self.assertLessEqual(x + width, left + window_width - margin)
            self.assertLessEqual(y + height, top + window_height - margin)
            self.assertFalse(y <= pointer < y + height, "the plate covers its line")
            # The letters begin and end on the plate, with the same room above and below.
            inset = round(3 * scale)
            first, last = self.inked(x + inset, y + inset, width - 2 * inset, height - 2 * inset)
            self.assertLess(first, 10 * scale)
            self.assertGreater(last, height - 2 * inset - 10 * scale)
            self.assertGreaterEqual(first, 2 * scale)
            self.assertLess(last, height - 2 * inset - 2 * scale)
            self.display.picture(f"tooltip-{scale}-{len(name)}")
            # It goes with the pointer.
            self.point_at(left + 20, top + 20)
            self.screen.wait_gone("tool tip")
        self.close()

    def test_full_size(self):
        self.check_at(1)

    def test_one_and_a_half(self):
        self.check_at(1.5)

    def test_a_press_ends_it(self):
        self.open_models()
        self.point_at_name(self.long)
        self.screen.wait("tool tip", self.long)
        self.display.run("xdotool", "mousedown", "1")
        self.screen.wait_gone("tool tip")
        self.display.run("xdotool", "mouseup", "1")
        self.close()


class TooltipsByKeyboard(TooltipCase):
    """The keyboard leads to the whole of a name as well; there is never more than one tooltip."""

    def test_follows_the_focus(self):
        self.open_models()
        self.screen.wait("list", "Local models").grab_focus()
        for key in ("Home", "End"):
            self.display.key(key)
            self.screen.until(lambda: (row := self.screen.focused()) and row.role == "list item"
                              and [tip.name for tip in self.screen.find_all("tool tip")] == [row.name],
                              "the tooltip of the row that has the focus")
        self.point_at_name(self.screen.focused().name)
        self.close()


class WindowFits(AppearanceCase):
    """On a screen that is smaller than the window, the whole window is on it."""

    def expect_on_screen(self):
        x, y, width, height = self.window()
        self.assertGreaterEqual(x, 0)
        self.assertGreaterEqual(y, 0)
        self.assertLessEqual(x + width, _SCREEN[0])
        self.assertLessEqual(y + height, _SCREEN[1])
        title = self.place(self.screen.wait("heading", "Applications"))
        self.assertGreater(title[1], 0)
        button = self.place(self.screen.wait("push button", "Uninstall Selected"))
        self.assertLessEqual(button[1] + button[3], _SCREEN[1])

    def test_first_start(self):
        for scale in (1.5, 2):
            with self.subTest(scale=scale):
                self.open(scale)
                self.expect_on_screen()
                self.close()

    def test_saved_frame(self):
        saved = plistlib.dumps({"NSWindow Frame MainWindow": "165 100 950 700 0 0 1280 900"})
        path = homes.write(self.home / "Library/Preferences/com.user.Zentrill.plist", saved)
        self.open(1.5)
        self.expect_on_screen()
        self.close()
        # On the larger screen it is where it was.
        self.assertEqual(path.read_bytes(), saved)
        self.open()
        self.assertEqual(self.window(), [165, 100, 950, 700])
        self.close()

    def test_never_below_its_minimum_where_there_is_room(self):
        self.open()
        self.display.run("xdotool", "windowsize", str(self.display.window()), "400", "300")
        self.display.run("xdotool", "windowsize", str(self.display.window()), "1000", "720")
        self.screen.until(lambda: self.window()[2:] == [1000, 720], "the new size")
        self.assertGreaterEqual(tuple(self.window()[2:]), _MINIMUM)
        self.close()


class LongConfirmation(AppearanceCase):
    """A message that is higher than the window scrolls: all of it can be read before the code is typed."""

    def test_keyboard_reaches_the_end(self):
        name = "org/" + "/".join(f"deep-folder-{number:02}-with-quite-a-long-name-of-its-own" for number in range(60))
        homes.gguf_model(self.home, name + "/model.gguf", b"g" * 1_000_000)
        self.open()
        self.show_pane("models")
        button = self.screen.wait("push button", f"Delete {name}/model.gguf")
        button.press()
        dialog = self.dialog(f"Delete {name}/model.gguf?")
        card = self.place(dialog)
        self.assertGreaterEqual(card[1], 0)
        self.assertLessEqual(card[1] + card[3], self.window()[1] + self.window()[3])
        message = self.screen.wait("label", dialog.description)
        self.assertTrue(message.name.endswith("This operation cannot be undone."))
        self.screen.wait("scroll bar")
        area = self.place(message)
        before = self.pixels(*area)
        # From the code's field, where the focus is.
        self.display.key("Next")
        self.screen.until(lambda: self.pixels(*area) != before, "the next part of the message")
        self.display.key("Prior")
        self.screen.until(lambda: self.pixels(*area) == before, "the beginning of the message")
        # As a tab stop of its own.
        self.screen.until(lambda: self.reach(dialog.description), "the focus on the message")
        self.display.key("End")
        self.screen.until(lambda: self.pixels(*area) != before, "the end of the message")
        self.display.picture("long-confirmation")
        self.display.key("Escape")
        self.screen.wait_gone("dialog")
        self.close()

    def reach(self, name):
        self.display.key("Tab")
        focused = self.screen.focused()
        return focused is not None and focused.name == name


class ResultCard(AppearanceCase):
    """The errors of a result have as much room as the window has for them, up to 290 points."""

    def test_many_errors(self):
        homes.write(self.cage.sample("/usr/local/bin") / "docker", _DOCKER, 0o755)
        lines = [f"line {number} of what went wrong" for number in range(60)]
        homes.write(self.home / "answer", "refused\nErrors:\n" + "\n".join(lines) + "\n")
        self.open()
        # The smallest window.
        self.display.run("xdotool", "windowsize", str(self.display.window()), *map(str, _MINIMUM))
        self.screen.until(lambda: self.window()[2:] == list(_MINIMUM), "the smallest size")
        self.show_pane("docker")
        self.press("Stop web")
        self.result("Stop Failed")
        self.assertEqual(self.place(self.screen.wait("list", "Errors"))[3], 290)
        self.assertIsNotNone(self.screen.find("image", "ERRORS") or self.screen.find("icon", "ERRORS"))
        self.display.picture("many-errors")
        self.dismiss_result()
        self.close()
