// HDF5: one contiguous dataset, its fastest form; with --variant checksum chunks of 100,000 rows
// under its own checksum filter.
#include <hdf5.h>

#include "bench/support/BulkStore.h"

namespace {

class Hdf5 : public bench::BulkStore {
  public:
    explicit Hdf5(bool checksum) : m_checksum(checksum) {}
    std::string Name() const override { return m_checksum ? "HDF5 checksum" : "HDF5"; }
    void Create(std::string const& path, int nodes, int elements) override {
        m_path = path;
        m_file = H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
        m_set = elements > 0 ? NewSet(elements, 8, H5T_NATIVE_INT)
                             : NewSet(nodes, 3, H5T_NATIVE_DOUBLE);
    }
    void WriteCoordinates(int first, int n, double const* xyz) override {
        Rows const rows(m_set, first, n, 1, 3);
        Require(H5Dwrite(m_set, H5T_NATIVE_DOUBLE, rows.memory, rows.file, H5P_DEFAULT, xyz));
    }
    void WriteConnectivity(int first, int n, int const* nodes) override {
        Rows const rows(m_set, first, n, 1, 8);
        Require(H5Dwrite(m_set, H5T_NATIVE_INT, rows.memory, rows.file, H5P_DEFAULT, nodes));
    }
    void Commit() override {
        Require(H5Fflush(m_file, H5F_SCOPE_GLOBAL));
        bench::SyncFile(m_path);
    }
    void Close() override {
        H5Dclose(m_set);
        H5Fclose(m_file);
    }
    void Open(std::string const& path) override {
        m_file = H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
        m_set = H5Dopen2(m_file, "numbers", H5P_DEFAULT);
    }
    void ReadCoordinates(int first, int n, double* xyz) override {
        Rows const rows(m_set, first, n, 1, 3);
        Require(H5Dread(m_set, H5T_NATIVE_DOUBLE, rows.memory, rows.file, H5P_DEFAULT, xyz));
    }
    void ReadConnectivity(int first, int n, int* nodes) override {
        Rows const rows(m_set, first, n, 1, 8);
        Require(H5Dread(m_set, H5T_NATIVE_INT, rows.memory, rows.file, H5P_DEFAULT, nodes));
    }
    bool Gather(int const* nodes, int n, double* xyz) override {
        std::vector<hsize_t> points;
        for (int i = 0; i < n; ++i) {
            for (hsize_t c = 0; c < 3; ++c) {
                points.push_back(static_cast<hsize_t>(nodes[i]));
                points.push_back(c);
            }
        }
        hid_t const file = H5Dget_space(m_set);
        hsize_t const count = points.size() / 2;
        Require(H5Sselect_elements(file, H5S_SELECT_SET, count, points.data()));
        hid_t const memory = H5Screate_simple(1, &count, nullptr);
        Require(H5Dread(m_set, H5T_NATIVE_DOUBLE, memory, file, H5P_DEFAULT, xyz));
        H5Sclose(memory);
        H5Sclose(file);
        return true;
    }
    bool ReadStrided(int n, int stride, double* xyz) override {
        Rows const rows(m_set, 0, n, stride, 3);
        Require(H5Dread(m_set, H5T_NATIVE_DOUBLE, rows.memory, rows.file, H5P_DEFAULT, xyz));
        return true;
    }

  private:
    static void Require(herr_t answer) {
        if (answer < 0) throw std::runtime_error("a call failed");
    }
    struct Rows {
        Rows(hid_t set, int first, int n, int stride, hsize_t width) {
            hsize_t const start[2] = {static_cast<hsize_t>(first), 0};
            hsize_t const step[2] = {static_cast<hsize_t>(stride), 1};
            hsize_t const count[2] = {static_cast<hsize_t>(n), width};
            file = H5Dget_space(set);
            memory = H5Screate_simple(2, count, nullptr);
            Require(H5Sselect_hyperslab(file, H5S_SELECT_SET, start, step, count, nullptr));
        }
        ~Rows() {
            H5Sclose(memory);
            H5Sclose(file);
        }
        hid_t file, memory;
    };
    hid_t NewSet(int rows, hsize_t width, hid_t type) const {
        hsize_t const size[2] = {static_cast<hsize_t>(rows), width};
        hsize_t const chunk[2] = {bench::kBlock, width};
        hid_t const space = H5Screate_simple(2, size, nullptr);
        hid_t const form = H5Pcreate(H5P_DATASET_CREATE);
        if (m_checksum) {
            H5Pset_chunk(form, 2, chunk);
            H5Pset_fletcher32(form);
        }
        hid_t const set =
            H5Dcreate2(m_file, "numbers", type, space, H5P_DEFAULT, form, H5P_DEFAULT);
        H5Pclose(form);
        H5Sclose(space);
        return set;
    }

    bool m_checksum;
    std::string m_path;
    hid_t m_file = -1, m_set = -1;
};

}  // namespace

int main(int argc, char** argv) {
    Hdf5 store(bench::Options(argc, argv).Text("variant", "") == "checksum");
    return bench::RunBulk(argc, argv, store);
}
