#!/usr/bin/env python3
"""Checks the site and writes the text that site/search.js searches.

usage: finish.py SITE

Every relative link must lead to a file and an anchor that exist, nothing may be loaded from elsewhere, and the code
spans of a page must stand in it letter by letter. What is wrong is printed, and ends the run with status 1.
"""
import html.parser
import json
import pathlib
import re
import sys
import urllib.parse

from pages import CODE, Site

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADINGS = {"h1", "h2", "h3"}
EMPTY = {"br", "hr", "img", "input", "link", "meta", "col", "area", "base", "wbr"}
SKIPPED = {"script", "style", "svg"}
LISTS = re.compile(r"-members\.html$|^(functions|globals|namespacemembers|dir_|usergroup)")  # not worth a search


class Reader(html.parser.HTMLParser):
    """Links, anchors, and the sections with their text of one file."""

    def __init__(self):
        super().__init__()
        self.links, self.loaded, self.anchors = [], [], set()
        self.sections = []  # [anchor, title, pieces of text]
        self.text, self.prose = [], []  # all of it, and what is not code
        self.anchor = ""
        self.open = []      # tags with what they are: "contents", "skip", "heading" or ""
        self.title = None

    def handle_starttag(self, tag, attributes):
        known = {name: value or "" for name, value in attributes}
        for name in ("id", "name"):
            if name in known and (name == "id" or tag == "a"):
                self.anchors.add(known[name])
        if "href" in known:
            (self.loaded if tag == "link" else self.links).append(known["href"])
        if "src" in known:
            self.loaded.append(known["src"])
        if tag in EMPTY:
            return
        self.open.append((tag, self.kind(tag, known)))
        if tag == "a" and known.get("id"):
            self.anchor = known["id"]
        if self.open[-1][1] == "heading":
            self.title = ""

    def kind(self, tag, known):
        classes = known.get("class", "").split()
        if tag == "div" and "contents" in classes:
            return "contents"
        if tag in ("code", "pre") or "fragment" in classes:
            return "code"
        if tag in SKIPPED or {"memberdecls", "toc", "permalink", "navpath", "header"} & set(classes):
            return "heading" if "header" in classes else "skip"
        return "heading" if tag in HEADINGS and self.inside("contents") else ""

    def inside(self, kind):
        return any(known == kind for _, known in self.open)

    def handle_endtag(self, tag):
        if tag in EMPTY:  # written as <img/>
            return
        while self.open:
            name, kind = self.open.pop()
            if kind == "heading" and self.title is not None:
                self.sections.append([self.anchor, " ".join(self.title.replace("◆", "").split()), []])
                self.title = None
            if name == tag:
                break

    def handle_data(self, data):
        if self.inside("contents"):
            self.text.append(data)
            if not self.inside("code"):
                self.prose.append(data)
        if self.inside("skip"):
            return
        if self.title is not None:
            self.title += data
        elif self.inside("contents") and self.sections:
            self.sections[-1][2].append(data)


def mend(site, files):
    """Leads Doxygen's own links that miss their place to where it put the thing, or to the head of the page.

    Its tree says that functions are documented with their header, though they are with their namespace.
    """
    homes = {anchor: name for name in sorted(files) if name.startswith("namespace") for anchor in files[name].anchors
             if re.fullmatch(r"[ag][0-9a-f]{32}.*", anchor)}

    def better(match):
        path, anchor = match[2], match[3]
        if path not in files or anchor in files[path].anchors:
            return match[0]
        home = homes.get(anchor)
        return match[1] + (f"{home}#{anchor}" if home else path) + '"'

    for path in list(site.glob("*.js")) + list(site.glob("*-members.html")):
        before = path.read_text(encoding="utf-8")
        after = re.sub(r'(")([\w.-]+\.html)#(\w+)"', better, before)
        if after != before:
            path.write_text(after, encoding="utf-8")
    for path in site.glob("class*.html"):
        before = path.read_text(encoding="utf-8")
        if 'href="#nested-classes"' in before and "nested-classes" not in files[path.name].anchors:
            path.write_text(before.replace('href="#nested-classes"', f'href="{path.name}"'), encoding="utf-8")


def dropSources(site):
    """Removes what Doxygen says of the pages as files."""
    for path in site.glob("*_8md.html"):
        path.unlink()
    for path in list(site.glob("dir_*.html")):
        if "_8md.html" in path.read_text(encoding="utf-8") or "site-pages" in path.read_text(encoding="utf-8"):
            path.unlink()


def read(site):
    files = {}
    for path in sorted(site.glob("*.html")):
        files[path.name] = Reader()
        files[path.name].feed(path.read_text(encoding="utf-8"))
    return files


def checkLinks(site, files):
    mistakes = []
    for name, reader in files.items():
        mistakes += [f"{name}: {link} is loaded from elsewhere" for link in reader.loaded if re.match(r"\w+:|//", link)]
        for link in reader.links + reader.loaded:
            if re.match(r"\w+:|//", link):
                continue
            path, _, anchor = urllib.parse.unquote(link).partition("#")
            target = path.partition("?")[0] or name
            if not (site / target).is_file():
                mistakes.append(f"{name}: {link}: there is no such file")
            elif anchor and target in files and anchor not in files[target].anchors:
                mistakes.append(f"{name}: {link}: there is no such place")
    for script in site.glob("*.js"):
        for link in re.findall(r'"([\w.-]+\.html(?:#[\w-]+)?)"', script.read_text(encoding="utf-8")):
            path, _, anchor = link.partition("#")
            if path not in files or anchor and anchor not in files[path].anchors:
                mistakes.append(f"{script.name}: {link}: there is no such place")
    return mistakes


def checkCode(sources, files):
    """Doxygen may take what stands in code for its own commands, and drop it; and leave marks of Markdown standing."""
    mistakes, squeeze = [], lambda text: re.sub(r"\s+", "", text)
    for page in sources.pages.values():
        names = [piece[0] + ".html" for piece in page.pieces]
        shown = squeeze("".join(text for name in names for text in files[name].text))
        rows = list(zip(page.kinds, page.lines))
        blocks = "\n".join(line if kind == "code" else "\x01" for kind, line in rows).split("\x01")
        prose = "\n".join(line if kind == "text" else "" for kind, line in rows)
        spans = [match[2].replace("\\|", "|") for part in re.split(r"\n\s*\n", prose) for match in CODE.finditer(part)]
        mistakes += [f"{page.path}: the site does not show {text.strip()[:60]!r}" for text in blocks + spans
                     if squeeze(text) not in shown]
        text = "".join(text for name in names for text in files[name].prose)
        loose = re.findall(r"\*\*|\]\(|`.{,30}|@ref|\\@", text)
        mistakes += [f"{page.path}: the site shows {mark!r}" for mark in loose]
    return mistakes


def searchText(files):
    rows = []
    for name, reader in sorted(files.items()):
        page = reader.sections[0][1] if reader.sections else name
        for anchor, title, pieces in reader.sections:
            text = " ".join("".join(pieces).split())
            if title and (text or anchor):
                rows.append([name + (f"#{anchor}" if anchor else ""), page, title, text])
    return "window.murvSearchText = " + json.dumps(rows, ensure_ascii=False, separators=(",", ":")) + ";\n"


def main():
    site = pathlib.Path(sys.argv[1])
    dropSources(site)
    mend(site, read(site))
    files = read(site)
    links = sum(len(reader.links) for reader in files.values())
    shown = {name: reader for name, reader in files.items() if not LISTS.search(name)}
    (site / "search-text.js").write_text(searchText(shown), encoding="utf-8")
    mistakes = checkLinks(site, files) + checkCode(Site(ROOT, None), files)
    if mistakes or not links:
        sys.exit("\n".join(mistakes) or "the site has no links")
    print(f"{len(files)} files, {links} links, every one leads somewhere")


if __name__ == "__main__":
    main()
