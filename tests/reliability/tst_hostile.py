#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Files and patterns made to hurt: refused or worked off in little time and memory, whatever they
hold, and never acting outside a folder."""
import json
import os
import plistlib
import resource
import signal
import subprocess
import time

from scene import PROGRAM, THOROUGH, ReliabilityTest, Scene, main

UID = plistlib.UID
# Debug builds and busy machines are slower than what is promised, memory is not.
MOST_SECONDS = 0.05 if THOROUGH else 0.5
MOST_MEMORY = 64 << 20


def archive(*objects):
    """A keyed archive whose root is the first of the objects."""
    return plistlib.dumps({"$version": 100000, "$archiver": "NSKeyedArchiver",
                           "$top": {"root": UID(1)}, "$objects": ["$null", *objects]},
                          fmt=plistlib.FMT_BINARY, sort_keys=False)


ARRAY = {"$classname": "NSArray", "$classes": ["NSArray", "NSObject"]}


def lists(count, children):
    """Lists 1 to count with the class behind them, each of which holds what children says."""
    return [*({"$class": UID(count + 1), "NS.objects": [UID(child) for child in children(number)]}
              for number in range(1, count + 1)), ARRAY]


def hostile(log):
    yield "doubled 24 times", archive(*lists(24, lambda n: [n % 24 + 1] * 2))
    yield "200,000 deep", archive(*lists(200_000, lambda n: [n + 1] if n < 200_000 else []))
    yield "in itself", archive(*lists(1, lambda n: [1, 1]))
    yield "a number", archive(1)
    yield "a class of strangers", archive({"$class": UID(2)}, {"$classname": "NSWindow",
                                                               "$classes": ["NSWindow"]})
    yield "records of strangers", archive(
        {"$class": UID(2), "NS.objects": [UID(3)]}, ARRAY, {"$class": UID(4)},
        {"$classname": "NSWindow", "$classes": ["NSWindow"]})
    for at in range(-26, 0, 1 if THOROUGH else 5):
        # What follows the five bytes that mean nothing and a version.
        yield f"byte {at} of the end", log[:at] + b"\xff" + log[len(log) + at + 1:]
    for count in (b"\x13" + b"\x7f" + b"\xff" * 7, b"\x12\x7f\xff\xff\xff"):
        yield f"countless, {count[0]}", log.replace(b"\xaf\x10", b"\xaf" + count, 1)
    for size in range(0, len(log), 1 if THOROUGH else 397):
        yield f"cut at {size}", log[:size]


def seconds_of(process):
    """Seconds of the processor that a process has taken so far."""
    with open(f"/proc/{process.pid}/stat") as file:
        ticks = file.read().rpartition(")")[2].split()[11:13]
    return sum(map(int, ticks)) / os.sysconf("SC_CLK_TCK")


class Hostile(ReliabilityTest):

    def used_by(self, scene, *words):
        """Exit status and seconds of the processor that a command took with little memory."""
        process = subprocess.Popen([PROGRAM, *words], env=scene.environment(None),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL,
                                   preexec_fn=lambda: resource.setrlimit(
                                       resource.RLIMIT_DATA, (MOST_MEMORY, MOST_MEMORY)))
        _, status, used = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        return process.returncode, used.ru_utime + used.ru_stime

    def test_archives(self):
        with Scene() as scene:
            scene.rename()
            path = json.loads(scene.run("logs", "--json").stdout)[0]["path"]
            with open(path, "rb") as file:
                log = file.read()
            now = scene.state()
            bad = os.path.join(scene.root, "bad")
            _, idle = self.used_by(scene, "--version")
            for name, content in hostile(log):
                with open(bad, "wb") as file:
                    file.write(content)
                for words in (("rollback", bad, "--yes"), ("presets", "import", bad)):
                    with self.subTest(archive=name, verb=words[0]):
                        status, seconds = self.used_by(scene, *words)
                        self.assertIn(status, (1, 2))
                        self.assertLess(seconds - idle, MOST_SECONDS)
            self.assertEqual(scene.state(), now)

    def test_foreign_paths(self):
        """Records that no run can have written move nothing."""
        with Scene() as scene:
            scene.rename()
            path = json.loads(scene.run("logs", "--json").stdout)[0]["path"]
            with open(path, "rb") as file:
                log = plistlib.load(file)
            now = scene.state()
            for bad in ("/etc/passwd", "../../x", "elsewhere/../x", "", "/", ".", "x/../../y"):
                changed = dict(log, **{"$objects": [
                    bad if isinstance(each, str) and "1000" in each else each
                    for each in log["$objects"]]})
                with open(path, "wb") as file:
                    plistlib.dump(changed, file, fmt=plistlib.FMT_BINARY)
                with self.subTest(path=bad):
                    self.assertIn(scene.run("rollback", path, "--yes").returncode, (1, 2))
                    self.assertEqual(scene.state(), now)
                    self.assertEqual(os.listdir(scene.elsewhere), [])

    def bombs(self, scene, verb):
        for number in range(2000):
            open(f"{scene.photos}/{'a' * 40}{number:04}!", "w").close()
        return (verb, "--quiet", "--rule", 'RegExTag match="(a+)+$" replace=b', scene.photos)

    def test_patterns_that_take_for_ever(self):
        with Scene(0) as scene:
            words = self.bombs(scene, "preview")
            status, seconds = self.used_by(scene, *words)
            self.assertEqual(status, 3)
            self.assertLess(seconds, 5)

            process = subprocess.Popen([PROGRAM, *words], env=scene.environment(None),
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            while seconds_of(process) < seconds / 4:
                time.sleep(0.01)
            process.send_signal(signal.SIGINT)
            start = time.monotonic()
            self.assertEqual(process.wait(), 130)
            self.assertLess(time.monotonic() - start, 0.3 if THOROUGH else 3)


if __name__ == "__main__":
    main()
