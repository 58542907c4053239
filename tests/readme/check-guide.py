#!/usr/bin/env python3
"""The commands of a guide, as they stand there, against the output that it shows.

    check-guide.py GUIDE.md FILE...

Indented lines that begin with `$ ` are run, in a folder with copies of the files; the indented
lines below are their output, errors included. Trailing blanks do not count, nor do the seconds that
a command took.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile


def steps(text):
    """Commands and the lines shown below them."""
    found = []
    for line in text.splitlines():
        if line.startswith("    $ "):
            found.append((line[6:], []))
        elif line.startswith("    ") and found:
            found[-1][1].append(line[4:].rstrip())
    return found


def counted(lines):
    return [line.rstrip() for line in lines if not line.startswith("seconds ")]


def main():
    guide = pathlib.Path(sys.argv[1])
    kovsim = os.path.dirname(os.environ["KOVSIM"])
    environment = dict(os.environ, PATH=kovsim + os.pathsep + os.environ["PATH"])
    wrong = 0
    found = steps(guide.read_text(encoding="utf-8"))
    with tempfile.TemporaryDirectory(dir=os.environ.get("KOV_TEST_TMP")) as folder:
        for file in sys.argv[2:]:
            shutil.copy(file, folder)
        for command, expected in found:
            done = subprocess.run(command, shell=True, cwd=folder, env=environment, check=False,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            shown, expected = counted(done.stdout.splitlines()), counted(expected)
            # What a command says is left out of the guide, or stands there whole.
            if (expected and shown != expected) or (not expected and done.returncode != 0):
                wrong += 1
                print(f"$ {command}", *shown, "--- the guide has", *expected, sep="\n")
    print(f"{len(found)} commands, {wrong} of them with another output")
    return 0 if found and not wrong else 1


if __name__ == "__main__":
    sys.exit(main())
