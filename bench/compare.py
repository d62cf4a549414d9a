#!/usr/bin/env python3
"""Runs the benches of two builds in turns, and prints how their times differ.

Called by scripts/bench --compare. Each bench is run by the one program, then by the other, and so on, so that what else
the machine does meets both alike. What is compared is the median of the processor's time (of the time by the clock
where a bench says so, and of bytes where it counts those). Rows of other libraries are left out.
"""
import argparse
import json
import re
import statistics
import subprocess
import sys

from ratios import value_of

OTHERS = re.compile("nlohmann|rapidjson|simdjson|msgpack|cbor|openssl|Protobuf|ByHand")
MOST_PERCENT = 3


def names_of(program, options):
    listed = subprocess.run([program, *options, "--benchmark_list_tests"], capture_output=True, text=True, check=True)
    return [name for name in listed.stdout.splitlines() if not OTHERS.search(name)]


def measure(program, options, name):
    """One run of one bench."""
    exactly = "^" + re.sub(r"[][.*+?(){}|^$\\]", r"\\\g<0>", name) + "$"
    done = subprocess.run([program, *options, f"--benchmark_filter={exactly}", "--benchmark_min_time=0.1",
                           "--benchmark_format=json"], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{program}: {name} failed:\n{done.stderr}")
    rows = json.loads(done.stdout)["benchmarks"]
    if len(rows) != 1 or rows[0].get("error_occurred"):
        raise RuntimeError(f"{program}: {name} gave no figure")
    return value_of(rows[0])


def take_turns(programs, options, name, rounds):
    """What a bench gives by both programs, measured in turns."""
    values = ([], [])
    for _ in range(rounds):
        for program, found in zip(programs, values):
            found.append(measure(program, options, name))
    return values


def line_of(name, base_runs, now_runs):
    """The medians and their ratio; marked when it is far from 1. Where runs overlap, the mark may be chance."""
    base, now = statistics.median(base_runs), statistics.median(now_runs)
    percent = 100 * now / base
    mark = "slower" if percent > 100 + MOST_PERCENT else "faster" if percent < 100 - MOST_PERCENT else ""
    if mark and min(base_runs) <= max(now_runs) and min(now_runs) <= max(base_runs):
        mark += ", runs overlap"
    return f"{name:<44}{base:>14.1f}{now:>14.1f}{now / base:>8.3f}  {mark}".rstrip()


def main(arguments):
    parser = argparse.ArgumentParser()
    parser.add_argument("base")
    parser.add_argument("now")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--filter", default="", help="a regular expression; other benches are left out")
    parser.add_argument("--option", action="append", default=[], help="given to both programs before all else")
    given = parser.parse_args(arguments)

    programs = (given.base, given.now)
    names, base_names = ([name for name in names_of(program, given.option) if re.search(given.filter, name)]
                         for program in reversed(programs))
    print(f"{'bench':<44}{'base':>14}{'now':>14}{'ratio':>8}")
    for name in names:
        if name in base_names:
            print(line_of(name, *take_turns(programs, given.option, name, given.rounds)), flush=True)
    for name in [*base_names, *names]:
        if (name in base_names) != (name in names):
            print(f"{name:<44}only in {'base' if name in base_names else 'now'}")
    if not set(names) & set(base_names):
        print("no bench is in both", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv[1:]))
    except RuntimeError as failure:
        sys.exit(str(failure))
