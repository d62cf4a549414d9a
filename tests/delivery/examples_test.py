#!/usr/bin/env python3
"""Each verb's help has examples, and each of them works as it stands."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

import delivered

# The files that examples may use; each example has all of them anew.
FILES = {
    "config.murv": '{ "listen" = { "port" = 8080 }, "users" = [ { "name" = "Ada" } ] }\n',
    "other.murv": '{ "listen" = { "port" = 8081 }, "users" = [ { "name" = "Bob" } ] }\n',
    "patch.json": '{ "listen": { "port": 80 } }\n',
    "sales.murv": """{
  "@" = "layout 1; lines",
  "day" = { "type" = (ACF1fix) "D", "date" = (ANF8) 0 },
  "sales" = [ { "type" = (ACF1fix) "S", "amount" = (ANF6) 0, "@amount" = "decimals 2" } ],
  "end" = { "type" = (ACF1fix) "E", "count" = (ANF3) 0, "@count" = "count of sales" }
}
""",
    "day.txt": "D20240131\nS001250\nS000099\nE002\n",
}
# The answer is no.
OTHER_CODES = {"murv fmt --check *.murv": 1, "murv diff config.murv other.murv": 1}


class Examples(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)
        place = pathlib.Path(self.directory.name)
        programs = place / "bin"
        programs.mkdir()
        (programs / "murv").symlink_to(delivered.TOOL)
        self.environment = {**os.environ, "PATH": f"{programs}:{os.environ['PATH']}"}
        self.environment["MURV_LAYOUTS"] = str(delivered.SOURCES / "share/murv/layouts")
        self.first = place / "first"
        self.first.mkdir()
        for name, text in FILES.items():
            (self.first / name).write_text(text)
        for call in ("murv gen samples ach -o payments", "murv convert config.murv --to binary -o config.murf"):
            self.assertEqual(self.run_in(self.first, call).returncode, 0, call)

    def run_in(self, place, call):
        return subprocess.run(["sh", "-c", call], cwd=place, env=self.environment, capture_output=True, text=True)

    def test_each_verb_has_one(self):
        for call in delivered.verbs():
            self.assertTrue(delivered.examples(call), f"murv {' '.join(call)}: add a row to tools/verb_examples.h")

    def test_each_works(self):
        for call in [(), *delivered.verbs()]:
            for example in delivered.examples(call):
                with self.subTest(example):
                    place = self.first.with_name("place")
                    shutil.rmtree(place, ignore_errors=True)
                    shutil.copytree(self.first, place)
                    for result in re.findall(r" -o (\S+)", example):
                        (place / result).unlink(missing_ok=True)
                    before = sorted(os.listdir(place))
                    run = self.run_in(place, example)
                    self.assertEqual(run.returncode, OTHER_CODES.get(example, 0), run.stderr)
                    self.assertEqual(run.stderr, "")
                    replaces = {"-i", "--in-place"} & set(example.split())
                    self.assertTrue(run.stdout or replaces or sorted(os.listdir(place)) != before, "it did nothing")


if __name__ == "__main__":
    unittest.main()
