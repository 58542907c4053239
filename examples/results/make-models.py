#!/usr/bin/env python3
"""Writes three small keyword decks, and solves them with CalculiX.

    make-models.py FOLDER            writes bracket.inp, fin.inp and panel.inp there
    make-models.py --solve FOLDER    and bracket.frd, fin.frd and panel.frd; needs the program ccx

Nothing is drawn at random: the same decks each time, and from the same solver the same results. The
solver writes date, time and machine into its files; they are blanked, so that what differs is told
by a comparison of bytes.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

# Corners of a box's tetrahedra: the six ways from one corner to the opposite one along the edges.
# All faces of a box are cut from their lowest corner to their highest one, so that boxes fit.
PATHS = ("xyz", "xzy", "yxz", "yzx", "zxy", "zyx")


class Mesh:
    """Nodes by place, in steps of half a box; labels with gaps, in no order."""

    def __init__(self, place, first_node, first_element):
        self.place = place  # from steps to coordinates
        self.first_node, self.first_element = first_node, first_element
        self.nodes, self.elements, self.kinds = {}, [], []

    def node(self, at):
        if at not in self.nodes:
            # A stride prime to the modulus meets each remainder once.
            self.nodes[at] = self.first_node + (len(self.nodes) * 67) % 251 * 3
        return self.nodes[at]

    def add(self, kind, ends, edges, sets=()):
        """Corners, and then the middles of the edges, which are pairs of corners."""
        corners = [self.node(end) for end in ends]
        middles = [self.node(tuple((a + b) // 2 for a, b in zip(ends[i], ends[j])))
                   for i, j in edges]
        label = self.first_element + (len(self.elements) * 29) % 61 * 7
        self.elements.append((kind, label, corners + middles, sets))
        return label

    def hexahedron(self, kind, at, sets=()):
        x, y, z = at
        ends = [(x, y, z), (x + 2, y, z), (x + 2, y + 2, z), (x, y + 2, z)]
        ends += [(a, b, c + 2) for a, b, c in ends]
        ring = [(0, 1), (1, 2), (2, 3), (3, 0)]
        edges = ring + [(i + 4, j + 4) for i, j in ring] + [(k, k + 4) for k in range(4)]
        return self.add(kind, ends, edges if kind.startswith("C3D20") else [], sets)

    def wedges(self, kind, at, sets=()):
        x, y, z = at
        for middle in ((x + 2, y), (x, y + 2)):
            base = [(x, y), middle, (x + 2, y + 2)]
            if middle[0] == x:
                base = [base[0], base[2], base[1]]
            ends = [(a, b, z) for a, b in base] + [(a, b, z + 2) for a, b in base]
            ring = [(0, 1), (1, 2), (2, 0)]
            edges = ring + [(i + 3, j + 3) for i, j in ring] + [(k, k + 3) for k in range(3)]
            self.add(kind, ends, edges if kind == "C3D15" else [], sets)

    def tetrahedra(self, at, sets=()):
        for path in PATHS:
            ends = [at]
            for axis in path:
                end = list(ends[-1])
                end["xyz".index(axis)] += 2
                ends.append(tuple(end))
            if path not in ("xyz", "yzx", "zxy"):  # an odd order turns the tetrahedron over
                ends[1], ends[2] = ends[2], ends[1]
            self.add("C3D10", ends, [(0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3)], sets)

    def quadrilateral(self, at, sets=()):
        x, y = at
        ends = [(x, y), (x + 2, y), (x + 2, y + 2), (x, y + 2)]
        self.add("S8R", ends, [(0, 1), (1, 2), (2, 3), (3, 0)], sets)

    def triangles(self, at, sets=()):
        x, y = at
        for middle in ((x + 2, y), (x, y + 2)):
            ends = [(x, y), middle, (x + 2, y + 2)]
            if middle[0] == x:
                ends = [ends[0], ends[2], ends[1]]
            self.add("S6", ends, [(0, 1), (1, 2), (2, 0)], sets)

    def where(self, test):
        return [label for at, label in self.nodes.items() if test(*at)]

    def lines(self):
        yield "*NODE, NSET=ALL_NODES"
        # The order of the file is neither that of the labels nor that of the elements.
        for at, label in sorted(self.nodes.items(), key=lambda each: (each[1] % 11, -each[1])):
            point = self.place(at) + (0.0,) * (3 - len(at))
            yield f"{label}, " + ", ".join(f"{value:.9g}" for value in point)
        named = {}
        for kind in dict.fromkeys(element[0] for element in self.elements):
            yield f"*ELEMENT, TYPE={kind}, ELSET={kind}_ALL"
            for _, label, nodes, sets in (e for e in self.elements if e[0] == kind):
                text = [str(value) for value in [label] + nodes]
                for first in range(0, len(text), 10):
                    yield ", ".join(text[first:first + 10]) + ("," if first + 10 < len(text) else "")
                for name in sets:
                    named.setdefault(name, []).append(label)
        for name, labels in named.items():
            yield from members("ELSET", name, labels)


def members(keyword, name, labels):
    yield f"*{keyword}, {keyword}={name}"
    for first in range(0, len(labels), 12):
        yield ", ".join(str(label) for label in labels[first:first + 12])


def text_of(lines):
    return "\n".join(lines) + "\n"


STEEL = """\
*MATERIAL, NAME=Steel
*ELASTIC
210000., 0.3, 20.
190000., 0.31, 300.
*PLASTIC
240., 0., 20.
320., 0.02, 20.
400., 0.2, 20.
170., 0., 300.
230., 0.02, 300.
290., 0.2, 300.
*DENSITY
7.85e-9
*EXPANSION, ZERO=20.
1.2e-5, 20.
1.35e-5, 300.""".splitlines()


def bracket():
    """An arm of hexahedra, a corner of wedges, a leg of tetrahedra; and a pad of linear elements."""
    mesh = Mesh(lambda at: (at[0] * 10.0, at[1] * 6.0, at[2] * 5.0 + 0.25 * (at[0] % 3)), 104, 13)
    for x in (0, 2, 4):
        mesh.hexahedron("C3D20R", (x, 0, 0), ["SOLID", "ARM"])
    mesh.wedges("C3D15", (6, 0, 0), ["SOLID", "CORNER"])
    for z in (2, 4):
        mesh.tetrahedra((6, 0, z), ["SOLID", "LEG"])
    for x in (0, 2):
        mesh.hexahedron("C3D8", (x, 4, 0), ["SOLID", "PAD"])
    mesh.wedges("C3D6", (4, 4, 0), ["SOLID", "PAD"])

    yield "*HEADING"
    yield "Angle bracket with a pad: plastic, warmed, then its modes"
    yield from mesh.lines()
    yield from members("NSET", "FIXED", mesh.where(lambda x, y, z: x == 0))
    yield from members("NSET", "TOP", mesh.where(lambda x, y, z: z == 6))
    yield from members("NSET", "PAD_END", mesh.where(lambda x, y, z: x == 6 and y >= 4))
    yield from STEEL
    yield "*SOLID SECTION, ELSET=SOLID, MATERIAL=Steel"
    yield "*INITIAL CONDITIONS, TYPE=TEMPERATURE"
    yield "ALL_NODES, 20."
    yield "*BOUNDARY"
    yield "FIXED, 1, 3"
    yield from ["*STEP, NLGEOM, INC=20", "*STATIC, DIRECT", "0.25, 1.0"]
    yield from ["*CLOAD", "TOP, 1, 60.", "TOP, 2, -20.", "PAD_END, 3, -1000."]
    yield from ["*NODE FILE", "U, RF", "*EL FILE", "S, PEEQ, ENER", "*END STEP"]
    yield from ["*STEP, NLGEOM, INC=20", "*STATIC, DIRECT", "1.5, 3.0"]
    yield from ["*TEMPERATURE", "ALL_NODES, 180."]
    yield from ["*NODE FILE", "U, NT", "*EL FILE", "S, E, PEEQ", "*END STEP"]
    yield from ["*STEP, PERTURBATION", "*FREQUENCY", "3"]
    yield from ["*NODE FILE", "U", "*EL FILE", "S", "*END STEP"]


def fin():
    """A cooling fin: steady heat, then a transient as it warms up."""
    mesh = Mesh(lambda at: (at[0] * 2.5, at[1] * 2.0, at[2] * 1.0), 5003, 900)
    for k in range(3):
        mesh.hexahedron("C3D8", (2 * k, 0, 0), ["FIN"])
    mesh.wedges("C3D6", (6, 0, 0), ["FIN"])
    mesh.hexahedron("C3D20", (40, 0, 0), ["FIN"])

    yield "*HEADING"
    yield "Cooling fin: steady heat, then warming up"
    yield from mesh.lines()
    yield from members("NSET", "HOT", mesh.where(lambda x, y, z: x in (0, 40)))
    yield from members("NSET", "TIP", mesh.where(lambda x, y, z: x in (8, 42)))
    yield from ["*MATERIAL, NAME=Aluminium", "*CONDUCTIVITY", "237., 20.", "225., 300.",
                "*SPECIFIC HEAT", "9.0e8", "*DENSITY", "2.7e-9"]
    yield "*SOLID SECTION, ELSET=FIN, MATERIAL=Aluminium"
    yield from ["*PHYSICAL CONSTANTS, ABSOLUTE ZERO=-273.15",
                "*INITIAL CONDITIONS, TYPE=TEMPERATURE", "ALL_NODES, 20."]
    yield from ["*STEP", "*HEAT TRANSFER, STEADY STATE", "1., 1."]
    yield from ["*BOUNDARY", "HOT, 11, 11, 120.", "*CFLUX", "TIP, 11, -35."]
    yield from ["*NODE FILE", "NT, RFL", "*EL FILE", "HFL", "*END STEP"]
    yield from ["*STEP, INC=20", "*HEAT TRANSFER, DIRECT", "0.02, 0.06"]
    yield from ["*BOUNDARY", "HOT, 11, 11, 180."]
    yield from ["*NODE FILE", "NT", "*EL FILE", "HFL", "*END STEP"]


def panel():
    """A flat panel of shells, pressed along its length: preload, then its buckling modes."""
    mesh = Mesh(lambda at: (at[0] * 25.0, at[1] * 25.0), 31, 2000)
    for x in range(0, 6, 2):
        mesh.quadrilateral((x, 0), ["SKIN"])
    for x in range(0, 6, 2):
        mesh.triangles((x, 2), ["SKIN"])

    yield "*HEADING"
    yield "Flat panel under compression: preload and buckling"
    yield from mesh.lines()
    yield from members("NSET", "LEFT", mesh.where(lambda x, y: x == 0))
    yield from members("NSET", "RIGHT", mesh.where(lambda x, y: x == 6))
    yield from members("NSET", "EDGES", mesh.where(lambda x, y: x in (0, 6) or y in (0, 4)))
    yield from ["*MATERIAL, NAME=Alloy", "*ELASTIC", "72000., 0.33", "*DENSITY", "2.7e-9"]
    yield from ["*SHELL SECTION, ELSET=SKIN, MATERIAL=Alloy", "2."]
    yield from ["*BOUNDARY", "LEFT, 1, 1", "EDGES, 3, 3"]
    yield from [f"{mesh.nodes[(0, 0)]}, 2, 2"]
    yield from ["*STEP", "*STATIC", "*CLOAD", "RIGHT, 1, -200."]
    yield from ["*NODE FILE, OUTPUT=2D", "U, RF", "*EL FILE, OUTPUT=2D", "S", "*END STEP"]
    yield from ["*STEP, PERTURBATION", "*BUCKLE", "2"]
    yield from ["*CLOAD", "RIGHT, 1, -100."]
    yield from ["*NODE FILE, OUTPUT=2D", "U", "*EL FILE, OUTPUT=2D", "S", "*END STEP"]


MODELS = {"bracket": bracket, "fin": fin, "panel": panel}
BLANKED = re.compile(r"^    1U(USER|DATE|TIME|HOST).*$", re.MULTILINE)


def solve(folder, name):
    with tempfile.TemporaryDirectory() as work:
        work = pathlib.Path(work)
        (work / f"{name}.inp").write_bytes((folder / f"{name}.inp").read_bytes())
        done = subprocess.run(["ccx", "-i", name], cwd=work, capture_output=True, text=True,
                              check=False)
        results = work / f"{name}.frd"
        if done.returncode != 0 or "*ERROR" in done.stdout or not results.exists():
            sys.exit(f"make-models.py: {name}: ccx ended with status {done.returncode}:\n"
                     f"{done.stdout[-3000:]}{done.stderr}")
        text = results.read_text("ascii")
    (folder / f"{name}.frd").write_text(BLANKED.sub(r"    1U\1", text), "ascii")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--solve", action="store_true", help="solve them too")
    options = parser.parse_args()
    options.folder.mkdir(parents=True, exist_ok=True)
    for name, model in MODELS.items():
        (options.folder / f"{name}.inp").write_text(text_of(model()), "ascii")
        if options.solve:
            solve(options.folder, name)


if __name__ == "__main__":
    main()
