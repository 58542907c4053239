// VTK's two kinds of cell links over a grid of hexahedra. Apart from the rest because VTK's headers
// want C++17.
#pragma once

#include <memory>

namespace bench {

class VtkLinks {
  public:
    /// `nodes`: (elements, 8).
    VtkLinks(int const* nodes, int elements, int points);
    ~VtkLinks();
    void Build();
    void BuildStatic();

  private:
    struct Grid;
    std::unique_ptr<Grid> m_grid;
};

}  // namespace bench
