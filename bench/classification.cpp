// Element classes by shape: `--types` specifications, two of each shape, over `--elements`
// elements. They lie in one range for each type, in a document in memory, where no disk blurs that
// their number does not count; or are scattered at random, on disk, up to the classes being
// lasting. Beside it: a mesh of a thousandth of the elements in as many ranges, and the unions
// alone, made and stored by hand.
//
//   --elements 10000000 --types 20 --scattered 1 --runs 5
#include <map>
#include <random>
#include <vector>

#include "KOVSimCtation.h"
#include "KOVSimSchema.h"
#include "KOVSrvEltClassificationBuilder.h"
#include "bench/support/Measure.h"
#include "bench/support/Mesh.h"

namespace {

using Sets = KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>;

class Model {
  public:
    Model(std::string const& path, int elements, int types, bool scattered)
        : m_document(scattered ? KOVObjDocument::Create(path.c_str())
                               : KOVObjDocument::CreateInMemory()) {
        bench::Mesh mesh(m_document);
        KOVSimTransaction transaction(m_document.ContextID());
        mesh.Extend(1, elements);
        m_elements = mesh.elements;
        std::vector<KOVSimCSetID> const members =
            scattered ? Scattered(elements, types) : Ranges(elements, types);
        KOVSimPosition const specifications = m_document.GetElementSpecCollection();
        KOVSimCollection collection(specifications.GetCollection());
        KOVSimCollectionID const shapes = m_document.GetShapeCollection().GetCollection();
        KOVSimCtation::Array compartments(types);
        for (int type = 0; type < types; ++type) {
            KOVSimPosition const made = specifications.AppendMember(schema::ElementSpec());
            made.SetPosition(schema::ElementSpec_shape(),
                             m_document.GetRecord(shapes, type / 2 % 49));
            Sets sets(2);
            sets.Get(0) = collection.CreateCSet(&type, 1, false);
            sets.Get(1) = members[static_cast<std::size_t>(type)];
            compartments.Get(type) = KOVSimCompartment(sets);
            m_members.push_back(sets.ConstGet(1));
        }
        KOVObjMesh(mesh.position)
            .SetElementSpecAssignment(mesh.position.CreateTypedDSet(
                KOVSimCtation(compartments), schema::ElementSpecAssignment()));
        transaction.Commit();
    }
    ~Model() { m_document.Close(); }
    Model(Model const&) = delete;
    Model& operator=(Model const&) = delete;

    void Classify() const {
        KOVSrvEltClassificationBuilder(m_document.Focus())
            .BuildEltClassification(KOVSrvEltClassificationByShape);
    }
    // What cannot be saved: the union of each second type with the one before it.
    void Unite() const {
        KOVSimTransaction transaction(m_document.ContextID());
        for (std::size_t i = 1; i < m_members.size(); i += 2) {
            KOVSimCSet(m_members[i - 1]).Union(m_members[i]).RegisterWithCollection();
        }
        transaction.Commit();
    }

  private:
    std::vector<KOVSimCSetID> Ranges(int elements, int types) {
        std::vector<KOVSimCSetID> sets;
        for (int type = 0; type < types; ++type) {
            int const count = elements / types;
            sets.push_back(m_elements.CreateCSetStrided(type * count, count, 1, 1));
        }
        return sets;
    }
    std::vector<KOVSimCSetID> Scattered(int elements, int types) {
        std::vector<std::vector<int>> members(static_cast<std::size_t>(types));
        std::mt19937 random(1);
        for (int element = 0; element < elements; ++element) {
            members[random() % members.size()].push_back(element);
        }
        std::vector<KOVSimCSetID> sets;
        for (std::vector<int> const& of : members) {
            sets.push_back(m_elements.CreateCSet(of.data(), static_cast<int>(of.size()), false));
        }
        return sets;
    }

    KOVObjDocument m_document;
    KOVSimCollection m_elements;
    std::vector<KOVSimCSetID> m_members;
};

void Run(bench::Options const& options) {
    bool const scattered = options.Int("scattered", 0) != 0;
    int const elements = options.Int("elements", 10'000'000), types = options.Int("types", 20);
    std::string const path = bench::FreshPath(options, "classes.ksd");
    std::string const smallPath = bench::FreshPath(options, "classes-small.ksd");
    {
        Model const model(path, elements, types, scattered);
        Model const small(smallPath, elements / 1000, types, scattered);
        std::map<std::string, std::vector<double>> seconds;
        int const runs = options.Int("runs", 5) * (scattered ? 1 : 20);
        for (int run = 0; run < runs; ++run) {
            seconds["ours"].push_back(bench::Seconds([&] { model.Classify(); }));
            seconds["unions alone"].push_back(bench::Seconds([&] { model.Unite(); }));
            seconds["ours, a thousandth"].push_back(bench::Seconds([&] { small.Classify(); }));
        }
        for (auto const& [who, times] : seconds) {
            bench::Report(scattered ? "classes.scattered" : "classes.ranges", who,
                          bench::Median(times));
        }
    }
    std::filesystem::remove_all(path);
    std::filesystem::remove_all(smallPath);
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
