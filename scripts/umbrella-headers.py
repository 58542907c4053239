#!/usr/bin/env python3
"""Writes the two umbrella headers from what is in include/, or with --check tells whether they are
complete. KOVSrvSimServices.h names the headers of the services, KOVSimDocument.h all others."""

import argparse
import pathlib
import sys

INCLUDE = pathlib.Path(__file__).resolve().parent.parent / "include"
UMBRELLAS = {
    "KOVSimDocument.h": "All public headers of the document layer.",
    "KOVSrvSimServices.h": "All public headers of the services.",
}


def umbrella(name):
    services = name == "KOVSrvSimServices.h"
    headers = sorted(
        path.name
        for path in INCLUDE.glob("*.h")
        if path.name not in UMBRELLAS and path.name.startswith("KOVSrv") == services
    )
    lines = [f"// {UMBRELLAS[name]}", "// Written by scripts/umbrella-headers.py.", "#pragma once", "",
             "// IWYU pragma: begin_exports"]
    lines += [f'#include "{header}"' for header in headers]
    lines += ["// IWYU pragma: end_exports"]
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--check", action="store_true", help="change nothing; 1 if one is stale")
    check = parser.parse_args().check
    stale = False
    for name in UMBRELLAS:
        path, text = INCLUDE / name, umbrella(name)
        if path.exists() and path.read_text() == text:
            continue
        stale = True
        if check:
            print(f"include/{name} is not complete: run scripts/umbrella-headers.py")
        else:
            path.write_text(text)
    return 1 if check and stale else 0


if __name__ == "__main__":
    sys.exit(main())
