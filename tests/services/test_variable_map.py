#!/usr/bin/env python3
"""Expands the notation of the variable map once more, and compares row by row with what the library
has.

    test_variable_map.py NOTATION PRINT_VARIABLE_MAP

The table is fixed: its order is part of the interface. The digest at the end keeps a change of the
notation from going unnoticed where both expansions follow it.
"""

import hashlib
import pathlib
import re
import subprocess
import sys

DIGEST = "66018a61c6f19d37b54bde5c81c5901d9f2b001517dd23dd70ce7b246965d462"

VECTOR = {"V": (0, 12, 20), "P": (35, 36, 37), "Q": (24, 25, 26), "R": (31, 32, 33)}
TENSOR = {"11": (1,), "12": (5, 9), "13": (10, 11), "22": (14,), "23": (18, 19), "33": (23,)}
PARTNERS = {"24:20": "14:14", "24:28": "14:13"}


def series(mark):
    """The labels and components that an entry of the list stands for."""
    if shape := re.fullmatch(r"(.+)~T", mark):
        return [(shape[1] + tail, components) for tail, components in TENSOR.items()]
    if shape := re.fullmatch(r"(.+)~([VPQR])", mark):
        return [(shape[1] + str(i + 1), (c,)) for i, c in enumerate(VECTOR[shape[2]])]
    if shape := re.fullmatch(r"(.+)#(\d+)(?:\+(\d+))?", mark):
        return [(shape[1], tuple(int(c) for c in shape.groups()[1:] if c))]
    assert not re.search("[~#+]", mark), mark
    return [(mark, (38,))]


def blocks(grids):
    """The grids in groups: a grid and the partner right behind it, or a grid alone."""
    groups = []
    for grid in grids:
        if groups and len(groups[-1]) == 1 and PARTNERS.get(groups[-1][0]) == grid:
            groups[-1].append(grid)
        else:
            groups.append([grid])
    return groups


def rows_of(label, components, grids):
    if len(components) == 1:
        return [(label, components[0], grid) for grid in grids]
    rows = []
    for block in blocks(grids):
        turned = label == "ER13" and block == ["14:11"]
        for component in reversed(components) if turned else components:
            rows += [(label, component, grid) for grid in block]
    return rows


def expand(notation):
    sets, rows = {}, []
    for line in notation.splitlines():
        if definition := re.fullmatch(r"(G\d+) = (.+)", line):
            sets[definition[1]] = definition[2].split(", ")
        elif run := re.fullmatch(r"(G\d+): (.+)", line):
            for item in run[2].split("; "):
                field, _, labels = item.partition(" = ")
                for mark in (labels or field).split(", "):
                    for label, components in series(mark):
                        for row in rows_of(label, components, sets[run[1]]):
                            rows.append((row[0], row[1], field, row[2]))
        else:
            assert not line, line
    return rows


def index(grid):
    fragment, member = (int(part) for part in grid.split(":"))
    return (fragment + 1) * 4096 + member


def main():
    source = pathlib.Path(sys.argv[1]).read_text(encoding="ascii")
    notation = re.fullmatch(r'(?:\s*//[^\n]*\n)*R"rows\(\n(.*)\)rows"\n', source, re.DOTALL)[1]
    rows = expand(notation)
    text = [f"{label}|{component}|{field}|{index(grid)}" for label, component, field, grid in rows]
    text.append("|38|UNDEFINED|0")
    printed = subprocess.run([sys.argv[2]], check=True, capture_output=True, text=True).stdout
    printed = printed.splitlines()

    failures = 0
    for number, (expected, found) in enumerate(zip(text, printed)):
        if expected != found:
            failures += 1
            print(f"row {number}: expected {expected}, found {found}")
    if len(text) != len(printed):
        failures += 1
        print(f"expected {len(text)} rows, found {len(printed)}")
    digest = hashlib.sha256("\n".join(text).encode()).hexdigest()
    if digest != DIGEST:
        failures += 1
        print(f"the rows are not those that callers know: digest {digest}")
    print(f"variable map: {len(text)} rows compared, {failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
