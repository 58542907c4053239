#!/usr/bin/env python3
"""The reader that layups are compared with, against stacks that were worked out by hand."""

import os
import sys
import tempfile
import unittest
from fractions import Fraction

import layup_deck

SHELLS = """*HEADING
Two quads
*NODE
1, 0., 0., 0.
2, 1., 0., 0.
3, 1., 1., 0.
4, 0., 1., 0.
5, 2., 0., 0.
6, 2., 1., 0.
*ELEMENT, TYPE=S4R, ELSET="Left, one"
7, 1, 2, 3, 4
*ELEMENT, TYPE=S4R,
   ELSET=RIGHT
9, 2, 5, 6, 3
*SHELL SECTION, ELSET="left, ONE", COMPOSITE, SYMMETRIC, OFFSET=SNEG, LAYUP="A, b",
  SECTION INTEGRATION=GAUSS
1.25D-01, , "my steel", -4.5e1, P1
** a remark between
.25, 5, foil, axes
*SHELL SECTION,ELSET=right,COMPOSITE,SHELL THICKNESS=T
1., 3, Foil, TURN, p1
3., , Steel
*ORIENTATION, NAME=Axes
1., 0., 0., 0., 1., 0.
*MATERIAL, NAME="My Steel"
*MATERIAL, NAME=FOIL
*ELASTIC
1., 0.3
*DISTRIBUTION TABLE, NAME=L
LENGTH
*DISTRIBUTION, NAME=T, LOCATION=ELEMENT, TABLE=L
, 0.5
9, 0.6
*DISTRIBUTION, NAME=TURN, LOCATION=ELEMENT, TABLE=L
RIGHT, 12.5
"""

PARTS = """*PART, NAME=Plate
*NODE
1, 0., 0., 0.
*ELEMENT, TYPE=S4R, ELSET=All
4, 1, 1, 1, 1
2, 1, 1, 1, 1
*SHELL SECTION, ELSET=ALL, MATERIAL=Al, SECTION INTEGRATION=GAUSS
0.01
*END PART
*PART, NAME=Bare
*NODE
1, 0., 0., 0.
*ELEMENT, TYPE=C3D8, ELSET=All
1, 1, 1, 1, 1, 1, 1, 1, 1
5, 1, 1, 1, 1, 1, 1, 1, 1
*END PART
*ASSEMBLY, NAME=A
*INSTANCE, NAME="P.1", PART=plate
*END INSTANCE
*INSTANCE, NAME=B-1, PART=Bare
*END INSTANCE
*ELSET, ELSET=Both
B-1.All
*SOLID SECTION, ELSET=Both, COMPOSITE, STACK DIRECTION=2
D, 3, AL, 10., Q
0.5, , al
*DISTRIBUTION, NAME=D, LOCATION=ELEMENT
B-1.5, 0.25
B-1.1, 0.75
*END ASSEMBLY
"""


def read(text):
    with tempfile.NamedTemporaryFile("w", suffix=".inp", delete=False) as file:
        file.write(text)
    try:
        return layup_deck.read(file.name)
    finally:
        os.unlink(file.name)


class Lines(unittest.TestCase):
    def test_quotes_keep_commas_and_blanks(self):
        self.assertEqual(layup_deck.fields_of(' 1., ,"a, b" , c d,,'), ["1.", "", '"a, b"', "c d"])

    def test_blanks_outside_quotes_are_dropped(self):
        self.assertEqual(layup_deck.name_of('a b "c d"'), "abc d")

    def test_dots_in_quotes_part_nothing(self):
        self.assertEqual(layup_deck.names_of('"A.1".Top'), ["A.1", "Top"])


class Shells(unittest.TestCase):
    def setUp(self):
        self.model = read(SHELLS)

    def test_a_half_stack_is_mirrored(self):
        section = self.model.sections[0]
        self.assertEqual((section.name, section.layup, section.offset, section.gauss),
                         ("Left, one", "A, b", -0.5, True))
        self.assertEqual([layer.material for layer in section.layers],
                         ["my steel", "foil", "foil", "my steel"])
        self.assertEqual([layer.points for layer in section.layers], [2, 5, 5, 2])
        self.assertEqual([layer.ply for layer in section.layers], ["P1", None, None, "P1"])
        self.assertEqual([layer.thickness.constant for layer in section.layers],
                         [0.125, 0.25, 0.25, 0.125])
        self.assertEqual([layer.angle and layer.angle.constant for layer in section.layers],
                         [-45.0, None, None, -45.0])
        self.assertEqual(section.layers[1].orientation, "Axes")

    def test_layers_take_shares_of_a_distributed_thickness(self):
        section = self.model.sections[1]
        self.assertEqual([section.layers[k].thickness.exact(1) for k in (0, 1)],
                         [Fraction(0.6) / 4, Fraction(0.6) * 3 / 4])
        self.assertEqual(section.field, "T")

    def test_angles_of_elements_come_from_sets_too(self):
        first, second = self.model.sections[1].layers
        self.assertEqual(first.angle.variation, "distributed")
        self.assertEqual(float(first.angle.exact(1)), 12.5)
        self.assertEqual((second.angle.variation, second.angle.constant), ("constant", 0.0))

    def test_names_are_as_typed_first(self):
        first, second = self.model.sections[1].layers
        self.assertEqual((first.material, second.material, first.ply), ("foil", "Steel", "P1"))


class Parts(unittest.TestCase):
    def setUp(self):
        self.model = read(PARTS)

    def test_elements_follow_the_instances(self):
        self.assertEqual(self.model.elements, [("P.1", 4, "S4R"), ("P.1", 2, "S4R"),
                                               ("B-1", 1, "C3D8"), ("B-1", 5, "C3D8")])

    def test_a_section_of_a_part_is_one_of_its_instance(self):
        section = self.model.sections[0]
        self.assertEqual((section.name, section.elements), ("P.1_All", [0, 1]))
        self.assertEqual((section.layers[0].points, section.layers[0].angle), (3, None))

    def test_sections_of_the_assembly_name_sets_and_labels_of_instances(self):
        section = self.model.sections[1]
        self.assertEqual((section.name, section.stack, section.elements), ("Both", 2, [2, 3]))
        self.assertEqual([float(section.layers[0].thickness.exact(k)) for k in (2, 3)],
                         [0.75, 0.25])
        self.assertEqual([layer.points for layer in section.layers], [3, 1])
        self.assertEqual([layer.material for layer in section.layers], ["Al", "Al"])


if __name__ == "__main__":
    sys.exit(unittest.main())
