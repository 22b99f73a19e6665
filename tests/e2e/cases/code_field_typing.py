"""What gets into the code's field, and for how long: digits typed by hand, until the confirmation closes."""

from harness.code_field_case import CodeFieldCase


class CodeFieldDigits(CodeFieldCase):
    """Digits of both parts of the keyboard get in, up to eight; what is there can be changed by hand."""

    def test_digits_of_both_parts(self):
        self.display.key(*"1234567", "8")
        self.expect("12345678")
        self.display.key("ctrl+a", "Delete")
        self.expect("")
        self.display.key(*(f"KP_{digit}" for digit in "98765432"))
        self.expect("98765432")
        self.display.key("ctrl+a", "BackSpace")
        self.finish()

    def test_ninth_digit(self):
        self.display.type("123456789")
        self.expect("12345678")
        for key in ("0", "KP_0"):
            self.display.key(key)
        self.display.key("BackSpace")
        self.expect("1234567")
        self.display.key("ctrl+a", "BackSpace")
        self.finish()

    def test_ninth_digit_of_the_code(self):
        self.display.type(self.code + "5")
        self.expect(self.code)
        self.expect_enabled(True)
        self.display.key("ctrl+a", "BackSpace")
        self.finish()

    def test_editing(self):
        self.display.type("12345678")
        for keys, text in ((["BackSpace"], "1234567"), (["Home", "Delete"], "234567"), (["9"], "9234567"),
                           (["End", "Left", "BackSpace"], "923457"),
                           (["Home", "shift+Right", "shift+Right", "0"], "03457"),
                           (["shift+End", "Delete"], "0"), (["6", "ctrl+a", "5"], "5"),
                           (["1", "2", "3", "4", "5", "6", "7", "Home", "shift+Right", "8"], "81234567")):
            with self.subTest(keys=keys):
                self.display.key(*keys)
                self.expect(text)
        self.display.run("xdotool", "mousemove", *map(str, self.field().middle), "click", "--repeat", "2", "1")
        self.display.key("4")
        self.expect("4")
        self.display.key("BackSpace")
        self.finish()


class CodesDiffer(CodeFieldCase):
    """Two openings in a row never show the same code."""

    def test_every_opening_has_its_own(self):
        codes = [self.code]
        for _ in range(15):
            self.cancel()
            codes.append(self.open())
        for code, following in zip(codes, codes[1:]):
            self.assertRegex(following, "^[0-9]{8}$")
            self.assertNotEqual(code, following)
        self.code = codes[-1]
        self.finish()


class CancelForgetsCode(CodeFieldCase):
    """Cancelling with the full code typed removes nothing; the next opening is empty and wants its own code."""

    def assert_next_opening_is_fresh(self):
        self.screen.wait_gone("dialog")
        self.assert_only_gone(self.before, [])
        old, self.code = self.code, self.open()
        self.assertNotEqual(old, self.code)
        self.expect("")
        self.expect_enabled(False)
        self.display.type(old)
        self.expect(old)
        self.expect_enabled(False)
        self.display.key("Return")
        self.display.key("ctrl+a", "BackSpace")
        self.finish()

    def type_code(self):
        self.display.type(self.code)
        self.expect_enabled(True)

    def test_by_its_button(self):
        self.type_code()
        self.press("Cancel")
        self.assert_next_opening_is_fresh()

    def test_by_a_click(self):
        self.type_code()
        self.display.click(*self.screen.wait("push button", "Cancel", states=["enabled"]).middle)
        self.assert_next_opening_is_fresh()

    def test_by_escape(self):
        self.type_code()
        self.display.key("Escape")
        self.assert_next_opening_is_fresh()
