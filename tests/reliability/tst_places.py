#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Folders for the logs that are full, read-only, missing or no folders: nothing is renamed unless
it can be undone, and that is told before the first move."""
import contextlib
import os
import unittest

from scene import Scene, ReliabilityTest, in_own_mounts, main, mount

MOUNTS = in_own_mounts()
FILES = 20


@contextlib.contextmanager
def small_disk(path, size):
    os.makedirs(path, exist_ok=True)
    mount("-t", "tmpfs", "-o", f"size={size}k", "tmpfs", path)
    try:
        yield
    finally:
        os.system(f"umount '{path}'")


class Places(ReliabilityTest):

    def assertRefused(self, scene, done):
        self.assertEqual(done.returncode, 4, done.stderr)
        self.assertIn("could not be undone", done.stderr)
        self.assertEqual(scene.moved(), 0)

    def test_missing_folder_is_made(self):
        with Scene() as scene:
            self.assertEqual(scene.rename().returncode, 0)
            self.assertEqual(os.stat(scene.logs).st_mode & 0o777, 0o700)
            self.assertComesBack(scene)

    def test_something_else_in_its_place(self):
        for place in ("data", "data/Tavrin", "data/Tavrin/Logs", "data/Tavrin/Logs/.running"):
            for what in ("file", "dangling link"):
                with self.subTest(place=place, what=what), Scene() as scene:
                    path = os.path.join(scene.root, place)
                    os.makedirs(os.path.dirname(path), exist_ok=True)
                    if what == "file":
                        open(path, "w").close()
                    else:
                        os.symlink("/nowhere/at/all", path)
                    self.assertRefused(scene, scene.rename())

    @unittest.skipUnless(MOUNTS, "nothing can be mounted here")
    def test_full_disk(self):
        done = 0
        for size in range(4, 48, 4):
            with self.subTest(size=size), Scene(FILES) as scene, small_disk(scene.data, size):
                renamed = scene.rename()
                if size <= 8 or renamed.returncode != 0:
                    self.assertRefused(scene, renamed)
                else:
                    done += 1
                    mount("-o", "remount,size=1m", scene.data)
                    self.assertComesBack(scene)
        self.assertGreater(done, 0)

    @unittest.skipUnless(MOUNTS, "nothing can be mounted here")
    def test_read_only_disk(self):
        with Scene() as scene, small_disk(scene.data, 1024):
            mount("-o", "remount,ro", scene.data)
            self.assertRefused(scene, scene.rename())

    @unittest.skipUnless(MOUNTS, "nothing can be mounted here")
    def test_disk_that_becomes_read_only_between_rename_and_undo(self):
        with Scene() as scene, small_disk(scene.data, 1024):
            self.assertEqual(scene.rename().returncode, 0)
            mount("-o", "remount,ro", scene.data)
            self.assertComesBack(scene)

    @unittest.skipUnless(MOUNTS, "nothing can be mounted here")
    def test_files_on_a_read_only_disk(self):
        with Scene() as scene:
            mount("--bind", scene.photos, scene.photos)
            mount("-o", "remount,bind,ro", scene.photos)
            self.assertEqual(scene.rename().returncode, 1)
            self.assertEqual(scene.moved(), 0)
            os.system(f"umount '{scene.photos}'")


if __name__ == "__main__":
    main()
