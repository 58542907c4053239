"""A quadrilateral with a scalar and a vector, by meshio."""
import sys

import meshio
import numpy as np

points = np.array([[0.0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]])
meshio.Mesh(
    points,
    [("quad", np.array([[0, 1, 2, 3]]))],
    point_data={"chi": np.arange(4.0) / 3, "disp": np.arange(12.0).reshape(4, 3) / 7},
).write(sys.argv[1], file_format="exodus")
