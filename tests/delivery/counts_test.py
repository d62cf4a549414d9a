#!/usr/bin/env python3
"""scripts/counts: when more instructions are an error, and when nothing can be said."""

import contextlib
import io
import pathlib
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

import delivered

sys.path.insert(0, str(delivered.SOURCES / "bench"))
import counts


def ended(returncode, stderr):
    return mock.patch.object(subprocess, "run", return_value=subprocess.CompletedProcess([], returncode, "", stderr))


class Compare(unittest.TestCase):
    def test_two_percent_more_are_allowed_and_not_one_instruction_above(self):
        self.assertEqual(counts.compare({"load": 10000}, {"load": 10200})[1:], ([], []))
        self.assertEqual(counts.compare({"load": 10000}, {"load": 10201})[1],
                         ["load: 2.01 % more instructions than kept, at most 2 % are allowed"])

    def test_fewer_are_no_error_but_noted_when_they_are_many(self):
        self.assertEqual(counts.compare({"load": 10000}, {"load": 9800})[1:], ([], []))
        self.assertEqual(counts.compare({"load": 10000}, {"load": 9700})[1:],
                         ([], ["load: 3.00 % fewer; renew the figures: scripts/counts --renew"]))

    def test_table_shows_kept_now_and_percent(self):
        self.assertEqual(counts.compare({"load": 10000}, {"load": 10150})[0],
                         ["run                         kept         now   percent",
                          "load                       10000       10150     +1.50"])

    def test_runs_that_only_one_side_has_are_errors(self):
        self.assertEqual(counts.compare({"old": 1}, {"new": 1})[1],
                         ["old: no such run any more; renew the figures: scripts/counts --renew",
                          "new: no count is kept; renew the figures: scripts/counts --renew"])


class Count(unittest.TestCase):
    def test_is_what_valgrind_collected(self):
        with ended(0, "==7== Collected : 4711\n"):
            self.assertEqual(counts.count_run("program", "load"), 4711)

    def test_fails_when_the_run_fails(self):
        with ended(1, "==7== Collected : 4711\n"), self.assertRaisesRegex(RuntimeError, "run load failed"):
            counts.count_run("program", "load")

    def test_fails_when_nothing_was_counted(self):
        for said in ("==7== Collected : 0\n", "no such tool\n"):
            with ended(0, said), self.assertRaisesRegex(RuntimeError, "run load failed"):
                counts.count_run("program", "load")


class Call(unittest.TestCase):
    """The whole script, but for the counting itself."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.kept = pathlib.Path(self.folder.name) / "counts.txt"
        counts.write_kept(self.kept, "g++ 12", {"load": 1000, "save": 500})

    def call(self, machine, now, *options):
        out, err = io.StringIO(), io.StringIO()
        with mock.patch.object(counts, "machine_of", return_value=machine), \
                mock.patch.object(counts, "count_all", return_value=now), \
                contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = counts.main(["program", "--kept", str(self.kept), *options])
        return status, out.getvalue(), err.getvalue()

    def test_succeeds_with_the_kept_counts(self):
        self.assertEqual(self.call("g++ 12", {"load": 1000, "save": 500})[0::2], (0, ""))

    def test_fails_when_a_run_takes_more(self):
        self.assertEqual(
            self.call("g++ 12", {"load": 1000, "save": 515})[0::2],
            (1, "error: save: 3.00 % more instructions than kept, at most 2 % are allowed\n"))

    def test_notes_a_run_that_takes_less_and_succeeds(self):
        status, out, err = self.call("g++ 12", {"load": 900, "save": 500})
        self.assertEqual((status, err), (0, ""))
        self.assertIn("note: load: 10.00 % fewer; renew the figures", out)

    def test_fails_when_there_are_no_runs(self):
        counts.write_kept(self.kept, "g++ 12", {})
        self.assertEqual(self.call("g++ 12", {})[0], 1)

    def test_says_loudly_that_another_machine_cannot_compare(self):
        self.assertEqual(
            self.call("g++ 13", {"load": 5000, "save": 500}),
            (0, "NOT TESTED: instructions of runs: counts are kept for g++ 12; this is g++ 13\n", ""))

    def test_renewed_counts_are_those_of_now(self):
        now = {"load": 2000, "save": 400}
        self.assertEqual(self.call("g++ 13", now, "--renew")[0], 0)
        self.assertEqual(counts.read_kept(self.kept), ("g++ 13", now))
        self.assertEqual(self.call("g++ 13", now)[0], 0)

    def test_kept_counts_of_the_project_can_be_read(self):
        machine, kept = counts.read_kept(counts.KEPT)
        self.assertIn("valgrind", machine)
        self.assertGreaterEqual(len(kept), 12)


if __name__ == "__main__":
    unittest.main()
