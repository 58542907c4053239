#!/usr/bin/python3
"""Holds every #include of the tree to scripts/include-arrows.txt.

Reports includes that no arrow allows, quoted includes that resolve to no file, headers of other
libraries outside their folders, cycles between files, and cycles in the arrows themselves.
Exits with 1 if there is anything to report.
"""
import os
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
ROOMS = ["include", "document", "frame", "KOVSrvSimServices", "tools", "bench", "examples", "tests"]
SUFFIXES = {".h", ".hpp", ".cpp", ".cc", ".inc"}
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')


def read_arrows(path):
    allowed, restricted = {}, {}
    for number, line in enumerate(path.read_text().splitlines(), 1):
        line = line.split("#", 1)[0].strip()
        if not line:
            continue
        if " only " in line:
            header, folders = line.split(" only ")
            restricted[header.strip().lstrip("<").rstrip(">")] = folders.split()
        elif "->" in line:
            source, targets = line.split("->")
            allowed[source.strip()] = targets.split()
        else:
            sys.exit(f"{path}:{number}: neither an arrow nor a restriction")
    return allowed, restricted


def below(path, folder):
    return path == folder or path.startswith(folder + "/")


def room_of(path, rooms):
    found = [room for room in rooms if below(path, room)]
    return max(found, key=len) if found else None


def cycle(graph):
    """A list of nodes that form a cycle, or None."""
    state, stack = {}, []

    def visit(node):
        state[node] = 1
        stack.append(node)
        for target in sorted(graph.get(node, ())):
            if state.get(target) == 1:
                return stack[stack.index(target):] + [target]
            if target not in state:
                found = visit(target)
                if found:
                    return found
        stack.pop()
        state[node] = 2
        return None

    for node in sorted(graph):
        if node not in state:
            found = visit(node)
            if found:
                return found
    return None


def resolve(name, source):
    for base in (source.parent, ROOT, ROOT / "include", ROOT / "tests", ROOT / "tools/kovsim"):
        candidate = base / name
        if candidate.is_file():
            return os.path.relpath(os.path.normpath(candidate), ROOT)
    return None


def main():
    sys.setrecursionlimit(10000)
    allowed, restricted = read_arrows(ROOT / "scripts/include-arrows.txt")
    complaints = []
    ring = cycle({a: set(b) for a, b in allowed.items()})
    if ring:
        complaints.append("scripts/include-arrows.txt: a cycle: " + " -> ".join(ring))
    graph, count = {}, 0
    for room in ROOMS:
        for source in sorted((ROOT / room).rglob("*")):
            if source.suffix not in SUFFIXES or not source.is_file():
                continue
            count += 1
            path = os.path.relpath(source, ROOT)
            own = room_of(path, allowed)
            if own is None:
                complaints.append(f"{path}: no line of scripts/include-arrows.txt covers it")
                continue
            for number, line in enumerate(source.read_text(errors="replace").splitlines(), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                quoted, angled = match.groups()
                where = f"{path}:{number}"
                for header, folders in restricted.items():
                    name = quoted or angled
                    if (name == header or (header.endswith("/") and name.startswith(header))) \
                            and not any(below(path, f) for f in folders):
                        complaints.append(f"{where}: <{name}> only in {', '.join(folders)}")
                if quoted is None:
                    continue
                target = resolve(quoted, source)
                if target is None:
                    complaints.append(f'{where}: "{quoted}" is no file of the tree')
                    continue
                graph.setdefault(path, set()).add(target)
                if not any(below(target, folder) for folder in [own] + allowed[own]):
                    complaints.append(f"{where}: {own} may not include {target}")
    ring = cycle(graph)
    if ring:
        complaints.append("files include each other: " + " -> ".join(ring))
    for complaint in complaints:
        print(complaint)
    print(f"includes: {count} files, {len(complaints)} complaints")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
