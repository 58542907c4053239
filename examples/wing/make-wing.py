#!/usr/bin/env python3
"""Writes the keyword deck of a composite wing box.

A tapered, swept box of shells: two skins, two spars, ribs, with stringers, a sandwich core between
the skins of one bay, trailing-edge panels and a few rods. The skins lose plies from the root to the
tip; their stacks, thicknesses, angles, names and ways of writing numbers are drawn at random, the
same for a seed.

    make-wing.py -o wing.inp
    make-wing.py --seed 7 --parts assembly -o wing.inp
    make-wing.py --spoil unknown-material -o bad.inp    tells which line is wrong
"""

import argparse
import math
import random
import sys

SPOILS = {
    "zero-thickness": "a layer with thickness 0",
    "negative-thickness": "a layer with a negative thickness",
    "infinite-thickness": "a layer whose thickness is no finite number",
    "unknown-material": "a layer of a material that is nowhere",
    "unknown-orientation": "a layer with an orientation that is nowhere",
    "unknown-distribution": "a section whose thickness is a distribution that is nowhere",
    "unknown-set": "a section of a set that is nowhere",
    "no-layers": "a composite without a layer",
    "no-section": "elements that no section has",
    "two-sections": "an element in two sections",
    "no-value": "an element without a value in a distribution without default",
    "two-values": "an element with two values in one distribution",
    "zero-value": "an element whose distributed thickness is 0",
    "material-twice": "a material that is defined twice",
}
ROOT_CHORD, TIP_CHORD, SPAN, SWEEP = 3.2, 1.1, 14.0, math.radians(24)
HEIGHT = 3  # elements between the skins


class Deck:
    """Lines of text, with their numbers."""

    def __init__(self, rng, spoil):
        self.rng, self.spoil, self.lines, self.marks = rng, spoil, [], []
        self.element = None  # the one that is wrong

    def add(self, text=""):
        self.lines.append(text)

    def mark(self, spoil):
        """The line added last is what makes the deck wrong."""
        if spoil == self.spoil:
            self.marks.append(len(self.lines))

    def wants(self, spoil):
        """True once, where the spoilt deck is to be wrong."""
        return spoil == self.spoil and not self.marks

    def keyword(self, *words):
        """A keyword line; some go on in a second line."""
        if len(words) > 3 and self.rng.random() < 0.3:
            half = len(words) // 2
            self.add("*" + ", ".join(words[:half]) + ",")
            self.add("   " + ", ".join(words[half:]))
        else:
            self.add("*" + self.rng.choice([", ", ","]).join(words))

    def data(self, *fields):
        while fields and fields[-1] == "":
            fields = fields[:-1]
        self.add(self.rng.choice([", ", ",", ",  "]).join(fields))

    def members(self, labels):
        for first in range(0, len(labels), 12):
            self.add(", ".join(str(label) for label in labels[first:first + 12]))

    def remark(self, text):
        self.add("** " + text)


def quoted(name):
    return f'"{name}"' if any(c in ' ,."' for c in name) else name


def number(rng, value):
    """One of the ways to write a number, always the same double."""
    texts = [repr(value), f"{value:.6E}", f"{value:.6e}"]
    exact = [text for text in texts if float(text) == value]
    text = rng.choice(exact)
    if text.endswith(".0") and rng.random() < 0.5:
        text = text[:-1]
    elif text.startswith("0.") and len(text) > 2 and rng.random() < 0.5:
        text = text[1:]
    elif "E" in text and rng.random() < 0.4:
        text = text.replace("E", "D")
    elif text[0] != "-" and rng.random() < 0.05:
        text = "+" + text
    return text


class Wing:
    """The geometry: nodes in a grid (chord, height, span), elements by the part of the wing."""

    def __init__(self, options, rng):
        self.rng = rng
        self.span, self.chord = options.span_elements, options.chord_elements
        self.pitch = max(1, round(self.span / 10))
        self.ribs = list(range(0, self.span + 1, self.pitch))
        self.bays = [(a, min(a + self.pitch, self.span)) for a in range(0, self.span, self.pitch)]
        thirds = [0, self.chord // 3, self.chord - self.chord // 3, self.chord]
        self.zones = list(zip(thirds, thirds[1:]))
        self.core_bay = self.bays[1 % len(self.bays)]
        self.core_chord = max(1, self.chord // 4)
        # Labels of each part of the wing begin at a round number.
        self.unit = 10_000
        while self.unit < max(self.span * self.chord, 20 * self.span, 50 * self.chord):
            self.unit *= 10
        self.labels = {}
        self.blocks = []  # type, set, [(label, nodes)]
        self.build()

    def node(self, i, h, j):
        return self.labels.setdefault((i, h, j), len(self.labels) + 1)

    def place(self, i, h, j):
        y = SPAN * j / self.span
        chord = ROOT_CHORD + (TIP_CHORD - ROOT_CHORD) * y / SPAN
        along = 0.15 + 0.5 * i / self.chord if i <= self.chord else 0.95
        half = 0.24 * chord * along * (1 - along)
        return (y * math.tan(SWEEP) + chord * along, y, half * (2 * h / HEIGHT - 1))

    def block(self, kind, name, first, corners):
        elements = [(first + k, [self.node(*corner) for corner in nodes])
                    for k, nodes in enumerate(corners)]
        self.blocks.append((kind, name, elements))
        return [label for label, _ in elements]

    def build(self):
        c, s, top, unit = self.chord, self.span, HEIGHT, self.unit
        self.skin = {}
        for side, h, first in (("UPPER", top, unit), ("LOWER", 0, 2 * unit)):
            corners = [[(i, h, j), (i + 1, h, j), (i + 1, h, j + 1), (i, h, j + 1)]
                       for j in range(s) for i in range(c)]
            self.block("S4R", "SKIN-" + side, first + 1, corners)
            self.skin[side] = first + 1
        self.spar = {}
        for side, i, first in (("FRONT", 0, 3 * unit), ("REAR", c, 4 * unit)):
            corners = [[(i, h, j), (i, h, j + 1), (i, h + 1, j + 1), (i, h + 1, j)]
                       for j in range(s) for h in range(top)]
            self.spar[side] = self.block("S4R", "SPAR-" + side, first + 1, corners)
        # The front lower corner of each rib is cut into two triangles.
        quads, corners = [], []
        for j in self.ribs:
            for i in range(c):
                for h in range(top):
                    four = [(i, h, j), (i + 1, h, j), (i + 1, h + 1, j), (i, h + 1, j)]
                    if (i, h) == (0, 0):
                        corners += [[four[0], four[1], four[2]], [four[0], four[2], four[3]]]
                    else:
                        quads.append(four)
        self.rib = self.block("S4R", "RIBS", 5 * unit + 1, quads)
        self.rib_corner = self.block("S3", "Rib corners", 5 * unit + 4 * unit // 5 + 1, corners)
        self.stringer = {}
        for k, i in enumerate(sorted({c // 4, c // 2, (3 * c) // 4})):
            for side, h in (("UPPER", top), ("LOWER", 0)):
                corners = [[(i, h, j), (i, h, j + 1)] for j in range(s)]
                self.stringer[side, k] = self.block(
                    "B31", f"STRINGER-{side[0]}{k + 1}",
                    6 * unit + k * unit // 10 + (unit // 20 if h else 0) + 1, corners)
        first, last = self.core_bay
        corners = [[(i + a, h, j + b) for h in (h0, h0 + 1) for a, b in
                    ((0, 0), (1, 0), (1, 1), (0, 1))]
                   for j in range(first, last) for h0 in range(top)
                   for i in range(self.core_chord)]
        self.core = self.block("C3D8", "CORE", 7 * unit + 1, corners)
        corners = [[(c, top, j), (c + 1, top, j), (c + 1, top, j + 1), (c, top, j + 1)]
                   for j in range(s)]
        self.panel = self.block("M3D4", "Trailing edge", 8 * unit + 1, corners)
        corners = [[(c + 1, top, j), (c, 0, j)] for j in self.ribs]
        self.rod = self.block("T3D2", "RODS", 8 * unit + unit // 2 + 1, corners)
        self.mass = self.block("MASS", "FUEL", 9 * unit + 1, [[(0, 0, j)] for j in self.ribs])

    def skin_labels(self, side, bay, zone):
        first = self.skin[side]
        return [first + j * self.chord + i for j in range(*bay) for i in range(*zone)]


class Writer:
    """The deck of one wing, keyword by keyword."""

    MATERIALS = ["CFRP-UD", "CFRP-Woven", "Glass, woven", "Film", "Foam 71", "AL-7050", "Ti.64"]
    PLY_THICKNESS = {"CFRP-UD": 0.000125, "CFRP-Woven": 0.00028, "Glass, woven": 0.0002,
                     "Film": 0.00005}

    def __init__(self, options, rng, deck):
        self.options, self.rng, self.deck = options, rng, deck
        self.wing = Wing(options, rng)
        self.late = []      # what is to be written behind the sections
        self.steered = []   # elements with angles of their own, with default
        self.padded = []    # elements whose pad has thicknesses of their own
        self.pads = {}      # lines of these layers, by element
        self.lower = []     # elements whose stack is scaled

    def num(self, value):
        return number(self.rng, value)

    def name(self, name, exact=False):
        """A name as it is mentioned; case does not count."""
        if not exact and self.rng.random() < 0.15:
            name = name.upper() if self.rng.random() < 0.5 else name.lower()
        return quoted(name)

    # ---- mesh ----
    def mesh(self):
        deck, wing = self.deck, self.wing
        deck.keyword("NODE", "NSET=ALL")
        for where, label in wing.labels.items():
            deck.add(f"{label}, " + ", ".join(f"{x:.5f}" for x in wing.place(*where)))
        for kind, name, elements in wing.blocks:
            deck.keyword("ELEMENT", "TYPE=" + kind, "ELSET=" + quoted(name))
            for label, nodes in elements:
                deck.add(f"{label}, " + ", ".join(str(node) for node in nodes))

    def element_set(self, name, labels):
        deck = self.deck
        if labels == list(range(labels[0], labels[-1] + 1)) and self.rng.random() < 0.5:
            deck.keyword("ELSET", "ELSET=" + quoted(name), "GENERATE")
            deck.add(f"{labels[0]}, {labels[-1]}")
        else:
            deck.keyword("ELSET", "ELSET=" + quoted(name))
            deck.members(labels)

    def section_set(self, name, labels):
        """The set of a section, ahead of it or behind."""
        if self.rng.random() < 0.8:
            self.element_set(name, labels)
        else:
            self.late.append(lambda: self.element_set(name, labels))

    # ---- laminates ----
    def laminate(self, count):
        """Plies from the bottom to the top, as (rank, material, angle); the last ranks go first."""
        ranks = list(range(count))
        # The outermost plies run to the tip: ranks grow from both faces towards the middle.
        order = ranks[0::2] + ranks[1::2][::-1]
        plies = []
        for place, rank in enumerate(order):
            material = self.rng.choice(["CFRP-UD", "CFRP-UD", "CFRP-Woven", "Glass, woven"])
            if place in (0, count - 1):
                material = "Film"
            angle = self.rng.choice([0, 45, -45, 90, 30.5, -60.25, 12])
            plies.append((rank, material, angle))
        return plies

    def layer(self, thickness, points, material, angle, ply):
        """One data line of a composite; spoilt where the deck is to be wrong."""
        deck = self.deck
        for spoil, text in (("zero-thickness", "0."), ("negative-thickness", "-1.25E-4"),
                            ("infinite-thickness", "inf")):
            if deck.wants(spoil):
                thickness = text
        if deck.wants("unknown-material"):
            material = "Unobtainium"
        if deck.wants("unknown-orientation"):
            angle = "NOWHERE"
        material = quoted(material) if material == "Unobtainium" else self.name(material)
        deck.data(thickness, points, material, angle, ply)
        for spoil in ("zero-thickness", "negative-thickness", "infinite-thickness",
                      "unknown-material", "unknown-orientation"):
            if not deck.marks:
                deck.mark(spoil)

    def angle(self, angle):
        return "" if angle == 0 and self.rng.random() < 0.5 else self.num(float(angle))

    def points(self):
        return self.rng.choice(["", "", "3", "5"])

    def section(self, kind, elset, *words):
        words = list(words)
        self.rng.shuffle(words)
        self.deck.keyword(kind, "ELSET=" + self.name(elset, exact=True), *words)

    def integration(self):
        return self.rng.choice([[], ["SECTION INTEGRATION=SIMPSON"], ["SECTION INTEGRATION=GAUSS"]])

    # ---- the sections of the parts of the wing ----
    def upper_skin(self):
        """Whole stacks, with plies that end on the way to the tip."""
        wing, rng, deck = self.wing, self.rng, self.deck
        for z, zone in enumerate(wing.zones):
            plies = self.laminate(rng.randint(24, 30))
            for b, bay in enumerate(wing.bays):
                share = b / max(1, len(wing.bays) - 1)
                count = max(2, round(len(plies) + (2 - len(plies)) * share))
                labels = wing.skin_labels("UPPER", bay, zone)
                name = f"UPPER-{'FMR'[z]}{b + 1}"
                self.section_set(name, labels)
                deck.remark(f"{count} plies")
                words = ["COMPOSITE", "ORIENTATION=" + self.name("Skin axes")]
                words.append("OFFSET=" + rng.choice(["SPOS", "SNEG", "0.25", "-.125"]))
                words += self.integration()
                if rng.random() < 0.5:
                    words.append(f'LAYUP="Upper skin, bay {b + 1}"')
                words += rng.choice([[], ["STACK DIRECTION=3"]])
                self.section("SHELL SECTION", name, *words)
                kept = [ply for ply in plies if ply[0] < count]
                middle = len(kept) // 2
                for k, (rank, material, angle) in enumerate(kept):
                    thickness = self.num(self.PLY_THICKNESS[material])
                    turned = self.angle(angle)
                    if k == middle and len(kept) > 4:
                        if z == 1:
                            turned = self.name("STEER")
                            self.steered += labels
                        elif z == 2 and b < 4:
                            thickness = self.name("PAD")
                            self.padded += labels
                    elif rank == 2:
                        turned = self.name("Spar axes")
                    self.layer(thickness, self.points(), material, turned,
                               self.name(f"U{'FMR'[z]}-{rank + 1:02d}"))
                    if "PAD" in thickness.upper():
                        self.pads.update(dict.fromkeys(labels, len(deck.lines)))
                if deck.wants("no-layers"):
                    self.section_set("BARE", [wing.rod[0]])
                    deck.keyword("SHELL SECTION", "ELSET=BARE", "COMPOSITE")
                    deck.mark("no-layers")

    def lower_skin(self):
        """Lower halves of symmetric stacks; some are scaled by a distributed thickness."""
        wing, rng, deck = self.wing, self.rng, self.deck
        for z, zone in enumerate(wing.zones):
            half = self.laminate(rng.randint(8, 15))
            for b, bay in enumerate(wing.bays):
                share = b / max(1, len(wing.bays) - 1)
                count = max(1, round(len(half) * (1 - share)))
                labels = wing.skin_labels("LOWER", bay, zone)
                name = f"Lower skin {'FMR'[z]}.{b + 1}"
                self.section_set(name, labels)
                scaled = (z + b) % 3 == 0
                words = ["COMPOSITE", "SYMMETRIC", "ORIENTATION=" + self.name("Skin axes")]
                words += rng.choice([["OFFSET=SNEG"], ["OFFSET=" + self.num(-0.375)], []])
                words += self.integration()
                if scaled:
                    words.append("SHELL THICKNESS=" + self.name("Lower, thickness"))
                    self.lower += labels
                if rng.random() < 0.3:
                    words.append("LAYUP=LOWER-" + "FMR"[z])
                self.section("SHELL SECTION", name, *words)
                for rank, material, angle in sorted(half)[:count]:
                    thickness = (rng.choice([0.125, 0.25, 1.0, 0.7, 0.3]) if scaled
                                 else self.PLY_THICKNESS[material])
                    self.layer(self.num(thickness), self.points(), material, self.angle(angle),
                               quoted(f"Lower {'FMR'[z]}, {rank + 1}"))

    def spars(self):
        wing, deck = self.wing, self.deck
        self.section("SHELL SECTION", "SPAR-FRONT", "MATERIAL=" + self.name("AL-7050"),
                     "SHELL THICKNESS=" + self.name("Web"), *self.integration())
        if self.rng.random() < 0.5:
            deck.data("", "7")
        self.section("SHELL SECTION", "SPAR-REAR", "COMPOSITE", "SYMMETRIC", "OFFSET=0.5",
                     "SECTION INTEGRATION=GAUSS")
        for k, (angle, ply) in enumerate([("45", "W1"), ("-45.", "W2"), ("", ""), ("9.D1", "")]):
            material = "CFRP-Woven" if k < 2 else "CFRP-UD"
            self.layer(self.num(self.PLY_THICKNESS[material]), self.points(), material, angle, ply)

    def ribs(self):
        wing, deck, rng = self.wing, self.deck, self.rng
        side = len(wing.rib) // 2
        self.section_set("RIBS-IN", wing.rib[:side])
        self.section_set("RIBS-OUT", wing.rib[side:])
        self.section("SHELL SECTION", "RIBS-IN", "MATERIAL=" + self.name("AL-7050"),
                     "SECTION INTEGRATION=GAUSS", "OFFSET=" + self.num(0.125))
        deck.data(self.num(0.0032), rng.choice(["", "7"]))
        self.section("SHELL SECTION", "RIBS-OUT", "MATERIAL=" + self.name("Ti.64"),
                     "ORIENTATION=" + self.name("Spar axes"))
        deck.data(self.num(0.0021))
        if deck.spoil == "no-section":
            deck.element = wing.rib_corner[0]
        else:
            self.section("SHELL SECTION", "Rib corners", "COMPOSITE")
            self.layer(self.num(0.001), "", "AL-7050", "", "")
            self.layer(self.num(0.0005), "5", "Film", "", "Sealant")
        if deck.wants("two-sections"):
            self.element_set("OVERLAP", [wing.rib[-1]])
            deck.keyword("SHELL SECTION", "ELSET=OVERLAP", "MATERIAL=Ti.64")
            self.blame(wing.rib[-1], len(deck.lines))
            deck.data("0.001")
        if deck.wants("unknown-set"):
            deck.keyword("SHELL SECTION", "ELSET=NO-SUCH-SET", "MATERIAL=Ti.64")
            deck.mark("unknown-set")
            deck.data("0.001")
        if deck.wants("unknown-distribution"):
            self.element_set("ONE-ROD", [wing.rod[0]])
            deck.keyword("SHELL SECTION", "ELSET=ONE-ROD", "MATERIAL=Ti.64", "SHELL THICKNESS=NONE")
            deck.mark("unknown-distribution")

    def beams(self):
        deck = self.deck
        shapes = [("RECT", [0.004, 0.03], ""), ("PIPE", [0.02, 0.002], ""),
                  ("I", [0.02, 0.04, 0.02, 0.02, 0.002, 0.002, 0.003], "5, 5, 5")]
        for side, k in self.wing.stringer:
            profile, sizes, points = shapes[k % len(shapes)]
            self.section("BEAM SECTION", f"STRINGER-{side[0]}{k + 1}",
                         "MATERIAL=" + self.name("Ti.64"), "SECTION=" + self.name(profile))
            deck.data(*[self.num(size) for size in sizes])
            if points or side == "UPPER":
                deck.add("0., 0., -1.")
            if points:
                deck.add(points)

    def others(self):
        wing, deck, rng = self.wing, self.deck, self.rng
        half = len(wing.core) // 2
        self.section_set("CORE-LAYERED", wing.core[half:])
        self.section_set("CORE-PLAIN", wing.core[:half])
        self.section("SOLID SECTION", "CORE-LAYERED", "COMPOSITE", "STACK DIRECTION=3",
                     "LAYUP=SANDWICH", "ORIENTATION=" + self.name("Skin axes"),
                     *rng.choice([[], ["SYMMETRIC"]]))
        deck.data(self.num(0.05), "3", self.name("CFRP-Woven"), "45.", "FACE-1")
        deck.data(self.num(0.4), "", self.name("Foam 71"))
        deck.data(self.num(0.05), "1", self.name("CFRP-UD"), self.name("Spar axes"), "FACE-2")
        self.section("SOLID SECTION", "CORE-PLAIN", "MATERIAL=" + self.name("Foam 71"))
        self.section("SOLID SECTION", "RODS", "MATERIAL=" + self.name("Ti.64"))
        deck.data(self.num(0.00025))
        self.section("MEMBRANE SECTION", "Trailing edge", "MATERIAL=" + self.name("Glass, woven"),
                     "MEMBRANE THICKNESS=" + self.name("FAIRING"))
        deck.data(self.num(0.0008))

    # ---- what the sections name ----
    def orientations(self):
        deck = self.deck
        deck.keyword("ORIENTATION", 'NAME="Skin axes"', "SYSTEM=RECTANGULAR")
        deck.add(f"{math.sin(SWEEP):.6f}, {math.cos(SWEEP):.6f}, 0., -1., 0., 0.")
        deck.add("3, 0.")
        deck.keyword("ORIENTATION", 'NAME="Spar axes"')
        deck.add("0., 1., 0., 0., 0., 1.")

    def distribution(self, name, table, default, values):
        deck = self.deck
        deck.keyword("DISTRIBUTION", "NAME=" + quoted(name), "LOCATION=ELEMENT", "TABLE=" + table)
        if default is not None:
            deck.data("", self.num(default))
        for where, value in values:
            deck.data(str(where), self.num(value))

    def distributions(self):
        deck, wing, rng = self.deck, self.wing, self.rng
        for name, words in (("LENGTHS", "LENGTH"), ("ANGLES", "ANGLE"),
                            ("AXES", "COORD3D, COORD3D")):
            deck.keyword("DISTRIBUTION TABLE", "NAME=" + name)
            deck.add(words)
        steered = sorted(set(self.steered))
        self.distribution("STEER", "angles", rng.choice([0.0, 15.0]), [
            (label, self.steering(label))
            for label in steered if rng.random() < 0.7])
        padded = sorted(set(self.padded))
        values = [(label, round(0.0002 + 1e-6 * rng.randint(0, 300), 7)) for label in padded]
        if deck.spoil == "zero-value":
            values[3] = (values[3][0], 0.0)
            self.blame(values[3][0], self.pads[values[3][0]])
        elif deck.spoil == "no-value":
            gap, _ = values.pop(5)
            self.blame(gap, self.pads[gap])
        self.distribution("PAD", "LENGTHS", None, values)
        if deck.wants("two-values"):
            deck.data(str(values[2][0]), "0.001")
            self.blame(values[2][0], len(deck.lines))
        lower = sorted(set(self.lower))
        cut = len(lower) // 2
        self.late_set("PLAIN", lower[:cut])
        self.distribution("Lower, thickness", "LENGTHS", None, [("Plain", 0.0035)] + [
            (label, round(0.0061 - 2e-6 * k, 7)) for k, label in enumerate(lower[cut:])])
        web = wing.spar["FRONT"]
        self.distribution("Web", "LENGTHS", 0.0024, [("WEB-ROOT", 0.0052)] + [
            (label, round(0.005 - 1e-5 * rng.randint(0, 99), 6)) for label in web[60:120:2]])
        self.late_set("WEB-ROOT", web[:60])
        self.distribution("FAIRING", "LENGTHS", 0.0009, [
            (label, round(0.0006 + 1e-6 * k, 7)) for k, label in enumerate(wing.panel[::3])])
        deck.remark("Not used by any section")
        deck.keyword("DISTRIBUTION", "NAME=FIBRES", "LOCATION=ELEMENT", "TABLE=AXES")
        deck.add(", 1., 0., 0., 0., 1., 0.")
        deck.add(f"{wing.core[0]}, 0., 1., 0., -1., 0., 0.")
        deck.keyword("DISTRIBUTION", "NAME=HEAT", "LOCATION=NODE", "TABLE=LENGTHS")
        deck.add(", 20.")
        deck.add("1, 21.5")

    def steering(self, label):
        along = label - self.wing.skin["UPPER"]
        return round(math.degrees(math.atan(0.002 * along)) - self.rng.random(), 4)

    def blame(self, element, line):
        self.deck.element = element
        self.deck.marks.append(line)

    def late_set(self, name, labels):
        self.late.append(lambda: self.element_set(name, labels))

    def materials(self, names):
        deck, rng = self.deck, self.rng
        for name in names:
            deck.keyword("MATERIAL", "NAME=" + self.name(name))
            deck.keyword("DENSITY")
            deck.data(self.num(float(rng.randint(40, 4500))))
            if "CFRP" in name:
                deck.keyword("ELASTIC", "TYPE=LAMINA")
                deck.add("1.35E+11, 9.8E+09, 0.31, 4.9E+09, 4.9E+09, 3.4E+09")
            else:
                deck.keyword("ELASTIC")
                deck.add("7.1E+10, 0.33")
            if deck.wants("material-twice") and name == "AL-7050":
                deck.keyword("MATERIAL", "NAME=al-7050")
                deck.mark("material-twice")

    def body(self):
        """All that stands in the frame of the wing."""
        self.mesh()
        deck, rng = self.deck, self.rng
        early = rng.random() < 0.5
        if early:
            self.orientations()
        parts = [self.upper_skin, self.lower_skin, self.spars, self.ribs, self.beams, self.others]
        rng.shuffle(parts)
        for part in parts:
            part()
        if not early:
            self.orientations()
        self.distributions()
        for write in self.late:
            write()

    # ---- whole decks ----
    def flat(self):
        split = self.rng.randint(0, len(self.MATERIALS))
        self.materials(self.MATERIALS[:split])
        self.body()
        self.materials(self.MATERIALS[split:])

    def assembly(self):
        deck = self.deck
        split = self.rng.randint(0, len(self.MATERIALS))
        self.materials(self.MATERIALS[:split])
        deck.keyword("PART", "NAME=Wing")
        self.body()
        deck.keyword("END PART")
        self.flap_part()
        deck.keyword("ASSEMBLY", "NAME=Aircraft")
        for name, part, lines in (
                ("Wing-R", "Wing", []), ("Wing, left", "WING", [
                    "0., 0., 0.", "0., 0., 0., 1., 0., 0., 180."]),
                ("Flap-1", "Flap", ["2., 1., 0."]), ("Flap.2", "Flap", ["2., -1.6, 0."]),
                ("Slat 1", "Flap", ["-1., 1., 0."]), ("Slat-2", "Flap", ["-1., -1.6, 0."])):
            deck.keyword("INSTANCE", "NAME=" + quoted(name), "PART=" + part)
            for line in lines:
                deck.add(line)
            deck.keyword("END INSTANCE")
        self.flap_sections()
        deck.keyword("END ASSEMBLY")
        self.materials(self.MATERIALS[split:])

    def flap_part(self):
        """A flat plate without sections of its own."""
        deck = self.deck
        deck.keyword("PART", "NAME=Flap")
        deck.keyword("NODE")
        wide = 9
        for i in range(5):
            for j in range(wide + 1):
                deck.add(f"{i * 100 + j + 1}, {0.1 * i:.1f}, {0.15 * j:.2f}, 0.")
        deck.keyword("ELEMENT", "TYPE=S4R", "ELSET=PLATE")
        for i in range(4):
            for j in range(wide):
                n = i * 100 + j + 1
                deck.add(f"{i * 10 + j + 1}, {n}, {n + 100}, {n + 101}, {n + 1}")
        deck.keyword("ELSET", "ELSET=NOSE", "GENERATE")
        deck.add(f"1, {wide}")
        deck.keyword("END PART")

    def flap_sections(self):
        """Sections of the assembly, with sets and labels of instances."""
        deck, rng = self.deck, self.rng
        for name, word in (("LENGTHS", "LENGTH"), ("ANGLES", "ANGLE")):
            deck.keyword("DISTRIBUTION TABLE", "NAME=" + name)
            deck.add(word)
        deck.keyword("ELSET", 'ELSET="Second flap"')
        deck.add('"Flap.2".PLATE')
        self.section("SHELL SECTION", "Second flap", "COMPOSITE", "OFFSET=SPOS",
                     "SHELL THICKNESS=" + self.name("Flap thickness"))
        for k in range(3):
            self.layer(self.num(rng.choice([1.0, 0.5])), "", "CFRP-Woven",
                       self.num(rng.choice([45.0, 0.0])), "U" if k != 1 else "V")
        # One section over two instances, whose set comes behind it.
        self.section("SHELL SECTION", "Slats", "COMPOSITE", "SECTION INTEGRATION=GAUSS")
        self.layer(self.name("Slat thickness"), "", "CFRP-Woven", self.name("Slat angle"), "S-1")
        self.layer(self.num(0.0002), "", "Glass, woven", self.name("Slat angle"), "S-2")
        # A section of an instance's own set.
        deck.keyword("SHELL SECTION", "ELSET=Flap-1.PLATE", "COMPOSITE", "SYMMETRIC")
        self.layer(self.num(0.0003), "3", "Glass, woven", "30.", "U")
        self.layer(self.name("Flap thickness"), "", "Foam 71", "", "Filler")
        deck.keyword("DISTRIBUTION", 'NAME="Flap thickness"', "LOCATION=ELEMENT", "TABLE=LENGTHS")
        deck.data("", self.num(0.004))
        deck.data("Flap-1.NOSE", self.num(0.006))
        for label in rng.sample(range(11, 40), 12):
            if label % 10:
                deck.data(f"Flap-1.{label}", self.num(round(0.001 * label / 7, 6)))
        deck.data('"Flap.2".12', self.num(0.0015))
        self.both_slats()

    def both_slats(self):
        deck, rng = self.deck, self.rng
        deck.keyword("ELSET", "ELSET=Slats")
        deck.add('Slat-2.PLATE, "Slat 1".Plate')
        deck.keyword("DISTRIBUTION", 'NAME="Slat thickness"', "LOCATION=ELEMENT", "TABLE=LENGTHS")
        deck.data("Slat-2.PLATE", self.num(0.0011))
        for row in range(4):
            for k in range(1, 10):
                deck.data(f'"Slat 1".{10 * row + k}', self.num(round(0.001 + 1e-5 * k * row, 6)))
        deck.keyword("DISTRIBUTION", 'NAME="Slat angle"', "LOCATION=ELEMENT", "TABLE=ANGLES")
        deck.data("", self.num(rng.choice([-30.0, 7.5])))
        deck.data("Slat-2.NOSE", self.num(22.5))
        deck.data('"Slat 1".5', self.num(-0.125))


def make(options):
    rng = random.Random(options.seed)
    deck = Deck(rng, options.spoil)
    deck.keyword("HEADING")
    deck.add(f"Composite wing box, {options.span_elements} x {options.chord_elements}, "
             f"seed {options.seed}")
    writer = Writer(options, rng, deck)
    writer.assembly() if options.parts == "assembly" else writer.flat()
    return deck


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--span-elements", type=int, default=50, help="at least 10")
    parser.add_argument("--chord-elements", type=int, default=15, help="at least 6")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--parts", choices=["flat", "assembly"], default="flat")
    parser.add_argument("--spoil", choices=SPOILS, help="write a deck that is wrong")
    parser.add_argument("-o", "--output", required=True)
    options = parser.parse_args()
    if options.span_elements < 10 or options.chord_elements < 6:
        parser.error("the wing needs 10 elements along the span and 6 along the chord")
    deck = make(options)
    with open(options.output, "w", encoding="utf-8") as file:
        file.write("\n".join(deck.lines) + "\n")
    if options.spoil:
        marks = "".join(f":{mark}" for mark in deck.marks)
        element = f", element {deck.element}" if deck.element else ""
        print(f"{options.output}{marks}: {SPOILS[options.spoil]}{element}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
