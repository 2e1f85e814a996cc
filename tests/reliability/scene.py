# SPDX-License-Identifier: GPL-3.0-or-later
"""What the reliability tests share: a real tree, the real program under the shim, and what must
hold afterwards."""
import json
import os
import random
import subprocess
import sys
import tempfile
import unittest

PROGRAM = os.environ["TAVRIN_CLI"]
SHIM = os.environ["TAVRIN_SHIM"]
THOROUGH = os.environ.get("TAVRIN_THOROUGH", "") != ""
SEED = int(os.environ.get("TAVRIN_SEED", random.randrange(2**32)))
FIRST = 10001


class Scene:
    """A folder of files and a run over it in which every file takes the name that the one before
    it has just given up. With links, every second file has a second link elsewhere, so that its
    inode does not tell where it went and the run announces its moves. A plain disk, "links" or "no
    links", cannot promise never to replace a file, as the shim plays it. The files can have other
    names and other rules, and stand on a disk that is mounted elsewhere."""

    def __init__(self, files=6, links=False, parent=None, plain="", disk=None, names=None,
                 rules=(f"Counter startValue={FIRST - 1} manualPadding=1 padding=1",)):
        self.plain = plain
        self.disk = disk
        self.rules = [word for rule in rules for word in ("--rule", rule)]
        self.temporary = tempfile.TemporaryDirectory(prefix="tavrin-", dir=parent)
        self.root = os.path.realpath(self.temporary.name)
        self.photos = os.path.join(self.root, "photos")
        self.elsewhere = os.path.join(self.root, "elsewhere")
        self.data = os.path.join(self.root, "data")
        self.logs = os.path.join(self.data, "Tavrin", "Logs")
        self.calls = os.path.join(self.root + ".calls")
        os.mkdir(self.photos)
        os.mkdir(self.elsewhere)
        if disk:
            mount("--bind", tempfile.mkdtemp(dir=disk), self.photos)
        for number, name in enumerate(names or [f"{FIRST + n}.jpg" for n in range(files)]):
            path = os.path.join(self.photos, name)
            with open(path, "w") as file:
                file.write("x" * number)
            if links and number % 2 == 0:
                os.link(path, f"{self.elsewhere}/{number}")
        self.before = self.state()

    def __enter__(self):
        return self

    def __exit__(self, *error):
        if os.path.exists(self.calls):
            os.remove(self.calls)
        if self.disk:
            subprocess.run(["umount", self.photos], check=True)
        self.temporary.cleanup()

    def state(self):
        """Which file has which name; a file is its inode and size, which no rename changes. Some
        disks give inode numbers as they like."""
        with os.scandir(self.photos) as entries:
            facts = {entry.name: entry.stat(follow_symlinks=False) for entry in entries}
        return {name: (0 if self.disk else fact.st_ino, fact.st_size)
                for name, fact in facts.items()}

    def moved(self):
        now = self.state()
        return sum(now.get(name) != file for name, file in self.before.items())

    def environment(self, fault="", **more):
        environment = dict(os.environ, XDG_DATA_HOME=self.data,
                           XDG_CONFIG_HOME=os.path.join(self.root, "config"), **more)
        if self.plain:
            environment["TAVRIN_PLAIN_DISK"] = self.plain
        if fault is not None or self.plain:
            environment.update(LD_PRELOAD=SHIM, TAVRIN_FAULT_UNDER=self.root,
                               TAVRIN_FAULT_LOG=self.calls, TAVRIN_FAULT=fault or "")
        return environment

    def run(self, *words, fault=None, **more):
        if fault is not None and os.path.exists(self.calls):
            os.remove(self.calls)
        return subprocess.run([PROGRAM, *words], env=self.environment(fault, **more),
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=300)

    def rename_words(self):
        return ("rename", "--yes", "--quiet", "--sort", "fileName", *self.rules, self.photos)

    def rename(self, **more):
        return self.run(*self.rename_words(), **more)

    def recover(self, **more):
        return self.run("recover", "--json", **more)

    def undo(self, **more):
        return self.run("rollback", "--last", "--yes", "--reverse", "--json", **more)

    def counted_calls(self):
        """The kinds of the calls that the last run under the shim made."""
        with open(self.calls) as file:
            return [line.split()[0] for line in file]

    def was_hit(self):
        with open(self.calls) as file:
            return any(line.endswith(" <-\n") for line in file)


class ReliabilityTest(unittest.TestCase):
    """Failures name the seed of the random choices: TAVRIN_SEED repeats them."""

    def setUp(self):
        self.random = random.Random(SEED)

    def moments(self, whole, rounds, spread):
        """Random moments of a run that takes whole seconds: for each, its number, the seconds, and
        what to call with the share of the files that had moved by then. On a busy machine no two
        runs take equally long, so it learns from that, and goes on after the rounds until a run was
        caught in the middle."""
        shares = []
        for number in range(rounds + 40):
            if number >= rounds and any(0 < share < 1 for share in shares):
                return
            if len(shares) >= 2 and set(shares[-2:]) in ({0}, {1}):
                whole *= 1.5 if shares[-1] == 0 else 0.7
            yield number, whole * self.random.uniform(*spread), shares.append
        self.fail("no run was caught in the middle")

    def assertNothingLost(self, scene):
        gone = set(scene.before.values()) - set(scene.state().values())
        self.assertEqual(len(gone), 0, "files are gone or were overwritten")

    def assertAsBefore(self, scene):
        wrong = [name for name, _ in sorted(scene.state().items() ^ scene.before.items())]
        self.assertEqual(wrong[:9], [], f"{len(wrong)} names differ")

    def assertComesBack(self, scene):
        """What the next start finds out, and undoing it."""
        self.assertNothingLost(scene)
        moved = scene.moved()
        recovered = scene.recover()
        self.assertEqual(recovered.returncode, 0, recovered.stderr)
        runs = json.loads(recovered.stdout)
        known = sum(run["renamed"] for run in runs)
        if runs:
            self.assertEqual(known, moved, "recovery knows of other moves than were made")
        undone = scene.undo()
        self.assertEqual(undone.returncode in (0, 1), True, undone.stdout + undone.stderr)
        self.assertAsBefore(scene)
        if scene.plain or scene.disk:
            return
        # What is undone stays undone, even where every old name is a new name, too.
        again = scene.undo()
        self.assertEqual(again.returncode, 1, again.stdout)
        self.assertAsBefore(scene)


def in_own_mounts():
    """Starts the script again where what it mounts is seen by nobody else and goes away with it.
    False where the system does not allow that."""
    for words in (["unshare", "--mount"], ["unshare", "--mount", "--map-root-user"]):
        if "TAVRIN_MOUNTS" in os.environ:
            break
        if subprocess.run([*words, "true"], capture_output=True).returncode == 0:
            os.environ["TAVRIN_MOUNTS"] = "yes"
            os.execvp(words[0], [*words, sys.executable, *sys.argv])
    return "TAVRIN_MOUNTS" in os.environ


def mount(*words):
    subprocess.run(["mount", *words], check=True, capture_output=True, text=True)


def main():
    print(f"TAVRIN_SEED={SEED}{' thorough' if THOROUGH else ''}", flush=True)
    unittest.main(verbosity=2)
