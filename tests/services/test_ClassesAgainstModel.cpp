// Element classes against plain sets: random specifications, shapes and elements, in random order.
// The seed is printed with a failure; KOV_SEED sets it.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "services/ClassFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

constexpr int kElements = 20'000;

class ClassesAgainstModel : public testing::TestWithParam<Medium> {
  protected:
    ClassesAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    // A range, a scattered set of any size, or a stretch with gaps; now and then none at all.
    std::vector<int> SomeElements() {
        int const first = Below(kElements), room = kElements - first;
        switch (Below(4)) {
            case 0:
                return Range(first, Below(room + 1));
            case 1: {
                std::vector<int> stretch;
                for (int member = first; member < kElements && member < first + 300;
                     member += 1 + Below(3)) {
                    stretch.push_back(member);
                }
                return stretch;
            }
            default: {
                std::set<int> scattered;
                for (int i = Below(500); i > 0; --i) scattered.insert(Below(kElements));
                return {scattered.begin(), scattered.end()};
            }
        }
    }

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
};
INSTANTIATE_TEST_SUITE_P(Media, ClassesAgainstModel, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(ClassesAgainstModel, EachShapeHasTheUnionOfItsElementsUnderItsFirstSpecification) {
    ClassDocument mesh(GetParam(), 10, kElements);
    std::vector<int> shapeOf;
    for (int round = 0; round < 25; ++round) {
        SCOPED_TRACE(round);
        std::vector<int> more;
        for (int i = Below(6); i > 0 || shapeOf.size() + more.size() == 0; --i) {
            more.push_back(Below(Below(2) ? 49 : 5));
        }
        mesh.AddSpecifications(more);
        shapeOf.insert(shapeOf.end(), more.begin(), more.end());

        std::vector<std::pair<int, std::vector<int>>> assignment;
        for (int i = Below(20); i > 0; --i) {
            assignment.emplace_back(Below(static_cast<int>(shapeOf.size())), SomeElements());
        }
        mesh.Assign(assignment);
        KOVSimPosition const built = mesh.Build();
        ASSERT_EQ(built.ID(), mesh.Mesh().GetElementClassification().ID());
        if (Below(3) == 0) mesh.Reopen();

        std::vector<int> firsts;            // specifications by class
        std::map<int, int> classOf;         // by shape
        std::map<int, std::set<int>> held;  // by shape
        for (auto const& [spec, elements] : assignment) {
            int const shape = shapeOf[static_cast<std::size_t>(spec)];
            if (classOf.emplace(shape, static_cast<int>(firsts.size())).second) {
                firsts.push_back(spec);
            }
            held[shape].insert(elements.begin(), elements.end());
        }
        std::vector<ClassDocument::Class> expected;
        for (auto const& [shape, members] : held) {
            expected.push_back({classOf[shape], {members.begin(), members.end()}});
        }
        KOVSimPosition const classification = mesh.Mesh().GetElementClassification();
        ASSERT_EQ(mesh.SpecificationsOfClasses(classification), firsts);
        ASSERT_TRUE(ClassDocument::Membership(classification) == expected);
        ASSERT_EQ(mesh.ClassSpace(), static_cast<int>(assignment.size()));
    }
}

}  // namespace
}  // namespace kov::test
