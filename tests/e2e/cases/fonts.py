"""What the font library would keep for itself."""

import homes
from harness.case import Case


class FontsWithoutACache(Case):
    """Where the machine's cache of its fonts is not up to date, none is written for the person, and nothing said."""

    def setUp(self):
        super().setUp()
        empty = self.cage.folder / "empty"
        empty.mkdir()
        self.cage.bind(empty, "/var/cache/fontconfig")
        homes.write(self.home / ".claude/settings.json", "{}")
        self.before = self.disk()

    def expect_no_trace(self):
        self.start()
        self.close()
        self.assert_only_gone(self.before, [])

    def test_writable_home(self):
        self.expect_no_trace()

    def test_read_only_home(self):
        self.cage.home_is_read_only = True
        self.expect_no_trace()
