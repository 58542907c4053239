// Section assignments against plain sets: overlapping regions of every shape, asked for sets of
// every shape. The seed is printed with a failure; KOV_SEED sets it.
#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>
#include <string>

#include "services/SectionFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

using Governed = SectionDocument::Governed;

class SectionsAgainstModel : public testing::TestWithParam<Medium> {
  protected:
    static constexpr int kElements = 300;

    SectionsAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    // A range, some of a range, or a few from anywhere; now and then empty.
    std::vector<int> AnyElements() {
        int const first = Below(kElements);
        std::vector<int> const range = Range(first, Below(std::min(80, kElements - first) + 1));
        if (Below(2) == 0) return range;
        std::vector<int> picked, all = Below(2) ? range : Range(0, kElements);
        int const most = static_cast<int>(std::min<std::size_t>(all.size(), 20));
        std::sample(all.begin(), all.end(), std::back_inserter(picked), Below(most + 1), random);
        return picked;
    }
    // Element by element: the first region that holds it.
    Governed Model(std::vector<int> const& asked) const {
        Governed governed;
        for (int element : asked) {
            int place = 0;
            for (auto const& region : regions) {
                if (region.count(element)) break;
                ++place;
            }
            bool const none = place == static_cast<int>(regions.size());
            governed[none ? kNobody : place].push_back(element);
        }
        for (auto& piece : governed) std::sort(piece.second.begin(), piece.second.end());
        return governed;
    }
    int ModelWhole(std::vector<int> const& asked) const {
        int place = 0;
        for (auto const& region : regions) {
            if (std::all_of(asked.begin(), asked.end(),
                            [&](int element) { return region.count(element) > 0; })) {
                return place;
            }
            ++place;
        }
        return kNobody;
    }

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
    SectionDocument mesh{GetParam(), 10, kElements};
    std::vector<std::set<int>> regions;
};
INSTANTIATE_TEST_SUITE_P(Media, SectionsAgainstModel, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(SectionsAgainstModel, EveryElementGoesToTheFirstRegionThatHoldsIt) {
    int split = 0, whole = 0, bare = 0;
    for (int round = 0; round < 20; ++round) {
        SCOPED_TRACE(round);
        {
            auto const transaction = mesh.Write();
            for (int count = Below(4); count > 0; --count) {
                std::vector<int> const region = AnyElements();
                mesh.Assign(region);
                regions.emplace_back(region.begin(), region.end());
            }
            transaction->Commit();
        }
        if (Below(3) == 0) mesh.Reopen();
        for (int question = 0; question < 20; ++question) {
            std::vector<int> asked = AnyElements();
            bool const ordered = Below(3) == 0;
            if (ordered) std::shuffle(asked.begin(), asked.end(), random);
            KOVSimPosition const set =
                ordered ? MeshDocument::Ordered(mesh.elements, asked) : mesh.Elements(asked);
            Governed expected = Model(asked);
            // A set that none governs is handed back as it is.
            if (expected.size() == 1 && expected.count(kNobody)) expected[kNobody] = asked;
            ASSERT_EQ(mesh.Ask(set), expected);
            ASSERT_EQ(mesh.AskWhole(set), ModelWhole(asked));
            split += expected.size() > 1;
            whole += ModelWhole(asked) != kNobody;
            bare += expected.count(kNobody) > 0;
        }
    }
    EXPECT_GT(split, 0);
    EXPECT_GT(whole, 0);
    EXPECT_GT(bare, 0);
}

}  // namespace
}  // namespace kov::test
