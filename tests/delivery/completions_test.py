#!/usr/bin/env python3
"""Shells complete calls of the tool. Argument: bash, zsh or fish.

Each shell is asked as it would ask itself when somebody presses Tab, as a file can be free of mistakes in syntax and
still complete nothing.
"""

import os
import pathlib
import pty
import shlex
import subprocess
import sys
import tempfile
import threading
import time
import unittest

import delivered

COMPLETIONS = delivered.REFERENCE / "completions"

# A line before the cursor, and what may come there. Of the files and layouts below, so many begin like the last word.
CASES = {
    "murv fm": ["fmt"],
    "murv gen w": ["wireshark"],
    "murv --v": ["--version"],
    "murv fmt --no-": ["--no-one-line-arrays", "--no-null-word", "--no-final-newline"],
    "murv fmt --indent t": ["tab"],
    "murv unpack --on-fault ": ["stop", "skip", "collect"],
    "murv convert config.murv --to b": ["binary"],
    "murv convert --to=c": ["compact"],
    "murv unpack -l ntp --on-fault s": ["stop", "skip"],
    "murv unpack --max-errors ": [],
    "murv gen wireshark --po": ["--port"],
    "murv unpack -l bi": ["binaryfile", "bill.murv"],
    "murv layout bi": ["binaryfile", "bill.murv"],
    "murv gen samples ntp -o nt": ["ntp.bin"],
    "murv gen samples -d pla": ["places"],
    "murv fmt con": ["config.murv", "config two.murv"],
    "murv fmt config.murv con": ["config.murv", "config two.murv"],
    "murv stat places/in": ["places/inside.murv"],
    "murv fmt me": ["mean$(touch broken).murv"],
    "murv check -l me": ["mean$(touch broken)", "mean$(touch broken).murv"],
    "murv help st": ["stat"],
}
FILES = ["config.murv", "config two.murv", "bill.murv", "ntp.bin", "plain", "places/inside.murv",
         "mean$(touch broken).murv"]
LAYOUTS = ["binaryfile", "ntp", "mean$(touch broken)"]

BASH = """
source "$1"
shift
while [ $# -gt 0 ]; do
    mapfile -t COMP_WORDS <<<"$1"
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) COMPREPLY=()
    _murv murv "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
    printf '%s\\n' "${COMPREPLY[@]}" --end--
    shift
done
"""

# Every word that is offered goes to the file of answers as well.
ZSH = """
PS1= ; unsetopt zle_bracketed_paste beep; fpath=({directory} $fpath)
autoload -Uz compinit && compinit -u -d {place}/dump
compadd() {{
    if [[ ${{@[1,(i)(-|--)]}} != *-(O|A|D)* ]]; then
        local -a offered; builtin compadd -A offered "$@"; print -rl -- $offered >>{place}/answers
    fi
    builtin compadd "$@"
}}
finish() {{ print -r -- --end-- >>{place}/answers; comppostfuncs=(finish) }}
comppostfuncs=(finish)
setopt no_always_last_prompt no_list_beep no_auto_menu; LISTMAX=1000
cd {files}; print -r -- --end-- >>{place}/answers
"""


def words(line):
    """The words that bash makes of a line: "=" is one of its own."""
    return line.replace("=", " = ").split(" ")


class Bash:
    def __init__(self, directory, files, environment):
        self.files, self.environment = files, environment

    def ask(self, lines):
        run = subprocess.run(["bash", "--norc", "-c", BASH, "bash", COMPLETIONS / "murv",
                              *("\n".join(words(line)) for line in lines)],
                             cwd=self.files, env=self.environment, capture_output=True, text=True, check=True)
        assert run.stderr == "", run.stderr
        return [answer.splitlines() for answer in run.stdout.split("--end--\n")[:-1]]


class Fish:
    def __init__(self, directory, files, environment):
        self.files, self.environment = files, environment

    def ask(self, lines):
        script = f"source {COMPLETIONS}/murv.fish\n" + "".join(
            f"complete -C {shlex.quote(line)}\necho -- --end--\n" for line in lines)
        run = subprocess.run(["fish", "--no-config", "-c", script], cwd=self.files, env=self.environment,
                             capture_output=True, text=True, stdin=subprocess.DEVNULL, check=True)
        assert run.stderr == "", run.stderr
        # "--option=word" is given back whole, and characters that a shell acts on have a backslash.
        return [[line.split("\t")[0].split("=")[-1].replace("\\", "") for line in answer.splitlines()]
                for answer in run.stdout.split("--end--\n")[:-1]]


class Zsh:
    def __init__(self, directory, files, environment):
        self.answers = directory / "answers"
        self.answers.touch()
        setup = directory / "setup"
        setup.write_text(ZSH.format(directory=COMPLETIONS, place=directory, files=files))
        self.terminal, inner = pty.openpty()
        self.shell = subprocess.Popen(["zsh", "-f", "-i"], stdin=inner, stdout=inner, stderr=inner,
                                      env={**environment, "TERM": "vt100"}, start_new_session=True)
        os.close(inner)
        self.shown = b""
        threading.Thread(target=self.drain, daemon=True).start()
        self.type(f"source {setup}\n")

    def drain(self):
        try:
            while part := os.read(self.terminal, 4096):
                self.shown += part
        except OSError:
            pass

    def type(self, keys):
        """Types the keys; what was offered is back when the shell has said so."""
        self.answers.write_text("")
        os.write(self.terminal, keys.encode())
        for _ in range(600):
            answer = self.answers.read_text()
            if "--end--\n" in answer:
                return answer.split("--end--\n")[0].replace("\\", "").splitlines()
            time.sleep(0.05)
        raise AssertionError(f"zsh does not answer {keys!r}; it shows {self.shown.decode(errors='replace')}")

    def ask(self, lines):
        return [self.type(f"\x15{line}\t") for line in lines]

    def end(self):
        self.shell.kill()
        self.shell.wait()


class Completions(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        place = pathlib.Path(holder.name)
        for name in FILES:
            (place / "files" / name).parent.mkdir(parents=True, exist_ok=True)
            (place / "files" / name).write_text("{}\n")
        (place / "layouts").mkdir()
        for name in LAYOUTS:
            (place / "layouts" / (name + ".murv")).write_text('{ "@" = "layout 1", "a" = (ACF1) "" }\n')
        (place / "bin").mkdir()
        # Only the layouts above: the tool finds others beside itself.
        tool = place / "bin/murv"
        tool.write_text(f"#!/bin/sh\n{shlex.quote(delivered.TOOL)} \"$@\" | grep -F -e binaryfile -e ntp -e mean\n")
        tool.chmod(0o755)
        environment = {**os.environ, "PATH": f"{place}/bin:{os.environ['PATH']}", "HOME": str(place),
                       "MURV_LAYOUTS": str(place / "layouts"), "LC_ALL": "C.UTF-8"}
        cls.files = place / "files"
        cls.shell = SHELLS[SHELL](place, cls.files, environment)
        if hasattr(cls.shell, "end"):
            cls.addClassCleanup(cls.shell.end)

    def offered(self, lines):
        answers = self.shell.ask(lines)
        self.assertEqual(len(answers), len(lines))
        for line, answer in zip(lines, answers):
            last = words(line)[-1]
            folder = last.rpartition("/")[0]
            # Shells differ in whether they repeat the folder, and in what stands after one.
            names = {name.rstrip("/") for name in answer if name}
            yield line, {name if "/" in name or not folder else f"{folder}/{name}" for name in names}

    def test_cases(self):
        for line, names in self.offered(list(CASES)):
            with self.subTest(line):
                last = words(line)[-1]
                self.assertEqual({name for name in names if name.startswith(last)}, set(CASES[line]))

    def test_nothing_is_run(self):
        list(self.offered(list(CASES)))
        self.assertFalse((self.files / "broken").exists())

    def test_all_verbs(self):
        (_, names), = self.offered(["murv "])
        self.assertEqual(names, {call[0] for call in delivered.verbs()})

    def test_all_options(self):
        calls = delivered.verbs()
        for (line, names), call in zip(self.offered([f"murv {' '.join(call)} --" for call in calls]), calls):
            long = {name for name in delivered.options(call) if name.startswith("--")}
            self.assertEqual(names, long, line)


SHELLS = {"bash": Bash, "zsh": Zsh, "fish": Fish}
SHELL = sys.argv.pop(1)

if __name__ == "__main__":
    delivered.need(SHELL)
    unittest.main()
