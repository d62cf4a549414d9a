#!/usr/bin/env python3
"""The CMake project that README.md shows can be configured as it stands. Argument: cmake."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import delivered

CMAKE = sys.argv.pop(1)
README = (delivered.SOURCES / "README.md").read_text()
MINIMUM = r"cmake_minimum_required\(VERSION ([\d.]+)\)"


def block(language):
    """The first block of a language."""
    return re.search(rf"^```{language}\n(.*?)^```$", README, re.MULTILINE | re.DOTALL)[1]


class ReadmeCMake(unittest.TestCase):
    def test_minimum_is_that_of_the_library(self):
        minimum = re.search(MINIMUM, (delivered.SOURCES / "CMakeLists.txt").read_text())[1]
        self.assertEqual(re.search(MINIMUM, block("cmake"))[1], minimum)
        self.assertIn(f"CMake {minimum}", README)
        self.assertIn(f"CMake {minimum}", (delivered.SOURCES / "docs/install.md").read_text())

    def test_sources_in_a_folder_give_the_libraries_alone(self):
        with tempfile.TemporaryDirectory() as directory:
            place = pathlib.Path(directory)
            (place / "CMakeLists.txt").write_text(block("cmake"))
            (place / "program.cpp").write_text(block("cpp"))
            (place / "murv").symlink_to(delivered.SOURCES)
            run = subprocess.run([CMAKE, "-S", place, "-B", place / "build",
                                  "-DCMAKE_DISABLE_FIND_PACKAGE_murv=ON"], capture_output=True, text=True)
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            cache = (place / "build/CMakeCache.txt").read_text()
        for part in ("BUILD_TOOLS", "BUILD_TESTS", "BUILD_EXAMPLES", "INSTALL"):
            self.assertIn(f"\nMURV_{part}:BOOL=OFF\n", cache)


if __name__ == "__main__":
    unittest.main()
