"""The pointer in long lists: a press acts on the row that it is pressed on, and the list stays where it is."""

import re

import homes
from harness.case import Case
from harness.docker_case import DockerCase

_NAMES = [f"org/model-{number:02}.gguf" for number in range(60)]


class LongListCase(Case):
    def setUp(self):
        super().setUp()
        for name in _NAMES:
            homes.gguf_model(self.home, name, b"g" * 1000)
        self.before = self.disk()
        self.start()
        self.show_pane("models")
        self.list = self.screen.wait("list", "Local models")

    def rows(self):
        """Name of each row in sight → its place on the screen."""
        return {row.name: row.extents for row in self.list.children()
                if row.role == "list item" and "showing" in row.states}

    def scroll(self, notches):
        """Turns the wheel over the rows and returns what stands where afterwards."""
        left, top, width, height = self.list.extents
        before = self.rows()
        self.display.wheel(left + width // 3, top + height // 2, notches)
        self.screen.until(lambda: self.rows() != before, "rows that moved")
        # Not even the last turn of the wheel is still on its way when two looks agree.
        seen = [None]

        def rests():
            now = self.rows()
            resting, seen[0] = now == seen[0], now
            return resting

        self.screen.until(rests, "a list at rest")
        return self.rows()

    def scroll_through(self):
        """All names, from the top of the list to its end, which is where it stands then."""
        names = self.in_order(self.rows())
        while len(names) < len(_NAMES):
            names += [name for name in self.in_order(self.scroll(5)) if name not in names]
        return names

    @staticmethod
    def in_order(rows):
        return sorted(rows, key=lambda name: rows[name][1])

    def wholly_in_sight(self, rows):
        _, top, _, height = self.list.extents
        return [name for name in self.in_order(rows)
                if rows[name][1] >= top and rows[name][1] + rows[name][3] <= top + height]

    def buttons(self):
        """Name of each row of whose button something is in sight → the button's place on the screen."""
        return {button.name.removeprefix("Delete "): button.extents
                for button in self.screen.find_all("push button", re.compile("^Delete "))}

    def button(self, name):
        return self.screen.wait("push button", f"Delete {name}")

    def expect_confirmation_of(self, name):
        dialog = self.screen.wait("dialog")
        self.assertEqual(dialog.name, f"Delete {name}?")

    def leave(self):
        self.display.key("Escape")
        self.screen.wait_gone("dialog")


class PressAfterScrolling(LongListCase):
    """However far the wheel was turned, the first press of a row's button is that row's, nothing moves, and the focus
    comes back to it."""

    def test_first_press_of_every_position(self):
        pressed = 0
        for notches in (1, 3, 1, 7, 2, 11, -4, 1, -1, 5):
            rows = self.scroll(notches)
            names = self.wholly_in_sight(rows)
            name = names[pressed % len(names)]
            self.display.click(*self.button(name).middle)
            self.expect_confirmation_of(name)
            self.assertEqual(self.rows(), rows, f"the list moved when {name} was pressed")
            self.leave()
            self.assertEqual(self.rows(), rows, f"the list moved when the confirmation of {name} closed")
            self.screen.wait("push button", f"Delete {name}", states=["focused"])
            pressed += 1
        self.close()
        self.assert_only_gone(self.before, [])

    def test_press_while_the_wheel_is_turned(self):
        """A press that follows the wheel at once is not taken for one that stops the list."""
        name = self.in_order(self.rows())[3]
        first = self.rows()[name][1]
        notch = first - self.scroll(1)[name][1]
        self.assertGreater(notch, 0)
        pressed = 0
        for _ in range(8):
            before = self.rows()
            name = self.wholly_in_sight(before)[3]
            x, y = self.button(name).middle
            self.display.click(x, y, 1, "click", "--repeat", "2", "--delay", "10", "5")
            # The bus may be answered before the wheel.
            self.screen.until(lambda: before[name][1] - self.rows()[name][1] == 2 * notch, "both turns of the wheel")
            # Below the pointer is a button or the gap between two; what opened is what stands there.
            rows = self.rows()
            below = [name for name, (_, top, _, height) in self.buttons().items() if top <= y < top + height]
            if below:
                self.expect_confirmation_of(below[0])
                self.assertEqual(self.rows(), rows)
                self.leave()
                pressed += 1
        self.assertGreater(pressed, 0)
        self.close()

    def test_rows_cut_by_the_edge(self):
        """A row that is only partly in sight takes a press without coming into sight for it."""
        pressed = 0
        for notches in (1, 1, 1, 1, 1, 1):
            rows = self.scroll(notches)
            _, top, _, height = self.list.extents
            for name, (x, button_y, button_width, button_height) in self.buttons().items():
                _, y, _, size = rows[name]
                inside = [line for line in range(button_y, button_y + button_height) if top <= line < top + height]
                if len(inside) >= 2 and not (top <= y and y + size <= top + height):
                    self.display.click(x + button_width // 2, inside[len(inside) // 2])
                    self.expect_confirmation_of(name)
                    self.assertEqual(self.rows(), rows)
                    self.leave()
                    self.assertEqual(self.rows(), rows)
                    pressed += 1
        self.assertGreater(pressed, 0)
        self.close()


class RowsTakeTheFocusInPlace(LongListCase):
    """A click on a row and the keys that follow: the focus is on that row, and the arrow keys go on from there."""

    def test_click_and_arrows(self):
        rows = self.scroll(6)
        name = self.wholly_in_sight(rows)[2]
        left, top, width, height = rows[name]
        self.display.click(left + width // 3, top + height // 2)
        self.screen.wait("list item", name, states=["focused"])
        self.assertEqual(self.rows(), rows)
        following = self.wholly_in_sight(rows)[3]
        self.display.key("Down")
        self.screen.wait("list item", following, states=["focused"])
        self.assertEqual(self.rows(), rows)
        self.close()

    def test_keys_bring_their_row_into_sight(self):
        self.list.grab_focus()
        first, *_, last = self.scroll_through()
        for key, name in (("End", last), ("Home", first)):
            self.display.key(key)
            self.screen.wait("list item", name, states=["focused"])
            self.assertIn(name, self.wholly_in_sight(self.rows()))
        seen = [first]
        for key in ["Down"] * 20 + ["Next"] * 3:
            self.display.key(key)
            focused = self.screen.until(lambda: (now := self.screen.focused()) and now.role == "list item"
                                        and now.name not in seen and now, f"another row after {key}")
            seen.append(focused.name)
            self.assertIn(focused.name, self.wholly_in_sight(self.rows()))
        self.close()


class SecondClickOfTwo(LongListCase):
    """The second click of a double click on a modal's button reaches nothing below it."""

    def test_cancel(self):
        names = self.wholly_in_sight(self.rows())
        self.display.click(*self.button(names[0]).middle)
        self.expect_confirmation_of(names[0])
        x, y = self.screen.wait("push button", "Cancel").middle
        self.display.run("xdotool", "mousemove", str(x), str(y), "click", "--repeat", "2", "--delay", "60", "1")
        self.screen.wait_gone("dialog")
        # Had it reached the row below, the arrow key would go on from there.
        self.display.key("Down")
        self.screen.wait("list item", names[1], states=["focused"])
        self.close()


class PressInTheDockerList(DockerCase):
    """The same for Docker's images; the arrow keys stop at containers and images alone."""

    def test_images_and_arrows(self):
        for number in range(14):
            image = self.engine.make_image(f"service:{number:02}")
        self.engine.run_container("job", image)
        self.start_over_engine()
        rows = self.screen.wait("list", "Docker containers and images")
        left, top, width, height = rows.extents

        def places():
            return {row.name: row.extents for row in rows.children()
                    if row.role == "list item" and "showing" in row.states}

        pressed = 0
        for notches in (2, 1, 3, -1):
            # One at a time: while the next one is on its way, what stands where would not be known.
            for _ in range(abs(notches)):
                before = places()
                self.display.wheel(left + width // 3, top + height // 2, notches // abs(notches))
                self.screen.until(lambda: places() != before, "rows that moved")
            before = places()
            name = [row for row, (_, y, _, size) in before.items() if row.startswith("service") and y >= top
                    and y + size <= top + height][pressed]
            self.display.click(*self.screen.wait("push button", f"Remove {name}", states=["enabled"]).middle)
            self.assertRegex(self.dialog("Remove Docker Image?").description, f"^Remove {name} ")
            self.assertEqual(places(), before)
            self.display.key("Escape")
            self.screen.wait_gone("dialog")
            self.screen.wait("push button", f"Remove {name}", states=["focused"])
            self.assertEqual(places(), before)
            pressed += 1

        self.display.key("Home")
        self.screen.wait("list item", "job", states=["focused"])
        seen = ["job"]
        for _ in range(14):
            self.display.key("Down")
            seen.append(self.screen.until(lambda: (now := self.screen.focused()) and now.role == "list item"
                                          and now.name not in seen and now.name, "the next row"))
        self.assertEqual(sorted(seen), sorted(["job", *(f"service:{number:02}" for number in range(14))]))
        # The first stop brings the heading above it into sight.
        self.display.key("Home")
        self.screen.wait("heading", "Containers (1)")
        self.close()
