#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Names at the limits of what a folder can hold, wanted and found: what is written is exactly what
was wanted, or nothing is renamed, and never anything outside the folder."""
import json
import os

from scene import ReliabilityTest, Scene, main

EXACT = ["x" * 255, "€" * 85, "a\nb", "-rf", "--", "a b", "a\\b", "%41", "e\u0301", "\U0001f600", "~",
         "'\"`$x", "\x1b[31m"]
REFUSED = ["x" * 256, "€" * 86, "..", "a\0b"]
CHANGED = {"../a": ".._a", "a/b": "a_b", "/etc/a": "_etc_a", ".": ".-1"}
FOUND = [b"x" * 255, b"\xe2\x82\xac" * 85, b"a\nb", b"-rf", b"\xff\xfe", b"x\xe2\x82",
         b"\xed\xb3\xbf", b"...", b".hidden", b"a.", b"a..b", b" ", b"\\", b"%2F", b"caf\xe9.jpg"]


def everything(scene):
    return [sorted(os.listdir(folder.encode())) for folder in (scene.photos, scene.elsewhere)]


class Names(ReliabilityTest):

    def rename(self, scene, text, **extension):
        recipe = os.path.join(scene.root, "recipe.json")
        with open(recipe, "w") as file:
            json.dump({"rules": [{"kind": "Text", "theText": text}], "extension": extension,
                       "options": {"allowLeadingPeriod": True}}, file)
        return scene.run("rename", "--yes", "--quiet", "--recipe", recipe, scene.photos)

    def test_wanted(self):
        for text in [*EXACT, *CHANGED, *REFUSED]:
            with self.subTest(text=text), Scene(0) as scene:
                open(scene.photos + "/old", "w").close()
                os.mkdir(scene.photos + "/a")
                done = self.rename(scene, text)
                names = sorted(os.listdir(scene.photos))
                if text not in REFUSED:
                    wanted = sorted(["a", CHANGED.get(text, text)])
                    self.assertEqual((done.returncode, names), (0, wanted), done.stderr)
                    self.assertEqual(scene.undo().returncode, 0)
                    names = sorted(os.listdir(scene.photos))
                else:
                    self.assertIn(done.returncode, (1, 2, 3), done.stderr)
                self.assertEqual(names, ["a", "old"])
                self.assertEqual(os.listdir(scene.elsewhere), [])

    def test_extensions_are_not_cleaned(self):
        for extension in ("a/b", "/../../elsewhere/a", "\0", "x" * 254):
            with self.subTest(extension=extension), Scene(0) as scene:
                open(scene.photos + "/old.txt", "w").close()
                done = self.rename(scene, "n", handlingMethod=2,
                                   mapArray=[{"original": "txt", "target": extension}])
                self.assertIn(done.returncode, (1, 2, 3), done.stderr)
                self.assertEqual(everything(scene), [[b"old.txt"], []])

    def test_found(self):
        for name in FOUND:
            with self.subTest(name=name), Scene(0) as scene:
                path = os.path.join(scene.photos.encode(), name)
                open(path, "w").close()
                before = everything(scene)
                done = scene.run("rename", "--yes", "--rule", "Text theText=n", "--", path)
                self.assertEqual(done.returncode, 0)
                self.assertNotEqual(everything(scene), before)
                self.assertEqual(scene.undo().returncode, 0)
                self.assertEqual(everything(scene), before)

    def test_taken_by_what_is_easily_overlooked(self):
        for twin in ("dangling link", "extensionless file", "folder"):
            with self.subTest(twin=twin), Scene(0) as scene:
                for name in ("old", "older"):
                    open(f"{scene.photos}/{name}", "w").close()
                wanted = scene.photos + "/new"
                if twin == "dangling link":
                    os.symlink("/nowhere", wanted)
                elif twin == "folder":
                    os.mkdir(wanted)
                else:
                    open(wanted, "w").close()
                before = os.lstat(wanted)
                done = scene.run("rename", "--yes", "--rule", "Text theText=new",
                                 scene.photos + "/old")
                self.assertIn(done.returncode, (0, 1), done.stderr)
                self.assertTrue(os.path.samestat(os.lstat(wanted), before))
                self.assertEqual(len(os.listdir(scene.photos)), 3)


if __name__ == "__main__":
    main()
