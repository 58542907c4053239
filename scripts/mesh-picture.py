#!/usr/bin/python3
"""Draws a mesh without a screen: the whole part, and a corner of it close by with its elements.

  mesh-picture.py PART.vtu PICTURE.png [WIDTH HEIGHT]

Needs an X server; scripts/demo.sh starts a virtual one where there is none.
"""
import sys

import vtk
from vtk.util.numpy_support import numpy_to_vtk, vtk_to_numpy

BODY, BUSH, EDGE = (0.45, 0.56, 0.68), (0.85, 0.62, 0.25), (0.10, 0.13, 0.18)
MARKED = [("BOLT_HOLES", (0.80, 0.27, 0.22)), ("BEARING", (0.30, 0.62, 0.38))]


def read(path):
    reader = vtk.vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    reader.Update()
    if reader.GetOutput().GetNumberOfCells() == 0:
        sys.exit(f"mesh-picture.py: no cells in {path}")
    return reader.GetOutput()


def set_array(grid, name):
    """The array of an element set, or nothing."""
    cells = grid.GetCellData()
    for i in range(cells.GetNumberOfArrays()):
        if cells.GetArrayName(i).upper() == name:
            return vtk_to_numpy(cells.GetArray(i)) != 0
    return None


def select(grid, mask):
    """The cells where the mask holds."""
    ids = numpy_to_vtk(mask.nonzero()[0], deep=1, array_type=vtk.VTK_ID_TYPE)
    node = vtk.vtkSelectionNode()
    node.SetFieldType(vtk.vtkSelectionNode.CELL)
    node.SetContentType(vtk.vtkSelectionNode.INDICES)
    node.SetSelectionList(ids)
    selection = vtk.vtkSelection()
    selection.AddNode(node)
    extract = vtk.vtkExtractSelection()
    extract.SetInputData(0, grid)
    extract.SetInputData(1, selection)
    extract.Update()
    return extract.GetOutput()


def skin(grid):
    surface = vtk.vtkDataSetSurfaceFilter()
    surface.SetInputData(grid)
    surface.SetNonlinearSubdivisionLevel(1)
    surface.Update()
    return surface.GetOutput()


def actor(surface, colour, edges):
    normals = vtk.vtkPolyDataNormals()
    normals.SetInputData(surface)
    normals.SetFeatureAngle(35)
    mapper = vtk.vtkPolyDataMapper()
    mapper.SetInputConnection(normals.GetOutputPort())
    mapper.ScalarVisibilityOff()
    mapper.SetResolveCoincidentTopologyToPolygonOffset()
    made = vtk.vtkActor()
    made.SetMapper(mapper)
    look = made.GetProperty()
    look.SetColor(*colour)
    look.SetSpecular(0.25)
    look.SetSpecularPower(25)
    look.SetAmbient(0.18)
    if edges:
        look.EdgeVisibilityOn()
        look.SetEdgeColor(*EDGE)
        look.SetLineWidth(0.6)
    return made


def parts(grid):
    """(surface, colour) of the solids, and of surfaces that carry a set's name."""
    types = vtk_to_numpy(grid.GetCellTypesArray())
    solid = (types == vtk.VTK_TETRA) | (types == vtk.VTK_QUADRATIC_TETRA) | \
            (types == vtk.VTK_HEXAHEDRON) | (types == vtk.VTK_QUADRATIC_HEXAHEDRON) | \
            (types == vtk.VTK_WEDGE) | (types == vtk.VTK_QUADRATIC_WEDGE)
    if not solid.any():
        return [(skin(grid), BODY)]
    bush = set_array(grid, "BUSH")
    found = []
    if bush is None:
        found.append((skin(select(grid, solid)), BODY))
    else:
        found.append((skin(select(grid, solid & ~bush)), BODY))
        found.append((skin(select(grid, solid & bush)), BUSH))
    for name, colour in MARKED:
        mask = set_array(grid, name)
        if mask is not None and (mask & ~solid).any():
            found.append((skin(select(grid, mask & ~solid)), colour))
    return found


def view(surfaces, bounds, viewport, edges, close):
    renderer = vtk.vtkRenderer()
    renderer.SetViewport(*viewport)
    renderer.SetBackground(0.96, 0.97, 0.98)
    for index, (surface, colour) in enumerate(surfaces):
        made = actor(surface, colour, edges)
        if index >= 2:  # named surfaces lie on the solids' skin: drawn in front of it
            made.GetMapper().SetRelativeCoincidentTopologyPolygonOffsetParameters(-2, -24)
        renderer.AddActor(made)
    camera = renderer.GetActiveCamera()
    size = max(bounds[1] - bounds[0], bounds[3] - bounds[2], bounds[5] - bounds[4])
    middle = [(bounds[0] + bounds[1]) / 2, (bounds[2] + bounds[3]) / 2, (bounds[4] + bounds[5]) / 2]
    camera.SetViewUp(0, 0, 1)
    camera.SetFocalPoint(*middle)
    camera.SetPosition(middle[0] + 1.2 * size, middle[1] - 1.9 * size, middle[2] + 1.0 * size)
    renderer.ResetCamera(bounds)
    camera.Zoom(1.3)
    if close:  # a bolt hole at the near corner
        corner = (bounds[1] - 0.14 * size, bounds[2] + 0.12 * size, bounds[4] + 0.08 * size)
        camera.SetFocalPoint(*corner)
        camera.SetPosition(corner[0] + 0.25 * size, corner[1] - 0.55 * size, corner[2] + 0.48 * size)
        renderer.ResetCameraClippingRange(bounds)
    return renderer


def main():
    if len(sys.argv) not in (3, 5):
        sys.exit(__doc__)
    width, height = (int(v) for v in sys.argv[3:5]) if len(sys.argv) == 5 else (1800, 900)
    grid = read(sys.argv[1])
    surfaces = parts(grid)
    triangles = sum(s.GetNumberOfPolys() for s, _ in surfaces)

    window = vtk.vtkRenderWindow()
    window.SetOffScreenRendering(1)
    window.SetMultiSamples(8)
    window.SetSize(width, height)
    window.AddRenderer(view(surfaces, grid.GetBounds(), (0, 0, 0.55, 1), triangles < 60000, False))
    window.AddRenderer(view(surfaces, grid.GetBounds(), (0.55, 0, 1, 1), True, True))
    window.Render()

    capture = vtk.vtkWindowToImageFilter()
    capture.SetInput(window)
    capture.ReadFrontBufferOff()
    writer = vtk.vtkPNGWriter()
    writer.SetInputConnection(capture.GetOutputPort())
    writer.SetFileName(sys.argv[2])
    writer.Write()
    print(f"  {grid.GetNumberOfPoints()} points, {grid.GetNumberOfCells()} cells, "
          f"{triangles} triangles drawn into {sys.argv[2]}")


if __name__ == "__main__":
    main()
