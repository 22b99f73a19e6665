"""What stays out of the code's field: everything that was not typed by hand, digit by digit."""

import homes
from harness.clipboards import Clipboards
from harness.code_field_case import CodeFieldCase
from harness.drag_source import DragSource
from harness.editable_text import EditableText

# Fits into the field beside others, so that it would show.
_SHORT = "1234"


class CodeFieldPaste(CodeFieldCase):
    """No way of pasting gets anything in, whatever the clipboards hold."""

    def ways(self):
        middle = self.field().middle
        for keys in ("ctrl+v", "shift+Insert", "ctrl+shift+v", "ctrl+shift+Insert", "XF86Paste", "ctrl+Insert"):
            yield keys, lambda keys=keys: self.display.key(keys)
        yield "middle click", lambda: self.display.click(*middle, button=2)
        yield "context menu", lambda: self.context_menu(middle)

    def context_menu(self, point):
        """The first entry of whatever opens, and the one that P stands for."""
        for keys in (("Down", "Return"), ("p",)):
            self.display.click(*point, button=3)
            self.assertIsNone(self.screen.find("popup menu"))
            self.assertIsNone(self.screen.find("menu item"))
            # Return on a field that is not full must not do anything, either.
            self.display.key(*keys)
        self.display.key("Menu")
        self.assertIsNone(self.screen.find("menu item"))

    def try_all(self, text, before=""):
        clipboards = Clipboards(self.display, text)
        try:
            for name, way in self.ways():
                with self.subTest(way=name, text=text, before=before):
                    way()
                    self.expect_nothing_new(before)
                    self.expect_enabled(False)
        finally:
            clipboards.stop()

    def test_some_digits(self):
        self.try_all(_SHORT)
        self.finish()

    def test_the_code_itself(self):
        self.try_all(self.code)
        self.finish()

    def test_the_rest_of_the_code(self):
        self.display.type(self.code[:4])
        self.expect(self.code[:4])
        self.try_all(self.code[4:], before=self.code[:4])
        self.display.key("ctrl+a", "BackSpace")
        self.finish()

    def test_what_is_shown_cannot_be_taken(self):
        """The code and the field give nothing to the clipboards."""
        clipboards = Clipboards(self.display, "before")
        self.addCleanup(clipboards.stop)
        self.display.type(_SHORT)
        self.display.key("ctrl+a", "ctrl+c", "ctrl+x", "shift+Delete", "ctrl+Insert")
        self.display.key("ctrl+a", "BackSpace")
        self.expect("")
        x, y = self.screen.wait(name="Confirmation code").middle
        self.display.run("xdotool", "mousemove", str(x), str(y), "click", "--repeat", "2", "1")
        self.display.key("ctrl+c")
        for selection in ("clipboard", "primary"):
            self.assertEqual(self.display.run("xclip", "-selection", selection, "-out"), "before")
        self.finish()


class CodeFieldDrop(CodeFieldCase):
    """Neither text nor a file can be dropped in."""

    def try_drop(self, kind, what):
        source = DragSource(self.display, kind, what)
        self.addCleanup(source.stop)
        self.assertNotEqual(source.drop_on_own_target(), "ended 0", "the dragging works")
        middle = self.field().middle
        self.assertEqual(source.drop_on(middle), "ended 0")
        self.display.click(*middle)
        self.expect_nothing_new()
        self.finish()

    def test_text(self):
        self.try_drop("text", _SHORT)

    def test_the_code_itself(self):
        self.try_drop("text", self.code)

    def test_file(self):
        self.try_drop("file", str(homes.write(self.cage.folder / self.code, self.code)))


class CodeFieldAssistiveText(CodeFieldCase):
    """Assistive tools can read the field, not write it."""

    def test_nothing_is_written(self):
        field = self.field()
        self.assertFalse(field.set_text(_SHORT))
        editable = EditableText(field)
        for text in (_SHORT, self.code):
            for write in (lambda: editable.set_contents(text), lambda: editable.insert(0, text)):
                write()
                self.expect_nothing_new()
                self.expect_enabled(False)
        clipboards = Clipboards(self.display, _SHORT)
        self.addCleanup(clipboards.stop)
        editable.paste(0)
        self.expect_nothing_new()
        self.finish()

    def test_what_was_typed_stays(self):
        self.display.type(_SHORT)
        self.expect(_SHORT)
        editable = EditableText(self.field())
        for write in (lambda: editable.set_contents(""), lambda: editable.delete(0, 2), lambda: editable.cut(0, 2),
                      lambda: editable.insert(4, self.code[4:])):
            write()
            self.expect_nothing_new(_SHORT)
        self.display.key("ctrl+a", "BackSpace")
        self.finish()


class CodeFieldUndo(CodeFieldCase):
    """What was taken out does not come back, in the same opening or in the next."""

    def try_undo(self):
        for keys in ("ctrl+z", "ctrl+shift+z", "ctrl+y", "alt+BackSpace", "shift+alt+BackSpace", "Undo", "Redo"):
            with self.subTest(keys=keys):
                self.display.key(keys)
                self.expect_nothing_new()

    def test_in_the_same_opening(self):
        self.display.type(self.code)
        self.expect_enabled(True)
        self.display.key("ctrl+a", "BackSpace")
        self.expect("")
        self.try_undo()
        self.finish()

    def test_in_the_next_opening(self):
        self.display.type(self.code)
        self.expect_enabled(True)
        self.cancel()
        self.code = self.open()
        self.expect("")
        self.try_undo()
        self.finish()


class CodeFieldOtherCharacters(CodeFieldCase):
    """Letters, signs and the digits of other scripts are refused, one by one."""

    def test_are_refused(self):
        for text in ("１２３", "٣٤", "४५", "²", "Ⅷ", "abc", " -.,", "é", "O", "l"):
            with self.subTest(text=text):
                self.display.type(text)
                self.expect_nothing_new()
        self.finish()

    def test_digits_between_them_stay(self):
        self.display.type("1a２2 -b3")
        self.expect("123")
        self.display.key("ctrl+a", "BackSpace")
        self.finish()

    def test_shortcuts_with_digits(self):
        self.display.key("ctrl+1", "alt+2", "super+3", "ctrl+shift+4", "ctrl+KP_5")
        self.expect_nothing_new()
        self.finish()
