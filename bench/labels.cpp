// Labels: from ordinal to instance and label and back on one labeler, the same with a labeler for
// each call, and the mapping of two documents that number their nodes differently.
//
//   --nodes 5000000 --instances 10 --lookups 1000000 --runs 5 --map 1
//
// The nodes of an instance follow each other, and its labels 1, 2, ... are permuted over them.
// Look-ups are at random over all nodes, and what they give is compared with an array. Beside the
// mapping stands the reading of the labels of both documents alone, instance after instance.
#include <numeric>
#include <random>

#include "KOVObjLabeler.h"
#include "KOVSrvGetInstanceInfo.h"
#include "KOVSrvLabelMapper.h"
#include "bench/support/Measure.h"
#include "bench/support/Mesh.h"

namespace {

KOVString Name(int instance) { return ("PART-1-" + std::to_string(instance)).c_str(); }

class Numbering {
  public:
    Numbering(int nodes, int instances, unsigned seed) : m_labels(static_cast<std::size_t>(nodes)) {
        std::mt19937 random(seed);
        m_size = nodes / instances;
        for (int i = 0; i < instances; ++i) {
            auto const first = m_labels.begin() + static_cast<std::ptrdiff_t>(i) * m_size;
            std::iota(first, first + m_size, 1);
            std::shuffle(first, first + m_size, random);
        }
    }
    int InstanceSize() const { return m_size; }
    int Label(int ordinal) const { return m_labels[static_cast<std::size_t>(ordinal)]; }

  private:
    std::vector<int> m_labels;
    int m_size;
};

KOVObjDocument WriteDocument(std::string const& path, Numbering const& numbering, int instances,
                             int firstInstance) {
    KOVObjDocument document = KOVObjDocument::Create(path.c_str());
    bench::Mesh mesh(document);
    KOVSimTransaction transaction(document.ContextID());
    mesh.Extend(numbering.InstanceSize() * instances, 0);
    KOVObjLabeler labeler(document, KOVObjLabelerNodes);
    KOVBasVector<int> labels(numbering.InstanceSize());
    KOVBasVector<int> ordinals(numbering.InstanceSize());
    for (int i = 0; i < instances; ++i) {
        int const first = i * numbering.InstanceSize();
        for (int k = 0; k < labels.Size(); ++k) {
            labels[k] = numbering.Label(first + k);
            ordinals[k] = first + k;
        }
        labeler.SetInstance(Name((i + firstInstance) % instances), labels, ordinals);
    }
    transaction.Commit();
    document.Close();
    return KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
}

void Require(bool right) {
    if (!right) throw std::runtime_error("labels: not what was recorded");
}

class Lookups {
  public:
    Lookups(KOVObjDocument const& document, Numbering const& numbering, int instances, int count)
        : m_document(document),
          m_numbering(numbering),
          m_row("labels." + std::to_string(instances)) {
        std::mt19937 random(3);
        std::uniform_int_distribution<int> any(0, numbering.InstanceSize() * instances - 1);
        for (int i = 0; i < count; ++i) m_ordinals.push_back(any(random));
        for (int i = 0; i < instances; ++i) m_names.push_back(Name(i));
    }

    void Run(int runs) {
        m_labeler = std::make_unique<KOVObjLabeler>(m_document, KOVObjLabelerNodes);
        m_labeler->Read();
        Both("instance", runs, [this](int ordinal) {
            KOVString name;
            Require(m_labeler->GetOccurrenceForFlatMeshOrdinal(ordinal, name));
            Require(name == NameOf(ordinal));
        });
        Both("label", runs, [this](int ordinal) {
            Require(m_labeler->GetInstanceLabel(NameOf(ordinal), ordinal) ==
                    m_numbering.Label(ordinal));
        });
        Both("ordinal", runs, [this](int ordinal) {
            Require(m_labeler->GetInstanceOrdinal(NameOf(ordinal), m_numbering.Label(ordinal)) ==
                    ordinal);
        });
    }
    void Info(int runs) {
        int const count = std::min(200, static_cast<int>(m_ordinals.size()));
        std::vector<double> times;
        for (int run = 0; run < runs; ++run) {
            times.push_back(
                bench::Seconds([&] {
                    for (int i = 0; i < count; ++i) {
                        int const ordinal = m_ordinals[static_cast<std::size_t>(i)];
                        KOVString name;
                        int label = 0;
                        Require(KOVSrvGetInstanceInfo(m_document.Focus(), KOVSrvLabelerNodes,
                                                      ordinal, name, label));
                        Require(label == m_numbering.Label(ordinal) && name == NameOf(ordinal));
                    }
                }) /
                count);
        }
        bench::Report(m_row + ".info", "ours", bench::Median(times));
    }

  private:
    KOVString const& NameOf(int ordinal) const {
        return m_names[static_cast<std::size_t>(ordinal / m_numbering.InstanceSize())];
    }
    // All look-ups the first time, which reads what they need; and later.
    template <class Work>
    void Both(std::string const& what, int runs, Work&& work) {
        auto const all = [&] {
            for (int const ordinal : m_ordinals) work(ordinal);
        };
        auto const count = static_cast<double>(m_ordinals.size());
        double first = 0;
        double const mb = bench::PeakMB([&] { first = bench::Seconds(all) / count; });
        std::vector<double> times;
        for (int run = 0; run < runs; ++run) times.push_back(bench::Seconds(all) / count);
        bench::Report(m_row + "." + what, "ours", bench::Median(times), mb);
        bench::Report(m_row + "." + what, "ours, the first time", first);
    }

    KOVObjDocument m_document;
    Numbering const& m_numbering;
    std::string m_row;
    std::vector<int> m_ordinals;
    std::vector<KOVString> m_names;
    std::unique_ptr<KOVObjLabeler> m_labeler;
};

void MapDocuments(KOVObjDocument const& primary, KOVObjDocument const& secondary, int nodes,
                  int runs) {
    std::vector<double> labels, mapping, translating, peakLabels, peakMapping;
    for (int run = 0; run < runs; ++run) {
        peakLabels.push_back(bench::PeakMB([&] {
            labels.push_back(bench::Seconds([&] {
                KOVObjLabeler a(primary, KOVObjLabelerNodes), b(secondary, KOVObjLabelerNodes);
                a.Read();
                b.Read();
                KOVBasVector<int> values, ordinals;
                for (KOVString const& name : a.Occurrences()) {
                    a.GetInstanceLabelsAndOrdinals(name, values, ordinals);
                    b.GetInstanceLabelsAndOrdinals(name, values, ordinals);
                }
            }));
        }));
        KOVSrvLabelMapper mapper(primary.Focus(), secondary.Focus());
        peakMapping.push_back(bench::PeakMB([&] {
            mapping.push_back(bench::Seconds([&] {
                // An empty set: the table is made, and nothing translated.
                mapper.GetMappingFromPrimaryNodeSet(KOVSimCSetID());
            }));
        }));
        bench::Mesh mesh(primary);
        KOVSimCSetID const all = mesh.nodes.CreateTempCSetStrided(0, nodes, 1, 1);
        KOVSimCSet mapped;
        translating.push_back(
            bench::Seconds([&] { mapped = mapper.GetSecondaryNodeSet(all, false); }));
        Require(mapped.Size() == nodes);
    }
    bench::Report("labels.translate", "ours", bench::Median(translating));
    bench::Report("labels.map", "ours", bench::Median(mapping), bench::Median(peakMapping));
    bench::Report("labels.map", "labels read", bench::Median(labels), bench::Median(peakLabels));
}

void Run(bench::Options const& options) {
    int const nodes = options.Int("nodes", 5'000'000), instances = options.Int("instances", 10);
    int const runs = options.Int("runs", 5);
    std::string const first = bench::FreshPath(options, "first.ksd");
    std::string const second = bench::FreshPath(options, "second.ksd");
    Numbering const numbering(nodes, instances, 1), other(nodes, instances, 2);
    KOVObjDocument const primary = WriteDocument(first, numbering, instances, 0);
    int const used = numbering.InstanceSize() * instances;
    Lookups lookups(primary, numbering, instances, options.Int("lookups", 1'000'000));
    lookups.Run(runs);
    lookups.Info(runs);
    if (options.Int("map", 1)) {
        KOVObjDocument const secondary = WriteDocument(second, other, instances, 1);
        MapDocuments(primary, secondary, used, runs);
        secondary.Close();
    }
    primary.Close();
    std::filesystem::remove_all(first);
    std::filesystem::remove_all(second);
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
