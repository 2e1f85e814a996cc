#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Kills the window at random moments of a run, under a virtual display; the next start, the
window's or the command line's, must find out what it did."""
import os
import pathlib
import shutil
import subprocess
import sys
import time
import unittest

from scene import THOROUGH, ReliabilityTest, Scene, main

sys.path.append(os.path.join(os.path.dirname(__file__), "..", "scripts"))
from smoke_window import activate, own_settings, press, running, virtual_display, wait_for, xdotool

WINDOW = os.environ.get("TAVRIN_WINDOW", "")
TOOLS = ("Xvfb", "openbox", "xdotool")
FILES = 2000


class Window:
    """The program on a scene of its own, with the scene's rules as a preset."""

    def __init__(self, scene):
        self.scene = scene
        self.settings = own_settings(pathlib.Path(scene.root))
        scene.run("presets", "save", "chain", *scene.rules)

    def start(self, *words):
        environment = self.scene.environment(None) | self.settings
        return running([WINDOW, *words], env=environment, stderr=subprocess.DEVNULL)

    def confirm(self):
        """Goes as far as the question, for which the plan is made, and answers it."""
        batch = activate("Tavrin 10", "that is to rename")

        def asked():
            press("ctrl+Return")
            for _ in range(100):
                if self.records(".plan") and xdotool("getactivewindow") not in ([], [batch]):
                    return True
                time.sleep(0.1)
            press("Escape")  # too early, and another message has come
            return False

        wait_for("the question", asked)
        press("Tab")
        xdotool("key", "Return")

    def records(self, ending):
        return [path for path in pathlib.Path(self.scene.logs).rglob("*" + ending)]


@unittest.skipUnless(WINDOW and all(map(shutil.which, TOOLS)), "no virtual display here")
class WindowKills(ReliabilityTest):

    def test_at_random_moments(self):
        with virtual_display():
            with Scene(FILES) as scene:
                window = Window(scene)
                with window.start("--preset", "chain", scene.photos):
                    window.confirm()
                    start = time.monotonic()
                    wait_for("the log", lambda: window.records(".renameLog"))
                    whole = time.monotonic() - start
            for number, moment, tell in self.moments(whole, 50 if THOROUGH else 3, (0, 1.1)):
                with self.subTest(moment=moment), Scene(FILES, links=number % 2 == 1) as scene:
                    window = Window(scene)
                    with window.start("--preset", "chain", scene.photos) as process:
                        window.confirm()
                        time.sleep(moment)
                        process.kill()
                        process.wait()
                    tell(scene.moved() / FILES)
                    if number % 3 == 0 and window.records(".journal"):
                        with window.start():
                            wait_for("the recovery", lambda: not window.records(".journal"))
                    self.assertComesBack(scene)


if __name__ == "__main__":
    main()
