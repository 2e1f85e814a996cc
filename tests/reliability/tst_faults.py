#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Lets the n-th call of every kind fail, once and from then on: a run must say so, end with the
right status and never leave a move without a record."""
import errno
import json
from collections import Counter

from scene import THOROUGH, Scene, ReliabilityTest, main

ERRORS = [errno.ENOSPC, errno.EIO, errno.EROFS, errno.EINTR]
FILES = 6


def faults_of(calls):
    """Every kind of call that was made, at each of its turns, and the whole disk from each call
    on. EINTR does not last, or nothing could ever be written."""
    faults = []
    for kind, count in Counter(calls).items():
        for number in range(1, count + 1):
            faults += [f"{kind}:{number}:{error}" for error in ERRORS]
            faults += [f"{kind}:{number}+:{error}" for error in ERRORS if error != errno.EINTR]
            if kind == "write":
                faults += [f"write:{number}:short", f"write:{number}+:short"]
    for number in range(1, len(calls) + 1):
        faults += [f"any:{number}+:{error}" for error in (errno.EIO, errno.EROFS)]
    return faults


class Faults(ReliabilityTest):

    def each_fault(self, prepare, action, check):
        for links in (False, True):
            with Scene(FILES, links) as scene:
                prepare(scene)
                action(scene, fault="none:0:short")
                faults = faults_of(scene.counted_calls())
            for fault in faults if THOROUGH else self.random.sample(faults, len(faults) // 8):
                with self.subTest(links=links, fault=fault), Scene(FILES, links) as scene:
                    prepare(scene)
                    done = action(scene, fault=fault)
                    self.assertNothingLost(scene)
                    check(scene, done)

    def assertStopsAtFailedSync(self, scene, done):
        """What a failed sync was to bring to the disk may be lost, and trying again tells nothing."""
        with open(scene.calls) as file:
            before, hit, after = file.read().partition(" <-\n")
        if hit and before.rpartition("\n")[2].startswith("fsync"):
            self.assertNotEqual(done.returncode, 0)
            self.assertNotRegex(after, r"rename \d+\.jpg")

    def test_run(self):
        def check(scene, done):
            moved = scene.moved()
            self.assertIn(done.returncode, (0, 1, 4), done.stderr)
            if done.returncode == 0:
                self.assertEqual(moved, FILES)
                self.assertEqual(json.loads(scene.run("logs", "--json").stdout)[0]["files"], FILES)
            else:
                self.assertNotEqual(done.stderr, "")
            if done.returncode == 4:
                self.assertEqual(moved, 0)
            self.assertStopsAtFailedSync(scene, done)
            self.assertComesBack(scene)

        self.each_fault(lambda scene: None, Scene.rename, check)

    def test_recovery(self):
        def check(scene, done):
            self.assertIn(done.returncode, (0, 1), done.stderr)
            if done.returncode == 0 and scene.was_hit():
                self.assertNotEqual(done.stderr, "")
            self.assertComesBack(scene)

        self.each_fault(lambda scene: scene.rename(fault="rename:4:kill-after"), Scene.recover, check)

    def test_rollback(self):
        def check(scene, done):
            self.assertIn(done.returncode, (0, 1, 2), done.stderr)
            if done.returncode == 0:
                self.assertAsBefore(scene)
            else:
                self.assertNotEqual(done.stdout + done.stderr, "")
            if done.returncode == 2:
                self.assertEqual(scene.moved(), FILES)

        self.each_fault(Scene.rename, Scene.undo, check)


if __name__ == "__main__":
    main()
