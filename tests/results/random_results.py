"""Writes a random mesh as a keyword deck, and random values on it as a result file of CalculiX.

`make(seed, folder)` writes model.inp and model.frd, the same for a seed, and gives what was drawn
as a frd_file.File: the numbers are those of the decimal texts that were written.
"""

import dataclasses
import random

import frd_file

ELEMENTS = {"C3D4": 4, "C3D6": 6, "C3D8": 8, "C3D10": 10, "C3D15": 15, "C3D20": 20, "S3": 3,
            "S4": 4, "S8R": 8, "B31": 2}
# What the solver writes under these names: components, and the place of each in a matrix.
KNOWN = {
    "DISP": ("D", 3), "FORC": ("F", 3), "FLUX": ("F", 3), "VELO": ("V", 3),
    "STRESS": ("S", 6), "TOSTRAIN": ("E", 6),
    "NDTEMP": ("T", 1), "PE": ("PE", 1), "ENER": ("ENER", 1), "RFL": ("RFL", 1),
}
TENSOR = [("XX", 1, 1), ("YY", 2, 2), ("ZZ", 3, 3), ("XY", 1, 2), ("YZ", 2, 3), ("ZX", 3, 1)]


@dataclasses.dataclass
class Style:
    """How a writer of the format writes."""
    long_labels: bool
    fortran: bool  # exponents of three digits without the letter
    extremes: bool
    nans: bool
    parameters: bool  # further parameter lines
    line_end: str

    @staticmethod
    def draw(rng):
        return Style(rng.random() < 0.6, rng.random() < 0.4, rng.random() < 0.5,
                     rng.random() < 0.3, rng.random() < 0.5, rng.choice(["\n"] * 5 + ["\r\n"]))

    def label(self, label):
        return f"{label:10d}" if self.long_labels else f"{label:5d}"

    def value(self, rng):
        """A number as text of 12 columns."""
        draw = rng.random()
        if draw < 0.1:
            number = 0.0 if draw < 0.07 else -0.0
        elif draw < 0.2:
            number = float(rng.randint(-1000, 1000))
        elif draw < 0.6 or not self.extremes:
            number = rng.uniform(-1, 1) * 10.0 ** rng.randint(-9, 9)
        elif draw < 0.95:
            number = rng.uniform(-1, 1) * 10.0 ** rng.randint(-90, 90)
        else:
            number = rng.uniform(-1, 1) * 10.0 ** rng.choice([-310, -300, -150, 150, 299])
        if self.nans and rng.random() < 0.02:
            return f"{rng.choice(['NaN', 'NAN', '-NAN', 'nan']):>12}"
        text = f"{number:.5E}"
        if len(text) > 12 and not self.fortran:
            text = text.lstrip("-")  # the only ones that have no room
        mantissa, exponent = text.split("E")
        if len(exponent) > 3 and self.fortran:
            text = mantissa + exponent
        return f"{text:>12}"


def mesh(rng, style):
    count = rng.randint(8, 200)
    largest = rng.choice([count + 3, 20 * count, 2147483647 if style.long_labels else 99999])
    labels = rng.sample(range(1, max(largest, count) + 1), count)
    nodes = {label: [round(rng.uniform(-50, 50), 4) for _ in range(3)] for label in labels}
    elements, kinds = {}, rng.sample(sorted(ELEMENTS), rng.randint(1, 4))
    names = rng.sample(range(1, 90000), rng.randint(1, 40))
    for name in names:
        kind = rng.choice([kind for kind in kinds if ELEMENTS[kind] <= count] or ["B31"])
        elements[name] = (kind, rng.sample(labels, ELEMENTS[kind]))
    return nodes, elements


def deck(rng, nodes, elements):
    lines = ["*HEADING", "random", "*NODE, NSET=ALL"]
    lines += [f"{label}, " + ", ".join(map(repr, at)) for label, at in nodes.items()]
    for kind in sorted({kind for kind, _ in elements.values()}):
        lines.append(f"*ELEMENT, TYPE={kind}, ELSET=E_{kind}")
        for label, (own, corners) in elements.items():
            if own == kind:
                text = [str(label)] + [str(corner) for corner in corners]
                for first in range(0, len(text), 12):
                    more = "," if first + 12 < len(text) else ""
                    lines.append(", ".join(text[first:first + 12]) + more)
    return "\n".join(lines) + "\n"


def field_head(rng, name):
    """Components of a field as lines -5: name, kind, row, column, exists."""
    if name in KNOWN:
        letters, count = KNOWN[name]
        if count == 1:
            return [(letters, 1, 0, 0, 0)]
        if count == 3:
            whole = [(f"{letters}{k}", 2, k, 0, 0) for k in (1, 2, 3)]
            return whole + ([("ALL", 2, 0, 0, 1)] if rng.random() < 0.8 else [])
        parts = [(letters + xy, 4, row, column, 0) for xy, row, column in TENSOR]
        if rng.random() < 0.2:
            rng.shuffle(parts)
        return parts
    count = rng.choice([1, 1, 2, 3, 4, 5, 6, 7, 9, 12, 13, 19])
    return [(f"{rng.choice('ABXYZ')}{k}", 1, 0, 0, 0) for k in range(1, count + 1)]


def number_text(value, wide):
    return f"{value:12.5E}" if not wide else f"{value:12.{11 - len(str(int(value)))}f}"


def make(seed, folder):
    rng = random.Random(seed)
    style = Style.draw(rng)
    nodes, elements = mesh(rng, style)
    (folder / "model.inp").write_text(deck(rng, nodes, elements), "ascii")
    file = frd_file.File(
        {label: [float(f"{x:.5E}") for x in at] for label, at in nodes.items()},
        {label: list(corners) for label, (_, corners) in elements.items()}, [], True)
    lines = ["    1C", "    1UUSER", "    1UPGM               random"]
    form = 1 if style.long_labels else 0
    lines.append("    2C" + f"{len(nodes):30d}" + f"{form:38d}")
    for label, at in sorted(nodes.items()):
        lines.append(" -1" + style.label(label) + "".join(f"{x:12.5E}" for x in at))
    lines.append(" -3")
    lines.append("    3C" + f"{len(elements):30d}" + f"{form:38d}")
    for label, (_, corners) in elements.items():
        lines.append(" -1" + style.label(label) + "    1    0    1")
        per_line = 10 if style.long_labels else 15
        for first in range(0, len(corners), per_line):
            lines.append(" -2" + "".join(map(style.label, corners[first:first + per_line])))
    lines.append(" -3")
    frames(rng, style, list(nodes), file, lines)
    lines.append(" 9999")
    (folder / "model.frd").write_bytes((style.line_end.join(lines) + style.line_end).encode())
    return file


def frames(rng, style, labels, file, lines):
    dataset, counter, total = 0, 0, 0.0
    for step in range(1, rng.randint(1, 4) + 1):
        kind = rng.choice([frd_file.STATIC, frd_file.STATIC, frd_file.TIME, frd_file.FREQUENCY])
        increment, value = 0, 0.0
        # Few variables, many frames, or the other way round; the step has the same ones throughout.
        pool = list(KNOWN) + ["USER1", "WHAT-2", "Q", "LONGNAME"]
        names = rng.sample(pool, rng.randint(1, 6))
        heads = {name: field_head(rng, name) for name in names}
        for _ in range(rng.randint(1, 4)):
            dataset += 1
            increment += rng.choice([1, 1, 1, 3])
            if kind == frd_file.FREQUENCY:
                value += rng.uniform(0.5, 900)
                shown, mode = value, increment
            else:
                total += rng.choice([0.25, 1.0, rng.uniform(1e-4, 3)])
                shown, mode = total, 0
            text = number_text(shown, shown >= 1 and rng.random() < 0.7)
            if kind != frd_file.FREQUENCY:
                total = float(text)
            frame = frd_file.Frame(step, 1 if mode else increment, mode, kind, float(text),
                                   text.strip(), dataset, "")
            for name in names:
                if rng.random() < 0.1 and len(names) > 1 and frame.fields:
                    continue  # not in this frame
                counter += 1
                field(rng, style, labels, frame, name, heads[name], counter, text, lines)
            file.frames.append(frame)


def field(rng, style, labels, frame, name, head, counter, value, lines):
    lines.append(f"    1PSTEP{counter:26d}{frame.increment:12d}{frame.step:12d}          ")
    if frame.mode:
        if style.parameters:
            lines.append("    1PGM                1.000000E+00")
            lines.append("    1PGK                1.250000E+05")
        lines.append("    1PHID                         -1")
        lines.append(f"    1PMODE{frame.mode:26d}")
    elif style.parameters:
        lines.append("    1PHOWEVER                     12")
    rows = list(labels)
    rng.shuffle(rows)
    share = rng.random()
    if share < 0.5:
        rows = rows[:max(1, int(len(rows) * rng.random()))]
    if share < 0.75:
        rows.sort()
    analysis = "MODAL" if frame.mode else ""
    lines.append(f"  100CL  {100 + frame.dataset}{value}{len(rows):12d}{'':20}{frame.kind:2d}"
                 f"{frame.dataset:5d}{analysis:10}{1 if style.long_labels else 0:2d}")
    lines.append(f" -4  {name:8}{len(head):5d}    1")
    for component, kind, row, column, exists in head:
        lines.append(f" -5  {component:8}    1{kind:5d}{row:5d}{column:5d}" +
                     (f"{exists:5d}{component:8}" if exists else ""))
    made = frd_file.Field(name, [each[0] for each in head if not each[4]])
    for label in rows:
        texts = [style.value(rng) for _ in made.components]
        made.values[label] = [frd_file.number_of(text) for text in texts]
        lines.append(" -1" + style.label(label) + "".join(texts[:6]))
        for first in range(6, len(texts), 6):
            lines.append(" -2" + " " * len(style.label(0)) + "".join(texts[first:first + 6]))
    lines.append(" -3")
    frame.fields[name] = made
