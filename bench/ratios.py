#!/usr/bin/env python3
"""Prints what a bench run says as ratios to a peer.

Reads the JSON that a bench program writes with --benchmark_out. Of repeated runs the medians are taken. A ratio is
murv's time divided by the peer's: below 1 murv is faster.
"""
import json
import statistics
import sys


def value_of(row):
    """What a row is about: bytes of the heap, time by the clock, or else time of the processor."""
    if "heap_per_node" in row:
        return row["heap_per_node"]
    return row["real_time" if row["run_name"].endswith("/real_time") else "cpu_time"]


def times(path):
    with open(path, encoding="utf-8") as run:
        report = json.load(run)
    found = {}
    for row in report["benchmarks"]:
        if row.get("run_type") == "aggregate":
            continue
        found.setdefault(row["run_name"], []).append(value_of(row))
    return {name: statistics.median(values) for name, values in found.items()}


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: ratios.py RUN.json")
    figures = times(sys.argv[1])
    print(f"{'measure':<44}{'murv':>14}{'peer':>14}{'ratio':>8}")
    for name, value in figures.items():
        if "/murv" not in name:
            continue
        head, tail = name.split("/murv", 1)
        for other, peer in figures.items():
            if other.startswith(head + "/") and other.endswith(tail) and "/murv" not in other:
                label = other.removeprefix(head + "/").removesuffix(tail) if tail else other.removeprefix(head + "/")
                if tail and "/" in label:
                    continue
                print(f"{head + tail + ' : ' + label:<44}{value:>14.1f}{peer:>14.1f}{value / peer:>8.2f}")


if __name__ == "__main__":
    main()
