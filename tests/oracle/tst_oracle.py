#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Random recipes over random files: preview, run and undoing agree with a second opinion.
TAVRIN_SEED repeats a failure; TAVRIN_THOROUGH tries many more."""
import json
import os
import random
import subprocess
import tempfile
import unittest

import names

PROGRAM = os.environ["TAVRIN_CLI"]
THOROUGH = os.environ.get("TAVRIN_THOROUGH", "") != ""
SEED = os.environ.get("TAVRIN_SEED", str(random.randrange(2**32)) if THOROUGH else "1")
SCENES = 400 if THOROUGH else 18
RECIPES = 25  # over the files of one scene
RUN_EVERY = 5
WORDS = "--recipe", "recipe.json", "-0", "--files-from", "paths"

PIECES = [*"abABxY12 .-_éßİıΣςﬁǅ😀💀𐐀日\\:$\"*\n\xa0\u3000\u200b\udcff\ud83d\ude00", " ", ".",
          "IMG_1", "e\u0301", "SS", "Tavrin", "myHolidayPhoto", "\udce2\udc82"]
NAMES = ["a", "b", "a.", "..a", "...", ".b", " a", "a .txt", "SafeName", "Tavrin.jpg", "1.", "1.jpg",
         "02.jpg", "03.jpg", "4.jpg"]
ENDINGS = ["jpg", "JPG", "png", "htm", "HTM", "ß", "SS", "tar gz", " ", "日", "", ""]
SIZES = [0, 1, 1023, 1024, 1536, 2**20 - 1, 2**20, 3900000, 2**30, 2**40, 2**40 + 1]
AMOUNTS = [0, 0, 1, 1, 2, 3, 4, 5, 7, -1, 2**31, -2**63, 2**63 - 1]
CHOICES = [0, 1, 2, 3, 4, 5, 6, -1, 99]
PATTERNS = [r"\s", r"(\d+)", "[aeiou]", "(a)|(b)", "(", "", "[", "b*", "([^a-z])(a)", "😀"]
TEMPLATES = ["_", "", "$0", "#$1", "$2$1", "$12", "$", "$a", r"\$1", "a/b", "😀", "$0$0", r"\\"]
TEXTS = ["", "", " ", "a", "Holiday ", ".", "..", "a/b", "a:b", "x" * 250, "Tavrin", "SafeName"]
CELLS = ["", "a", '"a"', '""', '"a""b"', "a/b", ' "a" ', "😀"]
KNOWN = {"whichProperty": [0, 1, 2, 2, 3, 3, 4, 5], "padding": [0, 1, 2, 3, 5, 9, 40, -3, -2**63],
         "dateFormat": [0, 1, *range(4, 17), -1],  # 2 and 3 are the system's own
         "separatorIndex": range(10),
         "startValue": [*range(-9, 15), 99, 3999], "increment": [1, 2, 0, -1, 77, 1000],
         "rePattern": TEMPLATES, "theText": TEXTS, "replacer": TEXTS,
         "stringToLookFor": ["a", "b", "1", "é", "SS", "σ", "Tavrin", "scene", " ", "."]}
for key in ("maxSize", "useColumn", "parentLevel", "dropFromBeginning", "dropFromEnd"):
    KNOWN[key] = AMOUNTS
KINDS = ["Text", "Separator", "Counter", "Date", "Original", "RegExTag", "CSVTag"]
LEFT_OUT = {"whichDate"}  # when a file came to be cannot be chosen
DEFAULTS = {kind["kind"]: {setting["key"]: setting["default"] for setting in kind["settings"]
                           if setting["key"] not in LEFT_OUT}
            for kind in json.loads(subprocess.check_output([PROGRAM, "rules", "--json"]))}
DEFAULTS["extension"] = dict(
    handlingMethod=0, mapArray=[{"original": "htm", "target": "html"}], replacer="???",
    caseHandling=0, mapRemainderChoice=0, ignoreCase=1, regEx="\\s", regAccess=2, rePattern="_")


class Choices(random.Random):
    """Random files and recipes."""

    def text(self, most=4):
        return "".join(self.choices(PIECES, k=self.randint(0, most)))

    def file_name(self):
        name = names.join(self.text(5), self.choice(ENDINGS))
        name = names.to_disk(self.choice(NAMES) if self.random() < 0.3 else name)
        return b"q" if name in (b"", b".", b"..") else name

    def scene(self, root):
        folders = [root]
        for _ in range(3):
            folders.append(self.choice(folders) + b"/" + self.file_name())
            os.makedirs(folders[-1], exist_ok=True)
        for _ in range(20):
            path = self.choice(folders) + b"/" + self.file_name()
            if not os.path.lexists(path):
                with open(path, "wb") as file:
                    file.truncate(self.choice(SIZES))
                os.utime(path, ns=(0, self.randint(-2**31, 2**32) * 10**9 + 999_999_999))

    def setting(self, key, default):
        if key == "theRows":
            return [self.choices(CELLS, k=self.randint(0, 3))
                    for _ in range(self.choice((0, 1, 3, 30)))]
        if key == "regArray":
            return [{"match": self.choice(PATTERNS), "replace": self.choice(TEMPLATES)}
                    for _ in range(self.randint(0, 3))]
        if key == "mapArray":
            return [{"original": self.choice(ENDINGS), "target": self.choice([*ENDINGS, "a/b"])}
                    for _ in range(self.randint(0, 4))]
        if key == "regEx":  # to Python, letters behind a backslash mean other things
            return self.choice([*PATTERNS, self.text().replace("\\", "")])
        if isinstance(default, str):
            return self.choice([*KNOWN.get(key, []), self.text(), self.text()])
        return self.choice((True, False, 0, 1) if isinstance(default, bool) else
                           KNOWN.get(key, CHOICES))

    def settings(self, defaults):
        share = self.choice((0, 0, 0.2, 0.5, 1))
        return {key: self.setting(key, default) for key, default in defaults.items()
                if self.random() < share}

    def recipe(self):
        rules = []
        for _ in range(self.choice((0, 1, 1, 2, 2, 3, 5))):
            kind = self.choice([*KINDS, "Original", "Counter", "RegExTag"])
            rules.append({"kind": kind, **self.settings(DEFAULTS[kind])})
            if kind == "Date":
                rules[-1]["dateFormat"] = self.choice((4, 5, 16))  # what stays the same meanwhile
        switches = ("compliance", "duplicatesAreCritical", "keepUnchanged", "allowLeadingPeriod")
        return {"rules": rules, "extension": self.settings(DEFAULTS["extension"]),
                "options": {each: True for each in switches if self.random() < 0.2}}


def tree(root):
    """Inode and size of everything, size -1 for folders."""
    return {path: (os.lstat(path).st_ino, -1 if os.path.isdir(path) else os.path.getsize(path))
            for folder, below, files in os.walk(root + b"/scene")
            for path in (os.path.join(folder, name) for name in below + files)}


def same(actual, wanted):
    checks = unittest.TestCase()
    checks.maxDiff = None
    checks.assertEqual(actual, wanted)


class Case:
    """One recipe over some files of a scene."""

    def __init__(self, choices, root):
        self.root = root
        self.before = tree(root)
        files = sorted(path for path, (_, size) in self.before.items() if size >= 0)
        self.paths = choices.sample(files, choices.randint(1, len(files)))
        self.recipe = choices.recipe()
        with open(root + b"/recipe.json", "w") as file:
            json.dump(self.recipe, file)
        with open(root + b"/paths", "wb") as file:
            file.write(b"\0".join(self.paths))

    def call(self, *words):
        done = subprocess.run([PROGRAM, *words, "--json"], cwd=self.root, capture_output=True,
                              timeout=60, env=dict(os.environ, XDG_DATA_HOME=self.root + b"/data",
                                                   XDG_CONFIG_HOME=self.root + b"/config"))
        return done.returncode, names.units(json.loads(done.stdout))

    def check(self, with_run):
        entries = [names.Entry(path) for path in self.paths]
        files, errors = names.analysis(names.Recipe(self.recipe, DEFAULTS, entries))
        folders = {folder: set(os.listdir(folder)) for folder in map(os.path.dirname, self.paths)}
        outcomes = [*names.run(names.Recipe(self.recipe, DEFAULTS, entries), folders)]
        for file, (final, _, _) in zip(files, outcomes):
            file["errLevel"] = max([error["level"] for error in file["errors"]], default=0)
            file["finalName"] = final if self.recipe["rules"] else None
        levels = [error["level"] for error in errors]
        document = {"files": files, "errors": errors, "missing": 0, "warnings": levels.count(1),
                    "criticals": levels.count(2), **({"refused": True} if 2 in levels else {})}
        status = 3 if 2 in levels else 0
        same(self.call("preview", *WORDS), (status, document))
        if with_run and status == 0:
            self.check_run(files, outcomes)
        elif with_run:
            same(self.call("rename", "--yes", *WORDS), (status, document))
        same(tree(self.root) if not with_run else self.before, self.before)

    def check_run(self, files, outcomes):
        after = dict(self.before)
        for path, file, (final, works, errors) in zip(self.paths, files, outcomes):
            if works:
                after[os.path.dirname(path) + b"/" + names.to_disk(final)] = after.pop(path)
            target = file["path"].rpartition("/")[0] + "/" + final if works else file["path"]
            file.update(errors=errors, renamed=works is True, target=target,
                        errLevel=max([error["level"] for error in errors], default=0))
        counts = {key: sum(works is each for _, works, _ in outcomes)
                  for key, each in (("renamed", True), ("failed", False), ("unchanged", None))}
        status, result = self.call("rename", "--yes", *WORDS)
        same([{key: file[key] for key in files[0]} for file in result["files"]], files)
        same({key: result[key] for key in counts}, counts)
        same(status, 1 if counts["failed"] else 0)
        same(tree(self.root), after)
        if counts["renamed"]:
            self.call("rollback", "--last", "--yes", "--reverse")
        # Undoing tests with the dot, too, so "a" comes back as "a-1" beside "a.", and also when it
        # had become "a." itself.
        back = tree(self.root)
        same(sorted(back.values()), sorted(self.before.values()))
        if not any(path.endswith(b".") for path in (*self.before, *after)):
            same(back, self.before)


def main():
    print(f"TAVRIN_SEED={SEED}{' thorough' if THOROUGH else ''}", flush=True)
    for number in range(SCENES):
        with tempfile.TemporaryDirectory(prefix="tavrin-") as folder:
            root = os.fsencode(os.path.realpath(folder))
            choices = Choices(f"{SEED} {number}")
            choices.scene(root + b"/scene")
            for turn in range(RECIPES):
                case = Case(choices, root)
                try:
                    case.check(turn % RUN_EVERY == 0)
                except AssertionError:
                    print(json.dumps(case.recipe), *map(ascii, case.paths), sep="\n")
                    raise


if __name__ == "__main__":
    main()
