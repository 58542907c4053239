#!/usr/bin/python3
"""Compares an exported mesh with the mesh that Gmsh wrote in its own format.

  compare-with-gmsh.py PART.msh PART.vtu

Gmsh's library reads the one, VTK's reader the other; neither shares code with kovsim. Compared are
the labels and coordinates of all points, type, label and nodes of all cells, and the members of all
node and element sets, both ways. Coordinates must be equal to the last digit that the deck between
them carries: Gmsh writes its decks with 14 significant digits.

Exits with 1 if anything differs.
"""
import sys

import gmsh
import numpy as np
import vtk
from vtk.util.numpy_support import vtk_to_numpy

# Gmsh's element types: VTK's type, and VTK's order of nodes in terms of Gmsh's. The two differ in
# the edges of the second-order tetrahedron, and in those of wedges and hexahedra.
TYPES = {
    2: (vtk.VTK_TRIANGLE, range(3)),
    3: (vtk.VTK_QUAD, range(4)),
    4: (vtk.VTK_TETRA, range(4)),
    5: (vtk.VTK_HEXAHEDRON, range(8)),
    6: (vtk.VTK_WEDGE, range(6)),
    9: (vtk.VTK_QUADRATIC_TRIANGLE, range(6)),
    11: (vtk.VTK_QUADRATIC_TETRA, [0, 1, 2, 3, 4, 5, 6, 7, 9, 8]),
}
INTERNAL_ENTITIES = {2: "Surface", 3: "Volume"}


def read_gmsh(path):
    """Points by label, cells by (label) and the sets, of what lies in physical groups."""
    gmsh.initialize(["compare", "-v", "1"])
    gmsh.open(path)
    mesh = gmsh.model.mesh
    tags, coordinates, _ = mesh.getNodes()
    coordinates = coordinates.reshape(-1, 3)
    order = np.argsort(tags)
    points = (tags[order].astype(np.int64), coordinates[order])

    cells, node_sets, element_sets = [], {}, {}
    for dim, group in gmsh.model.getPhysicalGroups():
        name = gmsh.model.getPhysicalName(dim, group).upper()
        node_sets[name] = np.unique(mesh.getNodesForPhysicalGroup(dim, group)[0].astype(np.int64))
        members = []
        for entity in gmsh.model.getEntitiesForPhysicalGroup(dim, group):
            entity_members = []
            for kind, labels, nodes in zip(*mesh.getElements(dim, entity)):
                vtk_type, permutation = TYPES[kind]
                nodes = nodes.astype(np.int64).reshape(len(labels), -1)[:, list(permutation)]
                cells.append((vtk_type, labels.astype(np.int64), nodes))
                entity_members.append(labels.astype(np.int64))
            members += entity_members
            element_sets[f"{INTERNAL_ENTITIES[dim]}{entity}".upper()] = \
                np.unique(np.concatenate(entity_members))
        element_sets[name] = np.unique(np.concatenate(members))
    gmsh.finalize()
    return points, cells, node_sets, element_sets


def arrays(attributes):
    return {attributes.GetArrayName(i): vtk_to_numpy(attributes.GetArray(i))
            for i in range(attributes.GetNumberOfArrays())}


def split_labels(found, name):
    """Takes the array of labels out; arrays of bytes are sets, and other arrays no matter here."""
    if name not in found:
        sys.exit(f"compare-with-gmsh.py: no array {name} among {sorted(found)}")
    return found[name].astype(np.int64), \
        {key.upper(): value for key, value in found.items() if value.dtype == np.uint8}


def read_vtu(path):
    reader = vtk.vtkXMLUnstructuredGridReader()
    errors = []
    reader.AddObserver("ErrorEvent", lambda *_: errors.append(1))
    reader.SetFileName(path)
    reader.Update()
    grid = reader.GetOutput()
    if errors or grid.GetNumberOfPoints() == 0:
        sys.exit(f"compare-with-gmsh.py: VTK cannot read {path}")
    return grid


class Findings:
    def __init__(self):
        self.count = 0

    def expect(self, what, good, detail=""):
        print(f"  {'same   ' if good else 'DIFFERS'}  {what}{'' if good else '  ' + detail}")
        self.count += not good


def as_in_deck(values):
    """The numbers as 14 significant digits carry them."""
    return np.array([float(f"{v:.14g}") for v in values.ravel()]).reshape(values.shape)


def compare_points(findings, points, grid, labels):
    coordinates = vtk_to_numpy(grid.GetPoints().GetData()).astype(np.float64)
    order = np.argsort(labels, kind="stable")
    same = np.array_equal(labels[order], points[0])
    findings.expect(f"labels of {len(points[0])} points", same, f"{len(labels)} exported")
    if same:
        off = np.abs(coordinates[order] - as_in_deck(points[1])).max()
        findings.expect("their coordinates", off == 0.0, f"by up to {off:g}")


def compare_cells(findings, cells, grid, point_labels, labels):
    types = vtk_to_numpy(grid.GetCellTypesArray())
    offsets = vtk_to_numpy(grid.GetCells().GetOffsetsArray())
    connectivity = vtk_to_numpy(grid.GetCells().GetConnectivityArray())
    total = sum(len(c[1]) for c in cells)
    findings.expect(f"number of cells, {total}", total == len(labels), f"{len(labels)} exported")
    order = np.argsort(labels, kind="stable")
    for vtk_type in sorted({c[0] for c in cells}):
        wanted = np.concatenate([c[1] for c in cells if c[0] == vtk_type])
        nodes = np.concatenate([c[2] for c in cells if c[0] == vtk_type])
        name = vtk.vtkCellTypes.GetClassNameFromTypeId(vtk_type)
        at = np.searchsorted(labels[order], wanted)
        found = at < len(labels)
        at = order[np.minimum(at, len(labels) - 1)]
        found &= labels[at] == wanted
        sizes = offsets[at + 1] - offsets[at]
        if not (found.all() and (types[at] == vtk_type).all() and (sizes == nodes.shape[1]).all()):
            findings.expect(f"{len(wanted)} cells {name}", False, "in label, type or size")
            continue
        exported = connectivity[offsets[at][:, None] + np.arange(nodes.shape[1])]
        equal = point_labels[exported] == nodes
        findings.expect(f"{len(wanted)} cells {name}, with {nodes.shape[1]} nodes each",
                        bool(equal.all()), f"{(~equal.all(axis=1)).sum()} have other nodes")


def compare_sets(findings, kind, wanted, exported, labels):
    for name in sorted(wanted):
        if name not in exported:
            findings.expect(f"{kind} set {name}", False, f"is not among {sorted(exported)}")
            continue
        members = np.sort(labels[exported[name] != 0])
        findings.expect(f"{kind} set {name}, {len(wanted[name])} members",
                        np.array_equal(members, wanted[name]), f"{len(members)} exported")
    extra = sorted(set(exported) - set(wanted))
    findings.expect(f"no further {kind} sets", not extra, ", ".join(extra))


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    points, cells, node_sets, element_sets = read_gmsh(sys.argv[1])
    grid = read_vtu(sys.argv[2])
    point_labels, exported_node_sets = split_labels(arrays(grid.GetPointData()), "NodeLabel")
    cell_labels, exported_element_sets = split_labels(arrays(grid.GetCellData()), "ElementLabel")

    findings = Findings()
    compare_points(findings, points, grid, point_labels)
    compare_cells(findings, cells, grid, point_labels, cell_labels)
    compare_sets(findings, "node", node_sets, exported_node_sets, point_labels)
    compare_sets(findings, "element", element_sets, exported_element_sets, cell_labels)
    print(f"  {findings.count} differences" if findings.count else
          "  the exported mesh is the mesh that Gmsh wrote")
    return 1 if findings.count else 0


if __name__ == "__main__":
    sys.exit(main())
