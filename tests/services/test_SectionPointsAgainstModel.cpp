// Counts of section points against a plain map: written in bulk for many sections and layers, with
// some added by hand before and after, and beside what a single section answers. The seed is
// printed with a failure; KOV_SEED sets it.
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "KOVSrvShellSectionPoints.h"
#include "services/ShellFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

class SectionPointsAgainstModel : public testing::TestWithParam<Medium> {
  protected:
    static constexpr int kSections = 30, kLayers = 12;
    // (section, layer) to count.
    using Counts = std::map<std::pair<int, int>, int>;

    SectionPointsAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {
        auto const transaction = mesh.Write();
        mesh.AddCollections(kLayers, kSections);
        for (int section = 0; section < kSections; ++section) {
            layers.push_back(1 + Below(kLayers));
            mesh.Assign(section, layers.back(), {section});
        }
        transaction->Commit();
    }
    ~SectionPointsAgainstModel() override { EndBulk(); }

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    KOVSimPosition Section(int index) const {
        return mesh.document.GetRecord(mesh.Sections().GetCollection(), index);
    }
    // The first count of each pair stays, in the bulk writer as here.
    Counts WriteSome() {
        Counts written;
        for (int i = Below(200); i >= 0; --i) {
            int const section = Below(kSections);
            int const layer = Below(layers[static_cast<std::size_t>(section)]);
            int const count = Below(15);
            Bulk().AppendNumSectionPoints(layer, section, count);
            written.insert({{section, layer}, count});
        }
        mesh.WriteBulk();
        return written;
    }
    void AddSome(KOVSrvShellSectionPoints& points, Counts& model) {
        for (int i = Below(20); i > 0; --i) {
            int const section = Below(kSections), layer = Below(kLayers + 3), count = Below(15);
            points.AddPoints(Section(section), layer, count);
            model.insert({{section, layer}, count});
        }
    }
    void ExpectAnswers(KOVSrvShellSectionPoints const& points, Counts const& model) {
        for (int i = 0; i < 300; ++i) {
            int const section = Below(kSections), layer = Below(kLayers + 3);
            auto const known = model.find({section, layer});
            ASSERT_EQ(points.GetNumSectionPoints(Section(section), layer),
                      known == model.end() ? 0 : known->second)
                << "section " << section << " layer " << layer;
        }
    }

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
    ShellDocument mesh{GetParam(), 10, 100};
    std::vector<int> layers;
};
INSTANTIATE_TEST_SUITE_P(Media, SectionPointsAgainstModel,
                         testing::Values(Medium::Memory, Medium::Disk), MediumName);

TEST_P(SectionPointsAgainstModel, EveryCountIsFoundBySectionAndLayer) {
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        Counts const written = WriteSome();
        if (Below(2)) mesh.Reopen();
        KOVSrvShellSectionPoints points(mesh.document);
        Counts model;
        AddSome(points, model);
        // Otherwise the first query reads the document.
        if (Below(2)) points.UpdateMap();
        model.insert(written.begin(), written.end());
        ASSERT_NO_FATAL_FAILURE(ExpectAnswers(points, model));
        AddSome(points, model);
        ASSERT_NO_FATAL_FAILURE(ExpectAnswers(points, model));
    }
}

TEST_P(SectionPointsAgainstModel, SingleSectionsAnswerTheSameButForMissingCounts) {
    Counts const written = WriteSome();
    mesh.Reopen();
    KOVSrvShellSectionPoints const points(mesh.document);
    for (int section = 0; section < kSections; ++section) {
        KOVSrvShellSection const single(mesh.Assignment(section));
        KOVBasVector<int> const& counts = single.GetSectionPoints();
        ASSERT_EQ(counts.Size(), layers[static_cast<std::size_t>(section)]);
        for (int layer = 0; layer < counts.Size(); ++layer) {
            bool const known = written.count({section, layer}) > 0;
            ASSERT_EQ(counts[layer] == -1, !known);
            ASSERT_EQ(points.GetNumSectionPoints(Section(section), layer),
                      known ? counts[layer] : 0);
        }
    }
}

}  // namespace
}  // namespace kov::test
