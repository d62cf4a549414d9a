#!/usr/bin/env python3
"""Editors colour documents and layouts as they should. Argument: vim or textmate.

The grammar for TextMate is tried with the engine of Visual Studio Code, which MURV_NODE_PACKAGES holds.
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import delivered

EDITORS = delivered.SOURCES / "editors"
PACKAGES = pathlib.Path(os.environ["MURV_NODE_PACKAGES"])

# What each kind of token is called: the group in Vim, and the scope that the token has besides others in TextMate.
KINDS = {
    "comment": ("murvComment", "comment."),
    "name": ("murvName", "entity.name.tag"),
    "string": ("murvString", "string.quoted.double"),
    "escape": ("murvEscape", "constant.character.escape"),
    "bad": ("murvBadEscape", "invalid.illegal.escape"),
    "number": ("murvNumber", "constant.numeric"),
    "id": ("murvId", "constant.other.id"),
    "word": ("murvConstant", "constant.language"),
    "form": ("murvForm", "storage.type.packet"),
    "length": ("murvLength", "constant.numeric"),
    "keyword": ("murvKeyword", "support.function.keyword"),
    "remark": ("murvRemark", "comment.block.remark"),
    "no packet": ("murvPacket", "invalid.illegal.packet"),
    "rule name": ("murvRuleName", "keyword.other.rules"),
    "rules": ("murvRules", "string.quoted.double.rules"),
    "rule": ("murvRule", "keyword.control.rule"),
    "rule word": ("murvRuleWord", "keyword.operator.word"),
    "rule number": ("murvRuleNumber", "constant.numeric"),
    "rule form": ("murvRuleForm", "storage.type.packet"),
    "mark": ("murvRuleMark", "string.quoted.other.mark"),
    "nothing": ("", None),
}

# Lines, and what the tokens in them are. The lines of a case are coloured one after the other.
CASES = [
    ('// a "comment" = 1', {"a": "comment", "comment": "comment", "1": "comment"}),
    ('/* two\n   "lines" */ 5', {"two": "comment", "lines": "comment", "5": "number"}),
    ('"name" = "value", 7', {'"name"': "name", "value": "string", ",": "nothing", "7": "number"}),
    (r'"a\n\xfF\u20AC\"b" = "c\/d\o"', {r"\n": "escape", r"\xfF": "escape", r"\u20AC": "escape", r"\"": "escape",
                                       "b": "name", r"\/": "escape", "d": "string", r"\o": "bad"}),
    ('"two\nlines // no comment" 6', {"two": "string", "lines": "string", "//": "string", "6": "number"}),
    ("[ -1, 2.5, 3e-7, true, false, null ]", {"-1": "number", "2.5": "number", "3e-7": "number", "true": "word",
                                              "false": "word", "null": "word", "[": "nothing"}),
    ('#7 "id" = null', {"#7": "id", '"id"': "name"}),
    ('"a" = (ACV2+12le a remark) "x"', {"ACV": "form", "2+": "length", "12": "length", "le": "keyword",
                                        "remark": "remark", '"x"': "string"}),
    ("(ANF10dec_2) 5", {"ANF": "form", "10": "length", "dec_2": "keyword", "5": "number"}),
    ("(XYZ) 5", {"XYZ": "no packet", "5": "number"}),
    ('"@" = "layout 1; prefixed BNF2 + 2", "a" = "b"', {
        '"@"': "rule name", "layout": "rule", "1": "rule number", "prefixed": "rule", "BNF2": "rule form",
        '"a"': "name", '"b"': "string"}),
    ('"@size" =\n  "size of body.count + 4;\n   little"', {
        '"@size"': "rule name", "size of": "rule", "body.count": "rules", "4": "rule number", "little": "rule"}),
    (r'"@end" = "ends \"keep\x00\"; align 2"', {"ends": "rule", "keep": "mark", "align": "rule", "2": "rule number"}),
    ('"@body" = "one of by head.type else other"', {"one of by": "rule", "head.type": "rules", "else": "rule word"}),
]

TEXTMATE = r"""
const fs = require('fs'), path = require('path');
const [packages, grammarFile, textsFile] = process.argv.slice(1);
const oniguruma = require(path.join(packages, 'vscode-oniguruma'));
const textmate = require(path.join(packages, 'vscode-textmate'));
(async () => {
    const wasm = fs.readFileSync(path.join(packages, 'vscode-oniguruma/release/onig.wasm')).buffer;
    await oniguruma.loadWASM(wasm);
    const registry = new textmate.Registry({
        onigLib: Promise.resolve({
            createOnigScanner: patterns => new oniguruma.OnigScanner(patterns),
            createOnigString: text => new oniguruma.OnigString(text)
        }),
        loadGrammar: async () => textmate.parseRawGrammar(fs.readFileSync(grammarFile, 'utf8'), grammarFile)
    });
    const grammar = await registry.loadGrammar('source.murv');
    const result = JSON.parse(fs.readFileSync(textsFile, 'utf8')).map(text => {
        let state = textmate.INITIAL;
        return text.split('\n').map(line => {
            const tokens = grammar.tokenizeLine(line, state);
            state = tokens.ruleStack;
            const bytes = [];
            for (const token of tokens.tokens)
                for (let i = token.startIndex; i < token.endIndex; ++i)
                    bytes[i] = token.scopes;
            return bytes.slice(0, line.length);
        });
    });
    console.log(JSON.stringify(result));
})().catch(error => { console.error(error); process.exit(1); });
"""

VIM = r"""
set nocompatible
let &runtimepath = '{editors}/vim,' . &runtimepath
filetype plugin on
syntax on
let result = []
for name in {names}
    execute 'edit ' . name
    if &filetype !=# 'murv' || empty(&commentstring)
        call add(result, 'the type of the file is ' . &filetype)
        continue
    endif
    syntax sync fromstart
    let lines = []
    for number in range(1, line('$'))
        call add(lines, map(range(1, col([number, '$']) - 1), 'synIDattr(synID(number, v:val, 1), "name")'))
    endfor
    call add(result, lines)
endfor
call writefile([json_encode(result)], '{answer}')
qall!
"""


def coloured_by_textmate(texts, place):
    (place / "texts").write_text(json.dumps(texts))
    grammar = EDITORS / "vscode/syntaxes/murv.tmLanguage.json"
    run = subprocess.run(["node", "-e", TEXTMATE, str(PACKAGES), str(grammar), str(place / "texts")],
                         capture_output=True, text=True)
    if run.returncode != 0 or run.stderr:
        raise AssertionError(run.stderr)
    return json.loads(run.stdout)


def coloured_by_vim(texts, place):
    names = []
    for number, text in enumerate(texts):
        names.append(str(place / f"{number}.{'layout' if number % 2 else 'murv'}"))
        pathlib.Path(names[-1]).write_text(text + "\n")
    script = place / "script.vim"
    script.write_text(VIM.format(editors=EDITORS, names=names, answer=place / "answer"))
    run = subprocess.run(["vim", "-es", "-n", "-i", "NONE", "-u", script], stdin=subprocess.DEVNULL,
                         capture_output=True, text=True, timeout=60)
    if not (place / "answer").exists():
        raise AssertionError(run.stdout + run.stderr)
    return json.loads((place / "answer").read_text())


def coloured(texts):
    with tempfile.TemporaryDirectory() as directory:
        return COLOURED[EDITOR](texts, pathlib.Path(directory))


def rule_names():
    """The words that rules begin with, by the table of the manual."""
    text = (delivered.SOURCES / "docs/layouts.md").read_text()
    table = re.search(r"^\| Rule \| About \| Keyword \| Meaning \|\n.*\n((?:\|.*\n)+)", text, re.MULTILINE).group(1)
    return [re.match(r"\| `([a-z0-9]+(?: [a-z]+)*)", row).group(1) for row in table.splitlines()]


class Editor(unittest.TestCase):
    def is_of(self, kind, at):
        group, scope = KINDS[kind]
        if EDITOR == "vim":
            return at == group
        special = ("string.", "comment.", "constant.", "entity.", "storage.", "keyword.", "invalid.", "support.")
        if scope is None:
            return not any(one.startswith(special) for one in at)
        return next((one for one in reversed(at) if one.startswith(special)), "").startswith(scope)

    def test_tokens(self):
        for (text, tokens), lines in zip(CASES, coloured([text for text, _ in CASES])):
            for token, kind in tokens.items():
                with self.subTest(text=text, token=token):
                    line = next(i for i, one in enumerate(text.split("\n")) if token in one)
                    begin = text.split("\n")[line].index(token)
                    for at in lines[line][begin:begin + len(token)]:
                        self.assertTrue(self.is_of(kind, at), f"{kind} expected, found {at}")

    def test_every_rule_is_known(self):
        names = rule_names()
        self.assertGreater(len(names), 50)
        for name, lines in zip(names, coloured([f'"@x" = "{name} y"' for name in names])):
            first = len('"@x" = "')
            for at in lines[0][first:first + len(name.split()[0])]:
                self.assertTrue(self.is_of("rule", at), f"{name}: {at}")

    def test_layouts_have_no_mistakes(self):
        places = sorted((delivered.SOURCES / "share/murv/layouts").iterdir())
        self.assertGreater(len(places), 20)
        for place, lines in zip(places, coloured([place.read_text() for place in places])):
            for number, line in enumerate(lines):
                for column, at in enumerate(line):
                    isBad = self.is_of("bad", at) or self.is_of("no packet", at)
                    self.assertFalse(isBad, f"{place}:{number + 1}:{column + 1}")
            self.assertTrue(any(self.is_of("rule", at) for line in lines for at in line), place)


COLOURED = {"vim": coloured_by_vim, "textmate": coloured_by_textmate}
EDITOR = sys.argv.pop(1)

if __name__ == "__main__":
    delivered.need("vim" if EDITOR == "vim" else "node")
    if EDITOR == "textmate" and not (PACKAGES / "vscode-textmate").is_dir():
        print("NOT TESTED: the packages vscode-textmate and vscode-oniguruma are not installed")
        sys.exit(77)
    unittest.main()
