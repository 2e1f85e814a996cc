#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Kills a real run at random moments and checks that recovery and undo give every old name back.

usage: tst_kill.py TAVRIN_CLI [ROUNDS]
"""
import json
import os
import random
import signal
import subprocess
import sys
import tempfile
import time

FILES = 2000


def tavrin(program, folder, *words):
    environment = dict(os.environ, XDG_DATA_HOME=os.path.join(folder, "data"), TZ="UTC")
    return [program, *words], environment


def run(program, folder, *words):
    command, environment = tavrin(program, folder, *words)
    return subprocess.run(command, env=environment, capture_output=True, text=True)


def contents(photos):
    return {name: open(os.path.join(photos, name)).read() for name in os.listdir(photos)}


def undo(program, folder):
    """Undoes the newest run; there is none when nothing had been renamed."""
    done = run(program, folder, "rollback", "--last", "--yes", "--reverse", "--json")
    assert done.returncode in (0, 1), done.stderr
    return json.loads(done.stdout).get("restored", 0)


def one_round(program, seconds):
    with tempfile.TemporaryDirectory() as folder:
        photos = os.path.join(folder, "photos")
        os.mkdir(photos)
        for number in range(FILES):
            with open(os.path.join(photos, f"{number + 1}.jpg"), "w") as file:
                file.write(str(number))
        before = contents(photos)
        # Every file takes the name that the one before it has just given up.
        command, environment = tavrin(program, folder, "rename", "--yes", "--quiet", "--rule",
                                      "Counter startValue=0 manualPadding=1 padding=1", "--sort",
                                      "size", photos)
        process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        time.sleep(seconds)
        process.send_signal(signal.SIGKILL)
        process.wait()
        during = contents(photos)
        assert sorted(during.values()) == sorted(before.values()), "content was lost"
        changed = sum(before.get(name) != text for name, text in during.items())
        recovered = run(program, folder, "recover", "--json")
        assert recovered.returncode == 0, recovered.stderr
        restored = undo(program, folder) if changed else 0
        after = contents(photos)
        assert after == before, f"{len(after.items() ^ before.items())} names differ after undo"
        assert restored >= changed, f"{changed} renamed, only {restored} undone"
        return changed


def main():
    program = sys.argv[1]
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 10
    # How long a whole run takes tells which moments are worth a kill.
    with tempfile.TemporaryDirectory() as folder:
        for number in range(FILES):
            open(os.path.join(folder, f"{number}.jpg"), "w").close()
        start = time.monotonic()
        run(program, folder, "rename", "--yes", "--quiet", "--rule", "Text theText=x", folder)
        whole = time.monotonic() - start
    generator = random.Random(os.getpid())
    caught = []
    for number in range(rounds):
        caught.append(one_round(program, whole * generator.uniform(0.2, 1.1)))
    print(f"renamed when killed: {caught}")


if __name__ == "__main__":
    main()
