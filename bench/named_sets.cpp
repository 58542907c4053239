// Named sets of 100 nodes each: written in one transaction, and the first one read after opening.
//
//   --sets 100000
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "bench/support/Measure.h"
#include "bench/support/Mesh.h"

namespace {

constexpr int kMembers = 100;

KOVString Name(int set) { return ("SET-" + std::to_string(set)).c_str(); }

// Seconds of one transaction that names sets [first, last).
double WriteSets(KOVObjDocument const& document, bench::Mesh& mesh, int first, int last) {
    return bench::Seconds([&] {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimMap const sets = document.GetModel().GetMap(schema::Model_nodeSets());
        int members[kMembers];
        for (int i = first; i < last; ++i) {
            for (int m = 0; m < kMembers; ++m) members[m] = i % 9000 + 100 * m + i / 9000;
            sets.Insert(Name(i), mesh.nodes.CreateCSet(members, kMembers, false));
        }
        transaction.Commit();
    });
}

// What a set costs beside what any commit costs; and with the commit's share. Small transactions
// are repeated, since a commit waits for the disk.
void Write(std::string const& path, int count) {
    KOVObjDocument const document = KOVObjDocument::Create(path.c_str());
    bench::Mesh mesh(document);
    {
        KOVSimTransaction transaction(document.ContextID());
        mesh.Extend(1'000'000, 0);
        transaction.Commit();
    }
    int const repeats = std::clamp(20'000 / count, 1, 15);
    std::vector<double> many, single;
    double mb = 0;
    int named = 0;
    auto const write = [&](int sets) {
        double const seconds = WriteSets(document, mesh, named, named + sets);
        named += sets;
        return seconds;
    };
    for (int i = 0; i < repeats; ++i) {
        mb = std::max(mb, bench::PeakMB([&] { many.push_back(write(count)); }));
        single.push_back(write(1));
    }
    while (single.size() < 5) single.push_back(write(1));
    double const seconds = bench::Median(std::move(many));
    double const commit = bench::Median(std::move(single));
    std::string const row = "sets." + std::to_string(count) + ".write";
    bench::Report(row, "ours", std::max(seconds - commit, 0.0) / count, mb);
    bench::Report(row, "ours, with the commit", seconds / count);
    document.Close();
}

void ReadFirst(std::string const& path, int count) {
    std::vector<double> times;
    for (int run = 0; run < 21; ++run) {
        int members[kMembers];
        int size = 0;
        KOVObjDocument document;
        times.push_back(bench::Seconds([&] {
            document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
            KOVSimCSet const set =
                document.GetModel().GetMap(schema::Model_nodeSets()).Find(Name(count / 2)).CSet();
            size = set.Size();
            if (size == kMembers) set.Members(members);
        }));
        if (size != kMembers || members[0] != count / 2 % 9000 + count / 2 / 9000) {
            throw std::runtime_error("named sets: wrong members");
        }
        document.Close();
    }
    bench::Report("sets." + std::to_string(count) + ".first", "ours", bench::Median(times));
}

}  // namespace

int main(int argc, char** argv) {
    bench::Options const options(argc, argv);
    int const count = options.Int("sets", 100'000);
    std::string const path = bench::FreshPath(options, "sets.ksd");
    try {
        Write(path, count);
        ReadFirst(path, count);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    std::filesystem::remove_all(path);
    return 0;
}
