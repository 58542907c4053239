// CGNS: an unstructured zone, coordinates by component, one section of hexahedra.
#include <cgnslib.h>

#include "bench/support/BulkStore.h"

namespace {

constexpr char const* kAxis[3] = {"CoordinateX", "CoordinateY", "CoordinateZ"};

class Cgns : public bench::BulkStore {
  public:
    std::string Name() const override { return "CGNS"; }
    bool WantsComponents() const override { return true; }
    bool WantsOneBased() const override { return true; }
    void Create(std::string const& path, int nodes, int elements) override {
        m_path = path;
        int base = 0, zone = 0;
        cgsize_t const size[3] = {nodes, elements, 0};
        Require(cg_set_file_type(CG_FILE_HDF5));
        Require(cg_open(path.c_str(), CG_MODE_WRITE, &m_file));
        Require(cg_base_write(m_file, "Base", 3, 3, &base));
        Require(cg_zone_write(m_file, base, "Zone", size, CGNS_ENUMV(Unstructured), &zone));
        if (elements > 0) {
            Require(cg_section_partial_write(m_file, 1, 1, "Hexahedra", CGNS_ENUMV(HEXA_8), 1,
                                             elements, 0, &m_section));
        }
    }
    void WriteCoordinates(int first, int n, double const* xyz) override {
        cgsize_t const from = first + 1, to = first + n;
        for (int c = 0; c < 3; ++c) {
            int coordinate = 0;
            Require(cg_coord_partial_write(m_file, 1, 1, CGNS_ENUMV(RealDouble), kAxis[c], &from,
                                           &to, xyz + c * n, &coordinate));
        }
    }
    void WriteConnectivity(int first, int n, int const* nodes) override {
        m_nodes.assign(nodes, nodes + 8 * n);  // cgsize_t is wider than int in this build
        Require(cg_elements_partial_write(m_file, 1, 1, m_section, first + 1, first + n,
                                          m_nodes.data()));
    }
    // Closing is the only way to have all of it written.
    void Commit() override {
        Require(cg_close(m_file));
        m_file = -1;
        bench::SyncFile(m_path);
    }
    void Close() override {
        if (m_file >= 0) Require(cg_close(m_file));
        m_file = -1;
    }
    void Open(std::string const& path) override {
        Require(cg_open(path.c_str(), CG_MODE_READ, &m_file));
        m_section = 1;
    }
    void ReadCoordinates(int first, int n, double* xyz) override {
        cgsize_t const from = first + 1, to = first + n;
        for (int c = 0; c < 3; ++c) {
            Require(cg_coord_read(m_file, 1, 1, kAxis[c], CGNS_ENUMV(RealDouble), &from, &to,
                                  xyz + c * n));
        }
    }
    void ReadConnectivity(int first, int n, int* nodes) override {
        m_nodes.resize(static_cast<std::size_t>(8 * n));
        Require(cg_elements_partial_read(m_file, 1, 1, m_section, first + 1, first + n,
                                         m_nodes.data(), nullptr));
        for (std::size_t i = 0; i < m_nodes.size(); ++i) nodes[i] = static_cast<int>(m_nodes[i]);
    }
    bool Gather(int const*, int, double*) override { return false; }
    bool ReadStrided(int, int, double*) override { return false; }

  private:
    static void Require(int answer) {
        if (answer != CG_OK) throw std::runtime_error(cg_get_error());
    }
    std::string m_path;
    std::vector<cgsize_t> m_nodes;
    int m_file = -1, m_section = 0;
};

}  // namespace

int main(int argc, char** argv) {
    Cgns store;
    return bench::RunBulk(argc, argv, store);
}
