"""The page of benchmarks: bars drawn from the figures that bench/baseline keeps.

A row of the file is "measure/document : peer, murv's figure, the peer's, their ratio". Figures are nanoseconds of CPU
time, but bytes a node for "heap". Lengths are in per cent and colours in style.css, so that bars fit every width.
"""
import html
import re

ROW = re.compile(r"(\S+) : (\S+)\s+([\d.]+)\s+([\d.]+)\s+([\d.]+)$")
MEASURES = [
    ("parse", "Reading", "A text becomes a tree; simdjson's can only be read."),
    ("parse-cold", "Reading, cold", "The same, after the heap has given its memory back to the system."),
    ("parse-wall", "Reading a large document", "The same by the clock on the wall, cold."),
    ("parse-compact", "Reading without white space", "A text on one line, without blanks, becomes a tree."),
    ("compact", "Writing on one line", "A tree becomes a text without white space."),
    ("pretty", "Writing indented", "A tree becomes a text for people."),
    ("copy", "Copying", "A tree is copied."),
    ("copy-cold", "Copying, cold", "The same, after the heap has given its memory back to the system."),
    ("destroy", "Destroying", "A tree is given back. RapidJSON's default frees pools, whatever is in them."),
    ("heap", "Memory", "Bytes on the heap for each node of a tree that was read."),
    ("lookup", "Looking up by name", "One member is found among so many."),
    ("build", "Building", "So many members are added one by one."),
]
PEERS = {"nlohmann": "nlohmann-json", "rapidjson": "RapidJSON",
         "rapidjson-malloc-exact": "RapidJSON, malloc, exact numbers", "simdjson": "simdjson (read-only)"}
STEP = 34


def read(path):
    """The sentences at the head of the file, and {measure: {document: {library: figure}}}."""
    head, figures = [], {}
    for line in path.read_text(encoding="utf-8").splitlines():
        match = ROW.match(line)
        if match:
            measure, document = re.sub("/(iterations:1|real_time)$", "", match[1]).split("/")
            bars = figures.setdefault(measure, {}).setdefault(document, {"murv": float(match[3])})
            bars[PEERS.get(match[2], match[2])] = float(match[4])
        elif line.strip():
            if figures:
                raise SystemExit(f"{path}: cannot read the row: {line}")
            head.append(line)
    return " ".join(head), figures


def shown(measure, value):
    if measure == "heap":
        return f"{value:.1f} bytes"
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if value >= size:
            return f"{value / size:.3g} {unit}" if value < 1000 * size else f"{value / size:.0f} {unit}"
    return f"{value:.3g} ns"


def chart(measure, bars):
    longest = max(bars.values())
    rows = []
    for number, (name, value) in enumerate(sorted(bars.items(), key=lambda bar: (bar[0] != "murv", bar[1]))):
        kind = "own" if name == "murv" else "peer"
        ratio = "" if name == "murv" else f" (\u00d7 {value / bars['murv']:.2g})"
        rows.append(f'<text x="0" y="{number * STEP + 13}">{html.escape(name)}: {shown(measure, value)}{ratio}</text>'
                    f'<rect class="{kind}" x="0" y="{number * STEP + 18}" height="9" rx="2"'
                    f' width="{100 * value / longest:.2f}%"/>')
    return f'<svg class="bars" role="img" width="100%" height="{len(rows) * STEP}">{"".join(rows)}</svg>'


def page(path):
    head, figures = read(path)
    machine = re.search(r"on an? [^:]*", head)
    if not machine:
        raise SystemExit(f"{path}: the head does not say on which machine")
    lines = ["# Benchmarks {#benchmarks}", "", "@tableofcontents{html:1}", "",
             f"murv and general JSON libraries, measured by `scripts/bench tree` in one run {machine[0]}, on the",
             "same documents: twitter.json, citm_catalog.json and canada.json, which murv reads in its own notation.",
             "Shorter bars are better. Each group has a scale of its own; the number after \u00d7 is a figure divided",
             "by murv's.", "", "The figures stand in `bench/baseline/tree.txt`, which says of them:", "", f"> {head}", ""]
    known = [measure for measure, _, _ in MEASURES]
    if set(figures) - set(known):
        raise SystemExit(f"{path}: no title for {sorted(set(figures) - set(known))}")
    for measure, title, meaning in MEASURES:
        if measure not in figures:
            continue
        lines += [f"## {title} {{#benchmarks--{measure}}}", "", meaning, ""]
        for document, bars in figures[measure].items():
            name = f"{int(document):,} members" if document.isdigit() else document
            lines += ["@htmlonly", f'<p class="bars-of">{name}</p>{chart(measure, bars)}', "@endhtmlonly", ""]
    return "\n".join(lines)
