#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Uses the window from outside, as a person would: under a virtual display with a window manager it
gives Tavrin 1,000 files, drags an element into the recipe, adds another by keys, renames, rolls the
run back and quits. Takes the program as its argument; settings and data are its own.
"""

import contextlib
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

FILES = 1000
PATIENCE = 60


class NotHappened(Exception):
    pass


def wait_for(what, condition):
    """The first true value of condition(); fails when there is none in time."""
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise NotHappened(f"{what} did not happen in {PATIENCE} s")


@contextlib.contextmanager
def running(command, **arguments):
    process = subprocess.Popen(command, **arguments)
    try:
        yield process
    finally:
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()


@contextlib.contextmanager
def virtual_display():
    """A display of its own, at a number that the server finds free."""
    reading, writing = os.pipe()
    server = ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x900x24", "-nolisten", "tcp"]
    with running(server, pass_fds=[writing], stderr=subprocess.DEVNULL):
        os.close(writing)
        with os.fdopen(reading) as numbers:
            os.environ["DISPLAY"] = ":" + numbers.readline().strip()
        # A window that comes before its manager listens may stay hidden for ever.
        with tempfile.TemporaryDirectory() as folder:
            ready = pathlib.Path(folder) / "ready"
            manager = ["openbox", "--startup", f"touch {ready}"]
            with running(manager, stderr=subprocess.DEVNULL):
                wait_for("the start of the window manager", ready.exists)
                yield


def xdotool(*arguments):
    answer = subprocess.run(["xdotool", *arguments], capture_output=True, text=True)
    return answer.stdout.split()


def window(title):
    found = xdotool("search", "--onlyvisible", "--name", f"^{re.escape(title)}")
    return found[-1] if found else None


def all_windows():
    """Title and place of whatever has a title, shown or not."""
    numbers = xdotool("search", "--name", ".")
    shown = set(xdotool("search", "--onlyvisible", "--name", "."))
    for number in numbers:
        title = " ".join(xdotool("getwindowname", number))
        place = " ".join(xdotool("getwindowgeometry", number)[2:])
        yield f"  '{title}', {place}, {'shown' if number in shown else 'hidden'}"


def activate(title, when):
    number = wait_for(f"a window '{title}' {when}", lambda: window(title))
    xdotool("windowactivate", "--sync", number)
    return number


def press(*keys):
    for key in keys:
        xdotool("key", key)
        time.sleep(0.15)


def drag(number, start, end):
    xdotool("mousemove", "--window", number, *map(str, start))
    xdotool("mousedown", "1")
    for step in range(1, 11):
        x = start[0] + (end[0] - start[0]) * step // 10
        y = start[1] + (end[1] - start[1]) * step // 10
        xdotool("mousemove", "--window", number, str(x), str(y))
        time.sleep(0.03)
    time.sleep(0.2)
    xdotool("mouseup", "1")
    time.sleep(0.3)


def names(folder):
    return sorted(entry.name for entry in folder.iterdir())


def use(program, work):
    folder = work / "batch"
    folder.mkdir()
    before = [f"file {number:04}.txt" for number in range(FILES)]
    for name in before:
        (folder / name).touch()
    with running([program, str(folder)]) as tavrin:
        try:
            rename_and_roll_back(tavrin, folder, before)
        except NotHappened as failure:
            state = "runs" if tavrin.poll() is None else f"ended with {tavrin.returncode}"
            windows = "\n".join(all_windows())
            sys.exit(f"smoke_window: {failure}; the program {state}, windows:\n{windows}")


def rename_and_roll_back(tavrin, folder, before):
    number = activate("Tavrin 10", "at the start")
    # The first tile of the palette is the text.
    drag(number, (160, 47), (400, 102))
    press("ctrl+3", "Escape")
    press("ctrl+Return")
    activate("Tavrin", "with the question")  # which has no title of its own
    press("Tab", "Return")
    wait_for("the log", lambda: window("Rename log:"))
    after = names(folder)
    if set(after) & set(before) or len(after) != FILES:
        sys.exit(f"smoke_window: renamed to {after[:3]} ...")
    if after[0] != "Tavrin0001.txt":
        sys.exit(f"smoke_window: the first new name is {after[0]}")
    activate("Tavrin 10", "after the rename")
    press("alt+b", "b")
    activate("Roll Back", "by its command")
    time.sleep(1)
    press("Tab", "Tab", "space")  # over Cancel
    wait_for("the rollback", lambda: names(folder) == before)
    # The first Escape may come before the window knows that the last file is back.
    wait_for("the end of the rollback window", lambda: not window("Roll Back") or press("Escape"))
    activate("Tavrin 10", "after the rollback")
    press("ctrl+q")
    wait_for("the end", lambda: tavrin.poll() is not None)
    if tavrin.returncode != 0:
        sys.exit(f"smoke_window: ended with {tavrin.returncode}")


def own_settings(work):
    """The environment of a program whose settings and data are in that folder, and which asks
    nothing at its start."""
    settings = work / "config" / "com.zel.tavrin" / "preferences.json"
    settings.parent.mkdir(parents=True)
    settings.write_text(
        json.dumps({"author": "written by zel", "firstrun": "false", "hidesWelcome": True})
    )
    runtime = work / "run"
    runtime.mkdir(mode=0o700)
    return {
        "XDG_CONFIG_HOME": str(work / "config"),
        "XDG_DATA_HOME": str(work / "data"),
        "XDG_RUNTIME_DIR": str(runtime),
        "QT_QPA_PLATFORM": "xcb",
        "WAYLAND_DISPLAY": "",
    }


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: smoke_window.py PROGRAM")
    program = os.path.realpath(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        os.environ.update(own_settings(work))
        with virtual_display():
            use(program, work)


if __name__ == "__main__":
    main()
