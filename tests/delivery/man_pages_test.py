#!/usr/bin/env python3
"""The manual knows what the program knows, and mandoc finds no fault with its pages."""

import re
import subprocess
import unittest

import delivered

HANDWRITTEN = sorted((delivered.SOURCES / "docs/man").iterdir())


def page(call):
    return delivered.REFERENCE / "man1" / ("-".join(("murv", *call)) + ".1")


def shown(path):
    """The page as a reader sees it, with single blanks and without line breaks."""
    run = subprocess.run(["mandoc", "-T", "utf8", "-O", "width=990", path], capture_output=True, text=True, check=True)
    return " ".join(re.sub(".\b", "", run.stdout).split())


def table_rows(path, heading):
    """The rows of the table below a heading of a page of Markdown, as lists of cells."""
    text = (delivered.SOURCES / path).read_text()
    table = re.search(rf"^{re.escape(heading)}\n\|[-|]+\n((?:\|.*\n)+)", text, re.MULTILINE).group(1)
    return [[cell.strip().replace("\\|", "|") for cell in re.split(r"(?<!\\)\|", row)[1:-1]]
            for row in table.splitlines()]


class ManPages(unittest.TestCase):
    def test_mandoc_finds_no_fault(self):
        pages = [*HANDWRITTEN, *sorted(page(()).parent.iterdir())]
        self.assertGreater(len(pages), 18)
        run = subprocess.run(["mandoc", "-T", "lint", "-W", "warning", *pages], capture_output=True, text=True)
        self.assertEqual(run.stdout + run.stderr, "")

    def test_each_verb_has_a_page_and_each_page_a_verb(self):
        pages = {page(call).name for call in [(), *delivered.verbs()]}
        self.assertEqual({path.name for path in page(()).parent.iterdir()}, pages)

    def test_each_option_and_argument_is_in_its_page(self):
        for call in [(), *delivered.verbs()]:
            text = shown(page(call))
            for name in delivered.options(call) + delivered.arguments(call):
                self.assertRegex(text, rf"(?<![\w-]){re.escape(name)}(?![\w-])", f"{call} {name}")

    def test_pages_say_what_the_help_says(self):
        for call in delivered.verbs():
            text = shown(page(call))
            for heading in ("Options", "Arguments", "Exit codes"):
                for line in delivered.section(delivered.tool(*call, "--help"), heading).splitlines():
                    meaning = re.fullmatch(r" +(?:\S.*?)? {2,}(\S.*)", line)  # not when the name takes the whole line
                    if meaning:
                        self.assertIn(meaning.group(1)[1:], text, call)

    def test_examples_are_in_the_pages(self):
        for call in delivered.verbs():
            text = shown(page(call))
            for example in delivered.examples(call):
                self.assertIn(" ".join(example.split()), text)

    def test_the_first_page_leads_to_all(self):
        text = shown(page(()))
        for call in delivered.verbs():
            self.assertIn(f"{page(call).stem}(1)", text)
        for other in HANDWRITTEN:
            self.assertIn(f"{other.stem}({other.suffix[1:]})", text)

    def test_pages_that_are_named_exist(self):
        known = {path.name for path in [*HANDWRITTEN, *page(()).parent.iterdir()]}
        for path in [*HANDWRITTEN, *page(()).parent.iterdir()]:
            for name, number in re.findall(r"^\.Xr (\S+) (\d)", path.read_text(), re.MULTILINE):
                self.assertIn(f"{name}.{number}", known, path.name)

    def test_all_rules_of_layouts_are_in_their_page(self):
        text = shown(delivered.SOURCES / "docs/man/murv-layout.5")
        rows = table_rows("docs/layouts.md", "| Rule | About | Keyword | Meaning |")
        self.assertGreater(len(rows), 50)
        for rule, about, keyword, meaning in rows:
            keyword = f" Keyword ‘{keyword.strip('`')}’." if keyword else ""
            said = f"{rule.strip('`')} {meaning[0].upper()}{meaning[1:]}. About {about}.{keyword}"
            self.assertIn(" ".join(said.split()), text)

    def test_headers_that_are_named_exist(self):
        names = re.findall(r"In (murv/\S+)", (delivered.SOURCES / "docs/man/murv.3").read_text())
        self.assertGreater(len(names), 5)
        for name in names:
            self.assertTrue((delivered.SOURCES / "include" / name).is_file(), name)


if __name__ == "__main__":
    delivered.need("mandoc")
    unittest.main()
