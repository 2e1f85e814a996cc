#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Damages photos, songs and videos at random and reads them with the real program: every file must
be answered in time and in order, whatever becomes of the helper programs.

usage: mutate_media.py TAVRIN_CLI [--files N] [--seed N] [--limit SECONDS] [FOLDER...]

The samples are tests/data, the folder $TAVRIN_CORPUS where it is set, and the folders given.
"""
import argparse
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

PORTION = 1000
MAX_SAMPLE = 256 * 1024
LENGTHS = [b"\0\0\0\0", b"\xff\xff\xff\xff", b"\x7f\xff\xff\xff", b"\0\0\0\1", b"\x80\0\0\0"]


def samples(folders):
    found = []
    for folder in folders:
        for path in sorted(folder.rglob("*")):
            if path.is_file() and path.stat().st_size <= MAX_SAMPLE and path.suffix not in ("", ".csv"):
                found.append((path.suffix, path.read_bytes()))
    return found


def mutated(generator, content, others):
    data = bytearray(content)
    for _ in range(generator.choice((1, 1, 2, 4, 16))):
        if not data:
            break
        # Formats keep what matters at their beginning and end.
        at = generator.randrange(len(data))
        if generator.random() < 0.6:
            at = generator.randrange(min(len(data), 1024))
        kind = generator.randrange(6)
        if kind == 0:
            data[at] ^= 1 << generator.randrange(8)
        elif kind == 1:
            data[at] = generator.choice((0, 1, 0x7F, 0x80, 0xFF))
        elif kind == 2:
            data[at : at + 4] = generator.choice(LENGTHS)
        elif kind == 3:
            del data[at : at + generator.randrange(1, 64)]
        elif kind == 4:
            data[at:at] = data[at : at + generator.randrange(1, 4096)]
        else:
            other = generator.choice(others)[1]
            data[at:] = other[generator.randrange(len(other) + 1) :]
    if generator.random() < 0.1:
        del data[generator.randrange(len(data) + 1) :]
    return bytes(data)


def read_all(program, folder, count, limit):
    """Reads a folder; returns how many files could not be read, and the longest wait."""
    with tempfile.TemporaryFile() as messages:
        process = subprocess.Popen(
            [program, "tags", "--jsonl", folder], stdout=subprocess.PIPE, stderr=messages
        )
        last, longest, lines = time.monotonic(), 0.0, 0
        for line in process.stdout:
            json.loads(line)
            now = time.monotonic()
            longest, last, lines = max(longest, now - last), now, lines + 1
        status = process.wait()
        messages.seek(0)
        lost = messages.read().decode(errors="replace").splitlines()
    assert status == 0, f"exit status {status}: {lost[-3:]}"
    assert lines == count, f"{lines} of {count} files were answered"
    assert longest <= limit, f"a file took {longest:.2f} s"
    return lost, longest


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    parser.add_argument("folders", nargs="*", type=pathlib.Path)
    parser.add_argument("--files", type=int, default=100_000)
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 32))
    parser.add_argument("--limit", type=float, default=2.5, help="seconds a file may take")
    arguments = parser.parse_args()
    folders = [pathlib.Path(__file__).resolve().parent.parent / "data", *arguments.folders]
    if "TAVRIN_CORPUS" in os.environ:
        folders.append(pathlib.Path(os.environ["TAVRIN_CORPUS"]))
    originals = samples(folders)
    print(f"seed {arguments.seed}, {len(originals)} samples", flush=True)
    generator = random.Random(arguments.seed)
    lost, longest, done = [], 0.0, 0
    while done < arguments.files:
        count = min(PORTION, arguments.files - done)
        with tempfile.TemporaryDirectory() as folder:
            for number in range(count):
                suffix, content = generator.choice(originals)
                path = pathlib.Path(folder, f"{number:05}{suffix}")
                path.write_bytes(mutated(generator, content, originals))
            try:
                messages, wait = read_all(
                    arguments.program, folder, count, arguments.limit
                )
            except AssertionError as fault:
                sys.exit(f"after {done} files: {fault}")
        lost += messages
        longest, done = max(longest, wait), done + count
    print(f"{done} files, {len(lost)} could not be read, longest wait {longest:.2f} s")
    for message in lost[:10]:
        print(f"    {message}")


if __name__ == "__main__":
    main()
