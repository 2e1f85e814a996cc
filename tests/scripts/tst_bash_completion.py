#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Types into a real bash at a terminal, presses Tab, and looks at what the program would be given.

Usage: tst_bash_completion.py TAVRIN_CLI
"""

import os
import pathlib
import pty
import re
import select
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
COMPLETION = pathlib.Path(__file__).resolve().parents[2] / "packaging/completions/tavrin-cli.bash"
LOG = "Rename Batch Run - 2025-07-03, 14.05.09 (rollback data)"

# The keys after "tavrin-cli ", and the arguments that come of them; Tab is typed where \t stands.
CASES = [
    ("a file with blanks", "preview my\t", ["preview", "my file.txt"]),
    ("on after a backslash", "preview my\\ f\t", ["preview", "my file.txt"]),
    ("in double quotes", 'preview "my f\t', ["preview", "my file.txt"]),
    ("in single quotes", "preview 'my f\t", ["preview", "my file.txt"]),
    ("special characters", "preview we\t", ["preview", "we'ird $name.txt"]),
    ("into a folder", "preview fold\tin\t", ["preview", "folder/inner file"]),
    ("into a folder with blanks", "preview two\tin\t", ["preview", "two words/inner"]),
    ("a name with =", "preview a=\t", ["preview", "a=b c"]),
    ("a name with :", "preview t:\t", ["preview", "t:u v"]),
    ("home", "preview ~/my\t", ["preview", "{home}/my file.txt"]),
    ("a preset", "preview --preset Clean\t", ["preview", "--preset", "Clean up blanks"]),
    ("a preset, on", "preview --preset Clean\\ u\t", ["preview", "--preset", "Clean up blanks"]),
    ("a preset in quotes", "preview --preset 'Cle\t", ["preview", "--preset", "Clean up blanks"]),
    ("a preset behind =", "preview --preset=Clean\t", ["preview", "--preset=Clean up blanks"]),
    ("a recipe's folder", "preview --recipe pl\tr\t", ["preview", "--recipe", "plain/r.json"]),
    ("a word behind =", "preview --color=al\t", ["preview", "--color=always"]),
    ("sorting behind =", "preview --sort=fi\t", ["preview", "--sort=fileName"]),
    ("an option", "rename --no-u\t", ["rename", "--no-undo"]),
    ("a verb", "roll\t", ["rollback"]),
    ("a verb to explain", "help arch\t", ["help", "archive"]),
    ("a saved log", "rollback Ren\t", ["rollback", LOG]),
    ("a log's file", "rollback ot\t", ["rollback", "other.renameLog"]),
    ("no file where none is taken", "logs my\t", ["logs", "my"]),
    ("no file where a preset is meant", "presets delete my\t", ["presets", "delete", "my"]),
]

# Its arguments, one a line, instead of the program's work; but what completion asks for is real.
RECORDER = """#!/bin/sh
case "$1 $2" in
"presets list" | "logs ") [ "$#" -le 2 ] && exec {program} "$@" ;;
esac
for argument; do printf '%s\\n' "$argument"; done >{record}.new
mv {record}.new {record}
"""


class Bash:
    """An interactive bash, which knows nothing but the completion."""

    def __init__(self, folder, environment, mark):
        self.mark = mark
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(folder)
            os.execvpe("bash", ["bash", "--norc", "--noprofile", "-i"], environment)
        self.type(f". '{COMPLETION}'; bind -x '\"\\C-xm\": : >{mark}'\n")
        time.sleep(0.2)
        self.settle()

    def type(self, keys):
        os.write(self.terminal, keys.encode())

    def settle(self):
        """Waits until the shell has done with all keys so far: it then makes the mark."""
        self.type("\x18m")
        end = time.monotonic() + 20
        while not self.mark.exists():
            if time.monotonic() > end:
                raise TimeoutError("bash does not answer")
            self.shown()
        self.mark.unlink()

    def shown(self):
        if select.select([self.terminal], [], [], 0.01)[0]:
            os.read(self.terminal, 65536)

    def close(self):
        os.close(self.terminal)  # which ends the shell
        os.waitpid(self.pid, 0)


class Completion(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        root = pathlib.Path(cls.temporary.name).resolve()
        cls.home = root / "home"
        cls.record = root / "record"
        for name in ["my file.txt", "we'ird $name.txt", "folder/inner file", "two words/inner",
                     "a=b c", "t:u v", "plain/r.json", "other.renameLog"]:
            path = cls.home / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.touch()
        logs = root / "data/Tavrin/Logs"
        logs.mkdir(parents=True)
        (logs / f"{LOG}.renameLog").touch()
        commands = root / "bin"
        commands.mkdir()
        recorder = commands / "tavrin-cli"
        recorder.write_text(RECORDER.format(program=PROGRAM, record=cls.record))
        recorder.chmod(0o755)
        environment = {
            "PATH": f"{commands}:{os.environ['PATH']}", "HOME": str(cls.home), "TERM": "dumb",
            "LC_ALL": "C.UTF-8", "XDG_DATA_HOME": str(root / "data"), "HISTFILE": "",
            "INPUTRC": "/dev/null", "COLUMNS": "200",
        }
        cls.bash = Bash(cls.home, environment, root / "mark")

    @classmethod
    def tearDownClass(cls):
        cls.bash.close()
        cls.temporary.cleanup()

    def arguments_of(self, keys):
        self.record.unlink(missing_ok=True)
        self.bash.type("tavrin-cli ")
        for part in re.split("(\t)", keys):
            self.bash.type(part)
            if part == "\t":
                self.bash.settle()
        self.bash.type("\n")
        self.bash.settle()
        return self.record.read_text().splitlines()

    def test_words_come_whole(self):
        for name, keys, expected in CASES:
            with self.subTest(name):
                wanted = [word.format(home=self.home) if word.startswith("{") else word
                          for word in expected]
                self.assertEqual(self.arguments_of(keys), wanted)


if __name__ == "__main__":
    subprocess.run(["bash", "-n", COMPLETION], check=True)
    unittest.main()
