#!/usr/bin/env python3
"""Materials as kovsim shows them, against a reader of the deck that shares no code with it.

    check-materials.py --seeds 1 2 3       random decks, translated, shown and compared
    check-materials.py --bad --seeds 1     the same decks, damaged: told in one line, or read
    check-materials.py --deck FILE.inp     any deck that material_deck.py can read

The command line is found in the environment's KOVSIM. Every number is compared to the last bit,
as the document shows it, and again as a compacted document shows it.
"""

import argparse
import json
import math
import os
import pathlib
import random
import re
import struct
import subprocess
import sys
import tempfile

import material_deck

KOVSIM = os.environ.get("KOVSIM", "kovsim")
MATERIALS = 25
LARGEST, SMALLEST, LEAST = 1.7976931348623157e308, 2.2250738585072014e-308, 5e-324


def kovsim(*words, status=(0,)):
    done = subprocess.run([KOVSIM, *map(str, words)], capture_output=True, text=True, check=False)
    if done.returncode not in status:
        sys.exit(f"kovsim {' '.join(map(str, words))} ended with {done.returncode}: {done.stderr}")
    return done


# ---- decks ----
class Maker:
    """A deck of random materials, each number written in one of the ways that decks have."""

    ABOVE_ZERO = re.compile(r"E\d?$|G\d*$|K..$|yield stress$|D(\d\d)\1$")
    FROM_ZERO = re.compile(r"density$|specific heat$|k(11|22|33)?$")

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.included = {}

    def chance(self, share):
        return self.random.random() < share

    def number(self, above=False, sign=True):
        r = self.random
        kind = r.randrange(10)
        value = r.choice([LARGEST, SMALLEST, LEAST, 0.1, 1.0]) if kind == 0 else \
            float(r.randint(0, 400)) if kind < 4 else \
            math.ldexp(r.uniform(0.5, 1), r.randint(-1020, 1020)) if kind < 6 else \
            r.uniform(0, 10) * 10.0 ** r.randint(-12, 12)
        if above and value == 0:
            value = 7.25
        return -value if sign and self.chance(0.3) else value

    def word(self, value):
        """A text that stands for the value: it need not be the shortest."""
        r = self.random
        text = r.choice([repr(value), f"{value:.17g}", f"{value:.20e}", f"{value:.16e}"])
        if self.chance(0.3):
            text = text.replace("e", r.choice("EdD"))
        if re.fullmatch(r"-?\d+", text) and self.chance(0.7):
            text += "."
        if re.match(r"0\.\d", text) and self.chance(0.3):
            text = text[1:]
        if not text.startswith("-") and self.chance(0.1):
            text = "+" + text
        return self.blanks() + text + self.blanks()

    def blanks(self):
        return self.random.choice(["", "", "", " ", "  ", "\t"])

    def value(self, column, row):
        if column == "nu":
            return self.random.choice([0.5, 0.0, -0.0, self.random.uniform(-0.999, 0.5)])
        if column == "plastic strain":
            return row
        return self.number(self.ABOVE_ZERO.match(column) is not None,
                           not self.ABOVE_ZERO.match(column) and not self.FROM_ZERO.match(column))

    def rows(self, keyword, columns, temperature, fields):
        """Words of each row: temperatures ascend while the field variables stay, curves too."""
        r, strain = self.random, 0.0
        heat = -r.uniform(0, 300)
        variables = [self.number() for _ in range(fields)]
        many = temperature or fields > 0 or keyword == "PLASTIC"
        for k in range(r.choice([1, 2, 5, 30]) if many else 1):
            curve = keyword == "PLASTIC" and self.chance(0.7)
            if k > 0 and not curve:
                strain, heat = 0.0, heat + r.uniform(0.01, 100)
                if fields > 0 and (not temperature or self.chance(0.3)):
                    at = r.randrange(fields)
                    variables[at] = math.nextafter(variables[at], -math.inf if variables[at] > 0
                                                   else math.inf)
                    heat = -r.uniform(0, 300)
                elif not temperature:
                    return
            elif k > 0:
                strain += r.uniform(0.001, 1)
            values = [self.value(column, strain) for column in columns]
            yield [self.word(value) for value in values] + \
                [self.word(heat) if temperature else self.blanks()] + \
                [self.word(value) for value in variables]

    def lines(self, words):
        """8 on a line; what is left out at the end of a line may be left out with its commas."""
        text = ""
        for first in range(0, len(words), material_deck.ON_LINE):
            line = words[first:first + material_deck.ON_LINE]
            while len(line) > 1 and not line[-1].strip() and self.chance(0.6):
                line.pop()
            text += ",".join(line) + self.random.choice(["", ",", " ", " , "]) + "\n"
            if self.chance(0.03):
                text += "** 1, 2, 3\n"
        return text

    def typed(self, text):
        """A word of a keyword line, in any case and with any blanks."""
        letters = self.random.choice([str.upper, str.lower, str.title])(text)
        return letters.replace(" ", "") if self.chance(0.3) else letters

    def behaviour(self, keyword):
        r = self.random
        line = "*" + self.typed({"SPECIFICHEAT": "SPECIFIC HEAT"}.get(keyword, keyword))
        numbers = material_deck.PARAMETERS.get(keyword, [])
        given = [key for key in numbers if self.chance(0.5)]
        if keyword == "DAMPING" and not given:
            given = [r.choice(numbers)]
        for key in given:
            line += f", {self.typed(key)}={self.word(self.number(sign=keyword != 'DAMPING'))}"
        if keyword not in material_deck.COLUMNS:
            return line + "\n"
        types = material_deck.COLUMNS[keyword]
        kind = r.choice(list(types))
        fields = r.choice([0, 0, 1, 2, 3, 5, 6, 7, 8])
        if kind is not None and (kind != next(iter(types)) or self.chance(0.5)):
            key = material_deck.TYPE_KEYS.get(keyword, "TYPE")
            cut = len(kind) if self.chance(0.6) else max(3, r.randint(3, len(kind)))
            line += f",{self.blanks()}{self.typed(key)}={self.typed(kind[:cut])}"
        if fields > 0:
            line += f", {self.typed('DEPENDENCIES')} = {fields}"
        if self.chance(0.1):
            line = line.replace(",", ",\n", 1)
        columns = types[kind]
        text = line + "\n"
        for words in self.rows(keyword, columns, self.chance(0.5), fields):
            text += self.lines(words)
        return text

    def deck(self):
        r, text = self.random, "*HEADING\nmaterials\n"
        for k in range(MATERIALS):
            name = r.choice(["M{}", '"a, {}"', "mat.{}", "Steel-{}"]).format(k)
            text += f"*{self.typed('MATERIAL')}, {self.typed('NAME')}={name}\n"
            wanted = list(material_deck.NAMES)
            r.shuffle(wanted)
            for keyword in wanted[:r.randint(0, len(wanted))]:
                block = self.behaviour(keyword)
                if self.chance(0.1):
                    name = f"more{len(self.included)}.inp"
                    self.included[name] = block
                    block = f"*INCLUDE, INPUT={name}\n"
                text += block
                if self.chance(0.1):
                    text += "*SOME OTHER LAW, TYPE=X\n1., 2., 3.\n"
        return text

    def write(self, folder):
        text = self.deck()
        for name, block in self.included.items():
            (folder / name).write_text(block, encoding="utf-8")
        (folder / "deck.inp").write_text(text, encoding="utf-8")
        return folder / "deck.inp"


# ---- comparison ----
def bits(value):
    return struct.pack("<d", value)


class Check:
    """Compares, counts, and keeps the first differences."""

    def __init__(self, title):
        self.title, self.count, self.wrong = title, 0, []

    def same(self, where, found, expected):
        self.count += 1
        equal = bits(found) == bits(expected) if isinstance(expected, float) \
            and isinstance(found, float) else found == expected
        if not equal:
            self.wrong.append(f"{where}: {found!r}, expected {expected!r}")

    def each(self, where, found, expected):
        self.same(where + ", how many", len(found), len(expected))
        for k, (one, other) in enumerate(zip(found, expected)):
            self.same(f"{where}[{k}]", one, other)

    def done(self):
        print(f"{self.title}: {self.count} comparisons, {len(self.wrong)} differ")
        for text in self.wrong[:25]:
            print("  " + text)
        return not self.wrong


def shown(document, *name):
    # Whole numbers as doubles too, so that -0 keeps its sign.
    done = kovsim("materials", document, *name, "--json")
    return json.loads(done.stdout, parse_int=float)["materials"]


def compare_behaviour(check, where, found, expected, rows):
    check.same(where + " type", found["type"], expected.type)
    check.each(where + " columns", found["columns"], expected.columns)
    check.same(where + " row count", found["rowCount"], float(len(expected.rows)))
    check.same(where + " field variables", found["fieldVariables"],
               float(expected.field_variables))
    check.each(where + " parameters", sorted(found["parameters"]), sorted(expected.parameters))
    for key, value in expected.parameters.items():
        check.same(f"{where} {key}", found["parameters"].get(key), value)
    check.each(where + " temperatures", found["temperatureRange"] or [],
               expected.temperatures or [])
    if not rows:
        return
    check.same(where + " rows", len(found["rows"]), len(expected.rows))
    for k, (one, other) in enumerate(zip(found["rows"], expected.rows)):
        check.each(f"{where} row {k}", one, other)


def compare(check, document, materials):
    listed = shown(document)
    check.each("materials", [one["name"] for one in listed], sorted(materials))
    for one in listed:
        expected = materials[one["name"]]
        detail = shown(document, one["name"])[0]
        for each, rows in ((one, False), (detail, True)):
            behaviours = each["behaviors"]
            check.each(one["name"], [b["name"] for b in behaviours], sorted(expected))
            for behaviour in behaviours:
                compare_behaviour(check, f"{one['name']} {behaviour['name']}", behaviour,
                                  expected[behaviour["name"]], rows)


def check_deck(title, deck, folder):
    check = Check(title)
    materials = material_deck.read(deck)
    kovsim("translate", deck, "-o", folder / "m.ksd")
    compare(check, folder / "m.ksd", materials)
    kovsim("compact", folder / "m.ksd", "-o", folder / "c.ksd")
    compare(check, folder / "c.ksd", materials)
    kovsim("verify", folder / "c.ksd")
    return check.done()


# ---- damage ----
def damaged(text, r):
    """A deck with some of its characters, fields or lines changed, left out or twice."""
    lines = text.split("\n")
    for _ in range(r.choice([1, 1, 1, 3])):
        at = r.randrange(len(lines))
        line, kind = lines[at], r.randrange(8)
        if kind == 0:
            lines.pop(at)
        elif kind == 1:
            lines.insert(at, line)
        elif kind == 2 and line:
            k = r.randrange(len(line))
            lines[at] = line[:k] + r.choice(',.*-+=eD "0\t9Zx\x01\xe9') + line[k + 1:]
        elif kind == 3:
            fields = line.split(",")
            fields[r.randrange(len(fields))] = r.choice(
                ["", "0", "-1", "1e999", "nan", "1e-999", "x", "99999999999", "1..2", "0x1p3"])
            lines[at] = ",".join(fields)
        elif kind == 4:
            lines[at] = line[:r.randrange(len(line) + 1)]
        elif kind == 5:
            other = r.randrange(len(lines))
            lines[at], lines[other] = lines[other], line
        elif kind == 6 and "=" in line:
            lines[at] = line.partition("=")[0] + "=" + r.choice(["", "-1", "1000", "1001", "x"])
        else:
            lines = lines[:at]
            break
        if not lines:
            lines = [""]
    return "\n".join(lines)


def check_damage(seed, folder):
    maker = Maker(seed)
    deck = maker.write(folder)
    text = deck.read_text(encoding="utf-8")
    told = re.compile(r"kovsim: .+:\d+: .+\n")
    outcome = {0: 0, 2: 0}
    for k in range(60):
        bad = folder / "bad.inp"
        bad.write_text(damaged(text, maker.random), encoding="utf-8")
        target = folder / f"bad{k}.ksd"
        done = kovsim("translate", bad, "-o", target, status=(0, 2))
        outcome[done.returncode] += 1
        if done.returncode == 2 and (not told.fullmatch(done.stderr) or target.exists()):
            print(f"seed {seed}, damage {k}: {done.stderr!r}")
            return False
        if done.returncode == 0:
            for one in shown(target):
                shown(target, one["name"])
    print(f"seed {seed}: {outcome[0]} damaged decks read, {outcome[2]} refused")
    return outcome[2] > 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--seeds", type=int, nargs="+", default=[1])
    parser.add_argument("--bad", action="store_true")
    parser.add_argument("--deck", type=pathlib.Path)
    arguments = parser.parse_args()
    right = True
    for seed in arguments.seeds:
        with tempfile.TemporaryDirectory(dir=os.environ.get("KOV_TEST_TMP")) as name:
            folder = pathlib.Path(name)
            if arguments.deck:
                return not check_deck(arguments.deck, arguments.deck, folder)
            if arguments.bad:
                right = check_damage(seed, folder) and right
            else:
                right = check_deck(f"seed {seed}", Maker(seed).write(folder), folder) and right
    return not right


if __name__ == "__main__":
    sys.exit(main())
