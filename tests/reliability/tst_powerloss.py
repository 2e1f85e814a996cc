#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Cuts the power: a mounted file system stops in the middle of a run, with what has reached its
image by then and nothing else, and is mounted again as the next start would find it."""
import array
import fcntl
import os
import shutil
import subprocess
import time
import unittest

from scene import PROGRAM, THOROUGH, ReliabilityTest, Scene, in_own_mounts, main, mount

MOUNTS = in_own_mounts()
FILES = 2000
# The request EXT4_IOC_SHUTDOWN, which the system's headers do not give to Python.
SHUTDOWN = 0x8004587D
WITHOUT_FLUSH = 2


def loop_mounts_work():
    return MOUNTS and os.geteuid() == 0 and os.path.exists("/dev/loop-control") and shutil.which(
        "mkfs.ext4")


class Image:
    """A small disk in a file."""

    def __init__(self, folder, name):
        self.file = os.path.join(folder, name)
        self.path = os.path.join(folder, name + ".mounted")
        os.mkdir(self.path)

    def make(self, commit):
        with open(self.file, "wb") as file:
            file.truncate(64 << 20)
        subprocess.run(["mkfs.ext4", "-q", self.file], check=True)
        self.mount(f"commit={commit}")

    def mount(self, options="defaults"):
        # Mounted again at the same place, since logs hold whole paths.
        mount("-o", "loop," + options, self.file, self.path)

    def stop(self):
        """From one moment to the next nothing reaches the image any more, not even what the file
        system has promised itself to write. Copying the image would take as long as a run."""
        fd = os.open(self.path, os.O_RDONLY)
        fcntl.ioctl(fd, SHUTDOWN, array.array("I", [WITHOUT_FLUSH]))
        os.close(fd)

    def unmount(self):
        subprocess.run(["umount", self.path], check=True)


class PowerLoss(ReliabilityTest):

    @unittest.skipUnless(loop_mounts_work(), "no file-system image can be mounted here")
    def test_at_random_moments(self):
        with Scene(FILES) as scene:
            start = time.monotonic()
            scene.rename()
            whole = time.monotonic() - start
        for number, moment, tell in self.moments(whole, 60 if THOROUGH else 6, (0.1, 2)):
            links = number % 2 == 1
            # The file system writes out what it holds each second, or only when asked.
            commit = self.random.choice((1, 300))
            with self.subTest(links=links, commit=commit, moment=moment):
                tell(self.cut_at(moment, links, commit) / FILES)

    def cut_at(self, moment, links, commit):
        with Scene(0) as outer:
            image = Image(outer.root, "image")
            image.make(commit)
            scene = Scene(FILES, links, image.path)
            os.sync()
            process = subprocess.Popen([PROGRAM, *scene.rename_words()],
                                       env=scene.environment(None), stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
            time.sleep(moment)
            if self.random.randrange(2):
                # Some moves have reached the disk, together with whatever the rest depends on.
                fd = os.open(scene.photos, os.O_RDONLY)
                os.fsync(fd)
                os.close(fd)
            image.stop()
            process.kill()
            process.wait()
            image.unmount()
            image.mount()
            try:
                moved = scene.moved()
                self.assertComesBack(scene)
            finally:
                scene.__exit__()
                image.unmount()
            return moved


if __name__ == "__main__":
    main()
