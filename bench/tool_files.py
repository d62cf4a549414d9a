#!/usr/bin/env python3
"""Times the tool on large files, with the most memory that it had.

usage: bench/tool_files.py MURV [MEGABYTES] [DIRECTORY]

Makes a payment file (lines of text) and a feed (binary messages) by repeating the samples of the tests, with totals
that are right, and reads each with check, unpack --lines and unpack --csv. The files are removed at the end.
"""
import os
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SAMPLES = os.path.join(ROOT, "tests", "data", "layouts")
PIECE = 1 << 20


def small(payments):
    """With amounts of which a million batches still have sums that fit."""
    for amount in (b"0200000000", b"0100000000"):
        payments = payments.replace(amount, b"0000000" + amount[1:4])
    return payments


def write_payments(path, size):
    """A file header, one batch again and again, and a file control with the totals of all."""
    with open(os.path.join(SAMPLES, "ach", "ppd-mixedDebitCredit.ach"), "rb") as file:
        lines = small(file.read()).split(b"\n")
    header, control = lines[0], lines[6]
    batch = b"\n".join(lines[1:6]) + b"\n"
    count = size // len(batch)
    entries, debits, credits = (int(control[a:b]) * count for a, b in ((13, 21), (31, 43), (43, 55)))
    total = int(control[21:31]) * count % 10**10
    piece = batch * (PIECE // len(batch))
    with open(path, "wb") as file:
        file.write(header + b"\n")
        for _ in range(count * len(batch) // len(piece)):
            file.write(piece)
        file.write(batch * (count % (PIECE // len(batch))))
        file.write(b"9%06d%s%08d%010d%012d%012d%s\n" % (count % 10**6, control[7:13], entries % 10**8, total,
                                                       debits % 10**12, credits % 10**12, control[55:]))


def write_feed(path, size):
    """The messages of a feed, again and again."""
    with open(os.path.join(SAMPLES, "itch50", "sample-length-prefixed.bin"), "rb") as file:
        piece = file.read()
    with open(path, "wb") as file:
        for _ in range(size // len(piece)):
            file.write(piece)


def peak(pid, before):
    """The most memory of a process so far, in KB. (What wait() tells also counts this program before it became it.)"""
    try:
        with open("/proc/%d/status" % pid, encoding="ascii") as status:
            return max([before] + [int(line.split()[1]) for line in status if line.startswith("VmHWM")])
    except OSError:
        return before


def measure(command, size):
    begin = time.monotonic()
    most = 0
    with tempfile.TemporaryFile() as errors:
        child = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=errors)
        while os.waitid(os.P_PID, child.pid, os.WEXITED | os.WNOWAIT | os.WNOHANG) is None:
            most = peak(child.pid, most)
            time.sleep(0.01)
        seconds = time.monotonic() - begin
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        errors.seek(0)
        words = errors.read().decode(errors="replace")
    print("%-58s %6.2f s %6.2f s CPU %6.0f MB/s %6.0f MB/CPU s %5.1f MB peak  exit %d" %
          (" ".join(os.path.basename(word) for word in command[:-1]), seconds, usage.ru_utime + usage.ru_stime,
           size / seconds / 1e6, size / (usage.ru_utime + usage.ru_stime) / 1e6, most / 1024, child.returncode),
          flush=True)
    sys.stdout.write("".join("    " + line + "\n" for line in words.splitlines()[:4]))


def main():
    murv = os.path.abspath(sys.argv[1])
    size = int(sys.argv[2]) * 10**6 if len(sys.argv) > 2 else 10**9
    os.environ["MURV_LAYOUTS"] = os.path.join(ROOT, "share", "murv", "layouts")
    with tempfile.TemporaryDirectory(dir=sys.argv[3] if len(sys.argv) > 3 else None) as directory:
        for layout, kind, write in (("ach", "batches.entries.entry", write_payments),
                                    ("itch50", "messages.add order", write_feed)):
            path = os.path.join(directory, layout + ".bin")
            write(path, size)
            real = os.path.getsize(path)
            for options in (["check", "-q", "-l", layout], ["unpack", "--lines", "-l", layout],
                            ["unpack", "--csv", kind, "-l", layout]):
                measure([murv] + options + [path], real)
            os.remove(path)


if __name__ == "__main__":
    if len(sys.argv) < 2 or sys.argv[1].startswith("-"):
        sys.exit(__doc__)
    main()
