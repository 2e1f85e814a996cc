#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Others at work in the same folder: names that appear at the last moment, and a second program.
Nobody's file may be overwritten."""
import os
import signal
import subprocess
import time

from scene import PROGRAM, THOROUGH, ReliabilityTest, Scene, main

FILES = 4000 if THOROUGH else 800


def start(scene, text):
    words = ("rename", "--yes", "--quiet", "--sort", "fileName", "--rule", f"Text theText={text}",
             "--rule", "Counter startValue=10001", scene.photos)
    return subprocess.Popen([PROGRAM, *words], env=scene.environment(None),
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


class Races(ReliabilityTest):

    def take_names(self, scene, process):
        """Makes files under names that the run is about to give, as long as it lives. Those that
        come before the run has listed the folder take part in it."""
        made = set()
        while process.poll() is None:
            for number in self.random.sample(range(10001, 10001 + FILES), 200):
                name = f"n{number}.jpg"
                try:
                    fd = os.open(os.path.join(scene.photos, name), os.O_CREAT | os.O_EXCL)
                except FileExistsError:
                    continue
                made.add((os.fstat(fd).st_ino, 0))
                os.close(fd)
        return made

    def test_names_taken_meanwhile(self):
        taken = 0
        for _ in range(20 if THOROUGH else 2):
            with Scene(FILES) as scene:
                process = start(scene, "n")
                made = self.take_names(scene, process)
                self.assertEqual(process.returncode, 0)
                now = scene.state()
                self.assertEqual(len(made - set(now.values())), 0, "files were overwritten")
                taken += sum("-1.jpg" in name for name in now)
                self.assertNothingLost(scene)
                self.assertEqual(len(now), FILES + len(made))
                self.assertEqual(scene.undo().returncode, 0)
                for name, file in scene.state().items():
                    if file in made:
                        os.remove(os.path.join(scene.photos, name))
                self.assertAsBefore(scene)
        self.assertGreater(taken, 0, "no name was taken in time")

    def test_two_programs(self):
        for _ in range(20 if THOROUGH else 2):
            with Scene(FILES) as scene:
                processes = [start(scene, text) for text in "ab"]
                # One is held up somewhere on its way until the other has ended, and its second.
                time.sleep(self.random.uniform(0, 0.03))
                processes[1].send_signal(signal.SIGSTOP)
                processes[0].wait()
                time.sleep(1.05 - time.time() % 1)
                processes[1].send_signal(signal.SIGCONT)
                for process in processes:
                    process.wait()
                    self.assertIn(process.returncode, (0, 1))
                self.assertNothingLost(scene)
                self.assertEqual(scene.moved(), FILES)
                # One run may have given names to files that the other had just named, so undoing
                # them takes more than one turn when their logs are not in that order.
                logs = sum(name.endswith(".renameLog") for name in os.listdir(scene.logs))
                for _ in range(2 * logs):
                    scene.undo()
                self.assertNothingLost(scene)
                # Of two runs that end in the same second, the log of the later one is kept.
                if logs == len(processes):
                    self.assertAsBefore(scene)


if __name__ == "__main__":
    main()
