// The physical limit of the bulk rows: the same blocks by plain pwrite and pread on one file.
#include "bench/support/BulkStore.h"

namespace {

class PlainFile : public bench::BulkStore {
  public:
    std::string Name() const override { return "plain file"; }
    std::string GatherName() const override { return "mapped file"; }
    void Create(std::string const& path, int, int) override {
        m_file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    }
    void WriteCoordinates(int first, int n, double const* xyz) override {
        Write(first, n, 24, xyz);
    }
    void WriteConnectivity(int first, int n, int const* nodes) override {
        Write(first, n, 32, nodes);
    }
    void Commit() override {
        if (fdatasync(m_file) != 0) throw std::runtime_error("fdatasync");
    }
    void Close() override { close(m_file); }
    void Open(std::string const& path) override {
        m_file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    }
    void ReadCoordinates(int first, int n, double* xyz) override { Read(first, n, 24, xyz); }
    void ReadConnectivity(int first, int n, int* nodes) override { Read(first, n, 32, nodes); }
    // One call for each node is no limit of anything: the file is mapped.
    bool Gather(int const* nodes, int n, double* xyz) override {
        double const* const all = Map();
        for (int i = 0; i < n; ++i) {
            std::memcpy(xyz + 3 * i, all + std::ptrdiff_t{3} * nodes[i], 24);
        }
        return true;
    }
    bool ReadStrided(int n, int stride, double* xyz) override {
        double const* const all = Map();
        for (int i = 0; i < n; ++i) {
            std::memcpy(xyz + 3 * i, all + std::ptrdiff_t{3} * stride * i, 24);
        }
        return true;
    }

  private:
    double const* Map() const {
        auto const bytes = static_cast<std::size_t>(lseek(m_file, 0, SEEK_END));
        void* const place = mmap(nullptr, bytes, PROT_READ, MAP_SHARED | MAP_POPULATE, m_file, 0);
        if (place == MAP_FAILED) throw std::runtime_error("mmap");
        return static_cast<double const*>(place);
    }
    void Write(int first, int n, int row, void const* data) {
        auto const bytes = static_cast<std::size_t>(n) * static_cast<std::size_t>(row);
        if (pwrite(m_file, data, bytes, static_cast<off_t>(first) * row) !=
            static_cast<ssize_t>(bytes)) {
            throw std::runtime_error("pwrite");
        }
    }
    void Read(int first, int n, int row, void* data) {
        auto const bytes = static_cast<std::size_t>(n) * static_cast<std::size_t>(row);
        if (pread(m_file, data, bytes, static_cast<off_t>(first) * row) !=
            static_cast<ssize_t>(bytes)) {
            throw std::runtime_error("pread");
        }
    }

    int m_file = -1;
};

}  // namespace

int main(int argc, char** argv) {
    PlainFile store;
    return bench::RunBulk(argc, argv, store);
}
