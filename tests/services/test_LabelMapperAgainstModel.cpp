// The label mapper against plain maps: random instances with random labels in two documents, some
// of them in one only, and sets of every kind translated. The seeds are printed; KOV_SEED sets one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "KOVSrvGetInstanceInfo.h"
#include "KOVSrvLabelMapper.h"
#include "services/LabelFixture.h"

namespace kov::test {
namespace {

// (instance, label) -> ordinal: what a user knows of a document.
using Labels = std::map<std::pair<std::string, int>, int>;

std::vector<unsigned> Seeds() {
    if (char const* const text = std::getenv("KOV_SEED"))
        return {static_cast<unsigned>(std::strtoul(text, nullptr, 10))};
    std::random_device any;
    return {1, 2, any(), any(), any()};
}

class Numbers {
  public:
    explicit Numbers(unsigned seed) : random(seed) {}
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    bool OneIn(int n) { return Below(n) == 0; }
    std::mt19937 random;
};

// Gives labels of some users' entities to ordinals in an order of the document's own.
Labels Number(Numbers& any, std::vector<std::pair<std::string, int>> entities, int space) {
    std::vector<int> ordinals;
    std::vector<int> const all = Range(0, space);
    std::sample(all.begin(), all.end(), std::back_inserter(ordinals), entities.size(), any.random);
    int const order = any.Below(3);
    if (order == 0) std::shuffle(ordinals.begin(), ordinals.end(), any.random);
    if (order == 1) {  // instance by instance, each one permuted
        auto first = entities.begin();
        while (first != entities.end()) {
            auto last = std::find_if(first, entities.end(),
                                     [&](auto const& e) { return e.first != first->first; });
            std::shuffle(first, last, any.random);
            first = last;
        }
    }
    Labels labels;
    for (std::size_t i = 0; i < entities.size(); ++i) labels[entities[i]] = ordinals[i];
    return labels;
}

void Record(MeshDocument const& mesh, KOVObjLabelerType type, Labels const& labels, Numbers& any) {
    std::map<std::string, LabelPairs> instances;
    for (auto const& [entity, ordinal] : labels)
        instances[entity.first].emplace_back(entity.second, ordinal);
    for (auto& [name, pairs] : instances) {
        std::shuffle(pairs.begin(), pairs.end(), any.random);
        RecordLabels(mesh, type, name, pairs);
    }
}

class LabelMapperAgainstModel
    : public testing::TestWithParam<std::tuple<Medium, KOVObjLabelerType>> {
  protected:
    Medium OnMedium() const { return std::get<0>(GetParam()); }
    KOVObjLabelerType Type() const { return std::get<1>(GetParam()); }
    bool OfNodes() const { return Type() == KOVObjLabelerNodes; }
    KOVSimCollection Collection(MeshDocument const& mesh) const {
        return OfNodes() ? mesh.nodes : mesh.elements;
    }
    void Run(unsigned seed);
    void CompareSets(KOVSrvLabelMapper& mapper, MeshDocument const& primary,
                     MeshDocument const& secondary, Labels const& a, Labels const& b, Numbers& any);
    void CompareInfo(MeshDocument const& mesh, Labels const& labels, Numbers& any);
};
INSTANTIATE_TEST_SUITE_P(Media, LabelMapperAgainstModel,
                         testing::Combine(testing::Values(Medium::Memory, Medium::Disk),
                                          testing::Values(KOVObjLabelerNodes,
                                                          KOVObjLabelerElements)));

void LabelMapperAgainstModel::CompareSets(KOVSrvLabelMapper& mapper, MeshDocument const& primary,
                                          MeshDocument const& secondary, Labels const& a,
                                          Labels const& b, Numbers& any) {
    std::map<int, std::pair<Labels::key_type, int>> common;  // by primary ordinal
    for (auto const& [entity, ordinal] : a) {
        if (auto const other = b.find(entity); other != b.end())
            common[ordinal] = {entity, other->second};
    }
    std::vector<int> here, there;
    for (auto const& [ordinal, row] : common) {
        here.push_back(ordinal);
        there.push_back(row.second);
    }
    EXPECT_EQ(here, Members(OfNodes() ? mapper.GetCommonPrimaryNodeSet()
                                      : mapper.GetCommonPrimaryElementSet()));
    std::sort(there.begin(), there.end());
    EXPECT_EQ(there, Members(OfNodes() ? mapper.GetCommonSecondaryNodeSet()
                                       : mapper.GetCommonSecondaryElementSet()));

    int const space = Collection(primary).Space();
    for (int turn = 0; turn < 12; ++turn) {
        std::vector<int> members;
        if (any.OneIn(3)) {
            int const count = any.Below(space + 1);
            members = Range(any.Below(space - count + 1), count);
        } else {
            std::vector<int> const all = Range(0, space);
            std::sample(all.begin(), all.end(), std::back_inserter(members),
                        any.Below(any.OneIn(2) ? 5 : space + 1), any.random);
        }
        if (any.OneIn(2)) std::shuffle(members.begin(), members.end(), any.random);
        KOVSimCSetID const set = MeshDocument::Ordered(Collection(primary), members);
        std::vector<int> mapped;
        std::vector<Labels::key_type> entities;
        for (int const member : members) {
            auto const row = common.find(member);
            if (row == common.end()) continue;
            entities.push_back(row->second.first);
            mapped.push_back(row->second.second);
        }
        auto const mapping = OfNodes() ? mapper.GetMappingFromPrimaryNodeSet(set)
                                       : mapper.GetMappingFromPrimaryElementSet(set);
        std::vector<Labels::key_type> found;
        for (int const at : mapping) {
            KOVString const name = OfNodes() ? mapper.GetNodeMappingOrdinalInstanceName(at)
                                             : mapper.GetElementMappingOrdinalInstanceName(at);
            found.emplace_back(name.TextOrEmpty(),
                               OfNodes() ? mapper.GetNodeMappingOrdinalUserLabel(at)
                                         : mapper.GetElementMappingOrdinalUserLabel(at));
        }
        ASSERT_EQ(entities, found);
        auto const secondarySet = [&](bool unordered) {
            return OfNodes() ? mapper.GetSecondaryNodeSet(set, unordered)
                             : mapper.GetSecondaryElementSet(set, unordered);
        };
        ASSERT_EQ(mapped, Members(secondarySet(false)));
        ASSERT_EQ(secondarySet(false).CollectionID(), Collection(secondary).ID());
        std::sort(mapped.begin(), mapped.end());
        ASSERT_EQ(mapped, Members(secondarySet(true)));
    }
}

void LabelMapperAgainstModel::CompareInfo(MeshDocument const& mesh, Labels const& labels,
                                          Numbers& any) {
    std::map<int, Labels::key_type> entities;
    for (auto const& [entity, ordinal] : labels) entities[ordinal] = entity;
    for (int turn = 0; turn < 20; ++turn) {
        int const ordinal = any.Below(Collection(mesh).Space());
        KOVString instance("none");
        int label = -5;
        auto const entity = entities.find(ordinal);
        auto const type = static_cast<KOVSrvLabelerType>(OfNodes() ? 0 : 1 + any.Below(5));
        ASSERT_EQ(entity != entities.end(),
                  KOVSrvGetInstanceInfo(mesh.document.Focus(), type, ordinal, instance, label));
        auto const expected =
            entity == entities.end() ? std::make_pair(std::string("none"), -5) : entity->second;
        ASSERT_EQ(expected, std::make_pair(std::string(instance.TextOrEmpty()), label));
    }
}

void LabelMapperAgainstModel::Run(unsigned seed) {
    Numbers any(seed);
    int const instances = any.OneIn(2) ? 1 + any.Below(5) : 1 + any.Below(60);
    int const most = any.OneIn(3) ? 3 : 60;
    int const scale = any.OneIn(2) ? 1 : 1 + any.Below(1000000);
    std::vector<std::pair<std::string, int>> inPrimary, inSecondary;
    for (int i = 0; i < instances; ++i) {
        std::string const name = any.OneIn(20) ? "" : "PART-" + std::to_string(i);
        int const side = any.Below(8);  // now and then an instance of one document only
        int const step = 1 + any.Below(4);
        int label = any.Below(100) - 50;
        for (int k = any.Below(most); k > 0; --k) {
            label += 1 + any.Below(step);
            bool const here = side != 0 && !any.OneIn(6);
            bool const there = side != 1 && !any.OneIn(6);
            if (here) inPrimary.emplace_back(name, label * scale);
            if (there) inSecondary.emplace_back(name, label * scale);
        }
    }
    for (auto* const list : {&inPrimary, &inSecondary}) {
        std::sort(list->begin(), list->end());
        list->erase(std::unique(list->begin(), list->end()), list->end());
    }
    int const space = 3600 + any.Below(any.OneIn(3) ? 40000 : 400);
    MeshDocument primary(OnMedium(), space, space);
    MeshDocument secondary(OnMedium(), space + 100, space + 100);
    Labels const a = Number(any, inPrimary, space);
    Labels const b = Number(any, inSecondary, space + 100);
    Record(primary, Type(), a, any);
    Record(secondary, Type(), b, any);
    primary.Reopen(KOVObjDocument::ReadOnly);
    secondary.Reopen(KOVObjDocument::ReadOnly);
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    CompareSets(mapper, primary, secondary, a, b, any);
    CompareInfo(primary, a, any);
    CompareInfo(secondary, b, any);
    // The other way round.
    KOVSrvLabelMapper back(secondary.document.Focus(), primary.document.Focus());
    CompareSets(back, secondary, primary, b, a, any);
}

TEST_P(LabelMapperAgainstModel, SetsAreTranslatedByInstanceAndLabel) {
    for (unsigned const seed : Seeds()) {
        std::cout << "KOV_SEED=" << seed << '\n';
        SCOPED_TRACE("KOV_SEED=" + std::to_string(seed));
        Run(seed);
        if (HasFatalFailure()) return;
    }
}

}  // namespace
}  // namespace kov::test
