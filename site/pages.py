#!/usr/bin/env python3
"""Turns README.md, docs/*.md and examples into pages that Doxygen reads, and writes the side tree.

usage: pages.py OUT

The sources are written for GitHub: links name files, anchors are made of headings, a backslash means itself. Doxygen
wants labels. A link that leads nowhere ends the run with its file and line.
"""
import html
import pathlib
import re
import sys

import bars

# The side tree: groups of (label, title in the tree). Pages of docs/ that are not named here come last.
GROUPS = [
    ("Guide", [("install", "Install"), ("everyday", "Everyday"), ("documents", "Documents"), ("examples", "Examples"),
               ("ten-tasks", "Ten tasks compared"), ("comparison", "Comparison")]),
    ("Layouts", [("layouts", "Tutorial"), ("layouts--manual", "Manual"), ("layouts--cookbook", "Cookbook"),
                 ("layouts--reading-and-making-in-c", "In C++"),
                 ("layouts--faults-and-findings", "Faults and findings"), ("layouts-installed", "Installed layouts"),
                 ("layouts--what-rules-cannot-say", "What rules cannot say"),
                 ("layouts--the-pkt_-members-and-the-codec", "pkt_ members and codec")]),
    ("Tools", [("tool", "The tool"), ("explorer", "Explorer"), ("editors", "Editors")]),
    ("Formats", [("text", "Text notation"), ("file-format", "Binary files"), ("packets", "Packet expressions"),
                 ("layout-description", "Layout descriptions"), ("security", "Passwords"),
                 ("oddities", "What surprises")]),
    ("Project", [("benchmarks", "Benchmarks"), ("architecture", "Architecture"), ("ids", "Finding by ID"),
                 ("contributing", "Contributing"), ("changelog", "Changelog")]),
]
# Pages of which every section is a page of its own; the sections named here stay on the first.
SPLIT = {"layouts": {"from-a-dump-to-a-layout"}}
SHORT = {**dict(row for _, rows in GROUPS for row in rows), "layouts": "Layouts", "ids": "Finding nodes by ID"}
TITLES = {"layouts--manual": "Manual of layouts", "layouts--cookbook": "Cookbook of layouts"}
SOURCES = {"README.md": "index", "CONTRIBUTING.md": "contributing", "CHANGELOG.md": "changelog",
           "editors/README.md": "editors"}

HEADING = re.compile(r"(#{1,6}) (.*)")
PICTURE = re.compile(r"!\[([^\]]*)\]\(([^)\s]+)\)")
LINK = re.compile(r"\[([^\]\[]*)\]\(([^)\s]+)\)")
CODE = re.compile(r"(?<!`)(`+)(?!`)(.*?[^`])\1(?!`)", re.S)


def slug(heading):
    """The anchor that GitHub makes of a heading."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


class Page:
    def __init__(self, root, path, label):
        self.path, self.label, self.folder = path, label, (root / path).parent
        self.lines = (root / path).read_text(encoding="utf-8").split("\n")
        self.kinds = list(kinds(self.lines))
        self.anchors = {}
        self.title = ""
        self.pieces = []  # (label, title, first line, line after the last, levels that headings rise)
        self.cut()

    def cut(self):
        label, title, first, rise = self.label, "", 0, 0
        for number, (kind, line) in enumerate(zip(self.kinds, self.lines)):
            match = HEADING.match(line) if kind == "text" else None
            if not match:
                continue
            level, name = len(match[1]), slug(match[2])
            if level == 1:
                self.title = title = plain(match[2])
            elif level == 2 and self.label in SPLIT and name not in SPLIT[self.label]:
                self.pieces.append((label, title, first, number, rise))
                label, title, first, rise = f"{self.label}--{name}", plain(match[2]), number, 1
                self.anchors[name] = label
            if level - rise > 1:
                twins = sum(1 for known in self.anchors if re.fullmatch(re.escape(name) + r"(-\d+)?", known))
                name += f"-{twins}" if twins else ""
                self.anchors[name] = f"{self.label}--{name}"
        self.pieces.append((label, title, first, len(self.lines), rise))
        for number, line in enumerate(self.lines):
            for name in re.findall(r'<a id="([^"]+)"></a>', line):
                self.anchors[name] = f"{self.label}--{name}"


    def prose(self, number):
        return self.kinds[number] == "text" and not HEADING.match(self.lines[number])


def kinds(lines):
    """Says of every line whether it is text, the fence of a code block, or code."""
    fence, before = "", ""
    for line in lines:
        mark = re.match(r" {0,3}(```+|~~~+)", line)
        if fence:
            yield "fence" if mark and mark[1] == fence else "code"
            fence = "" if mark and mark[1] == fence else fence
        elif mark:
            fence = mark[1]
            yield "fence"
        elif line.startswith("    ") and before in ("", "indented"):
            yield "code"
            before = "indented"
            continue
        else:
            yield "text"
        before = "" if not line.strip() else "text"


def code(span):
    """A code span of which Doxygen takes nothing for an escape of its own or the begin of a string."""
    if "\\|" in span:  # in a table, and shown with the backslash if it were a code span
        return "<code>" + html.escape(span.strip("`")).replace("@", "\\@") + "</code>"
    span = re.sub(r"%(?=\w)", "%%", span.replace('"', "&quot;"))
    return f"`{span}`" if "'" in span and not span.startswith("``") else span


def plain(text):
    return text.replace("`", "").replace("[", "").replace("]", "")


class Site:
    def __init__(self, root, out):
        self.root, self.out, self.mistakes = root, out, []
        sources = dict(SOURCES)
        sources.update({f"docs/{page.name}": page.stem for page in sorted((root / "docs").glob("*.md"))})
        self.pages = {path: Page(root, path, label) for path, label in sources.items()}
        self.programs = sorted((root / "examples").glob("*.cpp"))
        self.titles = {piece[0]: TITLES.get(piece[0], piece[1])
                       for page in self.pages.values() for piece in page.pieces}
        self.titles.update({"examples": "Examples", "benchmarks": "Benchmarks"})
        self.headers = sorted((root / "include/murv").glob("*.h"))

    def target(self, page, link, line):
        """The label that a link leads to; None when it leads outside the site."""
        if re.match(r"[a-z]+:", link):
            return None
        path, _, anchor = link.partition("#")
        where = (page.folder / path).resolve() if path else self.root / page.path
        name = str(where.relative_to(self.root)) if where.is_relative_to(self.root) else str(where)
        if name in self.pages:
            found = self.pages[name].anchors.get(anchor) if anchor else self.pages[name].label
            if found:
                return found
        elif where.exists() and name.startswith("examples"):
            return f"example-{where.stem}" if where in self.programs else "examples"
        self.mistakes.append(f"{page.path}:{line}: the link {link} leads nowhere")
        return None

    def text(self, page, text, number):
        """Prose that begins in a line: labels instead of links, and no commands. Keeps the number of lines."""
        kept = []

        def keep(text):
            kept.append(text)
            return f"\x01{len(kept) - 1}\x02"

        def linked(match):
            label = self.target(page, match[2], number + text[:match.start()].count("\n"))
            shown = match[1]
            if not label:
                return match[0]
            if re.fullmatch(r"[\w./-]+\.md", shown):  # readers of the site see no files
                named = label if label in self.titles else label.partition("--")[0]
                shown = SHORT.get(named, self.titles[named])
            whole = re.fullmatch("\x01(\\d+)\x02", shown)  # a code span, which Doxygen does not read in links
            if whole:
                return keep(f"<code>[{kept[int(whole[1])].strip('`')}](@ref {label})</code>")
            return keep(f"[{shown}](@ref {label})")

        def shown(match):
            if not (page.folder / match[2]).exists():
                self.mistakes.append(f"{page.path}:{number}: the picture {match[2]} is not there")
            name = pathlib.PurePosixPath(match[2]).name  # scripts/site puts all pictures into one folder
            return keep(f'<img src="pictures/{name}" alt="{html.escape(match[1])}"/>')

        text = CODE.sub(lambda match: keep(code(match[0])), text)
        text = PICTURE.sub(shown, text)
        text = LINK.sub(linked, text)
        text = re.sub(r'<a id="([^"]+)"></a>', lambda match: keep(f"@anchor {page.label}--{match[1]} "), text)
        text = re.sub(r"\\(?![|*_`<>\[\]])", r"\\\\", text).replace("@", "\\@")
        text = re.sub(r"\*\*(.+?)\*\*", r"<b>\1</b>", text)  # Doxygen wants a letter after the stars
        while "\x01" in text:
            text = re.sub("\x01(\\d+)\x02", lambda match: kept[int(match[1])], text)
        return text

    def piece(self, page, piece):
        label, title, first, last, rise = piece
        title = self.titles[label]
        lines, prose = [], []
        for number in range(first, last):
            line, kind = page.lines[number], page.kinds[number]
            match = HEADING.match(line) if kind == "text" else None
            if match and len(match[1]) - rise <= 1:
                lines.append(f"# {title} {{#{'mainpage' if label == 'index' else label}}}")
                if label != "index" and any(k == "text" and l.startswith("##" + "#" * rise + " ") for k, l in
                                            zip(page.kinds[first:last], page.lines[first:last])):
                    lines += ["", "@tableofcontents{html:%d}" % (2 if last - first > 900 else 3)]
            elif match:
                name = self.heading(page, number)
                lines.append(f"{match[1][rise:]} {self.text(page, match[2], number + 1)} {{#{name}}}")
            elif kind == "text":
                prose.append(line)
                if not line.strip() or number + 1 == last or not page.prose(number + 1):
                    lines.append(self.text(page, "\n".join(prose), number + 2 - len(prose)))
                    prose = []
            else:
                lines.append(line)
        if label == "index":
            lines += self.reading()
        (self.out / f"{label}.md").write_text("\n".join(lines) + "\n", encoding="utf-8")

    def heading(self, page, wanted):
        """The label of the heading in a line; equal headings are numbered in their order."""
        name, twins = slug(HEADING.match(page.lines[wanted])[2]), 0
        for number in range(wanted):
            match = HEADING.match(page.lines[number]) if page.kinds[number] == "text" else None
            twins += bool(match and len(match[1]) > 1 and slug(match[2]) == name)
        return page.anchors[name + (f"-{twins}" if twins else "")]

    def reading(self):
        return ["- [Benchmarks](@ref benchmarks)", ""]

    def examples(self):
        lines = ["# Examples {#examples}", "", "@tableofcontents{html:1}", "",
                 "The tests build and run every program on this page.", ""]
        for program in self.programs:
            text = program.read_text(encoding="utf-8").rstrip()
            lines += [f"## {program.name} {{#example-{program.stem}}}", "", "```cpp", text, "```", ""]
        (self.out / "examples.md").write_text("\n".join(lines), encoding="utf-8")

    def heads(self):
        """What each public header is for, as its first line says."""
        lines = ["# Headers {#headers}", "", "`murv/murv.h` includes what most programs need.", "",
                 "| Header | What it has |", "|---|---|"]
        for header in self.headers:
            first = header.read_text(encoding="utf-8").split("\n")[0]
            match = re.fullmatch(r"// murv/\S+ - (.*)", first)
            if match:
                lines.append(f"| [murv/{header.name}](@ref {header.name}) | {self.text(None, match[1], 1)} |")
            else:
                self.mistakes.append(f"include/murv/{header.name}:1: the header does not say what it is for")
        (self.out / "headers.md").write_text("\n".join(lines) + "\n", encoding="utf-8")

    def layout(self):
        """The side tree, and nothing else of Doxygen's that repeats it."""
        groups = [(name, [row for row in rows if row[0] in self.titles]) for name, rows in GROUPS]
        named = {label for _, rows in groups for label, _ in rows} | {"index"}
        rest = [(label, title) for label, title in self.titles.items() if label not in named]
        if rest:
            groups.append(("More", rest))
        tree = ['    <tab type="mainpage" visible="yes" title="Start"/>']
        for name, rows in groups:
            tree.append(f'    <tab type="usergroup" visible="yes" title="{html.escape(name)}">')
            tree += [f'      <tab type="user" visible="yes" url="@ref {label}" title="{html.escape(title)}"/>'
                     for label, title in rows]
            tree.append("    </tab>")
            if name == "Layouts":
                tree += ['    <tab type="usergroup" visible="yes" title="API">',
                         '      <tab type="usergroup" visible="yes" url="@ref headers" title="Headers">']
                tree += [f'        <tab type="user" visible="yes" url="@ref {header.name}" title="{header.name}"/>'
                         for header in self.headers]
                tree += ["      </tab>",
                         '      <tab type="classlist" visible="yes" title="Classes"'
                         ' intro="Public classes, structures and unions."/>',
                         '      <tab type="namespacemembers" visible="yes" title="Functions and constants" intro=""/>',
                         "    </tab>"]
        for kind in ("pages", "modules", "namespaces", "concepts", "interfaces", "classes", "structs", "exceptions",
                     "files", "examples"):
            tree.append(f'    <tab type="{kind}" visible="no" title=""/>')
        body = "\n".join(tree)
        text = f'<doxygenlayout version="1.0">\n  <navindex>\n{body}\n  </navindex>\n</doxygenlayout>\n'
        (self.out / "layout.xml").write_text(text, encoding="utf-8")

    def write(self):
        for page in self.pages.values():
            for piece in page.pieces:
                self.piece(page, piece)
        self.examples()
        self.heads()
        (self.out / "benchmarks.md").write_text(bars.page(self.root / "bench/baseline/tree.txt"), encoding="utf-8")
        self.layout()
        return self.mistakes


def main():
    out = pathlib.Path(sys.argv[1])
    out.mkdir(parents=True, exist_ok=True)
    mistakes = Site(pathlib.Path(__file__).resolve().parent.parent, out).write()
    sys.exit("\n".join(mistakes) if mistakes else 0)


if __name__ == "__main__":
    main()
