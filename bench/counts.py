#!/usr/bin/env python3
"""Counts the instructions of the runs of murv_counted_runs, and compares them with the kept ones.

Called by scripts/counts. Counts of one program are the same from call to call, however busy the machine is, but for the
seed of name hashes, which changes some by less than half a per cent. They hold for one compiler, C library, kind of
processor and valgrind, which the file of kept counts names; elsewhere nothing is compared.
"""
import argparse
import concurrent.futures
import pathlib
import re
import subprocess
import sys
import tempfile

KEPT = pathlib.Path(__file__).parent / "baseline" / "counts.txt"
HEAD = """# Instructions of each run. scripts/counts compares with them; after a change of speed that is meant,
# scripts/counts --renew writes them anew.
"""
MOST_PERCENT = 2.0


def output_of(*call):
    return subprocess.run(call, capture_output=True, text=True, check=True).stdout.strip()


def machine_of(program):
    """All that counts depend on besides the code."""
    return output_of(program, "--machine") + ", " + output_of("valgrind", "--version")


def count_run(program, name):
    """The instructions of one run. Raises when the run fails, or nothing was counted."""
    with tempfile.TemporaryDirectory() as folder:
        # The environment is part of the stack of a program: without one, stacks are the same everywhere.
        call = ["env", "-i", "PATH=/usr/local/bin:/usr/bin:/bin", "valgrind", "--tool=callgrind",
                "--toggle-collect=murv_counted_work", f"--callgrind-out-file={folder}/out", program, name]
        done = subprocess.run(call, capture_output=True, text=True, check=False)
    found = re.search(r"Collected : (\d+)", done.stderr)
    if done.returncode != 0 or found is None or int(found.group(1)) == 0:
        raise RuntimeError(f"run {name} failed:\n{done.stdout}{done.stderr}")
    return int(found.group(1))


def count_all(program, jobs):
    names = output_of(program, "--list").split()
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        return dict(zip(names, pool.map(lambda name: count_run(program, name), names)))


def read_kept(path):
    """Machine and counts that a file keeps; none when it is not there."""
    machine, counts = None, {}
    if not path.exists():
        return machine, counts
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("machine: "):
            machine = line.removeprefix("machine: ")
        elif line and not line.startswith("#"):
            name, count = line.split()
            counts[name] = int(count)
    return machine, counts


def write_kept(path, machine, counts):
    lines = [f"{name:<20}{count:>12}\n" for name, count in counts.items()]
    path.write_text(f"{HEAD}machine: {machine}\n" + "".join(lines), encoding="utf-8")


def compare(kept, now):
    """The lines of a table, what is wrong, and what is only worth a note."""
    table, wrong, notes = [f"{'run':<20}{'kept':>12}{'now':>12}{'percent':>10}"], [], []
    for name in [*kept, *(name for name in now if name not in kept)]:
        if name not in kept or name not in now:
            wrong.append(f"{name}: " + ("no such run any more" if name in kept else "no count is kept")
                         + "; renew the figures: scripts/counts --renew")
            continue
        percent = 100 * (now[name] - kept[name]) / kept[name]
        table.append(f"{name:<20}{kept[name]:>12}{now[name]:>12}{percent:>+10.2f}")
        if percent > MOST_PERCENT:
            wrong.append(f"{name}: {percent:.2f} % more instructions than kept, at most {MOST_PERCENT:g} % are allowed")
        elif percent < -MOST_PERCENT:
            notes.append(f"{name}: {-percent:.2f} % fewer; renew the figures: scripts/counts --renew")
    return table, wrong, notes


def main(arguments):
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--renew", action="store_true")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--kept", type=pathlib.Path, default=KEPT)
    given = parser.parse_args(arguments)

    machine = machine_of(given.program)
    kept_machine, kept = read_kept(given.kept)
    if machine != kept_machine and not given.renew:
        print(f"NOT TESTED: instructions of runs: counts are kept for {kept_machine}; this is {machine}")
        return 0
    now = count_all(given.program, given.jobs)
    table, wrong, notes = compare(kept, now)
    print("\n".join(table))
    if given.renew:
        write_kept(given.kept, machine, now)
        print(f"{len(now)} counts written to {given.kept}")
        return 0
    for note in notes:
        print(f"note: {note}")
    for complaint in wrong:
        print(f"error: {complaint}", file=sys.stderr)
    return 1 if wrong or not now else 0


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv[1:]))
    except RuntimeError as failure:
        sys.exit(str(failure))
