#include "bench/support/BulkStore.h"

#include <algorithm>
#include <numeric>
#include <random>

#include "bench/support/HexMesh.h"

namespace bench {
namespace {

template <class Block>
void ForBlocks(int count, Block&& block) {
    for (int first = 0; first < count; first += kBlock) {
        block(first, std::min(kBlock, count - first));
    }
}

void Check(bool right, BulkStore const& store, char const* what) {
    if (!right) throw std::runtime_error(store.Name() + ": wrong numbers: " + what);
}

// Writes under the row `row`.write, then reads twice: the first time after opening, and again.
template <class Write, class Read>
void WriteAndRead(BulkStore& store, std::string const& row, std::string const& path, double bytes,
                  Write&& write, Read&& read) {
    double seconds = 0;
    double const mb = PeakMB([&] { seconds = Seconds(write); });
    store.Close();
    Report(row + ".write", store.Name(), bytes / seconds, mb);
    store.Open(path);
    Report(row + ".read1", store.Name(), bytes / Seconds(read));
    Report(row + ".read2", store.Name(), bytes / Seconds(read));
    store.Close();
}

// The blocks of a store that keeps components apart: (n, 3) to three arrays, one after another.
void SplitBlocks(Array<double>& xyz, int nodes) {
    std::vector<double> split(3 * std::size_t{kBlock});
    ForBlocks(nodes, [&](int first, int n) {
        double* const block = xyz.data() + std::ptrdiff_t{3} * first;
        for (int i = 0; i < n; ++i) {
            for (int c = 0; c < 3; ++c) {
                split[static_cast<std::size_t>(c * n + i)] = block[3 * i + c];
            }
        }
        std::copy_n(split.data(), 3 * n, block);
    });
}

void CoordinatesCase(BulkStore& store, std::string const& path, int nodes) {
    Array<double> xyz(3 * static_cast<std::size_t>(nodes));
    Coordinates(nodes, xyz.data());
    if (store.WantsComponents()) SplitBlocks(xyz, nodes);
    Array<double> back(3 * std::size_t{kBlock});
    store.Create(path, nodes, 0);
    WriteAndRead(
        store, "coordinates", path, 24.0 * nodes,
        [&] {
            ForBlocks(nodes, [&](int first, int n) {
                store.WriteCoordinates(first, n, xyz.data() + std::ptrdiff_t{3} * first);
            });
            store.Commit();
        },
        [&] {
            ForBlocks(nodes,
                      [&](int first, int n) { store.ReadCoordinates(first, n, back.data()); });
        });
    int const last = (nodes - 1) / kBlock * kBlock;
    Check(std::equal(back.data(), back.data() + 3 * (nodes - last),
                     xyz.data() + std::ptrdiff_t{3} * last),
          store, "coordinates");
}

void ConnectivityCase(BulkStore& store, std::string const& path, int wanted) {
    HexMesh const mesh(wanted);
    int const elements = mesh.NumberElements();
    Array<int> nodes(8 * static_cast<std::size_t>(elements));
    mesh.Connectivity(nodes.data());
    if (store.WantsOneBased()) {
        for (std::size_t i = 0; i < nodes.size(); ++i) ++nodes[i];
    }
    Array<int> back(8 * std::size_t{kBlock});
    store.Create(path, mesh.NumberNodes(), elements);
    WriteAndRead(
        store, "connectivity", path, 32.0 * elements,
        [&] {
            ForBlocks(elements, [&](int first, int n) {
                store.WriteConnectivity(first, n, nodes.data() + std::ptrdiff_t{8} * first);
            });
            store.Commit();
        },
        [&] {
            ForBlocks(elements,
                      [&](int first, int n) { store.ReadConnectivity(first, n, back.data()); });
        });
    int const last = (elements - 1) / kBlock * kBlock;
    Check(std::equal(back.data(), back.data() + 8 * (elements - last),
                     nodes.data() + std::ptrdiff_t{8} * last),
          store, "connectivity");
}

void FieldsCase(BulkStore& store, std::string const& path, int nodes) {
    Array<double> values(3 * static_cast<std::size_t>(nodes)), back(values.size());
    Coordinates(nodes, values.data());
    store.Create(path, nodes, 0);
    auto const from = [](Array<double>& all, int first) {
        return all.data() + std::ptrdiff_t{3} * first;
    };
    WriteAndRead(
        store, "fields", path, 24.0 * nodes,
        [&] {
            ForBlocks(nodes,
                      [&](int first, int n) { store.WriteField(first, n, from(values, first)); });
            store.Commit();
        },
        [&] {
            ForBlocks(nodes,
                      [&](int first, int n) { store.ReadField(first, n, from(back, first)); });
        });
    Check(std::equal(back.data(), back.data() + back.size(), values.data()), store, "a field");
    std::fill(back.data(), back.data() + back.size(), 0.0);
    store.Open(path);
    // The first time after opening, and again.
    for (char const* const row : {"fields.whole1", "fields.whole2"}) {
        Report(row, store.Name(),
               24.0 * nodes / Seconds([&] { store.ReadField(0, nodes, back.data()); }));
    }
    store.Close();
    Check(std::equal(back.data(), back.data() + back.size(), values.data()), store,
          "a field as a whole");
}

void WriteMesh(BulkStore& store, std::string const& path, int nodes) {
    Array<double> xyz(3 * static_cast<std::size_t>(nodes));
    Coordinates(nodes, xyz.data());
    if (store.WantsComponents()) SplitBlocks(xyz, nodes);
    store.Create(path, nodes, 0);
    ForBlocks(nodes, [&](int first, int n) {
        store.WriteCoordinates(first, n, xyz.data() + std::ptrdiff_t{3} * first);
    });
    store.Commit();
    store.Close();
}

// Node `i` as Coordinates made it.
bool IsNode(double const* xyz, int i) {
    return xyz[0] == 0.001 * i && xyz[2] == 0.001 * i + 2 * 1e-9;
}

void GatherCase(BulkStore& store, std::string const& path, int nodes, int picked) {
    WriteMesh(store, path, nodes);
    store.Open(path);
    Array<double> back(3 * std::size_t{kBlock});
    ForBlocks(nodes, [&](int first, int n) { store.ReadCoordinates(first, n, back.data()); });

    picked = std::min(picked, nodes / 2);
    std::vector<int> order(static_cast<std::size_t>(nodes));
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), std::mt19937(3));
    int const strided = (nodes + 9) / 10;
    Array<double> out(3 * static_cast<std::size_t>(std::max(picked, strided)));

    // Median seconds of a few calls; none if the store cannot.
    auto const timed = [&](auto&& call) {
        std::vector<double> times;
        for (int run = 0; run < 3; ++run) {
            bool can = true;
            times.push_back(Seconds([&] { can = call(); }));
            if (!can) return 0.0;
        }
        return Median(std::move(times));
    };
    if (double const seconds =
            timed([&] { return store.Gather(order.data(), picked, out.data()); })) {
        auto const last = static_cast<std::size_t>(picked - 1);
        Check(IsNode(&out[0], order[0]) && IsNode(&out[3 * last], order[last]), store,
              "random nodes");
        Report("gather", store.GatherName(), picked / seconds);
    }
    if (double const seconds = timed([&] { return store.ReadStrided(strided, 10, out.data()); })) {
        Check(IsNode(&out[3 * static_cast<std::size_t>(strided - 1)], 10 * (strided - 1)), store,
              "one in ten");
        Report("strided", store.GatherName(), strided / seconds);
    }
    store.Close();
}

void OpenCase(BulkStore& store, std::string const& path, int nodes) {
    WriteMesh(store, path, nodes);
    std::vector<double> times;
    for (int i = 0; i < 41; ++i) {
        double xyz[3] = {};
        int const node = static_cast<int>(static_cast<long long>(nodes) * (i + 1) / 50);
        times.push_back(Seconds([&] {
            store.Open(path);
            store.ReadCoordinates(node, 1, xyz);
        }));
        Check(IsNode(xyz, node), store, "one node");
        store.Close();
    }
    Report("open", store.Name(), Median(std::move(times)));
}

}  // namespace

int RunBulk(int argc, char** argv, BulkStore& store) {
    Options const options(argc, argv);
    std::string const path = FreshPath(options, "bulk-" + store.Name());
    std::string const work = options.Text("case", "coordinates");
    int const nodes = options.Int("nodes", 10'000'000);
    try {
        if (work == "coordinates") CoordinatesCase(store, path, nodes);
        if (work == "connectivity") {
            ConnectivityCase(store, path, options.Int("elements", 5'000'000));
        }
        if (work == "fields") FieldsCase(store, path, nodes);
        if (work == "gather") GatherCase(store, path, nodes, options.Int("picked", 1'000'000));
        if (work == "open") OpenCase(store, path, nodes);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s, %s: %s\n", store.Name().c_str(), work.c_str(), error.what());
        return 1;
    }
    std::filesystem::remove_all(path);
    return 0;
}

}  // namespace bench
