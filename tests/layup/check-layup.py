#!/usr/bin/env python3
"""Layups as kovsim shows them, against a reader of the deck that shares no code with it.

    check-layup.py MAKE_WING --parts flat --seeds 1 2 3    translated, shown and compared
    check-layup.py MAKE_WING --parts flat --bad            decks that are wrong, and what is told
    check-layup.py --deck FILE.inp                         any deck that layup_deck.py can read

The command line is found in the environment's KOVSIM. Every section, layer and element is compared:
names, counts and numbers of the deck exactly, to the last bit; numbers that are computed of several
against exact fractions, within half a unit in the last place for each operation that rounds.
"""

import argparse
import json
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
from fractions import Fraction

import layup_deck

KOVSIM = os.environ.get("KOVSIM", "kovsim")
ROUNDING = Fraction(1, 2**53)
ELEMENTS = 40  # asked for one by one, of each deck


def kovsim(*words):
    done = subprocess.run([KOVSIM, *map(str, words)], capture_output=True, text=True, check=False)
    return done.returncode, done.stdout, done.stderr


class Check:
    """Compares, counts, and keeps the first differences."""

    def __init__(self, title):
        self.title, self.count, self.wrong = title, 0, []

    def that(self, right, where, text):
        self.count += 1
        if not right:
            self.wrong.append(f"{where}: {text}")

    def same(self, where, found, expected):
        self.that(found == expected and (found is None) == (expected is None), where,
                  f"{found!r}, expected {expected!r}")

    def number(self, where, found, exact, operations=0):
        """A double against a fraction, after so many operations that round."""
        if not isinstance(found, (int, float)) or isinstance(found, bool):
            return self.that(False, where, f"{found!r}, expected {float(exact)!r}")
        error = abs(Fraction(found) - exact)
        self.that(error <= operations * ROUNDING * abs(exact), where,
                  f"{found!r}, expected {float(exact)!r} within {operations} roundings")

    def numbers(self, where, found, exact, operations=0):
        if found is None or len(found) != len(exact):
            return self.that(False, where, f"{found!r}, expected {len(exact)} numbers")
        for k, (one, other) in enumerate(zip(found, exact)):
            self.number(f"{where}[{k}]", one, other, operations)

    def done(self):
        print(f"{self.title}: {self.count} comparisons, {len(self.wrong)} differ")
        for text in self.wrong[:25]:
            print("  " + text)
        return not self.wrong


# ---- layups ----
def operations(section, number):
    """Roundings behind a number of a layer: a sum over the layers, a quotient and a product."""
    return 0 if number.factor == 1 else len(section.layers) + 1


def check_number(check, where, section, shown, word, number, element):
    """One of thickness and angle of a layer, over all its elements or for one."""
    if number is None:
        check.same(where + word + "Variation", shown[word + "Variation"], "none")
        check.same(where + word, shown[word], None)
        check.same(where + word + "Range", shown[word + "Range"], None)
        return
    check.same(where + word + "Variation", shown[word + "Variation"], number.variation)
    if number.variation == "constant":
        check.number(where + word, shown[word], number.exact(0))
        check.same(where + word + "Range", shown[word + "Range"], None)
        check.same(where + word + "Values", shown.get(word + "Values"), None)
        return
    roundings = operations(section, number)
    if element is not None:
        check.number(where + word, shown[word], number.exact(element), roundings)
        return
    check.same(where + word, shown[word], None)
    values = [number.exact(ordinal) for ordinal in section.elements]
    check.numbers(where + word + "Range", shown[word + "Range"], [min(values), max(values)],
                  roundings)
    check.numbers(where + word + "Values", shown.get(word + "Values"), values, roundings)


def check_whole(check, where, section, shown, element):
    """The thickness of the stack."""
    def whole(ordinal):
        return sum(layer.thickness.exact(ordinal) for layer in section.layers)

    # Each layer's own roundings, and one for each of the sum.
    roundings = len(section.layers) - 1 + max(
        operations(section, layer.thickness) for layer in section.layers)
    varies = any(layer.thickness.variation == "distributed" for layer in section.layers)
    if element is not None or not varies:
        check.number(where + "thickness", shown["thickness"], whole(element), roundings)
    else:
        check.same(where + "thickness", shown["thickness"], None)
        values = [whole(ordinal) for ordinal in section.elements]
        check.numbers(where + "thicknessRange", shown["thicknessRange"],
                      [min(values), max(values)], roundings)


def check_layup(check, model, section, shown, element=None):
    where = section.name + (f" element {model.elements[element][:2]}: " if element is not None
                            else ": ")
    shell = section.kind == "shell"
    for key, expected in (
            ("section", section.name), ("kind", section.kind), ("composite", section.composite),
            ("layupName", section.layup), ("orientation", section.orientation),
            ("offset", section.offset if shell else None),
            ("integration", ("gauss" if section.gauss else "simpson") if shell else None),
            ("assignments", 1), ("elements", len(section.elements))):
        check.same(where + key, shown[key], expected)
    if element is not None:
        instance, label, kind = model.elements[element]
        check.same(where + "element", shown["element"],
                   {"instance": instance, "label": label, "type": kind})
    check.same(where + "layers", len(shown["layers"]), len(section.layers))
    for number, (layer, expected) in enumerate(zip(shown["layers"], section.layers), 1):
        at = f"{where}layer {number} "
        for key, value in (("layer", number), ("ply", expected.ply),
                           ("material", expected.material), ("orientation", expected.orientation),
                           ("sectionPoints", expected.points)):
            check.same(at + key, layer[key], value)
        check_number(check, at, section, layer, "thickness", expected.thickness, element)
        check_number(check, at, section, layer, "angle", expected.angle, element)
    check_whole(check, where, section, shown, element)
    numbers = [n for layer in section.layers for n in (layer.thickness, layer.angle) if n]
    if element is None and any(n.variation == "distributed" for n in numbers):
        labels = [(each["instance"], label) for each in shown["elementLabels"]
                  for label in each["labels"]]
        check.same(where + "elementLabels", labels,
                   [model.elements[ordinal][:2] for ordinal in section.elements])


def check_layups(check, model, document):
    status, out, error = kovsim("layup", document, "--json", "--values")
    check.same("layup: status", status, 0)
    if status != 0:
        return check.that(False, "layup", error)
    shown = {layup["section"]: layup for layup in json.loads(out)["layups"]}
    expected = {section.name: section for section in model.sections if section.layered}
    check.same("layups", sorted(shown), sorted(expected))
    for name in shown.keys() & expected.keys():
        check_layup(check, model, expected[name], shown[name])
    return None


def check_elements(check, model, document, rng):
    owner = {ordinal: section for section in model.sections for ordinal in section.elements}
    for ordinal in rng.sample(range(len(model.elements)), min(ELEMENTS, len(model.elements))):
        instance, label, _ = model.elements[ordinal]
        status, out, error = kovsim("layup", document, "--json", "--element", instance, label)
        section = owner.get(ordinal)
        if section is None or not section.layered:
            check.same(f"layup --element {instance} {label}: status", status, 2)
        elif status != 0:
            check.that(False, f"layup --element {instance} {label}", error)
        else:
            layups = json.loads(out)["layups"]
            check.same(f"layup --element {instance} {label}: layups", len(layups), 1)
            check_layup(check, model, section, layups[0], ordinal)


def check_section_names(check, model, document, rng):
    """Some layups are asked for by name."""
    layered = [section for section in model.sections if section.layered]
    for section in rng.sample(layered, min(6, len(layered))):
        name = rng.choice([section.name, section.typed])
        status, out, error = kovsim("layup", document, "--json", "--values", "--section", name)
        if status != 0:
            check.that(False, f"layup --section {name}", error)
        else:
            check_layup(check, model, section, json.loads(out)["layups"][0])


# ---- sections ----
def check_sections(check, model, document):
    status, out, error = kovsim("sections", document, "--json")
    check.same("sections: status", status, 0)
    if status not in (0, 1):
        return check.that(False, "sections", error)
    shown = json.loads(out)
    check.same("sections: complete", shown["complete"], True)
    check.same("sections", [each["section"] for each in shown["assignments"]],
               [section.name for section in model.sections])
    for each, section in zip(shown["assignments"], model.sections):
        where = f"sections, {section.name}: "
        for key, expected in (
                ("kind", section.kind), ("composite", section.composite),
                ("layers", len(section.layers)), ("layupName", section.layup),
                ("profile", section.profile), ("material", section.material),
                ("orientation", section.orientation), ("elements", len(section.elements)),
                ("governed", len(section.elements)), ("lost", 0)):
            check.same(where + key, each[key], expected)
    check.same("in several sections", shown["inSeveralSections"], [])
    covered = set().union(*(section.elements for section in model.sections))
    bare = {}
    for ordinal, (_, _, kind) in enumerate(model.elements):
        if ordinal not in covered:
            bare[kind] = bare.get(kind, 0) + 1
    check.same("without section", {each["type"]: (each["count"], each["needsSection"])
                                   for each in shown["withoutSection"]},
               {kind: (count, False) for kind, count in bare.items()})
    return None


def check_deck(title, deck, folder, seed):
    check = Check(title)
    model = layup_deck.read(deck)
    document = folder / "wing.ksd"
    shutil.rmtree(document, ignore_errors=True)
    status, _, error = kovsim("translate", deck, "-o", document)
    if status != 0:
        check.that(False, "translate", error)
        return check.done()
    rng = random.Random(seed)
    check_layups(check, model, document)
    check_elements(check, model, document, rng)
    check_section_names(check, model, document, rng)
    check_sections(check, model, document)
    status, out, error = kovsim("verify", document)
    check.that(status == 0, "verify", out + error)
    return check.done()


# ---- decks that are wrong ----
BAD = ["zero-thickness", "negative-thickness", "infinite-thickness", "unknown-material",
       "unknown-orientation", "unknown-distribution", "unknown-set", "no-layers", "two-sections",
       "no-value", "two-values", "zero-value", "material-twice"]


def make_bad(make_wing, parts, spoil, deck):
    """Writes the deck; the line that is wrong and the element, as far as the generator tells."""
    told = subprocess.run([sys.executable, make_wing, "--parts", parts, "--spoil", spoil, "-o",
                           deck], check=True, capture_output=True, text=True).stdout
    place, _, _ = told.partition(": ")
    line = place[len(str(deck)) + 1:]
    return line, told.rsplit(", element ", 1)[1].strip() if ", element " in told else ""


def check_bad(make_wing, parts, folder):
    check = Check(f"bad decks, {parts}")
    document = folder / "bad.ksd"
    for spoil in BAD:
        deck = folder / f"{spoil}.inp"
        line, element = make_bad(make_wing, parts, spoil, deck)
        status, _, error = kovsim("translate", deck, "-o", document)
        print(f"  {error.strip()}".replace(str(folder) + os.sep, ""))
        check.same(spoil + ": status", status, 2)
        check.that(line != "" and error.startswith(f"kovsim: {deck}:{line}: "), spoil,
                   f"{error!r}, expected line {line}")
        check.that(element in error, spoil, f"{error!r}, expected element {element}")
        check.that(not os.path.exists(document), spoil, "left a document")
    # Elements without a section are told by translate and by sections, and are no error.
    deck = folder / "no-section.inp"
    _, element = make_bad(make_wing, parts, "no-section", deck)
    status, out, error = kovsim("translate", deck, "-o", document)
    check.same("no-section: status", status, 0)
    lines = deck.read_text().splitlines()
    block = next(k for k, line in enumerate(lines, 1)
                 if line.replace(",", ", ").split()[:1] == ["*ELEMENT,"] and "TYPE=S3" in line)
    notes = [note for note in (out + error).splitlines() if f"{deck}:{block}" in note]
    print("\n".join(notes).replace(str(folder) + os.sep, ""))
    check.that(len(notes) > 0 and element in notes[0], "no-section",
               f"{out + error!r}, expected a note with line {block} and element {element}")
    status, out, _ = kovsim("sections", document, "--json")
    check.same("no-section, sections: status", status, 1)
    found = {each["type"]: each["needsSection"] for each in json.loads(out)["withoutSection"]}
    check.same("no-section, sections", found, {"S3": True, "MASS": False})
    return check.done()


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("make_wing", nargs="?", help="the generator of decks")
    parser.add_argument("--parts", default="flat")
    parser.add_argument("--seeds", type=int, nargs="+", default=[1])
    parser.add_argument("--bad", action="store_true")
    parser.add_argument("--deck", help="compare this deck instead")
    options = parser.parse_args()
    if options.deck is None and options.make_wing is None:
        parser.error("expected the generator or a deck")
    if shutil.which(KOVSIM) is None:
        parser.error(f"no {KOVSIM}; expected the command line in the environment's KOVSIM")
    scratch = os.environ.get("KOV_TEST_TMP", tempfile.gettempdir())
    with tempfile.TemporaryDirectory(prefix="layup-", dir=scratch) as name:
        folder = pathlib.Path(name)
        if options.deck:
            return 0 if check_deck(options.deck, options.deck, folder, 1) else 1
        if options.bad:
            return 0 if check_bad(options.make_wing, options.parts, folder) else 1
        right = True
        for seed in options.seeds:
            deck = folder / "wing.inp"
            subprocess.run([sys.executable, options.make_wing, "--parts", options.parts,
                            "--seed", str(seed), "-o", deck], check=True)
            assert deck.stat().st_size < 400_000, "the deck is to stay small"
            right = check_deck(f"{options.parts}, seed {seed}", deck, folder, seed) and right
        return 0 if right else 1


if __name__ == "__main__":
    sys.exit(main())
