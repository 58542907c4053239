"""Reads the layups of a keyword deck, for comparison: it shares no code with kovsim.

`read(path)` gives a Model: its sections in the order of the deck, each with its elements and its
layers from the bottom to the top. Numbers of the deck are kept as exact fractions beside doubles,
so that what is computed of them can be compared with a known error. Errors of decks are not looked
for: the decks that it reads are right.
"""

import dataclasses
import fractions
import os
import re
import typing

NUMBER = re.compile(r"[+-]?(\d+\.?\d*|\.\d+)([eEdD][+-]?\d+)?$")


# ---- lines ----
def fields_of(text):
    """The fields of a data line, as typed; commas in double quotes part nothing."""
    fields, quoted = [""], False
    for c in text:
        if c == '"':
            quoted = not quoted
        if c == "," and not quoted:
            fields.append("")
        else:
            fields[-1] += c
    fields = [field.strip() for field in fields]
    while fields and fields[-1] == "":
        fields.pop()
    return fields


def names_of(text):
    """The parts of a scoped name: `I."a.b"` gives I and a.b."""
    parts, quoted = [""], False
    for c in text:
        if c == '"':
            quoted = not quoted
        elif c == "." and not quoted:
            parts.append("")
        elif quoted or not c.isspace():
            parts[-1] += c
    return parts


def name_of(text):
    """A name without scope."""
    return "".join(re.sub(r"\s", "", piece) if k % 2 == 0 else piece
                   for k, piece in enumerate(text.split('"')))


def double_of(text):
    return float(text.replace("D", "E").replace("d", "e"))


@dataclasses.dataclass
class Block:
    keyword: str
    parameters: dict
    line: int
    data: list = dataclasses.field(default_factory=list)

    def name(self, key):
        return name_of(self.parameters[key]) if key in self.parameters else None


def blocks_of(path):
    """The keywords of a deck with their data lines; included files stand in their place."""
    blocks, pending = [], None
    with open(path, encoding="utf-8") as file:
        lines = [line.rstrip("\n") for line in file]
    for number, line in enumerate(lines, 1):
        text = line.strip()
        if not text or text.startswith("**"):
            continue
        if pending is not None:
            pending[1] += text
        elif text.startswith("*"):
            pending = [number, text]
        else:
            blocks[-1].data.append(text)
            continue
        if pending[1].endswith(","):
            continue
        words = fields_of(pending[1])
        block = Block(re.sub(r"\s", "", words[0][1:]).upper(), {}, pending[0])
        for word in words[1:]:
            key, _, value = word.partition("=")
            block.parameters[re.sub(r"\s", "", key).upper()] = value.strip()
        pending = None
        if block.keyword == "INCLUDE":
            blocks += blocks_of(os.path.join(os.path.dirname(path), block.name("INPUT")))
        else:
            blocks.append(block)
    return blocks


# ---- the model ----
@dataclasses.dataclass
class Distribution:
    default: typing.Optional[float]
    lines: list            # (place in the deck's words, value)
    values: dict = None    # by ordinal

    def value(self, ordinal):
        found = self.values.get(ordinal, self.default)
        if found is None:
            raise ValueError(f"element {ordinal} has no value")
        return found


@dataclasses.dataclass
class Number:
    """A number of a layer: a constant, or a factor times a distribution."""

    constant: typing.Optional[float] = None
    field: typing.Optional[Distribution] = None
    factor: fractions.Fraction = fractions.Fraction(1)

    def exact(self, ordinal):
        value = self.constant if self.field is None else self.field.value(ordinal)
        return fractions.Fraction(value) * self.factor

    @property
    def variation(self):
        return "distributed" if self.field is not None else "constant"


@dataclasses.dataclass
class Layer:
    ply: typing.Optional[str]
    material: str
    orientation: typing.Optional[str]
    points: int
    thickness: Number
    angle: typing.Optional[Number]


@dataclasses.dataclass
class Section:
    kind: str             # shell, solid, membrane, beam
    line: int
    name: str             # key of its element set
    typed: str            # as a deck names it
    composite: bool
    elements: list        # ordinals, ascending
    layers: list
    orientation: typing.Optional[str] = None
    material: typing.Optional[str] = None
    layup: typing.Optional[str] = None
    offset: float = 0.0
    gauss: bool = False
    stack: int = 0
    field: typing.Optional[str] = None
    profile: typing.Optional[str] = None
    data: list = dataclasses.field(default_factory=list)

    @property
    def layered(self):
        return self.kind == "shell" or (self.kind == "solid" and self.composite)


class Scope:
    def __init__(self, instance):
        self.instance = instance
        self.labels = {}         # label: ordinal
        self.sets = {}           # lower case: [name, [members as typed]]
        self.orientations = {}   # lower case: name
        self.distributions = {}  # lower case: (name, Distribution)
        self.plies = {}          # lower case: name

    def key(self, name):
        return f"{self.instance}_{name}" if self.instance else name


class Model:
    def __init__(self):
        self.scopes = {"": Scope("")}
        self.elements = []    # (instance, label, type) by ordinal
        self.materials = {}   # lower case: name as typed first
        self.sections = []
        self.notes = []

    def material(self, text):
        name = name_of(text)
        return self.materials.setdefault(name.lower(), name)

    # ---- reading ----
    def take(self, blocks):
        parts, part, scope, waiting = {}, None, self.scopes[""], []
        for block in blocks:
            if part is not None and block.keyword != "ENDPART":
                part.append(block)
            elif block.keyword == "PART":
                part = parts.setdefault(block.name("NAME").lower(), [])
            elif block.keyword == "ENDPART":
                part = None
            elif block.keyword == "INSTANCE":
                name = block.name("NAME")
                scope = self.scopes.setdefault(name.lower(), Scope(name))
                for inner in parts[block.name("PART").lower()]:
                    self.take_one(inner, scope, waiting)
            elif block.keyword == "ENDINSTANCE":
                scope = self.scopes[""]
            else:
                self.take_one(block, scope, waiting)
        for scope in self.scopes.values():
            for _, distribution in scope.distributions.values():
                self.resolve(scope, distribution)
        for block, scope in waiting:
            self.section(block, scope)

    def take_one(self, block, scope, waiting):
        if block.keyword == "ELEMENT":
            self.read_elements(block, scope)
        elif block.keyword == "ELSET":
            self.read_set(block, scope)
        elif block.keyword == "MATERIAL":
            self.material(block.parameters["NAME"])
        elif block.keyword == "ORIENTATION":
            name = block.name("NAME")
            scope.orientations[name.lower()] = name
        elif block.keyword == "DISTRIBUTION":
            if block.parameters.get("LOCATION", "ELEMENT").upper() == "ELEMENT":
                self.read_distribution(block, scope)
        elif block.keyword.endswith("SECTION"):
            self.mention(block)
            waiting.append((block, scope))

    def read_elements(self, block, scope):
        name = block.name("ELSET")
        kind = block.parameters["TYPE"].upper()
        text = ""
        for line in block.data:
            text += line
            if line.endswith(","):
                continue
            label = int(fields_of(text)[0])
            text = ""
            scope.labels[label] = len(self.elements)
            self.elements.append((scope.instance, label, kind))
            if name:
                scope.sets.setdefault(name.lower(), [name, []])[1].append(label)

    @staticmethod
    def read_set(block, scope):
        name = block.name("ELSET")
        members = scope.sets.setdefault(name.lower(), [name, []])[1]
        for line in block.data:
            fields = fields_of(line)
            if "GENERATE" in block.parameters:
                first, last, *step = (int(field) for field in fields)
                members += range(first, last + 1, step[0] if step else 1)
            else:
                members += fields

    @staticmethod
    def read_distribution(block, scope):
        name = block.name("NAME")
        default, lines = None, []
        for line in block.data:
            where, *values = fields_of(line)
            if where == "":
                default = double_of(values[0])
            else:
                lines.append((where, double_of(values[0])))
        scope.distributions[name.lower()] = (name, Distribution(default, lines))

    def mention(self, block):
        """Materials have the spelling of their first appearance."""
        if "MATERIAL" in block.parameters:
            self.material(block.parameters["MATERIAL"])
        if "COMPOSITE" in block.parameters:
            for line in block.data:
                self.material(fields_of(line)[2])

    # ---- what names stand for ----
    def find_set(self, scope, text):
        """The scope and the entry of a set."""
        whole = name_of(text).lower()
        if whole in scope.sets:
            return scope, scope.sets[whole]
        instance, name = names_of(text)
        scope = self.scopes[instance.lower()]
        return scope, scope.sets[name.lower()]

    def members(self, scope, text):
        """The ordinals of a label or a set."""
        if isinstance(text, int) or text.isdigit():
            return {scope.labels[int(text)]}
        parts = names_of(text)
        if len(parts) == 2 and parts[1].isdigit() and not text.startswith(f'"{parts[0]}.'):
            return {self.scopes[parts[0].lower()].labels[int(parts[1])]}
        owner, (_, members) = self.find_set(scope, text)
        return set().union(*(self.members(owner, member) for member in members))

    def resolve(self, scope, distribution):
        distribution.values = {}
        for where, value in distribution.lines:
            for ordinal in self.members(scope, where):
                assert ordinal not in distribution.values
                distribution.values[ordinal] = value

    def distribution(self, scope, text):
        return scope.distributions[name_of(text).lower()][1]

    def orientation(self, scope, text):
        return scope.key(scope.orientations[name_of(text).lower()]) if text else None

    # ---- sections ----
    def section(self, block, scope):
        parameters = block.parameters
        owner, (set_name, _) = self.find_set(scope, parameters["ELSET"])
        section = Section(
            kind=block.keyword[:-len("SECTION")].lower(), line=block.line,
            name=owner.key(set_name),
            typed=(f'"{owner.instance}".' if owner.instance else "") + f'"{set_name}"',
            composite="COMPOSITE" in parameters,
            elements=sorted(self.members(scope, parameters["ELSET"])), layers=[],
            orientation=self.orientation(scope, parameters.get("ORIENTATION")))
        if "MATERIAL" in parameters:
            section.material = self.material(parameters["MATERIAL"])
        section.layup = block.name("LAYUP")
        offset = parameters.get("OFFSET", "0").upper()
        named = {"SPOS": 0.5, "SNEG": -0.5}
        section.offset = named[offset] if offset in named else double_of(offset)
        section.gauss = parameters.get("SECTIONINTEGRATION", "").upper() == "GAUSS"
        stack = parameters.get("STACKDIRECTION", "0")
        section.stack = int(stack) if stack.isdigit() else 4
        section.data = [fields_of(line) for line in block.data]
        if section.kind == "beam":
            section.profile = block.name("SECTION").upper()
        field = parameters.get("SHELLTHICKNESS") or parameters.get("MEMBRANETHICKNESS")
        if field:
            found, _ = scope.distributions[name_of(field).lower()]
            section.field = scope.key(found)
        if section.composite:
            section.layers = self.stack(block, scope, section, field)
        elif section.kind == "shell":
            given = section.data[0] if section.data else []
            thickness, points = given + [""] * (2 - len(given))
            number = (Number(field=self.distribution(scope, field)) if field
                      else Number(constant=double_of(thickness)))
            section.layers = [Layer(None, section.material, None,
                                    int(points) if points else 3 if section.gauss else 5,
                                    number, None)]
        self.sections.append(section)

    def stack(self, block, scope, section, field):
        default = 1 if section.kind == "solid" else 2 if section.gauss else 3
        layers = []
        for fields in section.data:
            thickness, points, material, angle, ply = fields + [""] * (5 - len(fields))
            if NUMBER.match(thickness):
                number = Number(constant=double_of(thickness))
            else:
                number = Number(field=self.distribution(scope, thickness))
            layer = Layer(None, self.material(material), None,
                          int(points) if points else default, number, Number(constant=0.0))
            if ply:
                typed = name_of(ply)
                layer.ply = scope.key(scope.plies.setdefault(typed.lower(), typed))
            if NUMBER.match(angle):
                layer.angle = Number(constant=double_of(angle))
            elif name_of(angle).lower() in scope.orientations:
                layer.orientation, layer.angle = self.orientation(scope, angle), None
            elif angle:
                layer.angle = Number(field=self.distribution(scope, angle))
            layers.append(layer)
        if "SYMMETRIC" in block.parameters:
            layers += [dataclasses.replace(layer) for layer in reversed(layers)]
        if field:
            whole = sum(fractions.Fraction(layer.thickness.constant) for layer in layers)
            for layer in layers:
                share = fractions.Fraction(layer.thickness.constant) / whole
                layer.thickness = Number(field=self.distribution(scope, field), factor=share)
        return layers


def read(path):
    model = Model()
    model.take(blocks_of(path))
    return model
