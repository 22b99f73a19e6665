#!/usr/bin/env python3
"""bundle_test.py CONTENTS OLDEST_MACOS ENTITLEMENTS: what a Mac reads of the bundle."""

import plistlib
import struct
import sys
import unittest
from pathlib import Path

_CONTENTS, _OLDEST_MACOS, _ENTITLEMENTS = Path(sys.argv[1]), sys.argv[2], Path(sys.argv[3])
# The types of an icon file that hold a PNG → pixels on each side.
_PIXELS = {"ic11": 32, "ic12": 64, "ic07": 128, "ic13": 256, "ic08": 256, "ic14": 512, "ic09": 512, "ic10": 1024}


def blocks(content):
    """Type → what is in it, of blocks that stand one after the other."""
    found, offset = {}, 0
    while offset < len(content):
        kind, length = struct.unpack_from(">4sI", content, offset)
        found[kind.decode()] = content[offset + 8:offset + length]
        offset += length
    assert offset == len(content), "a block reaches beyond the end"
    return found


class BundleTest(unittest.TestCase):
    def setUp(self):
        self.information = plistlib.loads((_CONTENTS / "Info.plist").read_bytes())

    def test_the_information_names_the_oldest_system_and_the_program(self):
        self.assertEqual(self.information["LSMinimumSystemVersion"], _OLDEST_MACOS)
        self.assertEqual(self.information["CFBundleIdentifier"], "com.user.Zentrill")
        self.assertTrue((_CONTENTS / "MacOS" / self.information["CFBundleExecutable"]).is_file())

    def test_the_icon_has_every_size(self):
        file = _CONTENTS / "Resources" / f"{self.information['CFBundleIconFile']}.icns"
        whole = blocks(file.read_bytes())
        self.assertEqual(list(whole), ["icns"])
        pictures = blocks(whole["icns"])
        self.assertEqual(set(pictures), set(_PIXELS))
        for kind, picture in pictures.items():
            self.assertEqual(picture[:8], b"\x89PNG\r\n\x1a\n", kind)
            self.assertEqual(struct.unpack_from(">II", picture, 16), (_PIXELS[kind], _PIXELS[kind]), kind)

    def test_the_hardened_runtime_has_one_exception(self):
        self.assertEqual(plistlib.loads(_ENTITLEMENTS.read_bytes()), {"com.apple.security.cs.allow-jit": True})


unittest.main(argv=sys.argv[:1], verbosity=2)
