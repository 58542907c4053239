// Exodus II: coordinates by component and one block of hexahedra, in its netCDF-4 form; and named
// node sets with --case sets.
#include <exodusII.h>

#include "bench/support/BulkStore.h"

namespace {

void Require(int answer) {
    if (answer < 0) throw std::runtime_error("a call failed");
}

int NewFile(std::string const& path) {
    int words = 8, stored = 8;
    int const file = ex_create(path.c_str(), EX_CLOBBER | EX_NETCDF4, &words, &stored);
    Require(file);
    return file;
}

int OpenFile(std::string const& path) {
    int words = 8, stored = 0;
    float version = 0;
    int const file = ex_open(path.c_str(), EX_READ, &words, &stored, &version);
    Require(file);
    return file;
}

class Exodus : public bench::BulkStore {
  public:
    std::string Name() const override { return "Exodus II"; }
    bool WantsComponents() const override { return true; }
    bool WantsOneBased() const override { return true; }
    void Create(std::string const& path, int nodes, int elements) override {
        m_path = path;
        m_file = NewFile(path);
        Require(ex_put_init(m_file, "bench", 3, nodes, elements, elements > 0 ? 1 : 0, 0, 0));
        if (elements > 0)
            Require(ex_put_block(m_file, EX_ELEM_BLOCK, 1, "HEX8", elements, 8, 0, 0, 0));
    }
    void WriteCoordinates(int first, int n, double const* xyz) override {
        Require(ex_put_partial_coord(m_file, first + 1, n, xyz, xyz + n, xyz + 2 * n));
    }
    void WriteConnectivity(int first, int n, int const* nodes) override {
        Require(ex_put_partial_elem_conn(m_file, 1, first + 1, n, nodes));
    }
    void Commit() override {
        Require(ex_update(m_file));
        bench::SyncFile(m_path);
    }
    void Close() override { Require(ex_close(m_file)); }
    void Open(std::string const& path) override { m_file = OpenFile(path); }
    void ReadCoordinates(int first, int n, double* xyz) override {
        Require(ex_get_partial_coord(m_file, first + 1, n, xyz, xyz + n, xyz + 2 * n));
    }
    void ReadConnectivity(int first, int n, int* nodes) override {
        Require(
            ex_get_partial_conn(m_file, EX_ELEM_BLOCK, 1, first + 1, n, nodes, nullptr, nullptr));
    }
    bool Gather(int const* nodes, int n, double* xyz) override {
        for (int i = 0; i < n; ++i) ReadCoordinates(nodes[i], 1, xyz + 3 * i);
        return true;
    }
    bool ReadStrided(int, int, double*) override { return false; }

  private:
    std::string m_path;
    int m_file = -1;
};

// `count` node sets of 100 nodes each, with names.
int Sets(bench::Options const& options) {
    int const count = options.Int("sets", 10'000);
    std::string const path = bench::FreshPath(options, "sets-exodus");
    std::vector<int> members(100);
    double const written = bench::Seconds([&] {
        int const file = NewFile(path);
        Require(ex_put_init(file, "bench", 3, 1'000'000, 0, 0, count, 0));
        for (int i = 0; i < count; ++i) {
            for (int m = 0; m < 100; ++m)
                members[static_cast<std::size_t>(m)] = i % 9000 + 100 * m + 1;
            Require(ex_put_set_param(file, EX_NODE_SET, i + 1, 100, 0));
            Require(ex_put_set(file, EX_NODE_SET, i + 1, members.data(), nullptr));
            Require(ex_put_name(file, EX_NODE_SET, i + 1, ("SET-" + std::to_string(i)).c_str()));
        }
        Require(ex_close(file));
        bench::SyncFile(path);
    });
    std::string const size = std::to_string(count);
    bench::Report("sets." + size + ".write", "Exodus II", written / count);
    double const read = bench::Seconds([&] {
        int const file = OpenFile(path);
        Require(ex_get_set(file, EX_NODE_SET, count / 2 + 1, members.data(), nullptr));
        Require(ex_close(file));
    });
    bench::Report("sets." + size + ".first", "Exodus II", read);
    std::filesystem::remove_all(path);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    bench::Options const options(argc, argv);
    if (options.Text("case", "") == "sets") return Sets(options);
    Exodus store;
    return bench::RunBulk(argc, argv, store);
}
