#include "bench/peers/VtkLinks.h"

#include <vtkCellArray.h>
#include <vtkCellLinks.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkStaticCellLinks.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <cstddef>

namespace bench {

struct VtkLinks::Grid {
    vtkNew<vtkUnstructuredGrid> grid;
};

VtkLinks::VtkLinks(int const* nodes, int elements, int points) : m_grid(new Grid) {
    vtkNew<vtkPoints> at;
    at->SetDataTypeToFloat();
    at->SetNumberOfPoints(points);
    m_grid->grid->SetPoints(at);
    vtkNew<vtkCellArray> cells;
    cells->AllocateExact(elements, vtkIdType{8} * elements);
    for (int e = 0; e < elements; ++e) {
        vtkIdType cell[8];
        std::copy_n(nodes + std::ptrdiff_t{8} * e, 8, cell);
        cells->InsertNextCell(8, cell);
    }
    m_grid->grid->SetCells(VTK_HEXAHEDRON, cells);
}

VtkLinks::~VtkLinks() = default;

void VtkLinks::Build() {
    vtkNew<vtkCellLinks> links;
    links->BuildLinks(m_grid->grid);
}

void VtkLinks::BuildStatic() {
    vtkNew<vtkStaticCellLinks> links;
    links->BuildLinks(m_grid->grid);
}

}  // namespace bench
