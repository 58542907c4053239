#!/usr/bin/env python3
"""The reader of result files gives what was written."""

import pathlib
import tempfile
import unittest

import frd_file
import random_results

SMALL = """\
    1C
    2C                             1                                     1
 -1         7 1.00000E+00-2.00000E+00 3.00000E+00
 -3
    1PSTEP                         1           2           3
  100CL  101 2.50000E-01           1                     2    1MODAL      1
 -4  THING       7    1
"""


class Read(unittest.TestCase):
    def test_numbers_in_columns_without_blanks(self):
        self.assertEqual(frd_file.numbers_of("-1.00000E+00-2.50000E-01 3.00000E+10\n"),
                         [-1.0, -0.25, 3e10])

    def test_exponents_of_three_digits(self):
        self.assertEqual(frd_file.numbers_of("-1.00000-101 2.00000+200 3.00000E+00"),
                         [-1e-101, 2e200, 3.0])
        self.assertEqual(frd_file.numbers_of("-1.00000E-101 3.00000E+00-2.00000E+200"),
                         [-1e-101, 3.0, -2e200])

    def test_a_line_goes_on(self):
        text = SMALL + "".join(f" -5  C{k}          1    1    0    0\n" for k in range(7))
        text += " -1         7" + " 1.00000E+00" * 6 + "\n -2          " + "-8.00000E+00\n -3\n"
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "a.frd"
            path.write_text(text, "ascii")
            file = frd_file.read(path)
        self.assertFalse(file.complete)
        (frame,) = file.frames
        self.assertEqual((frame.step, frame.increment, frame.kind, frame.value), (3, 2, 2, 0.25))
        self.assertEqual(frame.fields["THING"].values, {7: [1.0] * 6 + [-8.0]})

    def test_what_was_drawn_is_read(self):
        with tempfile.TemporaryDirectory() as folder:
            folder = pathlib.Path(folder)
            for seed in range(40):
                drawn = random_results.make(seed, folder)
                file = frd_file.read(folder / "model.frd")
                self.assertTrue(repr(strip(file)) == repr(strip(drawn)), f"seed {seed}")


def strip(file):
    """Without the numbers of lines, and in one order."""
    file.nodes = dict(sorted(file.nodes.items()))
    for frame in file.frames:
        frame.text = ""
        for field in frame.fields.values():
            field.line = field.last_line = 0
    return file


if __name__ == "__main__":
    unittest.main()
