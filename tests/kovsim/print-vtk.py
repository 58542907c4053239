#!/usr/bin/python3
"""Prints what VTK's own reader finds in VTU files, as JSON.

  print-vtk.py FILE.vtu...
  print-vtk.py FILE.pvd          the files that a collection names, each with its time
"""
import json
import math
import os
import sys
import xml.etree.ElementTree as ElementTree

import vtk


def number(value):
    return None if math.isnan(value) else value


def arrays(data):
    found = {}
    for i in range(data.GetNumberOfArrays()):
        array = data.GetArray(i)
        if array is None:
            continue
        width = array.GetNumberOfComponents()
        found[array.GetName()] = {
            "type": array.GetDataTypeAsString(),
            "labels": [array.GetComponentName(k) for k in range(width)] if width > 1 else [],
            "rows": [[number(array.GetComponent(row, k)) for k in range(width)]
                     for row in range(array.GetNumberOfTuples())],
        }
    return found


def look(path):
    reader = vtk.vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    reader.Update()
    grid = reader.GetOutput()
    if reader.GetErrorCode() != 0 or grid.GetNumberOfPoints() == 0:
        sys.exit(f"print-vtk.py: {path} cannot be read")
    return {"points": grid.GetNumberOfPoints(), "cells": grid.GetNumberOfCells(),
            "point": arrays(grid.GetPointData()), "cell": arrays(grid.GetCellData()),
            "file": arrays(grid.GetFieldData())}


def look_at_series(path):
    root = ElementTree.parse(path).getroot()
    if root.tag != "VTKFile" or root.get("type") != "Collection":
        sys.exit(f"print-vtk.py: {path} is no collection")
    series = []
    for entry in root.find("Collection").findall("DataSet"):
        found = look(os.path.join(os.path.dirname(path), entry.get("file")))
        found["time"] = float(entry.get("timestep"))
        series.append(found)
    return series


vtk.vtkObject.GlobalWarningDisplayOff()
shown = []
for each in sys.argv[1:]:
    shown += look_at_series(each) if each.endswith(".pvd") else [look(each)]
json.dump(shown, sys.stdout)
