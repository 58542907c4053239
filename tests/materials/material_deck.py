"""Reads the materials of a keyword deck, for comparison: it shares no code with kovsim.

`read(path)` gives, for each material by name, its behaviours by name: type, parameters, and a table
of rows whose numbers stand in the order of `columns`. Errors of decks are not looked for: the decks
that it reads are right.
"""

import dataclasses
import os
import re

# What a row begins with, for each behaviour and type; the first type is the usual one.
AXES2, AXES3, AXES6 = ("11", "22"), ("11", "22", "33"), ("11", "22", "33", "12", "13", "23")
COLUMNS = {
    "ELASTIC": {
        "ISOTROPIC": ["E", "nu"],
        "ORTHOTROPIC": "D1111 D1122 D2222 D1133 D2233 D3333 D1212 D1313 D2323".split(),
        "ENGINEERING CONSTANTS": "E1 E2 E3 nu12 nu13 nu23 G12 G13 G23".split(),
        # The upper triangle, column by column, of the order 11, 22, 33, 12, 13, 23.
        "ANISOTROPIC": ["D" + AXES6[i] + AXES6[k] for k in range(6) for i in range(k + 1)],
        "LAMINA": "E1 E2 nu12 G12 G13 G23".split(),
        "SHEAR": ["G"],
        "TRACTION": "Knn Kss Ktt".split(),
    },
    "PLASTIC": {kind: ["yield stress", "plastic strain"] for kind in ("ISOTROPIC", "KINEMATIC")},
    "DENSITY": {None: ["density"]},
    "EXPANSION": {
        "ISOTROPIC": ["alpha"],
        "ORTHOTROPIC": ["alpha" + axes for axes in AXES3],
        "ANISOTROPIC": ["alpha" + axes for axes in AXES6],
    },
    "CONDUCTIVITY": {
        "ISOTROPIC": ["k"],
        "ORTHOTROPIC": ["k" + axes for axes in AXES3],
        "ANISOTROPIC": "k11 k12 k22 k13 k23 k33".split(),
    },
    "SPECIFICHEAT": {None: ["specific heat"]},
}
NAMES = {
    "ELASTIC": "Elastic",
    "PLASTIC": "Plastic",
    "DENSITY": "Density",
    "EXPANSION": "Expansion",
    "CONDUCTIVITY": "Conductivity",
    "SPECIFICHEAT": "SpecificHeat",
    "DAMPING": "Damping",
}
TYPE_KEYS = {"PLASTIC": "HARDENING"}
PARAMETERS = {"EXPANSION": ["ZERO"], "DAMPING": ["ALPHA", "BETA", "COMPOSITE", "STRUCTURAL"]}
ON_LINE = 8


@dataclasses.dataclass
class Behaviour:
    type: str
    parameters: dict
    columns: list
    rows: list
    temperatures: list = None  # lowest and highest
    field_variables: int = 0


def double(text):
    return float(re.sub("[dD]", "E", text))


def split(text):
    """Fields of a line, without blanks around them; commas in double quotes part nothing."""
    fields = re.findall(r'(?:"[^"]*"|[^,"])+|(?<=,)(?=,)|^(?=,)', text)
    return [field.strip() for field in fields]


def keywords(path):
    """(keyword, {parameter: value}, [data lines]) of a deck, with included files in their place."""
    found, text = [], None
    with open(path, encoding="utf-8", newline="") as file:
        for line in file.read().splitlines():
            if not line.strip() or line.startswith("**"):
                continue
            if text is not None:
                text += line.strip()
            elif line.startswith("*"):
                text = line.strip()
            else:
                found[-1][2].append(line)
                continue
            if text.endswith(","):
                continue
            name, *words = split(text)
            given = {}
            for word in words:
                key, _, value = word.partition("=")
                given[re.sub(r"\s", "", key).upper()] = value.strip().strip('"')
            name = re.sub(r"\s", "", name[1:]).upper()
            text = None
            if name == "INCLUDE":
                found += keywords(os.path.join(os.path.dirname(path), given["INPUT"]))
            else:
                found.append((name, given, []))
    return found


def table(behaviour, width, lines):
    """Rows of dependent numbers, one temperature, and field variables, 8 on a line."""
    whole = width + 1 + behaviour.field_variables
    at, rows, blank = 0, [], []
    while at < len(lines):
        fields, first = [], 0
        while first < whole:
            count = min(ON_LINE, whole - first)
            line = [field.strip() for field in lines[at].split(",")][:count]
            fields += line + [""] * (count - len(line))
            first += count
            at += 1
        blank.append(fields[width] == "")
        rows.append([double(field) for field in fields if field != ""])
    if not blank[0]:
        heats = [row[width] for row in rows]
        behaviour.temperatures = [min(heats), max(heats)]
        behaviour.columns.append("temperature")
    behaviour.columns += [f"field {i + 1}" for i in range(behaviour.field_variables)]
    behaviour.rows = rows


def read(path):
    materials, at_hand = {}, None
    for keyword, given, lines in keywords(path):
        if keyword == "MATERIAL":
            at_hand = materials.setdefault(given["NAME"], {})
        if keyword not in NAMES:
            continue
        behaviour = Behaviour(None, {}, [], [])
        for key in PARAMETERS.get(keyword, []):
            if key in given:
                behaviour.parameters[key.lower()] = double(given[key])
        if keyword in COLUMNS:
            types = COLUMNS[keyword]
            typed = given.get(TYPE_KEYS.get(keyword, "TYPE"))
            behaviour.type = next(iter(types))
            if typed is not None:
                short = re.sub(r"\s", "", typed).upper()
                behaviour.type = next(t for t in types if t.replace(" ", "").startswith(short))
            behaviour.field_variables = int(given.get("DEPENDENCIES", "0"))
            behaviour.columns = list(types[behaviour.type])
            table(behaviour, len(behaviour.columns), lines)
        at_hand[NAMES[keyword]] = behaviour
    return materials
