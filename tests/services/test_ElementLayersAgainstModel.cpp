// An element layer property against plain blocks: random sets of elements and layers given random
// values, by objects that come and go, asked for values and layers in any order. The seed is
// printed with a failure; KOV_SEED sets it.
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "services/ElementLayerFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

using Numbers = std::vector<int>;

// All elements of one set of layers.
struct Block {
    std::set<int> layers, elements;
    std::map<std::pair<int, int>, int> values;
};

class ElementLayersAgainstModel : public testing::TestWithParam<Medium> {
  protected:
    static constexpr int kElements = 400, kLayers = 12, kValues = 60;

    ElementLayersAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    // Ascending: a range, or some from anywhere; now and then none.
    Numbers Pick(int space, int most) {
        int const count = Below(most + 1), first = Below(space);
        if (Below(2)) return Range(first, std::min(count, space - first));
        Numbers picked, all = Range(0, space);
        std::sample(all.begin(), all.end(), std::back_inserter(picked), count, random);
        return picked;
    }
    // One of the sets of layers in use, or any other.
    Numbers PickLayers() {
        if (blocks.empty() || Below(3) == 0) return Pick(kLayers, 6);
        auto const& layers = blocks[static_cast<std::size_t>(Below(Count()))].layers;
        return {layers.begin(), layers.end()};
    }
    int Count() const { return static_cast<int>(blocks.size()); }
    KOVSimCSet Set(KOVSimCollection const& collection, Numbers const& members) {
        return std::is_sorted(members.begin(), members.end())
                   ? MeshDocument::Set(collection, members)
                   : MeshDocument::Ordered(collection, members);
    }

    void AddToModel(Numbers const& elements, Numbers const& layers, int value) {
        std::set<int> const key(layers.begin(), layers.end());
        auto at = std::find_if(blocks.begin(), blocks.end(),
                               [&](Block const& block) { return block.layers == key; });
        if (at == blocks.end()) at = blocks.insert(blocks.end(), Block{key, {}, {}});
        at->elements.insert(elements.begin(), elements.end());
        for (int element : elements) {
            for (int layer : layers) at->values[{element, layer}] = value;
        }
    }
    int ModelValue(int element, int layer) const {
        for (auto block = blocks.rbegin(); block != blocks.rend(); ++block) {
            auto const known = block->values.find({element, layer});
            if (known != block->values.end()) return known->second;
        }
        return ElementLayerDocument::kUntouched;
    }
    Numbers ModelLayers(Numbers const& elements) const {
        std::set<int> layers;
        for (Block const& block : blocks) {
            if (std::any_of(elements.begin(), elements.end(),
                            [&](int element) { return block.elements.count(element) > 0; })) {
                layers.insert(block.layers.begin(), block.layers.end());
            }
        }
        return {layers.begin(), layers.end()};
    }

    void AddSome() {
        auto const transaction = mesh.Write();
        for (int count = 1 + Below(6); count > 0; --count) {
            Numbers const elements = Pick(kElements, 60), layers = PickLayers();
            int const value = Below(kValues);
            property->Add(mesh.Elements(elements), mesh.LayerSet(layers), mesh.Value(value));
            AddToModel(elements, layers, value);
        }
        property->Save(*transaction);
        transaction->Commit();
    }
    void ExpectStored() {
        std::vector<ElementLayerDocument::Block> expected;
        for (Block const& block : blocks) {
            expected.push_back({Numbers(block.elements.begin(), block.elements.end()),
                                Numbers(block.layers.begin(), block.layers.end())});
        }
        ASSERT_EQ(mesh.Blocks(), expected);
    }
    void Ask() {
        Numbers elements = Pick(kElements, 80), layers = Pick(kLayers, kLayers);
        if (Below(2)) std::shuffle(elements.begin(), elements.end(), random);
        if (Below(2)) std::shuffle(layers.begin(), layers.end(), random);
        Numbers expected;
        for (int element : elements) {
            for (int layer : layers) expected.push_back(ModelValue(element, layer));
        }
        KOVSimCSet const elementSet = Set(mesh.elements, elements);
        ASSERT_EQ(ElementLayerDocument::Lookup(*property, elementSet, Set(mesh.Layers(), layers)),
                  expected);
        Numbers const few(elements.begin(),
                          elements.begin() + std::min<std::ptrdiff_t>(3, std::ssize(elements)));
        KOVSimCSet const fewSet = Set(mesh.elements, few);
        ASSERT_EQ(Members(property->GetElementLayers(fewSet.ID())), ModelLayers(few));
        found += static_cast<int>(few.size());
    }

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
    ElementLayerDocument mesh{GetParam(), kElements, kLayers, kValues};
    std::optional<KOVSrvElementLayerProperty> property;
    std::vector<Block> blocks;
    int found = 0;
};
INSTANTIATE_TEST_SUITE_P(Media, ElementLayersAgainstModel,
                         testing::Values(Medium::Memory, Medium::Disk), MediumName);

TEST_P(ElementLayersAgainstModel, EveryPairHasTheValueGivenLastToTheYoungestDrawer) {
    property.emplace(mesh.Property());
    for (int round = 0; round < 30; ++round) {
        SCOPED_TRACE(round);
        AddSome();
        if (Below(3) == 0) {
            property.reset();
            mesh.Reopen();
            property.emplace(mesh.Property());
        }
        ASSERT_NO_FATAL_FAILURE(ExpectStored());
        for (int question = 0; question < 10; ++question) ASSERT_NO_FATAL_FAILURE(Ask());
    }
    EXPECT_GT(found, 0);
    EXPECT_GT(Count(), 5);
}

}  // namespace
}  // namespace kov::test
