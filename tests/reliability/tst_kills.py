#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Kills a run, a recovery and a rollback at every call that touches the disk, and at random
moments; every file must come back under its old name."""
import json
import os
import pty
import signal
import subprocess
import time

from scene import PROGRAM, THOROUGH, Scene, ReliabilityTest, main

HOWS = ["kill-before", "kill-inside", "kill-after"] if THOROUGH else ["kill-before", "kill-inside"]
# Only these can be caught half done; for the others inside means after.
DIVISIBLE = ("write",)


def kills_at(calls):
    for number, kind in enumerate(calls, 1):
        for how in HOWS:
            if how != "kill-inside" or kind in DIVISIBLE:
                yield f"any:{number}:{how}"


class Kills(ReliabilityTest):

    def calls_of(self, kind, prepare, action):
        with Scene(**kind) as scene:
            prepare(scene)
            action(scene, fault="none:0:short")
            return scene.counted_calls()

    def at_every_call(self, prepare, action, kinds=({"links": False}, {"links": True})):
        """Kills action at every call it makes; what has been prepared must come back all the
        same."""
        for kind in kinds:
            calls = self.calls_of(kind, prepare, action)
            self.assertGreater(len(calls), 5, calls)
            for fault in kills_at(calls):
                with self.subTest(kind=kind, fault=fault), Scene(**kind) as scene:
                    prepare(scene)
                    killed = action(scene, fault=fault)
                    # Two threads call in an order of their own, so the last calls may not come.
                    if scene.was_hit():
                        self.assertEqual(killed.returncode, -signal.SIGKILL)
                    self.assertComesBack(scene)

    def test_run_at_every_call(self):
        self.at_every_call(lambda scene: None, Scene.rename)

    def test_run_on_a_plain_disk(self):
        self.at_every_call(lambda scene: None, Scene.rename,
                           ({"plain": "links"}, {"plain": "no links"}))

    def test_recovery_at_every_call(self):
        # After the third move, and when the log was in place but the journal not closed.
        for fault in ("rename:4:kill-after", "truncate:1:kill-before"):
            with self.subTest(interrupted=fault):
                self.at_every_call(lambda scene: scene.rename(fault=fault), Scene.recover)

    def test_rollback_at_every_call(self):
        self.at_every_call(Scene.rename, Scene.undo)

    def test_at_the_question(self):
        # Another start meanwhile, which tidies up, must leave the plan alone.
        with Scene() as scene:
            process, terminal = self.asked(scene)
            self.assertEqual(json.loads(scene.recover().stdout), [])
            os.write(terminal, b"y\n")
            self.assertEqual(os.waitpid(process, 0)[1], 0)
            os.close(terminal)
            self.assertEqual(scene.moved(), 6)
            self.assertComesBack(scene)
        # What the user renames after the kill is no move of a run.
        with Scene() as scene:
            process, terminal = self.asked(scene)
            os.kill(process, signal.SIGKILL)
            os.waitpid(process, 0)
            os.close(terminal)
            name = min(scene.before)
            os.rename(f"{scene.photos}/{name}", f"{scene.photos}/mine")
            recovered = scene.recover()
            self.assertEqual((json.loads(recovered.stdout), recovered.stderr), ([], ""))
            self.assertEqual(os.listdir(f"{scene.logs}/.running"), [])

    def asked(self, scene):
        """A run on a terminal whose plan is made and whose question waits for its answer."""
        words = [word for word in scene.rename_words() if word != "--yes"]
        process, terminal = pty.fork()
        if process == 0:
            os.execve(PROGRAM, [PROGRAM, *words], scene.environment(None))
        text = b""
        while b"[y/N]" not in text:
            text += os.read(terminal, 4096)
        return process, terminal

    def test_large_runs_at_random_calls(self):
        for number in range(200 if THOROUGH else 12):
            links = number % 2 == 1
            fault = f"any:{self.random.randrange(1, 2030)}:{self.random.choice(HOWS)}"
            with self.subTest(links=links, fault=fault), Scene(2000, links) as scene:
                scene.rename(fault=fault)
                self.assertComesBack(scene)

    def test_at_random_moments(self):
        with Scene(2000) as scene:
            start = time.monotonic()
            scene.rename()
            whole = time.monotonic() - start
        for number, moment, tell in self.moments(whole, 50 if THOROUGH else 8, (0.2, 1.1)):
            with self.subTest(moment=moment), Scene(2000, number % 2 == 1) as scene:
                process = subprocess.Popen([PROGRAM, *scene.rename_words()],
                                           env=scene.environment(None), stdout=subprocess.DEVNULL,
                                           stderr=subprocess.DEVNULL)
                time.sleep(moment)
                process.send_signal(signal.SIGKILL)
                process.wait()
                tell(scene.moved() / 2000)
                self.assertComesBack(scene)


if __name__ == "__main__":
    main()
