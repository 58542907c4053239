// Copying a distribution of (nodes, 3) doubles in one growing drawer into an empty one: by the
// copier, which makes a buffer of the whole drawer; and by a plain read and write of the whole
// through transfers, with a buffer made for it as well, and with one that was made and touched
// beforehand. Members go where they are, or are permuted. The data were verified before; each side
// ends with a commit.
//
//   --nodes 10000000 --permuted 1 --runs 6
#include <functional>
#include <map>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

#include "KOVSimTransfer.h"
#include "KOVSrvCopyDistribution.h"
#include "KOVSrvNodalCoordinates.h"
#include "bench/support/HexMesh.h"
#include "bench/support/Mesh.h"

namespace {

using Sets = KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>;

class Model {
  public:
    Model(std::string const& path, int nodes, bool permuted)
        : m_document(KOVObjDocument::Create(path.c_str())),
          m_mesh(m_document),
          m_buffer(Numbers(nodes)) {
        KOVSimTransaction transaction(m_document.ContextID());
        m_mesh.Extend(nodes, 1);
        m_axes = m_mesh.Axes();
        m_from = m_mesh.nodes.CreateTempCSetStrided(0, nodes, 1, 1);
        m_to = m_from;
        if (permuted) {
            std::vector<int> order(static_cast<std::size_t>(nodes));
            std::iota(order.begin(), order.end(), 0);
            std::shuffle(order.begin(), order.end(), std::mt19937(1));
            m_to = m_mesh.nodes.CreateTempOrderedCSet(order.data(), nodes);
        }
        bench::Coordinates(nodes, m_buffer.data());
        KOVSrvNodalCoordinates(m_mesh.coordinates, 100'000)
            .Append(transaction, m_from, m_axes, m_buffer.data());
        transaction.Commit();
    }
    ~Model() { m_document.Close(); }
    Model(Model const&) = delete;
    Model& operator=(Model const&) = delete;

    double Bytes() const { return static_cast<double>(m_buffer.size() * sizeof(double)); }

    void Copy() {
        KOVSimTransaction transaction(m_document.ContextID());
        KOVSimDistributionID const made = NewDistribution();
        KOVSrvCopyDistribution(made, Source(), Pair(m_to, m_axes), Pair(m_from, m_axes),
                               KOVSrvDistributionTransform());
        transaction.Commit();
    }
    void ReadAndWriteAnew() {
        void* const buffer = mem_Malloc(m_buffer.size() * sizeof(double));
        ReadAndWrite(buffer);
        mem_Free(buffer);
    }
    void ReadAndWrite() { ReadAndWrite(m_buffer.data()); }

  private:
    void ReadAndWrite(void* buffer) {
        KOVSimTransaction transaction(m_document.ContextID());
        KOVSimDistributionID const made = NewDistribution();
        unsigned long const bytes = m_buffer.size() * sizeof(double);
        KOVSimTransfer read{KOVSimDistribution(Source())};
        read.SetRead().SetDim(0, m_from).SetDim(1, m_axes).CheckView();
        read.SetBuffer(0, buffer, bytes).ExecRead();
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(2);
        chunks.Get(0) = 100'000;
        chunks.Get(1) = 3;
        KOVSimTransfer write{KOVSimDistribution(made)};
        write.SetWrite().SetMakeNewDrawerChunked(chunks).SetExtendableDim(0);
        write.SetDim(0, m_to).SetDim(1, m_axes).CheckView();
        write.SetBuffer(0, buffer, bytes).ExecWrite();
        transaction.Commit();
    }
    static std::size_t Numbers(int nodes) { return 3 * static_cast<std::size_t>(nodes); }
    KOVSimDistributionID Source() const { return m_mesh.coordinates.GetDistribution(); }
    static Sets Pair(KOVSimCSetID const& rows, KOVSimCSetID const& columns) {
        Sets sets(2);
        sets.Get(0) = rows;
        sets.Get(1) = columns;
        return sets;
    }
    KOVSimDistributionID NewDistribution() const {
        return m_document.CreateDistribution(KOVSimDistribution(Source()).Grid(),
                                             KOVSimRangeType(KOVSimTypeKeyDouble), -1);
    }

    KOVObjDocument m_document;
    bench::Mesh m_mesh;
    bench::Array<double> m_buffer;
    KOVSimCSetID m_axes, m_from, m_to;
};

void Run(bench::Options const& options) {
    bool const permuted = options.Int("permuted", 0) != 0;
    std::string const path = bench::FreshPath(options, "copy.ksd");
    {
        Model model(path, options.Int("nodes", 10'000'000), permuted);
        model.ReadAndWrite();  // verifies the source
        std::map<std::string, std::vector<double>> rate, peak;
        std::vector<std::pair<char const*, std::function<void()>>> const sides = {
            {"ours", [&] { model.Copy(); }},
            {"read and write", [&] { model.ReadAndWriteAnew(); }},
            {"buffer at hand", [&] { model.ReadAndWrite(); }}};
        // Fresh memory costs most who asks first after a rest: each comes behind each other one.
        std::size_t const order[] = {0, 1, 2, 0, 2, 1};
        int const turns = 3 * options.Int("runs", 6);
        for (int turn = 0; turn < turns; ++turn) {
            auto const& [who, work] = sides[order[turn % 6]];
            peak[who].push_back(
                bench::PeakMB([&] { rate[who].push_back(model.Bytes() / bench::Seconds(work)); }));
        }
        for (auto const& [who, rates] : rate) {
            bench::Report(permuted ? "copy.permuted" : "copy", who, bench::Median(rates),
                          bench::Median(peak[who]));
        }
    }
    std::filesystem::remove_all(path);
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
