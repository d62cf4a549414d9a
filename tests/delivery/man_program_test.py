#!/usr/bin/env python3
"""The program that murv(3) shows prints what the page says. Arguments: the compiler, the library, flags."""

import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

import delivered

compiler, library, flags = sys.argv[1:]
blocks = re.findall(r"^\.Bd -literal\n(.*?)\n\.Ed", (delivered.SOURCES / "docs/man/murv.3").read_text(), re.M | re.S)
program, expected = (block.replace("\\e", "\\") for block in blocks)
with tempfile.TemporaryDirectory() as directory:
    place = pathlib.Path(directory)
    (place / "main.cpp").write_text(program)
    includes = f"-I{delivered.SOURCES}/include"
    subprocess.run([compiler, *shlex.split(flags), "-DMURV_STATIC", includes, place / "main.cpp", library,
                    "-o", place / "main"], check=True)
    printed = subprocess.run([place / "main"], capture_output=True, text=True, check=True).stdout
if printed.strip() != expected:
    sys.exit(f"murv(3): it prints\n{printed}")
