#!/usr/bin/python3
"""Draws an exported frame without a screen: displaced, and coloured by an array at the nodes.

    draw.py FRAME.vtu ARRAY FACTOR PICTURE.jpg      xvfb-run draw.py ... where there is no X server
"""

import sys

import vtk


def main(path, array, factor, picture):
    reader = vtk.vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    warp = vtk.vtkWarpVector()
    warp.SetInputConnection(reader.GetOutputPort())
    warp.SetInputArrayToProcess(0, 0, 0, vtk.vtkDataObject.FIELD_ASSOCIATION_POINTS, "U")
    warp.SetScaleFactor(factor)
    # Curved edges are drawn with one point more, the edges of elements over their faces.
    surface = vtk.vtkDataSetSurfaceFilter()
    surface.SetInputConnection(warp.GetOutputPort())
    surface.SetNonlinearSubdivisionLevel(2)
    surface.Update()
    values = surface.GetOutput().GetPointData().GetArray(array)
    if values is None:
        sys.exit(f"draw.py: {path} has no array {array} at the nodes")

    colours = vtk.vtkLookupTable()
    colours.SetHueRange(0.62, 0.0)
    colours.SetRange(values.GetRange())
    colours.Build()
    mapper = vtk.vtkPolyDataMapper()
    mapper.SetInputConnection(surface.GetOutputPort())
    mapper.SetScalarModeToUsePointFieldData()
    mapper.SelectColorArray(array)
    mapper.SetLookupTable(colours)
    mapper.UseLookupTableScalarRangeOn()
    mapper.InterpolateScalarsBeforeMappingOn()
    body = vtk.vtkActor()
    body.SetMapper(mapper)
    body.GetProperty().SetAmbient(0.3)

    edges = vtk.vtkExtractEdges()  # of the elements as they were
    edges.SetInputConnection(reader.GetOutputPort())
    lines = vtk.vtkPolyDataMapper()
    lines.SetInputConnection(edges.GetOutputPort())
    lines.ScalarVisibilityOff()
    frame = vtk.vtkActor()
    frame.SetMapper(lines)
    frame.GetProperty().SetColor(0.45, 0.48, 0.52)

    bar = vtk.vtkScalarBarActor()
    bar.SetLookupTable(colours)
    bar.SetTitle(array)
    bar.SetNumberOfLabels(5)
    bar.SetPosition(0.84, 0.1)
    bar.SetWidth(0.12)
    bar.SetHeight(0.8)
    for text in (bar.GetTitleTextProperty(), bar.GetLabelTextProperty()):
        text.SetColor(0.1, 0.13, 0.18)
        text.ShadowOff()

    renderer = vtk.vtkRenderer()
    renderer.SetBackground(0.97, 0.975, 0.98)
    for actor in (body, frame, bar):
        renderer.AddActor(actor)
    camera = renderer.GetActiveCamera()
    camera.SetViewUp(0, 0, 1)
    camera.SetPosition(0.7, -1.6, 0.8)
    camera.SetFocalPoint(0, 0, 0)
    renderer.ResetCamera()
    camera.Zoom(1.25)
    window = vtk.vtkRenderWindow()
    window.SetOffScreenRendering(1)
    window.SetMultiSamples(8)
    window.SetSize(840, 480)
    window.AddRenderer(renderer)
    window.Render()
    image = vtk.vtkWindowToImageFilter()
    image.SetInput(window)
    writer = vtk.vtkJPEGWriter()
    writer.SetQuality(88)
    writer.SetFileName(picture)
    writer.SetInputConnection(image.GetOutputPort())
    writer.Write()


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2], float(sys.argv[3]), sys.argv[4])
