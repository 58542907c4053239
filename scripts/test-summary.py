#!/usr/bin/python3
"""Counts what a run of the tests has shown.

  test-summary.py JUNIT RESULTS [TALLY]

JUNIT is what `ctest --output-junit` wrote, RESULTS the folder where the test programs left their
own XML. A program counts with each test in it; one that ends badly although its tests passed (a
leak found at exit, a crash before the report) counts as one failure more. Skipped tests are named
with their reason and count neither way. Writes "PASSED FAILED" to the file TALLY.
"""
import sys
import xml.etree.ElementTree as ET
from pathlib import Path


def count_program(path):
    """(passed, failed, skips) of one program's report."""
    passed = failed = 0
    skips = []
    for case in ET.parse(path).getroot().iter("testcase"):
        name = f'{case.get("classname")}.{case.get("name")}'
        if case.find("failure") is not None:
            failed += 1
            print(f"  FAILED  {path.stem}: {name}")
        elif case.find("skipped") is not None:
            skips.append((name, (case.find("skipped").get("message") or "").strip()))
        elif case.get("status") == "run":
            passed += 1
    return passed, failed, skips


def main():
    junit, results = Path(sys.argv[1]), Path(sys.argv[2])
    passed = failed = 0
    skips = []
    for case in ET.parse(junit).getroot().iter("testcase"):
        name, good = case.get("name"), case.get("status") == "run"
        report = results / f"{name}.xml"
        counts = None
        if report.is_file():
            try:
                counts = count_program(report)
            except ET.ParseError:
                counts = None
        if counts is None:
            counts = (1, 0, []) if good else (0, 1, [])
            if not good:
                print(f"  FAILED  {name}")
        elif not good and counts[1] == 0:
            counts = (counts[0], 1, counts[2])
            print(f"  FAILED  {name}: its tests passed, the program did not")
        passed += counts[0]
        failed += counts[1]
        skips += counts[2]
    for name, reason in skips:
        print(f"  skipped {name}: {reason}")
    if passed + failed == 0:
        failed = 1
        print("  FAILED  no test has run")
    print(f"  {passed} passed, {failed} failed, {len(skips)} skipped")
    if len(sys.argv) > 3:
        Path(sys.argv[3]).write_text(f"{passed} {failed}\n")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
