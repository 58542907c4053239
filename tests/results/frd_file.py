"""Reads a result file of CalculiX, for comparison: it shares no code with kovsim.

`read(path)` gives a File. Lines have fixed columns, after the first of which stands what the line
is:

    1C, 1U              header of the model, and texts
    2C   count format   nodes: -1 label x y z
    3C   count format   elements: -1 label type group material; -2 nodes
    1PNAME numbers      parameters of the values that follow: 1PSTEP dataset increment step
    100C name value count text kind number analysis format
        -4 name components kind-of-results
        -5 component menu kind row column exists
        -1 label values       at most six of 12 columns each, further ones in lines -2
    -3                  the end of such a block
    9999                the end

`format` is 0 for labels of 5 columns, 1 for labels of 10. Values are kept as the doubles nearest to
their decimal text.
"""

import dataclasses
import re

STATIC, TIME, FREQUENCY, LOAD_STEP, BUCKLING = 0, 1, 2, 3, 4
LABEL_WIDTH = {0: 5, 1: 10}
# A program in C writes a negative number with an exponent of three digits into 13 columns, one in
# FORTRAN drops the letter of the exponent. A digit before a point begins the next number.
NUMBER = re.compile(
    r" *([+-]?(?:\d+\.\d*)(?:[Ee][+-]\d{3}(?!\.)|[Ee][+-]\d{2}|[+-]\d{3}(?!\.))?"
    r"|[+-]?(?:nan|inf)(?:inity)?)", re.IGNORECASE)
EXPONENT = re.compile(r"(\d)([+-]\d{3})$")


@dataclasses.dataclass
class Field:
    name: str
    components: list  # names of those that have values
    values: dict = dataclasses.field(default_factory=dict)  # by label: a list of numbers
    line: int = 0
    last_line: int = 0


@dataclasses.dataclass
class Frame:
    """All fields of one dataset number: one increment, or one mode."""
    step: int
    increment: int
    mode: int  # 0 if none
    kind: int
    value: float
    value_text: str
    dataset: int
    text: str
    fields: dict = dataclasses.field(default_factory=dict)


@dataclasses.dataclass
class File:
    nodes: dict
    elements: dict
    frames: list
    complete: bool = False


def number_of(text):
    return float(EXPONENT.sub(r"\1E\2", text.strip()))


def numbers_of(text):
    """The numbers of a line behind its label. They are told by their forms, not by columns: one that
    is too wide for its columns moves the others."""
    text, found, at = text.rstrip(), [], 0
    while at < len(text):
        match = NUMBER.match(text, at)
        if not match:
            raise ValueError(f"no numbers: {text!r}")
        found.append(number_of(match.group(1)))
        at = match.end()
    return found


class Lines:
    def __init__(self, path):
        with open(path, encoding="ascii") as file:
            self.lines = file.read().split("\n")
        self.at = 0

    def next(self):
        """The next line, or None behind the last one."""
        if self.at >= len(self.lines) or (self.at == len(self.lines) - 1 and not self.lines[-1]):
            return None
        self.at += 1
        return self.lines[self.at - 1]


def read_nodes(lines, head, nodes):
    width = LABEL_WIDTH[int(head[73:75])]
    while not (line := lines.next()).startswith(" -3"):
        assert line.startswith(" -1"), line
        nodes[int(line[3:3 + width])] = numbers_of(line[3 + width:])


def read_elements(lines, head, elements):
    width = LABEL_WIDTH[int(head[73:75])]
    at_hand = None
    while not (line := lines.next()).startswith(" -3"):
        if line.startswith(" -1"):
            at_hand = elements.setdefault(int(line[3:3 + width]), [])
        else:
            at_hand += [int(line[at:at + width]) for at in range(3, len(line.rstrip()), width)]


def read_values(lines, width, field):
    row = None
    while not (line := lines.next()).startswith(" -3"):
        if line.startswith(" -1"):
            row = field.values.setdefault(int(line[3:3 + width]), [])
            assert not row, f"line {lines.at}: a label twice"
        else:
            assert line.startswith(" -2"), f"line {lines.at}: {line!r}"
        row += numbers_of(line[3 + width:])
    field.last_line = lines.at


def read_field(lines, head, parameters, frames):
    """One field; it belongs to the frame before, or to a new one."""
    numbers = [int(each) for each in parameters["STEP"].split()]
    dataset = int(head[58:63])
    value = number_of(head[12:24])
    if not frames or frames[-1].dataset != dataset:
        mode = int(parameters.get("MODE", "0"))
        frames.append(Frame(numbers[2], numbers[1], mode, int(head[56:58]), value,
                            head[12:24].strip(), dataset, head[36:56].strip()))
    frame = frames[-1]
    assert frame.value == value and frame.step == numbers[2], f"line {lines.at}"

    line = lines.next()
    assert line.startswith(" -4"), f"line {lines.at}: {line!r}"
    field = Field(line[5:13].strip(), [], line=lines.at)
    count = int(line[13:18])
    for _ in range(count):
        line = lines.next()
        assert line.startswith(" -5"), f"line {lines.at}: {line!r}"
        exists = line[33:38].strip()
        if exists in ("", "0"):  # those that exist are computed from the others
            field.components.append(line[5:13].strip())
    read_values(lines, LABEL_WIDTH[int(head[73:75])], field)
    for label, row in field.values.items():
        assert len(row) == len(field.components), f"{field.name} {label}: {row}"
    assert field.name not in frame.fields, field.name
    frame.fields[field.name] = field


def read(path):
    lines = Lines(path)
    file = File({}, {}, [])
    parameters = {}
    while (line := lines.next()) is not None:
        if line.startswith(" 9999"):
            file.complete = True
            break
        key = line[:5].strip() + line[5:6]
        if key in ("1C", "1U"):
            pass
        elif key == "1P":
            word = line[6:].split(None, 1)
            parameters[word[0]] = word[1].strip() if len(word) > 1 else ""
        elif key == "2C":
            read_nodes(lines, line, file.nodes)
        elif key == "3C":
            read_elements(lines, line, file.elements)
        elif key == "100C":
            read_field(lines, line, parameters, file.frames)
            parameters = {}
        else:
            raise ValueError(f"line {lines.at}: {line!r}")
    return file
