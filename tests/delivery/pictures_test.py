#!/usr/bin/env python3
"""The pictures of README.md show what the tool prints, to the last blank."""

import sys
import unittest

import delivered

sys.path.insert(0, str(delivered.SOURCES / "scripts"))
import pictures


class Pictures(unittest.TestCase):
    def test_each_shows_what_the_tool_prints(self):
        for name in pictures.PICTURES:
            with self.subTest(name):
                printed = [line.rstrip() for line in pictures.lines_of_call(name, delivered.TOOL)]
                self.assertEqual(pictures.lines_of_picture(name), printed, "draw it anew: scripts/pictures")

    def test_calls_end_as_the_readme_says(self):
        self.assertIn('"Ada"', "".join(pictures.lines_of_call("explain", delivered.TOOL)))
        self.assertIn("error:", "".join(pictures.lines_of_call("check", delivered.TOOL)))

    def test_readme_shows_all_of_them(self):
        readme = (delivered.SOURCES / "README.md").read_text()
        files = sorted(file.stem for file in pictures.FOLDER.iterdir())
        self.assertEqual(files, sorted(pictures.PICTURES))
        for name in files:
            self.assertIn(f"](docs/pictures/{name}.svg)", readme)


if __name__ == "__main__":
    unittest.main()
