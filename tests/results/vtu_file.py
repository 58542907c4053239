"""Reads VTU files with appended raw data, and PVD files, for comparison: it shares no code with
kovsim."""

import array
import dataclasses
import os
import struct
import xml.etree.ElementTree

CODES = {"Float64": "d", "Float32": "f", "Int8": "b", "UInt8": "B", "Int16": "h", "UInt16": "H",
         "Int32": "i", "UInt32": "I", "Int64": "q", "UInt64": "Q"}


@dataclasses.dataclass
class Array:
    name: str
    type: str
    width: int  # numbers of a row
    components: list  # their names, empty where none has one
    numbers: array.array

    def row(self, index):
        return self.numbers[index * self.width:(index + 1) * self.width].tolist()

    def rows(self):
        return len(self.numbers) // self.width


@dataclasses.dataclass
class File:
    points: int
    cells: int
    field_data: dict  # by name: the XML element
    groups: dict  # PointData, CellData, Points, Cells: arrays by name

    def number(self, name):
        return float(self.field_data[name].text)

    def texts(self, name):
        """The strings of an array of texts."""
        codes = self.field_data[name].text.split()
        texts, text = [], bytearray()
        for code in codes:
            if code == "0":
                texts.append(text.decode())
                text = bytearray()
            else:
                text.append(int(code))
        return texts


def names_of(element, width):
    names = [element.get(f"ComponentName{k}") for k in range(width)]
    return names if any(name is not None for name in names) else []


def read(path):
    with open(path, "rb") as file:
        raw = file.read()
    mark = b'<AppendedData encoding="raw">'
    at = raw.index(mark)
    root = xml.etree.ElementTree.fromstring(raw[:at] + b"</VTKFile>")
    assert root.get("byte_order") == "LittleEndian" and root.get("header_type") == "UInt64"
    data = raw.index(b"_", at + len(mark)) + 1
    grid = root.find("UnstructuredGrid")
    (piece,) = grid.findall("Piece")
    groups, taken = {}, []
    for group in piece:
        arrays = groups.setdefault(group.tag, {})
        for element in group.findall("DataArray"):
            assert element.get("format") == "appended"
            start = data + int(element.get("offset"))
            (size,) = struct.unpack_from("<Q", raw, start)
            numbers = array.array(CODES[element.get("type")])
            numbers.frombytes(raw[start + 8:start + 8 + size])
            taken.append((start, start + 8 + size))
            width = int(element.get("NumberOfComponents", "1"))
            name = element.get("Name")
            assert name not in arrays, name
            assert len(numbers) % width == 0, name
            arrays[name] = Array(name, element.get("type"), width, names_of(element, width), numbers)
    # The arrays follow each other without gaps.
    taken.sort()
    assert all(a[1] == b[0] for a, b in zip(taken, taken[1:])) and taken[0][0] == data
    field_data = {element.get("Name"): element for element in grid.findall("FieldData/*")}
    field_data.update({element.get("Name"): element for element in piece.findall("FieldData/*")})
    file = File(int(piece.get("NumberOfPoints")), int(piece.get("NumberOfCells")), field_data,
                groups)
    for group, count in (("PointData", file.points), ("CellData", file.cells)):
        for each in groups.get(group, {}).values():
            assert each.rows() == count, f"{each.name}: {each.rows()} rows, expected {count}"
    return file


def read_pvd(path):
    """(time, path of the file, other attributes) of each file of a series."""
    root = xml.etree.ElementTree.parse(path).getroot()
    assert root.tag == "VTKFile" and root.get("type") == "Collection"
    folder = os.path.dirname(path)
    return [(float(each.get("timestep")), os.path.join(folder, each.get("file")), dict(each.attrib))
            for each in root.iter("DataSet")]
