#!/usr/bin/env python3
"""Checks which file includes which: rooms point one way, and a source includes its own header first.

The table below is the whole rule; docs/architecture.md draws it. Public headers include public headers and the standard
library; programs that use the library (examples, the package consumer) include public headers only.
"""

import pathlib
import re
import sys

CORE = ["core", "core/text", "core/memory"]

# Room: the rooms that it may include, besides itself and the public headers.
ALLOWED = {
    "include/murv": [],
    "core/text": [],
    "core/memory": [],
    "core": ["core/text", "core/memory"],
    "packet": [*CORE],
    "io/ids": [*CORE],
    "io": [*CORE, "packet", "io/ids"],
    "ser": [*CORE, "packet", "io"],
    "ber/cipher": ["core/text"],
    "ber": [*CORE, "packet", "io", "io/ids", "ber/cipher"],
    "front": [*CORE, "packet", "io", "ser", "ber"],
    "syntax": [*CORE, "packet", "io", "ser"],
    "everyday": [*CORE],
    "document": [*CORE, "io", "ser", "syntax", "everyday"],
    "layout/values": [*CORE, "packet"],
    "layout/plan": [*CORE, "packet", "layout/values"],
    "layout/compile": [*CORE, "packet", "layout/values", "layout/plan"],
    "layout/run": [*CORE, "packet", "layout/values", "layout/plan"],
    "layout": [*CORE, "packet", "layout/values", "layout/plan", "layout/compile", "layout/run"],
    "tools": ["ber", "ber/cipher"],
    "tools/reference": ["tools"],
    "explorer": [],
    "examples": [],
    "tests/package/consumer": [],
}
LIBRARY = ["include/murv", *CORE, "packet", "io", "io/ids", "ser", "ber", "ber/cipher", "front", "everyday", "syntax",
           "document", "layout/values", "layout/plan", "layout/compile", "layout/run", "layout"]

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)
# Headers of the system that single files include where it has them; they do without elsewhere.
SYSTEM = {"core/memory/page_block.cpp": ["sys/mman.h"]}
# Headers for processor instructions and sanitizers come with the compiler, as the standard library does.
STANDARD = re.compile(r"^(c?[a-z_0-9]+|[a-z]mmintrin\.h|x86intrin\.h|arm_neon\.h|cpuid\.h|sanitizer/[a-z_]+\.h)$")


def room_of(path):
    """The room of a path relative to the root, or None."""
    parent = path.rsplit("/", 1)[0] if "/" in path else ""
    return parent if parent in ALLOWED else None


def target_of(root, path, name):
    """What a quoted include of `path` refers to, relative to the root, or None."""
    if name.startswith("murv/"):
        return "include/" + name
    if (root / name).is_file():
        return name
    beside = path.rsplit("/", 1)[0] + "/" + name
    return beside if (root / beside).is_file() else None


def check_target(root, room, path, name):
    """The complaint about one quoted include, or None."""
    target = target_of(root, path, name)
    if target is None or not (root / target).is_file():
        return f'"{name}" is not a file of the project'
    other = room_of(target)
    if other is None:
        return f'"{name}" is outside the rooms'
    if other in (room, "include/murv") or other in ALLOWED[room]:
        return None
    return f"{room} may not include {other}"


def check_file(root, path):
    """Yields (line, complaint) for one file."""
    room = room_of(path)
    text = (root / path).read_text(encoding="utf-8")
    first = None
    for match in INCLUDE.finditer(text):
        line = text.count("\n", 0, match.start(1)) + 1
        quoted, name = match.group(1) == '"', match.group(2)
        first = first or (line, name)
        if quoted:
            complaint = check_target(root, room, path, name)
            if complaint:
                yield line, complaint
        elif name.startswith("murv/"):
            yield line, f'write "{name}" with quotes'
        elif room in LIBRARY and not STANDARD.match(name) and name not in SYSTEM.get(path, []):
            yield line, f"<{name}> is not of the standard library"
    own = path[: -len(".cpp")] + ".h"
    if path.endswith(".cpp") and first and (root / own).is_file() and target_of(root, path, first[1]) != own:
        yield first[0], f'its own header "{own}" comes first'


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent).resolve()
    files = sorted(
        file.relative_to(root).as_posix()
        for room in ALLOWED
        for file in (root / room).glob("*")
        if file.suffix in (".h", ".cpp")
    )
    complaints = [f"{path}:{line}: {text}" for path in files for line, text in check_file(root, path)]
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    print(f"check_includes: {len(files)} files, {len(complaints)} complaints")
    return 1 if complaints or not files else 0


if __name__ == "__main__":
    sys.exit(main())
