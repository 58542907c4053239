// Set algebra on sets of 10 million members, as a user of the document layer sees it, beside plain
// merges of sorted arrays: one range; runs of about 100; one in ten at random.
//
//   --members 10000000 --runs 21
#include <functional>
#include <iterator>
#include <random>

#include "KOVSimCSet.h"
#include "bench/support/Measure.h"
#include "bench/support/Mesh.h"

namespace {

using Operation = std::function<KOVSimCSet(KOVSimCSet const&, KOVSimCSet const&)>;

struct Named {
    char const* name;
    Operation operation;
};

KOVSimCSet RunsOf100(KOVSimCollection const& nodes, int members, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<int> list;
    for (int next = 0; static_cast<int>(list.size()) < members;) {
        next += 1 + static_cast<int>(random() % 199);
        for (int left = 1 + static_cast<int>(random() % 199); left > 0; --left)
            list.push_back(next++);
    }
    list.resize(static_cast<std::size_t>(members));
    return nodes.CreateVolatileCSet(list.data(), members, false);
}

KOVSimCSet OneInTen(KOVSimCollection const& nodes, int members, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<int> list;
    for (int i = 0; i < nodes.Space() && static_cast<int>(list.size()) < members; ++i) {
        if (random() % 10 == 0) list.push_back(i);
    }
    return nodes.CreateVolatileCSet(list.data(), static_cast<int>(list.size()), false);
}

std::vector<int> Members(KOVSimCSet const& set) {
    std::vector<int> members(static_cast<std::size_t>(set.Size()));
    set.Members(members.data());
    return members;
}

void Measure(std::string const& row, KOVSimCSet const& a, KOVSimCSet const& b, int runs,
             int inner) {
    Named const operations[] = {
        {"union", [](auto const& x, auto const& y) { return x.Union(y); }},
        {"intersection", [](auto const& x, auto const& y) { return x.Intersection(y); }},
        {"difference", [](auto const& x, auto const& y) { return x - y; }}};
    for (Named const& named : operations) {
        std::vector<double> times;
        for (int run = 0; run < runs; ++run) {
            times.push_back(bench::Seconds([&] {
                                for (int i = 0; i < inner; ++i) named.operation(a, b);
                            }) /
                            inner);
        }
        bench::Report("algebra." + row + "." + named.name, "ours", bench::Median(times));
    }

    std::vector<int> const left = Members(a), right = Members(b);
    std::vector<int> joined(left.size() + right.size());
    std::vector<double> times;
    std::size_t size = 0;
    for (int run = 0; run < 3; ++run) {
        times.push_back(bench::Seconds([&] {
            size = static_cast<std::size_t>(std::set_union(left.begin(), left.end(), right.begin(),
                                                           right.end(), joined.begin()) -
                                            joined.begin());
        }));
    }
    bench::Report("algebra." + row + ".union", "plain merge", bench::Median(times));
    joined.resize(size);
    if (Members(a.Union(b)) != joined) throw std::runtime_error("set algebra: wrong members");
}

void Run(bench::Options const& options) {
    int const members = options.Int("members", 10'000'000);
    int const runs = options.Int("runs", 21);
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    bench::Mesh mesh(document);
    KOVSimTransaction transaction(document.ContextID());
    mesh.Extend(members / 10 * 101, 0);
    transaction.Commit();
    KOVSimCollection const& nodes = mesh.nodes;
    Measure("range", nodes.CreateVolatileCSetStrided(0, members, 1, 1),
            nodes.CreateVolatileCSetStrided(members / 2, members, 1, 1), runs, 1000);
    Measure("runs", RunsOf100(nodes, members, 1), RunsOf100(nodes, members, 2), runs, 1);
    Measure("random", OneInTen(nodes, members, 1), OneInTen(nodes, members, 2), runs, 1);
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
