// netCDF: a contiguous variable of a netCDF-4 file, its fastest form.
#include <netcdf.h>

#include "bench/support/BulkStore.h"

namespace {

class NetCdf : public bench::BulkStore {
  public:
    std::string Name() const override { return "netCDF"; }
    void Create(std::string const& path, int nodes, int elements) override {
        m_path = path;
        int dimensions[2];
        Require(nc_create(path.c_str(), NC_CLOBBER | NC_NETCDF4, &m_file));
        Require(nc_def_dim(m_file, "rows",
                           static_cast<std::size_t>(elements > 0 ? elements : nodes),
                           &dimensions[0]));
        Require(nc_def_dim(m_file, "columns", elements > 0 ? 8 : 3, &dimensions[1]));
        Require(nc_def_var(m_file, "numbers", elements > 0 ? NC_INT : NC_DOUBLE, 2, dimensions,
                           &m_variable));
        Require(nc_def_var_chunking(m_file, m_variable, NC_CONTIGUOUS, nullptr));
        Require(nc_def_var_fill(m_file, m_variable, NC_NOFILL, nullptr));
        Require(nc_enddef(m_file));
    }
    void WriteCoordinates(int first, int n, double const* xyz) override {
        Rows const rows(first, n, 3);
        Require(nc_put_vara_double(m_file, m_variable, rows.start, rows.count, xyz));
    }
    void WriteConnectivity(int first, int n, int const* nodes) override {
        Rows const rows(first, n, 8);
        Require(nc_put_vara_int(m_file, m_variable, rows.start, rows.count, nodes));
    }
    void Commit() override {
        Require(nc_sync(m_file));
        bench::SyncFile(m_path);
    }
    void Close() override { Require(nc_close(m_file)); }
    void Open(std::string const& path) override {
        Require(nc_open(path.c_str(), NC_NOWRITE, &m_file));
        Require(nc_inq_varid(m_file, "numbers", &m_variable));
    }
    void ReadCoordinates(int first, int n, double* xyz) override {
        Rows const rows(first, n, 3);
        Require(nc_get_vara_double(m_file, m_variable, rows.start, rows.count, xyz));
    }
    void ReadConnectivity(int first, int n, int* nodes) override {
        Rows const rows(first, n, 8);
        Require(nc_get_vara_int(m_file, m_variable, rows.start, rows.count, nodes));
    }
    bool Gather(int const* nodes, int n, double* xyz) override {
        for (int i = 0; i < n; ++i) ReadCoordinates(nodes[i], 1, xyz + 3 * i);
        return true;
    }
    bool ReadStrided(int n, int stride, double* xyz) override {
        Rows const rows(0, n, 3);
        std::ptrdiff_t const step[2] = {stride, 1};
        Require(nc_get_vars_double(m_file, m_variable, rows.start, rows.count, step, xyz));
        return true;
    }

  private:
    static void Require(int answer) {
        if (answer != NC_NOERR) throw std::runtime_error(nc_strerror(answer));
    }
    struct Rows {
        Rows(int first, int n, std::size_t width)
            : start{static_cast<std::size_t>(first), 0},
              count{static_cast<std::size_t>(n), width} {}
        std::size_t start[2], count[2];
    };

    std::string m_path;
    int m_file = -1, m_variable = -1;
};

}  // namespace

int main(int argc, char** argv) {
    NetCdf store;
    return bench::RunBulk(argc, argv, store);
}
