#!/usr/bin/env python3
"""The tables of scripts/bench: ratios to other libraries, and to another commit."""

import contextlib
import io
import json
import pathlib
import sys
import tempfile
import unittest

import delivered

sys.path.insert(0, str(delivered.SOURCES / "bench"))
import compare
import ratios

# A bench program in small: it lists its rows, and writes its name for each run into a file beside it.
PROGRAM = """#!{python}
import json, pathlib, re, sys
rows = {rows}
if "--benchmark_list_tests" in sys.argv:
    print("\\n".join(rows))
    sys.exit()
place = pathlib.Path(__file__)
pattern = re.compile(next(text for text in sys.argv if "filter" in text).split("=", 1)[1])
name = next(name for name in rows if pattern.search(name))
with (place.parent / "calls").open("a") as calls:
    calls.write(place.name + " " + name + "\\n")
count = (place.parent / "calls").read_text().splitlines().count(place.name + " " + name)
print(json.dumps({{"benchmarks": [{{"run_name": name, "real_time": 9.0, "cpu_time": rows[name][count - 1]}}]}}))
"""


class Ratios(unittest.TestCase):
    def test_figure_is_time_of_the_processor_unless_a_row_says_otherwise(self):
        row = {"run_name": "load/murv", "real_time": 2.0, "cpu_time": 1.0}
        self.assertEqual(ratios.value_of(row), 1.0)
        self.assertEqual(ratios.value_of({**row, "run_name": "load/murv/real_time"}), 2.0)
        self.assertEqual(ratios.value_of({**row, "heap_per_node": 71.0}), 71.0)

    def test_medians_of_repeated_runs_are_taken(self):
        rows = [{"run_name": "load", "cpu_time": time} for time in (9, 1, 2)]
        rows.append({"run_name": "load", "run_type": "aggregate", "cpu_time": 1000})
        with tempfile.NamedTemporaryFile("w+", suffix=".json") as run:
            json.dump({"benchmarks": rows}, run)
            run.flush()
            self.assertEqual(ratios.times(run.name), {"load": 2})


class Lines(unittest.TestCase):
    def test_mark_what_differs_by_more_than_three_percent(self):
        for now, end in (("1030.0", "1.030"), ("1031.0", "1.031  slower"),
                         (" 970.0", "0.970"), (" 969.0", "0.969  faster")):
            with self.subTest(now):
                self.assertEqual(compare.line_of("load", [1000], [float(now)]),
                                 "load" + 40 * " " + f"        1000.0        {now}   {end}")

    def test_say_when_the_mark_may_be_chance(self):
        for base, now, end in (([10, 20, 30], [29, 30, 40], "1.500  slower, runs overlap"),
                               ([10, 20, 28], [29, 30, 40], "1.500  slower"),
                               ([29, 40, 50], [10, 20, 30], "0.500  faster, runs overlap"),
                               ([10, 20, 30], [10, 20, 30], "1.000")):
            with self.subTest(base=base, now=now):
                self.assertTrue(compare.line_of("load", base, now).endswith(" " + end))


class Turns(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def program(self, name, rows):
        path = self.folder / name
        path.write_text(PROGRAM.format(python=sys.executable, rows=rows))
        path.chmod(0o755)
        return str(path)

    def compare(self, base, now, *options):
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = compare.main([self.program("base", base), self.program("now", now), *options])
        return status, out.getvalue().splitlines()[1:], err.getvalue()

    def test_programs_run_in_turns_and_medians_are_compared(self):
        status, table, _ = self.compare({"load/1": [10, 90, 20]}, {"load/1": [40, 1, 50]}, "--rounds=3")
        self.assertEqual((status, table),
                         (0, [f"{'load/1':<44}          20.0          40.0   2.000  slower, runs overlap"]))
        self.assertEqual((self.folder / "calls").read_text(), "base load/1\nnow load/1\n" * 3)

    def test_names_are_matched_whole(self):
        rows = {"load/10": [10], "load/1": [20], "a.b/load/1": [30]}
        self.assertEqual(self.compare(rows, rows, "--rounds=1")[1],
                         [compare.line_of(name, times, times) for name, times in rows.items()])

    def test_rows_of_other_libraries_and_filtered_ones_are_left_out(self):
        rows = {"load/nlohmann": [1], "asciiMakeByHand": [1], "load/murv": [10], "save/murv": [10]}
        self.assertEqual(self.compare(rows, rows, "--rounds=1", "--filter=^load")[1],
                         [compare.line_of("load/murv", [10], [10])])

    def test_rows_of_one_side_are_named(self):
        self.assertEqual(self.compare({"load": [1], "old": [1]}, {"load": [1], "new": [1]}, "--rounds=1")[1],
                         [compare.line_of("load", [1], [1]), f"{'old':<44}only in base", f"{'new':<44}only in now"])

    def test_nothing_to_compare_is_an_error(self):
        status, _, err = self.compare({"old": [1]}, {"new": [1]})
        self.assertEqual((status, err), (1, "no bench is in both\n"))

    def test_a_program_that_fails_ends_the_comparison(self):
        with self.assertRaisesRegex(RuntimeError, "base: load failed"):
            self.compare({"load": []}, {"load": []})


if __name__ == "__main__":
    unittest.main()
