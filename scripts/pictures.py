#!/usr/bin/env python3
"""The pictures of README.md: what the tool prints on a terminal, as SVG files whose text stays text.

    scripts/pictures.py TOOL SVG-TERM

scripts/pictures calls it so. tests/delivery/pictures_test.py compares the files with what the tool prints, so that a
picture that is out of date fails a test. A picture has a dark window of its own, for pages that are light and dark.
"""

import json
import os
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDER = ROOT / "docs/pictures"

# The call that each picture shows.
PICTURES = {
    "explain": "murv explain -l order.murv order.bin",
    "check": "murv check service.murv",
}
# What the calls work on, besides examples/order.murv.
FILES = {
    "order.bin": b"OR\x00\x00\x12\x67000125003Ada",
    "service.murv": b"""{
  // where to listen
  "host" = "localhost",
  "port" : 8080,
  "motto" = "C:\\old",
  "users" = ['Ada']
}
""",
}

SVG, LINK = "{http://www.w3.org/2000/svg}", "{http://www.w3.org/1999/xlink}href"
# svg-term's measures: a column and a line in units of its picture, and where the first line stands.
COLUMN, LINE, FIRST = 1.002, 2.171, 1.67


def run(call, tool, terminal):
    """What a call prints, with colours when it is to see a terminal."""
    with tempfile.TemporaryDirectory() as directory:
        place = pathlib.Path(directory)
        shutil.copy(ROOT / "examples/order.murv", place)
        for name, content in FILES.items():
            (place / name).write_bytes(content)
        words = [str(tool), *shlex.split(call)[1:]]
        if terminal:
            words = ["script", "--quiet", "--command", shlex.join(words), "/dev/null"]
        environment = {name: value for name, value in os.environ.items() if name != "NO_COLOR"}
        done = subprocess.run(words, cwd=place, env={**environment, "TERM": "xterm-256color"},
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.stdout.decode()


def lines_of_call(name, tool):
    """The lines that the picture must show, without colours."""
    call = PICTURES[name]
    return ["$ " + call, *run(call, tool, terminal=False).splitlines()]


def lines_of_picture(name):
    """The lines that the picture shows: its words, put where they stand. Lines that are equal stand in it once."""
    root = xml.etree.ElementTree.parse(FOLDER / f"{name}.svg").getroot()
    symbols = {"#" + symbol.get("id"): symbol for symbol in root.iter(SVG + "symbol")}
    placed = [(text, float(text.get("y"))) for text in root.iterfind(f".//{SVG}svg/{SVG}text")]
    for use in root.iter(SVG + "use"):
        for text in symbols[use.get(LINK)].iter(SVG + "text"):
            placed.append((text, float(text.get("y")) + float(use.get("y", 0))))
    lines = {}
    for text, y in placed:
        column, number = round(float(text.get("x", 0)) / COLUMN), round((y - FIRST) / LINE)
        lines[number] = lines.get(number, "").ljust(column) + text.text
    return [lines.get(number, "") for number in range(max(lines) + 1)]


def draw(name, tool, svg_term):
    """Writes the picture of a call."""
    lines = lines_of_call(name, tool)
    width, height = max(map(len, lines)) + 1, len(lines)
    shown = f"\x1b[1m$ {PICTURES[name]}\x1b[0m\r\n" + run(PICTURES[name], tool, terminal=True).rstrip()
    cast = [{"version": 2, "width": width, "height": height}, [0.5, "o", shown], [1, "o", ""]]
    drawn = subprocess.run([svg_term, "--window", "--no-cursor", "--at", "900", "--width", str(width),
                            "--height", str(height)], input="\n".join(map(json.dumps, cast)), text=True,
                           capture_output=True, check=True)
    FOLDER.mkdir(exist_ok=True)
    (FOLDER / f"{name}.svg").write_text(drawn.stdout.rstrip() + "\n")
    if lines_of_picture(name) != [line.rstrip() for line in lines]:
        sys.exit(f"docs/pictures/{name}.svg does not show what the tool prints")


if __name__ == "__main__":
    programs = [pathlib.Path(program).resolve() for program in sys.argv[1:]]
    for picture in PICTURES:
        draw(picture, *programs)
        print(FOLDER.relative_to(ROOT) / f"{picture}.svg")
