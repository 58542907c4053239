#!/usr/bin/env python3
"""Results of CalculiX as kovsim keeps and exports them, against a reader that shares no code with it.

    check-results.py files DECK RESULTS          all values, times and components
    check-results.py again DECK RESULTS          added twice, in two parts, and cut in a frame
    check-results.py random --seed 7 --count 30  the same as `files`, for random meshes and values
    check-results.py damage DECK RESULTS --seed 7 --count 300
    check-results.py vtk DECK RESULTS            exported files as VTK reads them
    check-results.py exodus DECK RESULTS         the same results from an Exodus II file
    check-results.py exodus --seed 7 --count 10  the same for random meshes and values

The command line is found in the environment's KOVSIM.
"""

import argparse
import json
import math
import pathlib
import random
import shutil
import sys
import tempfile

import frd_file
import random_results
import result_checks
import vtu_file
from result_checks import Check, add, check_document, export, kovsim, node_order, translate


def check_files(deck, results, folder, title):
    check = Check(title)
    document = folder / "model.ksd"
    if translate(check, deck, document) is not None and add(check, document, results) is not None:
        check_document(check, document, frd_file.read(results), node_order(deck), folder)
    return check.done()


def check_notices(deck, results, folder):
    """That a difference in the last bit, a missing row and swapped components are found."""
    check, order = Check(f"{results.name}, what is wrong is noticed"), node_order(deck)
    document = folder / "model.ksd"
    translate(check, deck, document)
    add(check, document, results)

    def spoilt(where, spoil):
        file, found = frd_file.read(results), Check(where)
        field = max(file.frames[-1].fields.values(), key=lambda field: len(field.components))
        spoil(field, field.values[order[-1]])
        result_checks.check_export(found, document, file, order, folder)
        result_checks.check_fields(found, document, file, order)
        check.that(found.wrong, where, "not noticed")

    def last_bit(_, row):
        row[-1] = math.nextafter(row[-1], math.inf)

    def no_row(field, _):
        del field.values[order[-1]]

    def swapped(field, _):
        field.components[0], field.components[-1] = field.components[-1], field.components[0]

    spoilt("last bit", last_bit)
    spoilt("row", no_row)
    spoilt("components", swapped)
    return check.done()


def check_vtk(deck, results, folder):
    """What VTK reads of the exported files is what vtu_file.py reads."""
    import vtk  # needs a package that the other checks do not need
    from vtk.util.numpy_support import vtk_to_numpy

    check = Check(f"{results.name} as VTK reads it")
    document = folder / "model.ksd"
    translate(check, deck, document)
    add(check, document, results)
    export(check, document, folder)
    for time, path, _ in vtu_file.read_pvd(folder / "series.pvd"):
        reader = vtk.vtkXMLUnstructuredGridReader()
        reader.SetFileName(path)
        reader.Update()
        grid, file = reader.GetOutput(), vtu_file.read(path)
        check.same("points", grid.GetNumberOfPoints(), file.points)
        check.same("cells", grid.GetNumberOfCells(), file.cells)
        check.same("time", grid.GetFieldData().GetArray("TimeValue").GetValue(0), time)
        for group, data in (("PointData", grid.GetPointData()), ("CellData", grid.GetCellData())):
            names = [data.GetArrayName(k) for k in range(data.GetNumberOfArrays())]
            check.same(group, sorted(names), sorted(file.groups[group]))
            for name in set(names) & set(file.groups[group]):
                array, own = data.GetArray(name), file.groups[group][name]
                check.same(name, array.GetNumberOfComponents(), own.width)
                check.same(name, [array.GetComponentName(k) for k in range(len(own.components))],
                           own.components)
                numbers = vtk_to_numpy(array).ravel().tolist()
                check.that(len(numbers) == len(own.numbers) and
                           all(map(result_checks.same_number, numbers, own.numbers)), name,
                           "other numbers")
    return check.done()


def check_random(seeds, folder):
    right = True
    for seed in seeds:
        random_results.make(seed, folder)
        right &= check_files(folder / "model.inp", folder / "model.frd", folder, f"seed {seed}")
    return right


# ---- the same from another file ----
def fields_of(check, document):
    """What is listed of each frame, by label."""
    out = check.runs("fields", "fields", document, "--frame", "all", "--json")
    return [{field["label"]: field for field in part["fields"]}
            for step in json.loads(out or '{"steps": []}')["steps"] for part in step["listed"]]


def check_exodus(deck, results, folder, title):
    """The frames by time. Exodus II knows no steps: the frames are those of one."""
    import exodus_file  # needs a package that the other checks do not need

    check = Check(title)
    file, order = frd_file.read(results), node_order(deck)
    frames = [frame for frame in file.frames if frame.kind in (frd_file.STATIC, frd_file.TIME)]
    if not frames:
        return True
    first, second, values = folder / "frd.ksd", folder / "exodus.ksd", folder / "values.e"
    labels = list(file.nodes)
    random.Random(len(labels)).shuffle(labels)
    exodus_file.write(values, file.nodes, file.elements, frames, labels)
    for document, source in ((first, results), (second, values)):
        translate(check, deck, document)
        add(check, document, source)
    places = [place for place, frame in enumerate(file.frames) if frame in frames]
    _, ours = export(check, first, folder)
    times, theirs = export(check, second, folder)
    check.same("times", times, [frame.value for frame in frames])
    if not check.same("frames", len(theirs), len(places)):
        return check.done()
    listed, listed_there = fields_of(check, first), fields_of(check, second)
    for number, place in enumerate(places):
        check.same(f"frame {number + 1}: fields", listed_there[number], listed[place])
        found, wanted = arrays_of([theirs[number]])[0], arrays_of([ours[place]])[0]
        check.same(f"frame {number + 1}: arrays", sorted(found), sorted(wanted))
        for name in found.keys() & wanted.keys():
            check.that(found[name] == wanted[name], f"frame {number + 1}", f"{name} differs")
    check_document(check, first, file, order, folder)
    check.runs("verify", "verify", second)
    return check.done()


def check_random_exodus(seeds, folder):
    right = True
    for seed in seeds:
        random_results.make(seed, folder)
        right &= check_exodus(folder / "model.inp", folder / "model.frd", folder,
                              f"Exodus II, seed {seed}")
    return right


# ---- parts of a file ----
def frame_ends(file):
    """The last line of each frame."""
    return [max(field.last_line for field in frame.fields.values()) for frame in file.frames]


def arrays_of(files):
    """The numbers of exported files, so that they can be compared."""
    return [{(group, name): (each.width, each.components,
                             [number if number == number else None for number in each.numbers])
             for group, arrays in file.groups.items() for name, each in arrays.items()}
            for file in files]


def check_again(deck, results, folder):
    check = Check(f"{results.name} again, in parts and cut")
    file, order = frd_file.read(results), node_order(deck)
    lines = results.read_text("ascii").split("\n")
    ends = frame_ends(file)

    document = folder / "model.ksd"
    translate(check, deck, document)
    add(check, document, results)
    whole = arrays_of(check_document(check, document, file, order, folder))
    add(check, document, results)
    check.that(arrays_of(check_document(check, document, file, order, folder)) == whole,
               "added twice", "another export")

    for frames in (1, 2, len(ends) - 1):
        part = folder / "part.frd"
        part.write_text("\n".join(lines[:ends[frames - 1]] + [" 9999", ""]), "ascii")
        translate(check, deck, document)
        add(check, document, part)
        check_document(check, document, frd_file.read(part), order, folder)
        add(check, document, results)
        check.that(arrays_of(check_document(check, document, file, order, folder)) == whole,
                   f"{frames} frames and then all", "another export")

    for frames, end in enumerate(ends):
        first = next(iter(file.frames[frames].fields.values())).line
        for cut in (first + 5, (first + end) // 2, end - 1):
            where = f"cut behind line {cut}"
            check_cut(check, deck, where, lines[:cut], frames, results, folder)
            add(check, folder / "cut.ksd", results)
            _, files = export(check, folder / "cut.ksd", folder)
            check.that(arrays_of(files) == whole, where + " and then all", "another export")
        where = f"cut in line {end - 1}"
        check_cut(check, deck, where, lines[:end - 2] + [lines[end - 2][:20]], frames, results,
                  folder)
    return check.done()


def check_cut(check, deck, where, lines, frames, results, folder):
    """The frames before the cut are there, and the line of the cut is told."""
    cut, document = folder / "cut.frd", folder / "cut.ksd"
    cut.write_text("\n".join(lines) + ("\n" if " behind " in where else ""), "ascii")
    translate(check, deck, document)
    status, _, error = kovsim("results", document, "--add", cut)
    check.same(where + ": status", status, 2)
    places = [f"kovsim: {cut}:{line}: " for line in (len(lines), len(lines) + 1)]
    check.that(any(error.startswith(place) for place in places), where, repr(error))
    check.runs(where + ", growing", "results", document, "--add", cut, "--growing")
    if frames:
        file = frd_file.read(results)
        file.frames = file.frames[:frames]
        check_document(check, document, file, node_order(deck), folder)
    check.runs(where + ", verify", "verify", document)


# ---- damage ----
def spoil(rng, raw):
    """One of the ways in which files go wrong."""
    lines = raw.split(b"\n")
    at = rng.randrange(len(lines))
    way = rng.randrange(8)
    if way == 0:
        for _ in range(rng.randint(1, 20)):
            at = rng.randrange(len(raw))
            raw = raw[:at] + bytes([rng.randrange(256)]) + raw[at + 1:]
        return raw
    if way == 1:
        at = rng.randrange(len(raw))
        return raw[:at] + bytes([raw[at] ^ (1 << rng.randrange(8))]) + raw[at + 1:]
    if way == 2:
        del lines[at:at + rng.randint(1, 3)]
    elif way == 3:
        lines[at:at] = lines[at:at + rng.randint(1, 3)]
    elif way == 4:
        return raw[:rng.randrange(len(raw))]
    elif way == 5:
        lines[at] = lines[at][:rng.randrange(len(lines[at]) + 1)]
    elif way == 6:
        other = rng.randrange(len(lines))
        lines[at], lines[other] = lines[other], lines[at]
    else:  # a count, a kind or a format
        heads = [k for k, line in enumerate(lines) if line[:3] in (b"   ", b"  1", b" -4", b" -5")]
        at = rng.choice(heads)
        digits = [k for k, byte in enumerate(lines[at]) if byte in b"0123456789"] or [0]
        place = rng.choice(digits)
        lines[at] = (lines[at][:place] + rng.choice([b"0", b"9", b"7", b"-", b" ", b"99999"]) +
                     lines[at][place + 1:])
    return b"\n".join(lines)


def check_damage(deck, results, seed, count, folder):
    check = Check(f"{results.name}, {count} damaged files, seed {seed}")
    rng, raw = random.Random(seed), results.read_bytes()
    whole, document, damaged = folder / "whole.ksd", folder / "model.ksd", folder / "damaged.frd"
    translate(check, deck, whole)
    refused = 0
    for number in range(count):
        damaged.write_bytes(spoil(rng, raw))
        shutil.rmtree(document, ignore_errors=True)
        shutil.copytree(whole, document)
        status, out, error = kovsim("results", document, "--add", damaged)
        where = f"file {number}"
        refused += status == 2
        good = check.that(status in (0, 2), where, f"status {status}: {out}{error}")
        good &= check.that(status == 0 or error.startswith("kovsim: "), where, repr(error))
        good &= check.runs(where + " verify", "verify", document) is not None
        good &= check.runs(where + " fields", "fields", document) is not None
        if not good:
            kept = pathlib.Path(tempfile.mkdtemp()) / "damaged.frd"
            shutil.copy(damaged, kept)
            print(f"{where} kept as {kept}")
    print(f"{refused} of {count} refused")
    check.that(0 < refused < count, "refused", str(refused))
    return check.done()


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("what", choices=["files", "again", "random", "exodus", "vtk",
                                         "damage"])
    parser.add_argument("deck", nargs="?", type=pathlib.Path)
    parser.add_argument("results", nargs="?", type=pathlib.Path)
    parser.add_argument("--seed", type=int)
    parser.add_argument("--count", type=int, default=30)
    options = parser.parse_args()
    seed = options.seed if options.seed is not None else random.randrange(2**31)
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        if options.what == "files":
            right = check_files(options.deck, options.results, folder, options.results.name)
            right &= check_notices(options.deck, options.results, folder)
        elif options.what == "again":
            right = check_again(options.deck, options.results, folder)
        elif options.what == "random":
            right = check_random(range(seed, seed + options.count), folder)
        elif options.what == "vtk":
            right = check_vtk(options.deck, options.results, folder)
        elif options.what == "exodus" and options.deck:
            right = check_exodus(options.deck, options.results, folder,
                                 f"Exodus II, {options.results.name}")
        elif options.what == "exodus":
            right = check_random_exodus(range(seed, seed + options.count), folder)
        else:
            right = check_damage(options.deck, options.results, seed, options.count, folder)
    sys.exit(0 if right else 1)


if __name__ == "__main__":
    main()
