"""What the tests of the delivery share: the tool that was built, and what its help says."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

SOURCES = pathlib.Path(os.environ["MURV_SOURCES"])
REFERENCE = pathlib.Path(os.environ["MURV_REFERENCE"])
TOOL = os.environ["MURV_TOOL"]


def need(program):
    """Ends the test as skipped, loudly, when a program is not installed."""
    if shutil.which(program) is None:
        print(f"NOT TESTED: {program} is not installed")
        sys.exit(77)


def tool(*arguments):
    """What the tool prints; it must succeed."""
    return subprocess.run([TOOL, *arguments], capture_output=True, text=True, check=True).stdout


def section(text, heading):
    """The lines below a heading of the help, up to an empty line."""
    found = re.search(rf"^{heading}:\n((?:.+\n)*)", text, re.MULTILINE)
    return found.group(1) if found else ""


def verbs(call=()):
    """The calls of all verbs below one, as tuples of words: ("gen", "samples")."""
    found = []
    for name in re.findall(r"^  (\S+)", section(tool(*call, "--help"), "Verbs"), re.MULTILINE):
        found += [(*call, name), *verbs((*call, name))]
    return found


def options(call):
    """The options that the help of a verb names: "-o", "--output"."""
    lines = re.findall(r"^  (-\S+)", section(tool(*call, "--help"), "Options"), re.MULTILINE)
    return [name for line in lines for name in line.split(",")]


def arguments(call):
    """The arguments that the help of a verb names: "FILE"."""
    return re.findall(r"^  (\S+)", section(tool(*call, "--help"), "Arguments"), re.MULTILINE)


def examples(call):
    """The calls that the help of a verb shows."""
    return re.findall(r"^  (murv .*)", section(tool(*call, "--help"), "Examples"), re.MULTILINE)
