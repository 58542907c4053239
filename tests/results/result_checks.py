"""What kovsim shows of results, against the solver's file as frd_file.py reads it."""

import json
import math
import os
import shutil
import subprocess
from decimal import Decimal

import frd_file
import vtu_file

KOVSIM = os.environ.get("KOVSIM", "kovsim")

VECTOR = ("1", "2", "3")
TENSOR = {"XX": "11", "YY": "22", "ZZ": "33", "XY": "12", "YZ": "23", "ZX": "13"}


def vector(label, letter):
    return label, {f"{letter}{k}": label + k for k in VECTOR}


def tensor(label, letter):
    return label, {letter + theirs: label + ours for theirs, ours in TENSOR.items()}


# What the solver's names stand for: the label of the variable, and of each component.
NAMES = {
    "DISP": vector("U", "D"),
    "VELO": vector("V", "V"),
    "FORC": vector("RF", "F"),
    "FLUX": vector("HFL", "F"),
    "STRESS": tensor("S", "S"),
    "TOSTRAIN": tensor("E", "E"),
    "NDTEMP": ("NT", {"T": "NT"}),
    "PE": ("PEEQ", {"PE": "PEEQ"}),
    "ENER": ("SENER", {"ENER": "SENER"}),
    "RFL": ("RFL", {"RFL": "RFL"}),
}


def kovsim(*words):
    done = subprocess.run([KOVSIM, *map(str, words)], capture_output=True, check=False)
    # What a damaged file holds may be told as it is there.
    return (done.returncode, done.stdout.decode(errors="backslashreplace"),
            done.stderr.decode(errors="backslashreplace"))


class Check:
    """Compares, counts, and keeps the first differences."""

    def __init__(self, title):
        self.title, self.count, self.wrong = title, 0, []

    def that(self, right, where, text=""):
        self.count += 1
        if not right:
            self.wrong.append(f"{where}: {text}")
        return right

    def same(self, where, found, expected):
        return self.that(found == expected and (found is None) == (expected is None), where,
                         f"{found!r}, expected {expected!r}")

    def number(self, where, found, expected):
        """The same to the last bit; or both are not-a-number."""
        if not isinstance(found, (int, float)):
            return self.that(False, where, f"{found!r}, expected {expected!r}")
        return self.that(same_number(found, expected), where, f"{found!r}, expected {expected!r}")

    def runs(self, where, *words):
        """What the command prints; None, and a difference, where it fails."""
        status, out, error = kovsim(*words)
        return out if self.that(status == 0, where, f"status {status}: {out}{error}") else None

    def done(self):
        print(f"{self.title}: {self.count} comparisons, {len(self.wrong)} differ")
        for text in self.wrong[:25]:
            print("  " + text)
        return not self.wrong


def same_number(a, b):
    return (a == b and math.copysign(1, a) == math.copysign(1, b)) or (a != a and b != b)


# ---- what is expected ----
def node_order(deck):
    """Labels of the nodes in the order of the deck, which is that of the document."""
    labels, inside = [], False
    with open(deck, encoding="ascii") as file:
        for line in file:
            if line.startswith("*"):
                inside = line.upper().startswith("*NODE") and "FILE" not in line.upper()
            elif inside:
                labels.append(int(line.split(",")[0]))
    return labels


class ExpectedFrame:
    """Where a frame of the file is in the document, and under which numbers."""

    def __init__(self, step, increment, value, total, frame):
        self.step, self.increment, self.value, self.total = step, increment, value, total
        self.frame = frame
        self.is_timed = frame.kind not in (frd_file.FREQUENCY, frd_file.BUCKLING)


def expected_frames(file):
    """The file has total times only, and gives the steps of buckling the number 1: such a step
    begins with the state that it loads, at the factor 0, and follows the step before it."""
    frames, begin, end, step, mode = [], Decimal(0), Decimal(0), 0, 0
    for frame in file.frames:
        number, increment, value = frame.step, frame.increment, frame.value
        if frame.kind == frd_file.BUCKLING:
            mode = 0 if frame.value == 0.0 else mode + 1
            number = step if mode > 0 else step + 1
            increment = mode
        elif frame.kind == frd_file.FREQUENCY:
            increment = frame.mode
        if number != step:
            step, begin = number, end
        if frame.kind in (frd_file.STATIC, frd_file.TIME):
            end = Decimal(frame.value_text)
            value = float(end - begin)
        frames.append(ExpectedFrame(f"Step-{step}", increment, value, float(end), frame))
    return frames


def expected_times(frames):
    """Total times, or the frequencies or load factors of one step; of steps of several sorts, and
    where times do not ascend, the frames are counted. A step that begins at the time at which the
    one before it ended has the next larger number."""
    counted = [float(number) for number in range(1, len(frames) + 1)]
    if all(frame.is_timed for frame in frames):
        own = [frame.total for frame in frames]
    elif len({frame.step for frame in frames}) == 1:
        own = [frame.value for frame in frames]
    else:
        return counted
    times = []
    for place, time in enumerate(own):
        if place > 0:
            next_step = frames[place - 1].step != frames[place].step
            if time < own[place - 1] or (time == own[place - 1] and not next_step):
                return counted
            time = max(time, math.nextafter(times[-1], math.inf))
        times.append(time)
    return times


def expected_arrays(frame):
    """By label of a variable: the field of the file, and the places of its components by label. What
    nobody knows has its own name, and each of its components is a variable."""
    arrays = {}
    for field in frame.fields.values():
        if field.name in NAMES:
            label, components = NAMES[field.name]
            arrays[label] = field, {components[name]: place
                                    for place, name in enumerate(field.components)}
        elif len(field.components) == 1:
            arrays[field.name] = field, {field.name: 0}
        else:
            for place, name in enumerate(field.components):
                label = f"{field.name}-{name}"
                arrays[label] = field, {label: place}
    return arrays


# ---- export ----
def check_array(check, where, field, columns, found, order):
    """All values of one field at all nodes."""
    if found.width == 1:
        places = list(columns.values())
    elif check.same(where + " components", sorted(found.components), sorted(columns)):
        places = [columns[name] for name in found.components]
    else:
        return
    if not check.same(where + " width", found.width, len(places)):
        return
    nothing = [math.nan] * found.width
    for index, label in enumerate(order):
        row = field.values.get(label)
        expected = nothing if row is None else [row[place] for place in places]
        for got, value in zip(found.row(index), expected):
            check.number(f"{where} node {label}", got, value)


def check_frame(check, where, vtu, expected, time, order):
    check.same(where + " step", vtu.texts("StepName"), [expected.step])
    for key, number in (("Increment", expected.increment), ("FrameValue", expected.value),
                        ("TimeValue", time)):
        check.number(f"{where} {key}", vtu.number(key), float(number))
    points = vtu.groups["PointData"]
    check.same(where + " labels", points["NodeLabel"].numbers.tolist(), order)
    arrays = {label: each for label, each in points.items() if each.type == "Float64"}
    wanted = expected_arrays(expected.frame)
    check.same(where + " arrays", sorted(arrays), sorted(wanted))
    check.same(where + " cell arrays",
               [label for label, each in vtu.groups["CellData"].items() if each.type == "Float64"],
               [])
    for label in arrays.keys() & wanted.keys():
        field, columns = wanted[label]
        check_array(check, f"{where} {label}", field, columns, arrays[label], order)


def export(check, document, folder, *options):
    """The times of a series, and its files."""
    series = folder / "series.pvd"
    series.unlink(missing_ok=True)
    shutil.rmtree(folder / "series", ignore_errors=True)
    if check.runs("export", "export", document, "-o", series, *options) is None:
        return [], []
    entries = vtu_file.read_pvd(series)
    return [time for time, _, _ in entries], [vtu_file.read(path) for _, path, _ in entries]


def check_export(check, document, file, order, folder):
    """The series, all its values; gives its files. The times also step by step."""
    times, files = export(check, document, folder)
    frames = expected_frames(file)
    if not check.same("frames exported", len(files), len(frames)):
        return files
    check.same("times", times, expected_times(frames))
    for number, (time, vtu, expected) in enumerate(zip(times, files, frames), 1):
        check_frame(check, f"{expected.step} frame {number}", vtu, expected, time, order)
    for step in sorted({frame.step for frame in frames}):
        times, _ = export(check, document, folder, "--step", step, "--no-fields", "--no-sets")
        check.same(f"times of {step}", times,
                   expected_times([frame for frame in frames if frame.step == step]))
    return files


# ---- fields ----
def check_extremes(check, where, component, numbers, order):
    """The least and the greatest of `numbers`, which are pairs of a label and a number."""
    check.same(where + " nan", component["nan"], sum(1 for _, number in numbers if number != number))
    numbers = [each for each in numbers if each[1] == each[1]]
    rank = {label: ordinal for ordinal, label in enumerate(order)}
    for key, sign in (("minimum", 1), ("maximum", -1)):
        shown = component[key]
        if not numbers:
            check.same(f"{where} {key}", shown, None)
            continue
        label, number = min(numbers, key=lambda each: (sign * each[1], rank[each[0]]))
        if check.that(shown is not None, f"{where} {key}", "none"):
            check.that(shown["value"] == number, f"{where} {key}",
                       f"{shown['value']!r}, expected {number!r}")
            check.same(f"{where} {key} at", (shown["instance"], shown["label"], shown["ordinal"]),
                       ("", label, rank[label]))


def check_listed(check, where, listed, field, columns, order):
    check.same(where + " rows", listed["rows"], len(field.values))
    shown = {each["label"]: each for each in listed["components"] if not each["derived"]}
    check.same(where + " components", sorted(shown), sorted(columns))
    for label in shown.keys() & columns.keys():
        numbers = [(node, row[columns[label]]) for node, row in field.values.items()]
        check_extremes(check, f"{where} {label}", shown[label], numbers, order)


def check_fields(check, document, file, order):
    out = check.runs("fields", "fields", document, "--frame", "all", "--json")
    if out is None:
        return
    listed = [(step["name"], part) for step in json.loads(out)["steps"] for part in step["listed"]]
    frames = expected_frames(file)
    if not check.same("frames listed", len(listed), len(frames)):
        return
    for (name, part), expected in zip(listed, frames):
        where = f"{expected.step} increment {expected.increment}"
        check.same(where + " step", name, expected.step)
        check.same(where + " increment", part["frame"]["increment"], expected.increment)
        check.number(where + " value", part["frame"]["value"], expected.value)
        check.number(where + " total time", part["frame"]["totalTime"], expected.total)
        fields = {each["label"]: each for each in part["fields"]}
        wanted = expected_arrays(expected.frame)
        check.same(where + " fields", sorted(fields), sorted(wanted))
        for label in fields.keys() & wanted.keys():
            field, columns = wanted[label]
            check_listed(check, f"{where} {label}", fields[label], field, columns, order)


# ---- documents ----
def translate(check, deck, document):
    shutil.rmtree(document, ignore_errors=True)
    return check.runs("translate", "translate", deck, "-o", document)


def add(check, document, results):
    return check.runs("results", "results", document, "--add", results)


def check_document(check, document, file, order, folder):
    """Everything about the results of a document; gives what was exported."""
    found = check_export(check, document, file, order, folder)
    check_fields(check, document, file, order)
    check.runs("verify", "verify", document)
    return found
