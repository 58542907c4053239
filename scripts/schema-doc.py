#!/usr/bin/env python3
"""Writes docs/schema.md from the schema's single source, include/KOVSimSchemaTable.inc.

    scripts/schema-doc.py           writes the page
    scripts/schema-doc.py --check   exit status 1 if the page is not what the table gives
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TABLE = ROOT / "include" / "KOVSimSchemaTable.inc"
PAGE = ROOT / "docs" / "schema.md"

HEAD = """\
# Schema: every type and member, and its numbers

Written by `scripts/schema-doc.py` from `include/KOVSimSchemaTable.inc`; edit that table, not this
page.

Everything in a document has a type, and is reached through members. Each type and member is a pair
of numbers: a fragment, and a number inside it. Programs write a pair by its name, as
`schema::Task_modes()` from `KOVSimSchema.h`. The name gives the index that position operations take:

    index = (fragment + 1) * 4096 + member      fragment and member from 0 to 4095

Indices are stored in documents. A pair never changes its meaning, and is never used again. New
things take the next free member from 1000 upward in the fragment where they fit.

A type may derive from another; `IsA` is true for a type itself and for all above it. Indices that
this table does not have are legal: programs make types of their own from any other pair. Such a
type derives from itself only.

| Kind | Meaning |
|---|---|
| type | a record, collection, distribution, DSet, function table or symbol type |
| link | a link to one object |
| links | a vector, a set or a string-keyed map of links |
| collection, distribution | a link to one collection or distribution |
| attribute | a value |

The schema restricts no member to an owner type: any member may stand on any object.
"""

MACRO = re.compile(
    r'^KOV_SCHEMA_(TYPE|MEMBER)\((\d+), (\d+), (\w+), (\w+),\s+"((?:[^"\\]|\\.)*)"\)$', re.MULTILINE
)
FRAGMENT = re.compile(r"^// (\d+): (.*)$", re.MULTILINE)


def page():
    text = TABLE.read_text(encoding="utf-8")
    titles = dict(FRAGMENT.findall(text))
    rows = MACRO.findall(text)
    if len(rows) != len(re.findall(r"^KOV_SCHEMA_", text, re.MULTILINE)):
        sys.exit(f"{TABLE.name}: a row is not of the form that this script reads")
    lines = [HEAD]
    last = None
    for sort, fragment, member, name, extra, what in rows:
        if fragment != last:
            lines += ["", f"## Fragment {fragment}: {titles[fragment]}", ""]
            lines += ["| Member | Name | Kind | Derives from | What it holds |", "|---|---|---|---|---|"]
            last = fragment
        kind = "type" if sort == "TYPE" else extra.lower()
        base = f"`{extra}`" if sort == "TYPE" and extra != "none" else ""
        what = what.replace('\\"', '"')
        lines.append(f"| {member} | `{name}` | {kind} | {base} | {what} |".replace("|  |", "| |"))
    return "\n".join(lines) + "\n"


def main():
    if sys.argv[1:] == ["--check"]:
        if not PAGE.exists() or PAGE.read_text(encoding="utf-8") != page():
            sys.exit(f"{PAGE.name} is not what the table gives: run scripts/schema-doc.py")
    elif len(sys.argv) == 1:
        PAGE.write_text(page(), encoding="utf-8")
    else:
        sys.exit(__doc__)


main()
