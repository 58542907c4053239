"""A quadrilateral and a triangle with arrays at points and cells, by vtkExodusIIWriter."""
import sys

import numpy as np
import vtk
from vtk.util.numpy_support import numpy_to_vtk

points = vtk.vtkPoints()
points.SetDataTypeToDouble()
for point in [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0), (2, 0, 0)]:
    points.InsertNextPoint(point)
grid = vtk.vtkUnstructuredGrid()
grid.SetPoints(points)
grid.InsertNextCell(vtk.VTK_QUAD, 4, [0, 1, 2, 3])
grid.InsertNextCell(vtk.VTK_TRIANGLE, 3, [1, 4, 2])


def add(data, name, values):
    array = numpy_to_vtk(np.ascontiguousarray(values), deep=1)
    array.SetName(name)
    data.AddArray(array)


add(grid.GetPointData(), "chi", np.arange(5.0) / 3)
add(grid.GetPointData(), "velocity", np.arange(15.0).reshape(5, 3) / 7)
add(grid.GetPointData(), "stress", np.arange(30.0).reshape(5, 6) / 11)
add(grid.GetCellData(), "density", np.arange(1.0, 3.0) / 3)

writer = vtk.vtkExodusIIWriter()
writer.SetInputData(grid)
writer.SetFileName(sys.argv[1])
writer.Write()
