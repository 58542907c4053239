// Inverse connectivity: ours; a plain two-pass counting loop over the same numbers, read by pread;
// and VTK's two kinds of cell links. Each side allocates what it gives back; each is run in turn.
//
//   --elements 5000000 --permuted 1 --runs 5
#include <map>
#include <memory>

#include "KOVSrvElementConnectivity.h"
#include "KOVSrvInverseConnectivity.h"
#include "bench/support/HexMesh.h"
#include "bench/support/Mesh.h"
#ifdef KOV_BENCH_VTK
#include "bench/peers/VtkLinks.h"
#endif

namespace {

template <class T>
T* HugeArray(std::size_t count) {
    void* place = nullptr;
    if (posix_memalign(&place, std::size_t{2} << 20, count * sizeof(T)) != 0)
        throw std::bad_alloc();
    (void)madvise(place, count * sizeof(T), MADV_HUGEPAGE);
    return static_cast<T*>(place);
}

// What the bar is taken from.
struct PlainLoop {
    ~PlainLoop() {
        std::free(offsets);
        std::free(entries);
    }
    void Run(std::string const& path, std::size_t elements, std::size_t nodes) {
        std::size_t const total = 8 * elements;
        int* const block = HugeArray<int>(total);
        int const file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (pread(file, block, total * 4, 0) != static_cast<ssize_t>(total * 4)) {
            throw std::runtime_error("pread");
        }
        close(file);

        offsets = HugeArray<int>(nodes + 1);
        std::fill_n(offsets, nodes + 1, 0);
        for (std::size_t i = 0; i < total; ++i) ++offsets[block[i]];
        int sum = 0;
        for (std::size_t i = 0; i <= nodes; ++i) {
            int const count = offsets[i];
            offsets[i] = sum;
            sum += count;
        }
        entries = HugeArray<std::uint32_t>(total);
        int* const next = HugeArray<int>(nodes);
        std::copy_n(offsets, nodes, next);
        for (std::size_t e = 0; e < elements; ++e) {
            for (std::size_t k = 0; k < 8; ++k) {
                entries[next[block[8 * e + k]]++] = static_cast<std::uint32_t>(e | k << 25);
            }
        }
        std::free(next);
        std::free(block);
    }
    int* offsets = nullptr;
    std::uint32_t* entries = nullptr;
};

KOVObjDocument WriteDocument(std::string const& path, bench::HexMesh const& hexes,
                             int const* nodes) {
    KOVObjDocument document = KOVObjDocument::Create(path.c_str());
    bench::Mesh mesh(document);
    KOVSimTransaction transaction(document.ContextID());
    mesh.Extend(hexes.NumberNodes(), hexes.NumberElements());
    KOVSrvElementConnectivity connectivity(mesh.connectivity, 100'000);
    KOVSimCSetID const corners = mesh.slots.CreateTempCSetStrided(0, 8, 1, 1);
    connectivity.Append(transaction, mesh.position.ID(),
                        mesh.elements.CreateTempCSetStrided(0, hexes.NumberElements(), 1, 1),
                        corners, nodes);
    transaction.Commit();
    return document;
}

void CheckSame(KOVSrvInverseConnectivity const& ours, PlainLoop const& plain, int nodes) {
    bool same = std::equal(plain.offsets, plain.offsets + nodes + 1, ours.Offsets());
    for (int at = 0; same && at < ours.Total(); ++at) {
        std::uint32_t const entry = plain.entries[at];
        same = ours.Element(at) == static_cast<int>(entry & 0x1ffffff) &&
               ours.Position(at) == static_cast<int>(entry >> 25);
    }
    if (!same) throw std::runtime_error("inverse connectivity: not what the plain loop gives");
}

void Run(bench::Options const& options) {
    bool const permuted = options.Int("permuted", 0) != 0;
    bench::HexMesh const hexes(options.Int("elements", 5'000'000), permuted);
    int const elements = hexes.NumberElements(), points = hexes.NumberNodes();
    bench::Array<int> nodes(8 * static_cast<std::size_t>(elements));
    hexes.Connectivity(nodes.data());

    std::string const path = bench::FreshPath(options, "inverse.ksd");
    std::string const plainPath = bench::FreshPath(options, "inverse.plain");
    WriteDocument(path, hexes, nodes.data()).Close();
    {
        int const file = open(plainPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        if (write(file, nodes.data(), nodes.size() * 4) < 0) throw std::runtime_error("write");
        close(file);
    }
#ifdef KOV_BENCH_VTK
    bench::VtkLinks vtk(nodes.data(), elements, points);
#endif

    std::map<std::string, std::vector<double>> seconds, peak;
    auto const measure = [&](char const* who, auto&& work) {
        peak[who].push_back(bench::PeakMB([&] { seconds[who].push_back(bench::Seconds(work)); }));
    };
    for (int run = 0; run < options.Int("runs", 5); ++run) {
        auto const plain = std::make_unique<PlainLoop>();
        measure("plain loop", [&] {
            plain->Run(plainPath, static_cast<std::size_t>(elements),
                       static_cast<std::size_t>(points));
        });
        {
            // Opened anew each time, so that the checksums are verified each time.
            KOVObjDocument const document =
                KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
            KOVSrvInverseConnectivity inverse(document.GetMesh());
            measure("ours", [&] { inverse.Invert(); });
            if (run == 0) CheckSame(inverse, *plain, points);
            measure("ours, later", [&] { inverse.Invert(); });
            document.Close();
        }
#ifdef KOV_BENCH_VTK
        measure("VTK links", [&] { vtk.Build(); });
        measure("VTK static links", [&] { vtk.BuildStatic(); });
#endif
    }
    for (auto const& [who, times] : seconds) {
        bench::Report(permuted ? "inverse.permuted" : "inverse", who, bench::Median(times),
                      bench::Median(peak[who]));
    }
    std::filesystem::remove_all(path);
    std::filesystem::remove_all(plainPath);
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
