// MED: an unstructured mesh, full interlace, written and read by blocks of entities.
#include <med.h>

#include "bench/support/BulkStore.h"

namespace {

constexpr char const* kMesh = "mesh";

class Med : public bench::BulkStore {
  public:
    std::string Name() const override { return "MED"; }
    bool WantsOneBased() const override { return true; }
    void Create(std::string const& path, int nodes, int elements) override {
        m_path = path;
        m_rows = elements > 0 ? elements : nodes;
        char axes[3 * MED_SNAME_SIZE + 1], units[3 * MED_SNAME_SIZE + 1];
        std::snprintf(axes, sizeof axes, "%-16s%-16s%-16s", "x", "y", "z");
        std::snprintf(units, sizeof units, "%-16s%-16s%-16s", "m", "m", "m");
        m_file = MEDfileOpen(path.c_str(), MED_ACC_CREAT);
        Require(MEDmeshCr(m_file, kMesh, 3, 3, MED_UNSTRUCTURED_MESH, "", "", MED_SORT_DTIT,
                          MED_CARTESIAN, axes, units));
    }
    void WriteCoordinates(int first, int n, double const* xyz) override {
        Rows const rows(m_file, m_rows, first, n, 3);
        Require(MEDmeshNodeCoordinateAdvancedWr(m_file, kMesh, MED_NO_DT, MED_NO_IT, 0.0,
                                                &rows.filter, xyz));
    }
    void WriteConnectivity(int first, int n, int const* nodes) override {
        Rows const rows(m_file, m_rows, first, n, 8);
        Require(MEDmeshElementConnectivityAdvancedWr(m_file, kMesh, MED_NO_DT, MED_NO_IT, 0.0,
                                                     MED_CELL, MED_HEXA8, MED_NODAL, &rows.filter,
                                                     Ints(nodes)));
    }
    void Commit() override {
        Require(MEDfileClose(m_file));
        m_file = -1;
        bench::SyncFile(m_path);
    }
    void Close() override {
        if (m_file >= 0) Require(MEDfileClose(m_file));
        m_file = -1;
    }
    void Open(std::string const& path) override {
        m_file = MEDfileOpen(path.c_str(), MED_ACC_RDONLY);
    }
    void ReadCoordinates(int first, int n, double* xyz) override {
        Rows const rows(m_file, m_rows, first, n, 3);
        Require(MEDmeshNodeCoordinateAdvancedRd(m_file, kMesh, MED_NO_DT, MED_NO_IT, &rows.filter,
                                                xyz));
    }
    void ReadConnectivity(int first, int n, int* nodes) override {
        Rows const rows(m_file, m_rows, first, n, 8);
        Require(MEDmeshElementConnectivityAdvancedRd(m_file, kMesh, MED_NO_DT, MED_NO_IT, MED_CELL,
                                                     MED_HEXA8, MED_NODAL, &rows.filter,
                                                     Ints(nodes)));
    }
    bool Gather(int const*, int, double*) override { return false; }
    bool ReadStrided(int, int, double*) override { return false; }

  private:
    static_assert(sizeof(med_int) == sizeof(int), "blocks are handed over as they are");
    static med_int const* Ints(int const* values) { return values; }
    static med_int* Ints(int* values) { return values; }
    static void Require(med_err answer) {
        if (answer < 0) throw std::runtime_error("a call failed");
    }
    struct Rows {
        Rows(med_idt file, int total, int first, int n, int columns) {
            auto const count = static_cast<med_size>(n);
            Require(MEDfilterBlockOfEntityCr(file, total, 1, columns, MED_ALL_CONSTITUENT,
                                             MED_FULL_INTERLACE, MED_COMPACT_STMODE, MED_NO_PROFILE,
                                             static_cast<med_size>(first + 1), count, 1, count, 0,
                                             &filter));
        }
        ~Rows() { MEDfilterClose(&filter); }
        med_filter filter = MED_FILTER_INIT;
    };

    std::string m_path;
    int m_rows = 0;
    med_idt m_file = -1;
};

}  // namespace

int main(int argc, char** argv) {
    Med store;
    return bench::RunBulk(argc, argv, store);
}
