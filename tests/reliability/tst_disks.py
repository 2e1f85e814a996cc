#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs, kills, recoveries and rollbacks on disks of other kinds: those that do not tell upper from
lower case, that cannot guard a rename or have no links, and the common ones. A kind that cannot be
mounted is skipped."""
import contextlib
import os
import subprocess
import tempfile
import unittest

from scene import THOROUGH, ReliabilityTest, Scene, in_own_mounts, main, mount

MOUNTS = in_own_mounts()
HOWS = ("kill-before", "kill-inside", "kill-after")
# Chains, in the second one of which names differ in case, too; spellings of one name (only without
# an extension may a file take its own); one name for all.
BATCHES = {
    "chain": {},
    "chain of spellings": {"names": ["N1", "N2", "N3", "N4"],
                           "rules": ("Text theText=n", "Counter startValue=0")},
    "case": {"names": ["aa", "Bb", "cC", "DD"], "rules": ("Original caseConversion=1",)},
    "one name": {"names": ["aa.jpg", "Bb.JPG", "n-1.jpg", "N-2.jpg", "z.jpg"],
                 "rules": ("Text theText=n",)},
}


def formatted(megabytes, *maker):
    """An image of a new disk, for mount."""
    image = tempfile.NamedTemporaryFile(prefix="tavrin-")
    image.truncate(megabytes << 20)
    subprocess.run([*maker, image.name], check=True, capture_output=True)
    return image


@contextlib.contextmanager
def on_image(folder, megabytes, maker, mounter):
    with formatted(megabytes, *maker) as image:
        subprocess.run([*mounter, image.name, folder], check=True, capture_output=True)
        yield


@contextlib.contextmanager
def on_exfat(folder):
    with formatted(16, "mkfs.exfat") as image:
        device = subprocess.run(["losetup", "--find", "--show", image.name], check=True,
                                capture_output=True, text=True).stdout.strip()
        try:
            subprocess.run(["mount.exfat-fuse", device, folder], check=True, capture_output=True)
        finally:
            subprocess.run(["losetup", "--detach", device])  # once it is no longer mounted
        yield


@contextlib.contextmanager
def on_overlay(folder):
    with tempfile.TemporaryDirectory() as layers:
        mount("-t", "tmpfs", "tmpfs", layers)
        for layer in ("lower", "upper", "work"):
            os.mkdir(os.path.join(layers, layer))
        mount("-t", "overlay", "overlay", "-o", f"lowerdir={layers}/lower,upperdir={layers}/upper,"
              f"workdir={layers}/work", folder)
        yield
        subprocess.run(["umount", "--lazy", layers], check=True)


@contextlib.contextmanager
def on_tmpfs(folder):
    mount("-t", "tmpfs", "tmpfs", folder)
    yield


NTFS = (16, ("mkntfs", "--quick", "--force"))
LOOP = ("mount", "-o", "loop")
DISKS = {
    "exFAT": on_exfat,
    "NTFS": lambda folder: on_image(folder, *NTFS, ("ntfs-3g",)),
    "NTFS without case": lambda folder: on_image(folder, *NTFS, (
        "lowntfs-3g", "-o", "ignore_case")),
    "Btrfs": lambda folder: on_image(folder, 128, ("mkfs.btrfs",), LOOP),
    "XFS": lambda folder: on_image(folder, 320, ("mkfs.xfs",), LOOP),
    "overlay": on_overlay,
    "tmpfs": on_tmpfs,
}


@unittest.skipUnless(MOUNTS, "nothing can be mounted here")
class Disks(ReliabilityTest):

    def on_each_disk(self, check):
        for kind, disk in DISKS.items():
            with self.subTest(disk=kind), contextlib.ExitStack() as mounted:
                folder = mounted.enter_context(tempfile.TemporaryDirectory())
                try:
                    mounted.enter_context(disk(folder))
                except (OSError, subprocess.CalledProcessError) as reason:
                    self.skipTest(f"{kind} cannot be mounted here: {reason}")
                mounted.callback(subprocess.run, ["umount", folder], check=True)
                for name, batch in BATCHES.items():
                    with self.subTest(batch=name):
                        check(dict(batch, disk=folder))

    def test_runs(self):
        def check(batch):
            with Scene(**batch) as scene:
                self.assertEqual(scene.rename().returncode, 0)
                self.assertComesBack(scene)

        self.on_each_disk(check)

    def test_kills(self):
        def check(batch):
            with Scene(**batch) as scene:
                scene.rename(fault="none:0:short")
                calls = range(1, len(scene.counted_calls()) + 1)
            for call in calls if THOROUGH else self.random.sample(calls, 6):
                for how in HOWS if THOROUGH else HOWS[:1]:
                    with self.subTest(call=call, how=how), Scene(**batch) as scene:
                        scene.rename(fault=f"any:{call}:{how}")
                        self.assertComesBack(scene)

        self.on_each_disk(check)


if __name__ == "__main__":
    main()
