#!/usr/bin/env python3
"""Checks that functions of the library and the tool fit on a screen, and that their files stay short.

clang-format puts each opening brace on a line of its own, and the closing brace into the same column. So the script
finds functions by their braces and needs no parser. A function counts from its first line to its closing brace.
"""

import pathlib
import re
import sys

from check_includes import LIBRARY

FOLDERS = [*LIBRARY, "tools", "tools/reference", "explorer"]
MOST_FUNCTION_LINES = 45
MOST_FILE_LINES = 450
LONG_FILES = {"include/murv/fields.h"}  # one class, mostly comments for users

OPENING = re.compile(r"^( *)\{$")
# What has a block and is no function; all of these but "enum" may hold functions.
HOLDER = re.compile(r"^(template <.*> )?(namespace|class|struct|union|extern|enum)\b")


def head_of(lines, opening):
    """What the brace in line `opening` belongs to: index of its first line, and its text."""
    first = opening
    while first > 0:
        text = lines[first - 1].strip()
        if not text or text.startswith(("//", "#")) or text.endswith((";", "{", "}", ":")):
            break
        first -= 1
    return first, " ".join(line.strip() for line in lines[first:opening])


def functions_of(lines):
    """Yields (first line, lines, head) for each function."""
    opening = 0
    while opening < len(lines):
        match = OPENING.match(lines[opening])
        if match:
            first, head = head_of(lines, opening)
            if not HOLDER.match(head):
                closing = opening
                while closing + 1 < len(lines) and not lines[closing].startswith(match.group(1) + "}"):
                    closing += 1
                yield first + 1, closing - first + 1, head
                opening = closing  # blocks inside are part of it
        opening += 1


def check_file(root, path):
    """Yields complaints about one file."""
    lines = (root / path).read_text(encoding="utf-8").splitlines()
    if len(lines) > MOST_FILE_LINES and path not in LONG_FILES:
        yield f"{path}: {len(lines)} lines, at most {MOST_FILE_LINES}"
    for first, count, head in functions_of(lines):
        if count > MOST_FUNCTION_LINES:
            yield f"{path}:{first}: a function of {count} lines, at most {MOST_FUNCTION_LINES}: {head[:60]}"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent).resolve()
    files = sorted(
        file.relative_to(root).as_posix()
        for folder in FOLDERS
        for file in (root / folder).glob("*")
        if file.suffix in (".h", ".cpp")
    )
    complaints = [complaint for path in files for complaint in check_file(root, path)]
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    print(f"check_sizes: {len(files)} files, {len(complaints)} complaints")
    return 1 if complaints or not files else 0


if __name__ == "__main__":
    sys.exit(main())
