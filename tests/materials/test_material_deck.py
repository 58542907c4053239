#!/usr/bin/env python3
"""The reader of materials itself, on decks written by hand."""

import math
import os
import pathlib
import tempfile
import unittest

import material_deck


class MaterialDeck(unittest.TestCase):
    def read(self, text, **more):
        with tempfile.TemporaryDirectory(dir=os.environ.get("KOV_TEST_TMP")) as folder:
            for name, included in more.items():
                (pathlib.Path(folder) / f"{name}.inp").write_text(included, encoding="utf-8")
            deck = pathlib.Path(folder) / "deck.inp"
            deck.write_text(text, encoding="utf-8")
            return material_deck.read(deck)

    def test_a_table_with_temperatures_and_field_variables(self):
        elastic = self.read("*MATERIAL, NAME=M\n*Elastic, dependencies=2\n1, .1, 20, 5, 6\n"
                            "2,.2,30,5,6,\n")["M"]["Elastic"]
        self.assertEqual(elastic.type, "ISOTROPIC")
        self.assertEqual(elastic.columns, ["E", "nu", "temperature", "field 1", "field 2"])
        self.assertEqual(elastic.rows, [[1, .1, 20, 5, 6], [2, .2, 30, 5, 6]])
        self.assertEqual(elastic.temperatures, [20, 30])

    def test_rows_go_on_in_further_lines(self):
        found = self.read("*MATERIAL, NAME=M\n*ELASTIC, TYPE=ENGINEERING CONSTANTS\n"
                          "1,2,3,4,5,6,7,8\n9\n**\n10,11,12,13,14,15,16,17\n18,\n")["M"]["Elastic"]
        self.assertEqual(found.rows, [list(range(1, 10)), list(range(10, 19))])
        self.assertIsNone(found.temperatures)

    def test_a_blank_temperature_before_field_variables(self):
        found = self.read("*MATERIAL, NAME=M\n*DENSITY, DEPENDENCIES=1\n1,,3\n2, , 4\n")
        self.assertEqual(found["M"]["Density"].rows, [[1, 3], [2, 4]])
        self.assertEqual(found["M"]["Density"].columns, ["density", "field 1"])

    def test_the_columns_of_an_anisotropic_elasticity(self):
        self.assertEqual(" ".join(material_deck.COLUMNS["ELASTIC"]["ANISOTROPIC"][6:11]),
                         "D1112 D2212 D3312 D1212 D1113")

    def test_names_parameters_and_included_files(self):
        found = self.read('*MATERIAL,\nNAME="a, b"\n*INCLUDE, INPUT=more.inp\n*UNKNOWN, X=1\n9\n'
                          "*DAMPING, ALPHA=1D-3, BETA=-0.\n",
                          more="*EXPANSION, TYPE=ORTHO, ZERO=20\n1,2,3\n")["a, b"]
        self.assertEqual(found["Expansion"].parameters, {"zero": 20})
        self.assertEqual(found["Expansion"].type, "ORTHOTROPIC")
        self.assertEqual(found["Damping"].parameters["alpha"], 1e-3)
        self.assertEqual(math.copysign(1, found["Damping"].parameters["beta"]), -1)


if __name__ == "__main__":
    unittest.main()
